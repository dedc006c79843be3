// tests/session/controller_fixture.h — a throw-away program folder and
// databases for the main-window controller's tests. KEL companies are made
// from the schema's kel.sql; the staging template is the build's.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "db/open_database.h"
#include "session/main_controller.h"
#include "support/odbc_driver.h"
#include "support/program_folder.h"
#include "support/scripted_ui.h"
#include "support/sqlite_file.h"
#include "support/temp_dir.h"
#include "transfer/importer.h"

namespace kel_test {

using test_support::query_text;
using test_support::run_sqlite;

namespace fs = std::filesystem;
using TempFolder = TempDir;

inline void write_file(const fs::path& p, const std::string& bytes) {
  fs::create_directories(p.parent_path());
  std::ofstream(p, std::ios::binary) << bytes;
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
class RecordingUi : public ScriptedUserInterface {
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

// The program folder above and a KEL company at `where` in the temporary
// folder (by default ".../E001/Empresa.mdb", a folder name with a blank on
// the way), whose staging database is prog/<the company's folder>/Pasaje.mdb.
struct Session {
  TempFolder tmp;
  preview::StagedPreview preview;
  mapping::MappingPanel mapping;
  fs::path prog = tmp / "prog";
  fs::path company;
  fs::path staging_db;
  RecordingUi ui;
  transfer::Importer importer;  // the program's transfer

  explicit Session(const std::string& nombre = "ACME", const std::string& razon_social = "ACME SA",
                   const fs::path& where = fs::path("Datos con espacio") / "E001" / "Empresa.mdb")
      : company(tmp / where), staging_db(prog / where.parent_path().filename() / "Pasaje.mdb") {
    make_program_folder(prog);
    make_kel_company(company, nombre, razon_social);
  }
  std::string staged(const std::string& sql) const { return query_text(staging_db, sql); }
  // A controller started on `command_line` (the company alone when empty).
  std::unique_ptr<session::MainWindowController> start(const std::string& command_line = "") {
    auto c = std::make_unique<session::MainWindowController>(prog, ui, importer, preview, mapping);
    c->Form_Load(command_line.empty() ? company.string() : command_line);
    return c;
  }
};

// The built program folder and the demo (its company and source forms) copied
// into a fresh folder; the company's staging database is prog/Empresa/Pasaje.mdb.
struct DemoFolders {
  TempFolder tmp;
  fs::path prog = tmp.path() / "prog";
  fs::path demo = tmp.path() / "demo";
  fs::path company = demo / "Empresa" / "Datos.mdb";
  fs::path staging = prog / "Empresa" / "Pasaje.mdb";

  DemoFolders() {
    const fs::path built = KEL_PROGRAM_DIR;
    EXPECT_TRUE(fs::exists(built / "demo" / "Empresa" / "Datos.mdb")) << "the build makes the demo";
    test_support::copy_program_folder(built, prog);
    fs::copy(built / "demo", demo, fs::copy_options::recursive);
  }
  // The first value of a native query on the staging database.
  std::string staged(const std::string& sql) const { return query_text(staging, sql); }
};

// The tables of a SQLite file, SQLite's own aside.
inline std::vector<std::string> table_names(const fs::path& file) {
  return test_support::native_rows(file, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite%'");
}

// True when the driver manager declares the SQLite ODBC driver as "SQLite3".
inline bool sqlite_odbc_declared() { return !test_support::odbc_driver_library("SQLite3").empty(); }

// Writes `folder`/odbc.ini with one data source on the SQLite ODBC driver
// per (name, database file) and points the driver manager at it.
inline void use_sqlite_data_sources(const fs::path& folder,
                                    const std::vector<std::pair<std::string, fs::path>>& sources) {
  std::string ini;
  for (const auto& [name, file] : sources) ini += "[" + name + "]\nDriver=SQLite3\nDatabase=" + file.string() + "\n\n";
  write_file(folder / "odbc.ini", ini);
  setenv("ODBCINI", (folder / "odbc.ini").c_str(), 1);
}

inline bool has_line(const std::vector<std::string>& log, const std::string& line) {
  return std::find(log.begin(), log.end(), line) != log.end();
}

}  // namespace kel_test
