// demo/row_sink.h — where the demo generator's rows go.
//
// The generator produces the rows of each table once; a writer decides what
// they become: rows of a SQLite database now, interchange files later. A
// table is declared once with the columns its rows give, in order; each row is
// then handed over as values in that same order.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/value.h"

namespace demo {

using Value = db::Value;

class RowSink {
 public:
  virtual ~RowSink() = default;

  // Declares table `table` with the columns that its rows will give, in the
  // order of the values of add_row. Returns the handle to pass to add_row.
  // Declaring the same table twice with other columns is allowed: each
  // declaration is its own handle.
  virtual int declare_table(std::string_view table, const std::vector<std::string>& columns) = 0;

  // Adds one row to a declared table. `values` has one value per declared
  // column. Throws std::runtime_error (message in Spanish) when the row
  // cannot be written.
  virtual void add_row(int table, std::span<const Value> values) = 0;
};

// Builds one row's values without reallocating per row: reset() and push the
// values in the declared column order, then hand values() to the sink.
class RowBuilder {
 public:
  RowBuilder& reset() { values_.clear(); return *this; }
  RowBuilder& null() { values_.emplace_back(); return *this; }
  RowBuilder& i(std::int64_t v) { values_.emplace_back(v); return *this; }
  RowBuilder& r(double v) { values_.emplace_back(v); return *this; }
  RowBuilder& t(std::string v) { values_.emplace_back(std::move(v)); return *this; }
  // Yes/No as the databases keep it: -1 true, 0 false.
  RowBuilder& yes_no(bool v) { values_.emplace_back(std::int64_t{v ? -1 : 0}); return *this; }
  std::span<const Value> values() const { return values_; }

 private:
  std::vector<Value> values_;
};

}  // namespace demo
