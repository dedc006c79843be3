// db/source_reader.h — readers for source databases that are not SQLite files.
//
// A statement may read another database by path (`in '<path>'`). SQLite files
// are attached directly; any other kind of file (an Access database of the
// system being imported, for instance) is handed to a SourceReader, which
// makes a SQLite image of it that is then attached in its place. Readers are
// registered once at start-up; with none registered such a path is refused
// with a clear message.
#pragma once

#include <memory>
#include <string>

namespace db {

class SourceReader {
 public:
  virtual ~SourceReader() = default;

  // True when this reader understands the file at `path` (an existing file
  // that is not a SQLite database).
  virtual bool can_read(const std::string& path) const = 0;

  // Path of a SQLite database holding the tables of the file at `path`
  // (made or refreshed as the reader sees fit). Throws db::Error with a
  // Spanish message when the file cannot be read.
  virtual std::string sqlite_image(const std::string& path) = 0;
};

// Adds a reader; later registrations are asked first.
void register_source_reader(std::shared_ptr<SourceReader> reader);

// Removes `reader` when registered.
void unregister_source_reader(const std::shared_ptr<SourceReader>& reader);

// True when `reader` is registered.
bool has_source_reader(const std::shared_ptr<SourceReader>& reader);

// Removes every registered reader (for tests).
void clear_source_readers();

// The first registered reader that can read `path`, or nullptr.
std::shared_ptr<SourceReader> find_source_reader(const std::string& path);

}  // namespace db
