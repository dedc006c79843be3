// db/recordset.cpp — field access on a result set read whole.
#include "db/recordset.h"

#include <cctype>

#include "db/error.h"

namespace db {

namespace {

bool same_name(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

}  // namespace

Recordset::Recordset(std::vector<std::string> names, std::vector<std::vector<Value>> rows)
    : names_(std::move(names)), rows_(std::move(rows)) {}

const Value& Recordset::field(std::size_t i) const {
  if (eof()) throw Error("No hay registro actual: se llegó al final de los datos");
  const auto& row = rows_[pos_];
  if (i >= row.size()) {
    throw Error("El resultado no tiene el campo número " + std::to_string(i));
  }
  return row[i];
}

const Value& Recordset::field(std::string_view name) const {
  int i = field_index(name);
  if (i < 0) throw Error("El resultado no tiene el campo '" + std::string(name) + "'");
  return field(static_cast<std::size_t>(i));
}

int Recordset::field_index(std::string_view name) const {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (same_name(names_[i], name)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace db
