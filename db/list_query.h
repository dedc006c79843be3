// db/list_query.h — the list query helper that fills the preview grids.
//
// Given a source (a table name or a whole Select statement), a comma-separated
// field list and an optional condition, it builds one statement, runs it and
// returns the named fields of every row as trimmed texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace db {

// The statement the helper runs:
// - a source holding "++" first loses its first two characters; the rest is
//   then treated like any other source text (the marker only keeps a
//   statement from being taken for a table name by the test below);
// - a source that begins with "SELECT " (case ignored) is a whole statement:
//   " Where " + condition + " " goes before its "ORDER BY" (searched without
//   regard to case) or, without one, " Where " + condition at its end;
// - any other source is a table (or query) name: "select <fields> from
//   <source>", then " Where " + condition, then " order by " + the first
//   field of the list, so that rows come in a stable order.
// An empty condition adds nothing.
std::string build_list_query(std::string_view source, std::string_view fields,
                             std::string_view condition);

// Runs build_list_query(...) on `conn` and returns one row per record, one
// text per field of `fields` in that order: the field's text trimmed of
// spaces, "" for Null or for a field the result does not have. Errors are
// ignored like in every database helper: a refused statement or a closed
// connection gives no rows.
std::vector<std::vector<std::string>> list_query(std::string_view source, std::string_view fields,
                                                 std::string_view condition, Connection& conn);

}  // namespace db
