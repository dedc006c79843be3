// db/recordset.h — a forward result set, read whole when it is opened.
//
// The transfer steps write to a database while a result set over it is still
// being walked, so a result set is a snapshot: all rows are fetched when the
// statement runs and later writes do not change it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/value.h"

namespace db {

class Recordset {
 public:
  Recordset() = default;
  Recordset(std::vector<std::string> names, std::vector<std::vector<Value>> rows);

  // True when the current position is past the last row (at once for no rows).
  bool eof() const { return pos_ >= rows_.size(); }
  void move_next() { if (pos_ < rows_.size()) ++pos_; }

  std::size_t field_count() const { return names_.size(); }
  const std::string& field_name(std::size_t i) const { return names_.at(i); }

  // Field of the current row by position from 0. Throws db::Error at eof.
  const Value& field(std::size_t i) const;
  // Field of the current row by name, compared without regard to case.
  // Throws db::Error when no field has that name, or at eof.
  const Value& field(std::string_view name) const;
  // Position of a field by name (case ignored), or -1.
  int field_index(std::string_view name) const;

  // All rows, for callers that take the result at once (grids, lookups).
  const std::vector<std::vector<Value>>& rows() const { return rows_; }
  const std::vector<std::string>& names() const { return names_; }
  std::size_t row_count() const { return rows_.size(); }

 private:
  std::vector<std::string> names_;
  std::vector<std::vector<Value>> rows_;
  std::size_t pos_ = 0;
};

}  // namespace db
