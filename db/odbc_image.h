// db/odbc_image.h — reads tables of an ODBC data source as a statement's
// `in '<connection text>'` clause asks: the named tables are streamed through
// the source connection into a SQLite image that the staging connection then
// attaches like any other database file.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "db/odbc_connection.h"
#include "db/source_reader.h"

namespace db {

// Copies `tables` of the open ODBC connection `source` into a new SQLite
// database at `image` (replaced when present), row by row as the driver
// fetches them, all inside one transaction of the image. Returns the rows
// copied. Throws db::Error with a Spanish message naming the table that failed.
std::int64_t write_odbc_image(OdbcConnection& source, const std::vector<std::string>& tables,
                              const std::string& image);

// The reader that serves `connection_text` from `source` (see
// OdbcImageReader), or nullptr when `source` is not an ODBC connection: only
// an ODBC data source's tables are copied this way.
std::shared_ptr<SourceReader> odbc_image_reader(std::string connection_text, Connection& source,
                                                std::vector<std::string> tables, std::filesystem::path cache_folder);

class OdbcImageReader : public SourceReader {
 public:
  // Serves `connection_text` from `source` (which must outlive the reader),
  // copying `tables` into an image in `cache_folder`.
  OdbcImageReader(std::string connection_text, OdbcConnection& source, std::vector<std::string> tables,
                  std::filesystem::path cache_folder);

  // True for this reader's connection text (blanks around it and case aside).
  bool can_read(const std::string& path) const override;

  // A fresh image of the tables: every call reads the source again.
  std::string sqlite_image(const std::string& path) override;

  std::int64_t rows_copied() const { return rows_; }

 private:
  std::string connection_text_;
  OdbcConnection& source_;
  std::vector<std::string> tables_;
  std::filesystem::path cache_folder_;
  std::int64_t rows_ = 0;
};

// True when `text` is an ODBC connection text ("DSN=name;", "Driver=...;")
// rather than a file path.
bool is_connection_text(const std::string& text);

}  // namespace db
