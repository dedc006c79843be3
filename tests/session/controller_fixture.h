// tests/session/controller_fixture.h — a throw-away program folder and
// databases for the main-window controller's tests. KEL companies are made
// from the schema's kel.sql; the staging template is the build's.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>

#include "db/open_database.h"
#include "session/main_controller.h"
#include "session/scripted_ui.h"
#include "support/temp_dir.h"
#include "transfer/importer.h"

namespace kel_test {

namespace fs = std::filesystem;
using TempFolder = TempDir;

inline void write_file(const fs::path& p, const std::string& bytes) {
  fs::create_directories(p.parent_path());
  std::ofstream(p, std::ios::binary) << bytes;
}

// Runs native SQLite statements, in one transaction, on a database file
// (created when missing).
inline void run_sqlite(const fs::path& file, const std::string& sql) {
  fs::create_directories(file.parent_path());
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(file.string().c_str(), &db), SQLITE_OK);
  char* err = nullptr;
  int rc = sqlite3_exec(db, ("BEGIN;" + sql + "\nCOMMIT;").c_str(), nullptr, nullptr, &err);
  std::string message = err ? err : "";
  sqlite3_free(err);
  sqlite3_close(db);
  ASSERT_EQ(rc, SQLITE_OK) << message;
}

// The first column of the first row of a native query, as text ("" for none).
inline std::string query_text(const fs::path& file, const std::string& sql) {
  sqlite3* db = nullptr;
  std::string out;
  if (sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW) {
      const unsigned char* t = sqlite3_column_text(st, 0);
      out = t ? reinterpret_cast<const char*>(t) : "";
    }
    sqlite3_finalize(st);
  }
  sqlite3_close(db);
  return out;
}

// A KEL company database (the schema of kel.sql) with one Empresa row.
inline void make_kel_company(const fs::path& file, const std::string& nombre,
                             const std::string& razon_social) {
  run_sqlite(file, TempDir::read(fs::path(KEL_SOURCE_DIR) / "schema" / "kel.sql") +
                       "\nINSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial) VALUES (1, '" + nombre +
                       "', '" + razon_social + "');");
}

// A source database as the company check reads it (Em_Nombre, Em_RSocial).
inline void make_source_company(const fs::path& file, const std::string& nombre,
                                const std::string& razon_social) {
  run_sqlite(file, "CREATE TABLE Empresa (Em_Nombre TEXT, Em_RSocial TEXT); INSERT INTO Empresa "
                   "VALUES ('" + nombre + "', '" + razon_social + "');");
}

// The program folder with the staging template and three formats: 0 a.fmt (a
// database source, TipoBD 1), 1 b.fmt (no source keys at all), 2 c.fmt
// (interchange files whose entries load fixed rows, so a test sees whether a
// load ran: empresa*.txt of group 1, cargos*.txt of group 2).
inline void make_program_folder(const fs::path& prog) {
  const fs::path built = fs::path(KEL_PROGRAM_DIR) / "Generica" / "Pasaje.mdb";
  ASSERT_TRUE(fs::exists(built)) << "build the kel_schema_files target first: " << built;
  fs::create_directories(prog / "Generica");
  fs::copy_file(built, prog / "Generica" / "Pasaje.mdb");
  write_file(prog / "ConfIMP.ini", "Formato A|a.fmt\r\nFormato B|b.fmt\r\nFormato C|c.fmt\r\n");
  write_file(prog / "a.fmt", "TipoBD=1\r\nBD=\r\nEmpresa|NOM(origen.mdb)|empresa.sql|1\r\n");
  write_file(prog / "b.fmt", "ConcCrear=\r\n");
  write_file(prog / "c.fmt",
             "Archivos=\r\nEmpresa|NOM(empresa*.txt)|empresa.sql|1\r\n"
             "Cargos|NOM(cargos*.txt)|cargos.sql|2\r\nTablaNoBorrar=RelacConc,RelacTLiq\r\n");
  write_file(prog / "empresa.sql", "Insert Into Empresa (IdEmpresa, Nombre) Values (7, 'Cargada');\r\n");
  write_file(prog / "cargos.sql", "Insert Into Cargos (id_Cargo, Cargo) Values (3, 'Peón');\r\n");
}

// A ScriptedUserInterface that also keeps the titles and prompts of the
// dialogs it was asked to show.
class RecordingUi : public session::ScriptedUserInterface {
 public:
  std::vector<std::string> dialogs;
  std::string open_file(const std::string& title, const std::string& filter) override {
    dialogs.push_back("archivo: " + title + " | " + filter);
    return ScriptedUserInterface::open_file(title, filter);
  }
  std::optional<std::string> browse_folder(const std::string& title, const std::string& prompt,
                                           const std::string& start) override {
    dialogs.push_back("carpeta: " + title + " | " + prompt + " | " + start);
    return ScriptedUserInterface::browse_folder(title, prompt, start);
  }
};

// The program folder above and a KEL company in ".../E001/Empresa.mdb" (a
// folder name with a blank on the way), whose staging database is
// prog/E001/Pasaje.mdb.
struct Session {
  TempFolder tmp;
  fs::path prog = tmp / "prog";
  fs::path company = tmp / "Datos con espacio" / "E001" / "Empresa.mdb";
  fs::path staging_db = prog / "E001" / "Pasaje.mdb";
  RecordingUi ui;
  transfer::Importer importer;  // the program's transfer

  explicit Session(const std::string& nombre = "ACME", const std::string& razon_social = "ACME SA") {
    make_program_folder(prog);
    make_kel_company(company, nombre, razon_social);
  }
  std::string staged(const std::string& sql) const { return query_text(staging_db, sql); }
  // A controller started on `command_line` (the company alone when empty).
  std::unique_ptr<session::MainWindowController> start(const std::string& command_line = "") {
    auto c = std::make_unique<session::MainWindowController>(prog, ui, importer);
    c->Form_Load(command_line.empty() ? company.string() : command_line);
    return c;
  }
};

inline bool has_line(const std::vector<std::string>& log, const std::string& line) {
  return std::find(log.begin(), log.end(), line) != log.end();
}

}  // namespace kel_test
