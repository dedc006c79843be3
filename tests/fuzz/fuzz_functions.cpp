// tests/fuzz/fuzz_functions.cpp — every jet_* function with odd arguments.
//
// The first byte chooses the function (among those registered, with their
// number of arguments); the rest is cut into arguments, each a type byte
// (integer, real, text, Null) and its bytes. A function must give a value or
// a Spanish error, never crash or hang.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <sqlite3.h>

#include "db/jet_functions_sqlite.h"

namespace {

struct Fixture {
  sqlite3* db = nullptr;
  std::vector<std::pair<std::string, int>> functions;  // name, number of arguments
};

Fixture* Open() {
  auto* f = new Fixture;
  sqlite3_open(":memory:", &f->db);
  db::register_jet_functions(f->db);
  sqlite3_stmt* list = nullptr;
  sqlite3_prepare_v2(f->db,
                     "SELECT DISTINCT name, narg FROM pragma_function_list "
                     "WHERE name LIKE 'jet\\_%' ESCAPE '\\' AND narg >= 0 ORDER BY name, narg",
                     -1, &list, nullptr);
  while (sqlite3_step(list) == SQLITE_ROW) {
    f->functions.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(list, 0)),
                              sqlite3_column_int(list, 1));
  }
  sqlite3_finalize(list);
  return f;
}

// Takes up to `n` bytes from the input.
std::string Take(const std::uint8_t*& data, std::size_t& size, std::size_t n) {
  n = std::min(n, size);
  std::string out(reinterpret_cast<const char*>(data), n);
  data += n;
  size -= n;
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Fixture* f = Open();
  if (size < 1 || f->functions.empty()) return 0;
  const auto& [name, arguments] = f->functions[data[0] % f->functions.size()];
  ++data;
  --size;
  std::string sql = "SELECT " + name + "(";
  for (int i = 0; i < arguments; ++i) sql += i == 0 ? "?" : ", ?";
  sql += ")";
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(f->db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) return 0;
  for (int i = 1; i <= arguments; ++i) {
    std::uint8_t type = size > 0 ? Take(data, size, 1)[0] : 0;
    switch (type % 4) {
      case 0: {
        std::int64_t v = 0;
        std::string bytes = Take(data, size, 8);
        std::memcpy(&v, bytes.data(), bytes.size());
        sqlite3_bind_int64(stmt, i, v);
        break;
      }
      case 1: {
        double v = 0;
        std::string bytes = Take(data, size, 8);
        std::memcpy(&v, bytes.data(), bytes.size());
        sqlite3_bind_double(stmt, i, v);
        break;
      }
      case 2: {
        std::size_t length = size > 0 ? Take(data, size, 1)[0] : 0;
        std::string text = Take(data, size, length);
        sqlite3_bind_text(stmt, i, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        break;
      }
      default:
        sqlite3_bind_null(stmt, i);
        break;
    }
  }
  sqlite3_step(stmt);
  sqlite3_finalize(stmt);
  return 0;
}
