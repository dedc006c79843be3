// db/access_reader.h — reads Access files (Jet 3, Jet 4, ACE .accdb) as
// sources: each file is copied with libmdb into a SQLite image kept in a cache
// folder (beside the staging database) and attached in the file's place.
//
// The source file is only ever opened for reading. Its image is made again
// when the file's size or modification time changes, and reused otherwise, so
// a source read by thousands of statements is converted once.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "db/source_reader.h"

namespace db {

// What one conversion did, for the caller's report and for measuring.
struct AccessImageReport {
  int tables = 0;
  std::int64_t rows = 0;
  // "Tabla.Columna (tipo)" of each column left out because its type cannot be
  // read (attachments, multi-valued fields, OLE objects).
  std::vector<std::string> omitted;
};

// Converts the Access file `source` into a new SQLite database at `image`
// (replaced when present): one table per user table of the source with its
// columns and rows, plus KelColumnasOmitidas(Tabla, Columna, Tipo) listing the
// columns left out. Types: Yes/No to -1/0, dates to ISO texts, currency to
// REAL exact to its 4 decimals, memo fields whole, text in UTF-8 (Jet 3 files
// read as Windows-1252). Throws db::Error with a Spanish message naming the
// file when it cannot be read (damaged, or encrypted with a password).
AccessImageReport write_access_image(const std::string& source, const std::string& image);

class AccessReader : public SourceReader {
 public:
  // Images go to `cache_folder`; an empty folder means the system's temporary
  // folder (kelimport-access).
  explicit AccessReader(std::filesystem::path cache_folder = {});

  // Images made from now on go to `folder`.
  void set_cache_folder(std::filesystem::path folder);

  // True for Jet and ACE files.
  bool can_read(const std::string& path) const override;

  // The image of `path`, made or refreshed when the file changed.
  std::string sqlite_image(const std::string& path) override;

  // The report of the last conversion this reader made (empty before any).
  AccessImageReport last_report() const;

 private:
  std::filesystem::path image_path(const std::string& source) const;

  mutable std::mutex mutex_;
  std::filesystem::path cache_folder_;
  AccessImageReport last_report_;
};

// Registers the program's one Access reader (the first call) and points its
// image cache at `cache_folder` (the staging database's folder).
void use_access_reader(const std::filesystem::path& cache_folder);

}  // namespace db
