// staging/catalogue.h — the import format's catalogue of source entries: the
// tables of a database source (format key BD) and the interchange files of a
// folder source (format key Archivos), and the matching of a folder's files to
// them.
//
// A catalogue line is "name|conditions|statement file|option", e.g.
//   Empleados|NOM(emp*.txt)*FL(Legajo)|sql\empleados.sql|3
// The option is the transfer group (1..5) the entry belongs to.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/cond_tree.h"

namespace staging {

// One catalogue entry.
struct ClaArchBD {
  std::string Codigo;                                            // name + "*" + option number
  settings::CondNode ColCond = settings::CondNode::List('*');    // parsed conditions
  std::string ArchConf;                                          // statement file, relative to the program folder
  bool Existe = false;                                           // found by the last matching
  std::string Ruta;                                              // path of the matched file or database
  bool TipoAR = false;                                           // true: interchange file; false: database table

  // The option number: the whole-number value of the text after the first "*"
  // of Codigo (0 when there is none).
  int option() const;
  // The entry's name (Codigo before its first "*").
  std::string name() const;
};

// The catalogue: entries kept in the order they were added, each under its
// Codigo (keys compared without regard to case, as a Basic collection does).
class ColArchsBD {
 public:
  // The entry under `key`; throws std::out_of_range when there is none.
  ClaArchBD& ColArchTablas(std::string_view key);
  const ClaArchBD& ColArchTablas(std::string_view key) const;
  // The entry under `key`, or nullptr.
  ClaArchBD* find(std::string_view key);

  // Adds an entry under its Codigo; false (nothing added) when the key is taken.
  bool add(ClaArchBD entry);
  // Removes the entry under `key`; false when there is none.
  bool remove(std::string_view key);
  void clear() { entries_.clear(); }

  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  std::vector<ClaArchBD>::iterator begin() { return entries_.begin(); }
  std::vector<ClaArchBD>::iterator end() { return entries_.end(); }
  std::vector<ClaArchBD>::const_iterator begin() const { return entries_.begin(); }
  std::vector<ClaArchBD>::const_iterator end() const { return entries_.end(); }

 private:
  std::vector<ClaArchBD> entries_;
};

// Builds an entry from one line of Archivos (tipo_ar true) or BD (false).
// A line with fewer than four fields, an empty name or one holding "*", an
// option that is not a whole number from 1 to 5, or a condition that does not parse gives nullopt and a Spanish
// `warning` naming the line. Extra fields after the fourth are ignored.
std::optional<ClaArchBD> EntryFromLine(std::string_view line, bool tipo_ar, std::string* warning);

// Adds one entry per line of a BD or Archivos key value (CR LF separated lines)
// to the catalogue. Blank lines are skipped; bad lines and lines that repeat
// another entry's name and option are skipped and reported in `warnings`.
// Returns the number of entries added.
int AddEntriesFromKey(ColArchsBD& catalogue, std::string_view value, bool tipo_ar, const std::string& key_name,
                      std::vector<std::string>* warnings);

// What a matching pass found.
struct MatchResult {
  long long total_lines = 0;  // lines of the matched files, plus one per match (sizes the progress bar)
  int files_read = 0;         // files read whole (each at most once)
  int first_lines_read = 0;   // files of which only the first line was read (each at most once)
};

// Matches the files of `folder` to the catalogue (the catalogue's side of
// BuscarArchivos):
//   1. every entry's Existe is cleared (and its Ruta emptied);
//   2. for each entry, in order, whose option box chk_op[option - 1] is ticked,
//      the folder's files are offered sorted by name; the first one that
//      satisfies the entry's conditions sets Existe and Ruta, and its line
//      count plus one is added to the total. The contents of a file are read
//      only for interchange entries whose conditions test contents: just the
//      first line when only FL tests are made, the whole text for DINT; each
//      file is read at most once per pass (and its first line at most once);
//   3. chk_op[i] becomes "some entry of option i + 1 was found".
// `on_entry` (optional) is called once per entry offered, to move a progress bar.
MatchResult MatchFolder(ColArchsBD& catalogue, const std::filesystem::path& folder, std::array<bool, 5>& chk_op,
                        const std::function<void()>& on_entry = {});

// Matches the tables of a database source reached through ODBC, which has no
// folder: every entry's Existe is cleared; each database (BD) entry whose
// option box is ticked is found when its conditions match one of `tables`
// (the first in the given order), and then its Ruta is `connection_text`, so
// that `in '[BDOrigen]'` reads that table through the source connection.
// Interchange entries are never found. chk_op[i] becomes "some entry of option
// i + 1 was found". `matched` (optional) receives the matched table names,
// each once, in the order found.
MatchResult MatchTables(ColArchsBD& catalogue, const std::vector<std::string>& tables,
                        const std::string& connection_text, std::array<bool, 5>& chk_op,
                        std::vector<std::string>* matched = nullptr, const std::function<void()>& on_entry = {});

}  // namespace staging
