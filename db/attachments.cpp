// db/attachments.cpp — which path is attached under which schema name.
#include "db/attachments.h"

#include <algorithm>

namespace db {

std::optional<std::string> AttachmentTable::use(const std::string& key, std::uint64_t statement) {
  for (auto& entry : entries_) {
    if (entry.key == key) {
      entry.last_use = ++tick_;
      entry.last_statement = statement;
      return entry.schema;
    }
  }
  return std::nullopt;
}

std::string AttachmentTable::next_schema_name() { return "src" + std::to_string(++schema_counter_); }

void AttachmentTable::add(const std::string& key, const std::string& schema,
                          std::uint64_t statement) {
  entries_.push_back(Entry{key, schema, ++tick_, statement});
}

std::optional<std::string> AttachmentTable::least_recently_used(std::uint64_t statement) const {
  const Entry* oldest = nullptr;
  for (const auto& entry : entries_) {
    if (entry.last_statement == statement) continue;
    if (!oldest || entry.last_use < oldest->last_use) oldest = &entry;
  }
  if (!oldest) return std::nullopt;
  return oldest->key;
}

std::string AttachmentTable::schema_of(const std::string& key) const {
  for (const auto& entry : entries_) {
    if (entry.key == key) return entry.schema;
  }
  return {};
}

void AttachmentTable::remove(const std::string& key) {
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                [&](const Entry& e) { return e.key == key; }),
                 entries_.end());
}

}  // namespace db
