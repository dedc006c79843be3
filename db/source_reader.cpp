// db/source_reader.cpp — the registry of readers for non-SQLite sources.
#include "db/source_reader.h"

#include <vector>

namespace db {

namespace {

// Program-wide, used from the one user-interface thread only.
std::vector<std::shared_ptr<SourceReader>>& readers() {
  static std::vector<std::shared_ptr<SourceReader>> list;
  return list;
}

}  // namespace

void register_source_reader(std::shared_ptr<SourceReader> reader) {
  if (reader) readers().insert(readers().begin(), std::move(reader));
}

void unregister_source_reader(const std::shared_ptr<SourceReader>& reader) {
  std::erase(readers(), reader);
}

bool has_source_reader(const std::shared_ptr<SourceReader>& reader) {
  for (const auto& r : readers()) {
    if (r == reader) return true;
  }
  return false;
}

void clear_source_readers() { readers().clear(); }

std::shared_ptr<SourceReader> find_source_reader(const std::string& path) {
  for (const auto& reader : readers()) {
    if (reader->can_read(path)) return reader;
  }
  return nullptr;
}

}  // namespace db
