// tests/corpus/jet_function_list_test.cpp — the translator's table of known
// Jet functions is the one list: the SQLite registration must give every
// function it emits with every argument count it accepts and nothing it does
// not know, and docs/jet-dialect.md must list the same names and counts.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "db/jet/emitter_functions.h"
#include "db/jet_functions_sqlite.h"

namespace {

using db::jet::FunctionInfo;
using db::jet::FunctionKind;

// jet_* functions the emitter writes for operators and subqueries rather
// than for a named function.
const std::set<std::string> kOperators = {"jet_add", "jet_sub",    "jet_mul", "jet_div", "jet_neg", "jet_intdiv",
                                          "jet_mod", "jet_pow",    "jet_concat", "jet_like", "jet_not", "jet_and",
                                          "jet_or",  "jet_xor",    "jet_eqv", "jet_imp", "jet_one"};

// Registered jet_* functions and their argument counts.
std::map<std::string, std::set<int>> Registered() {
  sqlite3* db = nullptr;
  sqlite3_open(":memory:", &db);
  db::register_jet_functions(db);
  std::map<std::string, std::set<int>> out;
  sqlite3_stmt* list = nullptr;
  sqlite3_prepare_v2(db,
                     "SELECT name, narg FROM pragma_function_list WHERE name LIKE 'jet\\_%' ESCAPE '\\'", -1,
                     &list, nullptr);
  while (sqlite3_step(list) == SQLITE_ROW)
    out[reinterpret_cast<const char*>(sqlite3_column_text(list, 0))].insert(sqlite3_column_int(list, 1));
  sqlite3_finalize(list);
  sqlite3_close(db);
  return out;
}

std::string Counts(const FunctionInfo& f) {
  return f.min_args == f.max_args ? std::to_string(f.min_args)
                                  : std::to_string(f.min_args) + "-" + std::to_string(f.max_args);
}

TEST(JetFunctionList, RegistrationGivesWhatTheTranslatorEmits) {
  const auto registered = Registered();
  std::set<std::string> emitted;
  for (const FunctionInfo& f : db::jet::KnownFunctions()) {
    if (f.kind != FunctionKind::kUdf) continue;
    const std::string name(f.sqlite_name);
    emitted.insert(name);
    auto it = registered.find(name);
    ASSERT_NE(it, registered.end()) << f.jet_name << " is emitted as " << name << ", which is not registered";
    for (int n = f.min_args; n <= f.max_args; ++n)
      EXPECT_TRUE(it->second.count(n)) << name << " is not registered with " << n << " arguments";
  }
  for (const auto& [name, counts] : registered)
    EXPECT_TRUE(emitted.count(name) || kOperators.count(name)) << name << " is registered but never emitted";
}

TEST(JetFunctionList, DialectDocumentListsTheSameFunctions) {
  std::ifstream in(std::string(KEL_SOURCE_DIR) + "/docs/jet-dialect.md");
  ASSERT_TRUE(in) << "docs/jet-dialect.md";
  std::stringstream text;
  text << in.rdbuf();
  const std::string doc = text.str();
  const std::size_t start = doc.find("Known functions and their argument counts");
  ASSERT_NE(start, std::string::npos);
  const std::string paragraph = doc.substr(start, doc.find("\n\n", start) - start);
  // "`Left Right` 2" gives Left and Right two arguments; "are refused" closes
  // the list of the unsupported aggregates.
  std::map<std::string, std::string> documented;
  const std::regex group("`([^`]+)`\\s+(\\d(?:-\\d)?)");
  for (std::sregex_iterator it(paragraph.begin(), paragraph.end(), group), end; it != end; ++it) {
    std::istringstream names((*it)[1].str());
    for (std::string name; names >> name;) documented[name] = (*it)[2].str();
  }
  for (const FunctionInfo& f : db::jet::KnownFunctions()) {
    const std::string name(f.jet_name);
    if (f.kind == FunctionKind::kUnsupported) {
      EXPECT_NE(paragraph.find("`" + name + "`"), std::string::npos) << name << " is not said to be refused";
      continue;
    }
    if (f.sqlite_name == "jet_ucase" || f.sqlite_name == "jet_lcase") {
      if (name == "Upper" || name == "Lower") {
        EXPECT_NE(paragraph.find("`" + name + "`"), std::string::npos) << name;
        continue;
      }
    }
    auto it = documented.find(name);
    ASSERT_NE(it, documented.end()) << name << " is not in docs/jet-dialect.md";
    EXPECT_EQ(it->second, Counts(f)) << name;
    documented.erase(it);
  }
  for (const auto& [name, counts] : documented) ADD_FAILURE() << name << " is documented but not known";
}

}  // namespace
