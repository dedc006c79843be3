// settings/statement_file.h — one statement file: the SQL statements that load
// one source table or interchange file into the staging database, the
// find-and-replace pairs applied to them, and (for interchange files) how the
// data file is laid out.
//
// On-disk syntax (formats/README.md tells format authors the same). The file
// is divided by section lines, each holding only its name (any case):
//   @SENTENCIAS   the statements (also everything before the first section line)
//   @PARES        replacement pairs, one "Campo|Valor" per line
//   @ARCHIVO      the data-file layout (settings/data_layout.h)
// Statements: plain Jet SQL over one or more lines; a statement ends at a line
// whose last non-blank character is ";" (the ";" is not part of it) or at a
// line holding only ";". A last statement without ";" ends at the end of its
// section. Lines whose first non-blank characters are "--" are comments and are
// dropped; statements that hold only blanks are dropped. A statement's lines are
// joined with LF.
// Pairs: Campo is the text before the first "|" (trimmed when used), Valor all
// the text after it, exactly as written (blanks included). Blank and "--" lines
// are skipped.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/data_layout.h"

namespace settings {

struct ReplacementPair {
  std::string Campo;  // text to find (trimmed before use)
  std::string Valor;  // text put in its place, as it stands
};

class StatementFile {
 public:
  // Loads the file at `path`, replacing anything loaded before. Returns false
  // with a Spanish error() when the file is missing, is not text, or its
  // sections are malformed; the object is then empty. A file with no statements
  // is valid.
  bool load(const std::filesystem::path& path);
  // The same from a text already in memory (UTF-8).
  bool load_text(std::string_view text);

  // The data file of an interchange entry (the entry's Ruta).
  void set_data_file(std::string path) { data_file_ = std::move(path); }
  const std::string& data_file() const { return data_file_; }

  int statement_count() const { return static_cast<int>(statements_.size()); }
  // Statement i, counted from 1. Throws std::out_of_range outside 1..count.
  const std::string& statement(int i) const;
  const std::vector<std::string>& statements() const { return statements_; }

  // The replacement pairs in file order.
  const std::vector<ReplacementPair>& pairs() const { return pairs_; }

  // The data-file layout, when the file has an "@ARCHIVO" section.
  const std::optional<DataFileLayout>& layout() const { return layout_; }

  // Lines that were skipped while loading (Spanish, with line numbers).
  const std::vector<std::string>& warnings() const { return warnings_; }
  const std::string& error() const { return error_; }
  const std::filesystem::path& path() const { return path_; }

 private:
  void clear();

  std::filesystem::path path_;
  std::string data_file_;
  std::vector<std::string> statements_;
  std::vector<ReplacementPair> pairs_;
  std::optional<DataFileLayout> layout_;
  std::vector<std::string> warnings_;
  std::string error_;
};

}  // namespace settings
