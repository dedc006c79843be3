// demo/csv_writer.h — writes the demo generator's rows as interchange CSV
// files: one file per table, named after it (Personas.csv), in a folder.
//
// The files follow the shipped CSV interchange format (formats/README.md,
// "Shipped formats"): UTF-8 without byte-order mark, CR LF line ends, ";"
// between fields, a header line with the column names, Null as an empty
// field, numbers with "." as decimal point, dates as the generator gives them
// (yyyy-mm-dd). A text is quoted when it holds ";", a quote, a line break or
// blanks at either end (unquoted fields are trimmed when read), and when it
// is empty: "" is an empty text, an empty field is Null.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "demo/row_sink.h"

namespace demo {

class CsvWriter final : public RowSink {
 public:
  // Creates `folder` (and its parents) and removes the .csv files already in
  // it, so that no file of an earlier demo is left behind. Throws
  // std::runtime_error (Spanish) when the folder cannot be made.
  explicit CsvWriter(std::filesystem::path folder);
  ~CsvWriter() override;
  CsvWriter(const CsvWriter&) = delete;
  CsvWriter& operator=(const CsvWriter&) = delete;

  // A table declared again writes into the same file: its columns are placed
  // under the first declaration's header by name; columns the header lacks are
  // dropped and remembered in missing_columns().
  int declare_table(std::string_view table, const std::vector<std::string>& columns) override;
  void add_row(int table, std::span<const Value> values) override;

  // Flushes and closes every file; throws std::runtime_error (Spanish) when a
  // file could not be written whole.
  void finish();

  const std::map<std::string, std::int64_t>& row_counts() const { return counts_; }
  const std::set<std::string>& missing_columns() const { return missing_columns_; }

 private:
  struct File {
    std::string table;
    std::filesystem::path path;
    std::ofstream out;
    std::vector<std::string> header;
    std::unique_ptr<char[]> buffer;
  };
  struct Handle {
    File* file = nullptr;
    std::vector<int> slots;  // per declared column: index in the header, or -1
  };

  std::filesystem::path folder_;
  std::vector<std::unique_ptr<File>> files_;
  std::vector<Handle> handles_;
  std::map<std::string, std::int64_t> counts_;
  std::set<std::string> missing_columns_;
  std::vector<std::string> row_;  // one row's fields, reused
  bool finished_ = false;
};

// One value as a CSV field of the interchange format.
std::string CsvField(const Value& value);

}  // namespace demo
