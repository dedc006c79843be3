// db/jet/emitter_functions.h — the Jet functions the translator knows.
//
// Each Jet function is emitted one of three ways: inline SQL (IIf, IsNull),
// a native SQLite aggregate (Max, Min, Sum, Count, Avg), or a call of the
// SQLite function registered by db/ as "jet_" + the lower-case Jet name. The
// table also gives the number of arguments each takes, so that a wrong call
// is reported here, with its position, instead of by SQLite later.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace db::jet {

enum class FunctionKind { kInline, kAggregate, kUdf, kUnsupported };

struct FunctionInfo {
  std::string_view jet_name;  // canonical spelling, e.g. "IIf"
  FunctionKind kind;
  int min_args;
  int max_args;
  std::string_view sqlite_name;  // what is emitted: "jet_val", "MAX"; empty for inline
};

// The entry for `name` (any letter case), or nullptr when Jet has no such function.
const FunctionInfo* FindFunction(std::string_view name);

// Every known function: the one list that the SQLite registration
// (db/jet_functions_sqlite.cpp) and docs/jet-dialect.md are checked against
// (tests/corpus/jet_function_list_test.cpp).
std::span<const FunctionInfo> KnownFunctions();

}  // namespace db::jet
