// db/row_cursor.cpp — cursors over SQLite statements, and the read-whole
// fallback for other connections.
#include "db/row_cursor.h"

#include <sqlite3.h>

#include "db/error.h"
#include "db/sqlite_connection.h"

namespace db {
namespace {

const std::string kRefused = "La base de datos rechazó la instrucción: ";

Value value_of(sqlite3_stmt* stmt, int i) {
  switch (sqlite3_column_type(stmt, i)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(stmt, i));
    case SQLITE_FLOAT:
      return sqlite3_column_double(stmt, i);
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
      const void* data = sqlite3_column_blob(stmt, i);
      const int size = sqlite3_column_bytes(stmt, i);
      return std::string(static_cast<const char*>(data), data ? static_cast<std::size_t>(size) : 0);
    }
    default:
      return std::monostate{};
  }
}

// Steps a statement of its own; the first step is taken when it opens, so
// that a refused statement fails there and the names are those of the rows.
class SqliteCursor final : public RowCursor {
 public:
  SqliteCursor(sqlite3* db, const std::string& sql, std::string_view jet_sql) : db_(db), jet_(jet_sql), sql_(sql) {
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt_, nullptr) != SQLITE_OK) {
      std::string message = kRefused + sqlite3_errmsg(db_);
      sqlite3_finalize(stmt_);
      stmt_ = nullptr;
      throw Error(message, jet_, sql_);
    }
    step();
    const int columns = sqlite3_column_count(stmt_);
    for (int i = 0; i < columns; ++i) {
      const char* name = sqlite3_column_name(stmt_, i);
      names_.emplace_back(name ? name : "");
    }
  }
  ~SqliteCursor() override { sqlite3_finalize(stmt_); }
  SqliteCursor(const SqliteCursor&) = delete;
  SqliteCursor& operator=(const SqliteCursor&) = delete;

  const std::vector<std::string>& names() const override { return names_; }
  bool at_end() const override { return rc_ != SQLITE_ROW; }

  std::vector<std::vector<Value>> fetch(std::size_t count) override {
    std::vector<std::vector<Value>> rows;
    const int columns = static_cast<int>(names_.size());
    while (rows.size() < count && rc_ == SQLITE_ROW) {
      std::vector<Value> row;
      row.reserve(names_.size());
      for (int i = 0; i < columns; ++i) row.push_back(value_of(stmt_, i));
      rows.push_back(std::move(row));
      step();
    }
    return rows;
  }

 private:
  void step() {
    rc_ = sqlite3_step(stmt_);
    if (rc_ != SQLITE_ROW && rc_ != SQLITE_DONE) {
      std::string message = kRefused + sqlite3_errmsg(db_);
      sqlite3_reset(stmt_);
      rc_ = SQLITE_DONE;
      throw Error(message, jet_, sql_);
    }
    // Done: let go of the statement's read of the database at once.
    if (rc_ == SQLITE_DONE) sqlite3_reset(stmt_);
  }

  sqlite3* db_;
  std::string jet_;
  std::string sql_;
  sqlite3_stmt* stmt_ = nullptr;
  int rc_ = SQLITE_DONE;
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
