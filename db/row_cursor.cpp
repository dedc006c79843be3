// db/row_cursor.cpp — cursors over SQLite statements, and the read-whole
// fallback for other connections.
#include "db/row_cursor.h"

#include <sqlite3.h>

#include <cctype>

#include "db/error.h"
#include "db/sqlite_connection.h"
#include "db/sqlite_value.h"

namespace db {
namespace {

const std::string kRefused = "La base de datos rechazó la instrucción: ";


// Reads each page with a statement of its own, the query's text followed by
// LIMIT and OFFSET, stepped to its end at once. No statement stays pending
// between pages: a pending one would hold the connection's implicit
// transaction open, and every write made on the connection meanwhile would
// stay uncommitted and lock other connections out.
class SqliteCursor final : public RowCursor {
 public:
  SqliteCursor(sqlite3* db, std::string sql, std::string_view jet_sql) : db_(db), jet_(jet_sql), sql_(std::move(sql)) {
    while (!sql_.empty() && (sql_.back() == ';' || sql_.back() == ' ' || sql_.back() == '\n')) sql_.pop_back();
    // A query that limits its own rows (Top) is paged from outside.
    if (contains_limit(sql_)) sql_ = "SELECT * FROM (" + sql_ + ")";
    sqlite3_stmt* stmt = prepare(0);
    const int columns = sqlite3_column_count(stmt);
    for (int i = 0; i < columns; ++i) {
      const char* name = sqlite3_column_name(stmt, i);
      names_.emplace_back(name ? name : "");
    }
    sqlite3_finalize(stmt);
  }

  const std::vector<std::string>& names() const override { return names_; }
  bool at_end() const override { return at_end_; }

  std::vector<std::vector<Value>> fetch(std::size_t count) override {
    std::vector<std::vector<Value>> rows;
    if (at_end_ || count == 0) return rows;
    // One row more than asked tells whether the result goes on.
    sqlite3_stmt* stmt = prepare(count + 1);
    const int columns = sqlite3_column_count(stmt);
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW && rows.size() < count) {
      std::vector<Value> row;
      row.reserve(static_cast<std::size_t>(columns));
      for (int i = 0; i < columns; ++i) row.push_back(sqlite_column_value(stmt, i));
      rows.push_back(std::move(row));
    }
    if (rc != SQLITE_ROW && rc != SQLITE_DONE) {
      std::string message = kRefused + sqlite3_errmsg(db_);
      sqlite3_finalize(stmt);
      throw Error(message, jet_, sql_);
    }
    at_end_ = rc == SQLITE_DONE;
    sqlite3_finalize(stmt);
    offset_ += rows.size();
    return rows;
  }

 private:
  static bool contains_limit(const std::string& sql) {
    std::string upper(sql);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper.find("LIMIT") != std::string::npos;
  }

  sqlite3_stmt* prepare(std::size_t limit) {
    const std::string text = sql_ + " LIMIT " + std::to_string(limit) + " OFFSET " + std::to_string(offset_);
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db_, text.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
      std::string message = kRefused + sqlite3_errmsg(db_);
      sqlite3_finalize(stmt);
      throw Error(message, jet_, text);
    }
    return stmt;
  }

  sqlite3* db_;
  std::string jet_;
  std::string sql_;
  std::size_t offset_ = 0;
  bool at_end_ = false;
  std::vector<std::string> names_;
};

// Any other connection: the rows are read whole and handed over in pages.
class WholeCursor final : public RowCursor {
 public:
  explicit WholeCursor(Recordset rs) : rs_(std::move(rs)) {}
  const std::vector<std::string>& names() const override { return rs_.names(); }
  bool at_end() const override { return next_ >= rs_.row_count(); }
  std::vector<std::vector<Value>> fetch(std::size_t count) override {
    std::vector<std::vector<Value>> rows;
    for (; rows.size() < count && next_ < rs_.row_count(); ++next_) rows.push_back(rs_.rows()[next_]);
    return rows;
  }

 private:
  Recordset rs_;
  std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<RowCursor> open_cursor(Connection& conn, std::string_view jet_sql) {
  if (auto* sqlite = dynamic_cast<SqliteConnection*>(&conn); sqlite && sqlite->is_open()) {
    jet::Translation translation = sqlite->translate(jet_sql);
    // A translation in several statements prepares temporary tables first:
    // that is rare for a browser's query, and read whole.
    if (translation.statements.size() == 1 && translation.kind == jet::StatementKind::kQuery)
      return std::make_unique<SqliteCursor>(sqlite->handle(), translation.statements.front(), jet_sql);
  }
  return std::make_unique<WholeCursor>(conn.open_recordset(jet_sql));
}

}  // namespace db
