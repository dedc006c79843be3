// tests/jet/fake_context.h — a TranslationContext for translator tests.
//
// Tables are declared with their columns; select_columns() answers with the
// columns of the first declared table that the SELECT reads (the word after
// its last " FROM "), which is what "Select * From T ..." produces. Attached
// paths get schema names jet1, jet2 ... in order of first use.
#pragma once

#include <algorithm>
#include <cctype>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "db/jet/translator.h"

namespace kel_test {

inline std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

class FakeContext : public db::jet::TranslationContext {
 public:
  // Declares `table` (any schema) with `columns`, each "name" or "name TYPE"
  // (a table whose columns have no types is one whose types are unknown).
  void AddTable(const std::string& table, const std::vector<std::string>& columns) {
    std::vector<std::string> names;
    std::vector<std::pair<std::string, std::string>> typed;
    for (const std::string& column : columns) {
      std::size_t space = column.find(' ');
      names.push_back(column.substr(0, space));
      if (space != std::string::npos) typed.emplace_back(names.back(), column.substr(space + 1));
    }
    tables_[Lower(table)] = std::move(names);
    types_[Lower(table)] = std::move(typed);
  }

  std::vector<std::pair<std::string, std::string>> table_column_types(const std::string&,
                                                                      const std::string& table) override {
    auto found = types_.find(Lower(table));
    return found == types_.end() ? std::vector<std::pair<std::string, std::string>>{} : found->second;
  }

  std::string attach(const std::string& path) override {
    attached.push_back(path);
    auto found = schemas_.find(path);
    if (found != schemas_.end()) return found->second;
    std::string schema = "jet" + std::to_string(schemas_.size() + 1);
    schemas_[path] = schema;
    return schema;
  }

  std::vector<std::string> table_columns(const std::string& schema,
                                         const std::string& table) override {
    table_requests.push_back(schema + "." + table);
    auto found = tables_.find(Lower(table));
    return found == tables_.end() ? std::vector<std::string>{} : found->second;
  }

  std::vector<std::string> select_columns(const std::string& sqlite_select) override {
    select_requests.push_back(sqlite_select);
    if (!select_answer.empty()) return select_answer;
    std::string lower = Lower(sqlite_select);
    // The innermost FROM is the one whose table gives the columns of "*".
    std::size_t at = lower.rfind(" from ");
    while (at != std::string::npos) {
      std::size_t start = at + 6;
      while (start < lower.size() && lower[start] == '(') ++start;
      std::size_t end = start;
      while (end < lower.size() && (std::isalnum(static_cast<unsigned char>(lower[end])) ||
                                    lower[end] == '_' || lower[end] == '.')) {
        ++end;
      }
      std::string name = lower.substr(start, end - start);
      if (std::size_t dot = name.find('.'); dot != std::string::npos) name = name.substr(dot + 1);
      auto found = tables_.find(name);
      if (found != tables_.end()) return found->second;
      if (at == 0) break;
      at = lower.rfind(" from ", at - 1);
    }
    throw std::runtime_error("fake select_columns: no known table in " + sqlite_select);
  }

  std::vector<std::string> attached;
  std::vector<std::string> table_requests;
  std::vector<std::string> select_requests;
  std::vector<std::string> select_answer;  // when set, select_columns() returns it

 private:
  std::map<std::string, std::vector<std::string>> tables_;
  std::map<std::string, std::vector<std::pair<std::string, std::string>>> types_;
  std::map<std::string, std::string> schemas_;
};

}  // namespace kel_test
