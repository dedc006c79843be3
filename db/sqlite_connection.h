// db/sqlite_connection.h — a connection to a SQLite database file.
//
// Stands where the original system opened Access files through Jet: the
// statements it is given are Jet SQL, translated (db/jet) before they run, and
// the databases they name by path (`in '<path>'`) are attached on the way.
// Every connection has a busy timeout, enforces foreign keys and has Jet's
// functions (jet_val, jet_cdate, ...) registered. The program's own files (the
// staging database) are switched to WAL; a file that belongs to someone else
// (the KEL company database) is opened in the journal mode it has, which
// stays its owner's business.
//
// Transactions: SQLite cannot attach a database inside a transaction, so
// begin_transaction() only marks the transaction as wanted and the BEGIN is
// issued just before the first statement runs — after that statement's own
// `in` paths were attached. A later statement of the same transaction that
// names a path not attached yet is refused with a clear message.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/attachments.h"
#include "db/connection.h"
#include "db/jet/translator.h"
#include "db/statement_cache.h"

struct sqlite3;
struct sqlite3_stmt;

namespace db {

// How a connection treats the file's journal mode.
enum class JournalMode {
  kWal,   // switch the file to WAL (it stays so): the program's own databases
  kKeep,  // leave the file's own mode untouched: the KEL company database
};

class SqliteConnection final : public Connection, public jet::TranslationContext {
 public:
  SqliteConnection() = default;
  ~SqliteConnection() override;
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  // Opens the existing SQLite file at `path` for reading and writing, closing
  // this connection first when it is open. Never throws: returns is_open(),
  // and on failure last_error() says why in Spanish (a missing file, an
  // Access file, a file that is no database, or the engine's message).
  bool open(const std::string& path, JournalMode journal = JournalMode::kWal);

  int state() const override { return db_ ? 1 : 0; }
  void close() override;
  std::int64_t execute(std::string_view sql) override;
  Recordset open_recordset(std::string_view sql) override;
  void begin_transaction() override;
  void commit_transaction() override;
  void rollback_transaction() override;
  std::string data_source_name() const override { return path_; }
  const std::string& last_error() const override { return last_error_; }
  // sqlite_connection_services.cpp
  std::vector<std::string> table_names() override;
  void attach_path(const std::string& path) override { attach(path); }
  bool in_transaction() const override;
  std::string engine_setting(const std::string& name) override;
  bool change_engine_setting(const std::string& name, const std::string& value) override;
  bool set_busy_handler(std::function<bool(int attempt)> wait) override;
  std::string locked_file() override;

  // The SQLite translation of a Jet statement, attaching the databases it
  // names. Translations are cached per statement text. Throws db::Error.
  jet::Translation translate(std::string_view jet_sql);

  // Runs native SQLite SQL (one or more statements separated by ";"),
  // untranslated: for fixtures, schema creation and tools. Throws db::Error.
  void execute_native(const std::string& sqlite_sql) override;

  // The underlying handle (nullptr when closed), for tools and tests.
  sqlite3* handle() const { return db_; }

  // How many databases are attached right now.
  std::size_t attachment_count() const { return attachments_.size(); }

  // jet::TranslationContext
  std::string attach(const std::string& path) override;
  std::vector<std::string> table_columns(const std::string& schema,
                                         const std::string& table) override;
  std::vector<std::pair<std::string, std::string>> table_column_types(
      const std::string& schema, const std::string& table) override;
  std::vector<std::string> select_columns(const std::string& sqlite_select) override;

 private:
  struct CachedTranslation {
    jet::Translation translation;
    std::vector<std::string> attached_keys;  // paths its `in` clauses named
    // Schema versions of main and of each attached database when it was
    // made: another connection (the staging load) may have changed their
    // tables since, and column lists in the translation with them.
    std::vector<int> versions;
  };

  const jet::Translation& translation_for(std::string_view jet_sql);
  sqlite3_stmt* prepare(const std::string& sqlite_sql, std::string_view jet_sql);
  void start_pending_transaction(std::string_view jet_sql);
  void detach(const std::string& key);
  void forget_translations();
  std::string key_of(const std::string& path) const;
  std::vector<int> schema_versions(const std::vector<std::string>& attached_keys);
  void refresh_schema(const std::string& schema);

  sqlite3* db_ = nullptr;
  std::string path_;
  std::string main_key_;
  std::string last_error_;
  std::unordered_map<std::string, CachedTranslation> translations_;
  StatementCache statements_;
  AttachmentTable attachments_;
  std::uint64_t statement_number_ = 0;           // one per statement run or translated
  std::vector<std::string>* attached_now_ = nullptr;  // keys the running translation attached
  bool transaction_pending_ = false;
  std::function<bool(int)> busy_wait_;  // set_busy_handler's handler
};

// The SQLite connection behind `connection`, or nullptr for another engine.
// For the staging load alone, whose data files are SQLite virtual tables;
// everything else goes through db::Connection.
SqliteConnection* as_sqlite(Connection& connection);

}  // namespace db
