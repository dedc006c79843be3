// db/row_cursor.h — a forward result set read a page at a time.
//
// Recordset reads a whole result when it opens, which is right for the
// transfer but not for a browser over years of staged liquidations: a
// RowCursor hands rows over in pages, so that the first screen costs one page
// of memory whatever the result's length.
//
// Over a SQLite connection each page is a statement of its own (the query
// with LIMIT and OFFSET), run to its end, so nothing stays pending on the
// connection between pages; over any other connection the cursor falls back
// to a Recordset read whole. A cursor must not outlive its connection; rows
// written or deleted between pages shift the pages still to come.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace db {

class RowCursor {
 public:
  virtual ~RowCursor() = default;
  // The result's field names.
  virtual const std::vector<std::string>& names() const = 0;
  // Up to `count` further rows; fewer only at the end of the result.
  // Throws db::Error when the engine fails on the way.
  virtual std::vector<std::vector<Value>> fetch(std::size_t count) = 0;
  // True once the last row was handed over.
  virtual bool at_end() const = 0;
};

// Opens a cursor over a Jet query on `conn`. Throws db::Error when the
// statement is refused.
std::unique_ptr<RowCursor> open_cursor(Connection& conn, std::string_view jet_sql);

}  // namespace db
