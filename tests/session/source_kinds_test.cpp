// End-to-end over every kind of source: the demo company staged and imported
// whole (five groups, every question answered Yes) into a fresh copy of the
// demo's KEL company from its interchange folder, its SQLite source file, an
// ODBC data source on the SQLite driver and one on PostgreSQL. The same source
// data must leave the same KEL company: every KEL table is compared whole,
// row by row in key order, with the one the interchange folder leaves.
//
// Access files cannot be written here (libmdb only reads them), so the demo
// has no Access form: the public Access sample nwind.mdb is imported instead,
// through a format written for it below, and its own rows are checked in KEL.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "controller_fixture.h"
#include "db/odbc_connection.h"
#include "support/pg_server.h"

namespace {

namespace fs = std::filesystem;
using Dump = std::map<std::string, std::vector<std::string>>;  // table -> rows in key order

const fs::path kBuiltProgram = KEL_PROGRAM_DIR;

// Every table of a KEL file, each row as its values joined by "|" (Null as
// "NULL", so that it differs from ''), ordered by all columns (the key first).
Dump dump_tables(const fs::path& file) {
  Dump dump;
  for (const std::string& table : kel_test::table_names(file)) {
    std::string values, order;
    for (const std::string& column :
         test_support::native_rows(file, "SELECT name FROM pragma_table_xinfo('" + table + "')")) {
      values += (values.empty() ? "ifnull(\"" : " || '|' || ifnull(\"") + column + "\", 'NULL')";
      order += (order.empty() ? "\"" : ", \"") + column + "\"";
    }
    dump[table] = test_support::native_rows(file, "SELECT " + values + " FROM \"" + table + "\" ORDER BY " + order);
  }
  return dump;
}

// The first difference of two dumps, or "" when they are the same.
std::string first_difference(const Dump& expected, const Dump& got) {
  for (const auto& [table, rows] : expected) {
    auto it = got.find(table);
    if (it == got.end()) return "falta la tabla " + table;
    const std::vector<std::string>& other = it->second;
    for (std::size_t i = 0; i < std::max(rows.size(), other.size()); ++i) {
      const std::string a = i < rows.size() ? rows[i] : "(nada)";
      const std::string b = i < other.size() ? other[i] : "(nada)";
      if (a != b) return table + " fila " + std::to_string(i + 1) + ": esperada " + a + " / obtenida " + b;
    }
  }
  if (got.size() != expected.size()) return "otras tablas";
  return {};
}

// Copies every table of the SQLite file `from` into the server behind `to`,
// names quoted (case kept) and types mapped by affinity; values are sent as
// literals, real numbers with every digit they have.
void copy_to_server(const fs::path& from, db::OdbcConnection& to) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2(from.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  sqlite3_stmt* st = nullptr;
  for (const std::string& table : kel_test::table_names(from)) {
    // The columns a Select gives (generated ones too), with their declared types.
    sqlite3_prepare_v2(db, ("SELECT * FROM \"" + table + "\" ORDER BY rowid").c_str(), -1, &st, nullptr);
    std::string create = "CREATE TABLE \"" + table + "\" (";
    for (int i = 0; i < sqlite3_column_count(st); ++i) {
      const char* declared = sqlite3_column_decltype(st, i);
      std::string type = declared ? declared : "";
      for (char& ch : type) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
      create += (i ? ", \"" : "\"") + std::string(sqlite3_column_name(st, i)) + "\" " +
                (type.find("INT") != std::string::npos ? "bigint"
                 : type == "REAL" || type == "DOUBLE" ? "double precision"
                                                      : "text");
    }
    to.execute("DROP TABLE IF EXISTS \"" + table + "\"");
    to.execute(create + ")");
    std::string insert;
    int pending = 0;
    const auto flush = [&] {
      if (pending) {
        try {
          to.execute("INSERT INTO \"" + table + "\" VALUES " + insert);
        } catch (const std::exception& e) {
          ADD_FAILURE() << table << ": " << e.what() << "\n" << create << "\n" << insert.substr(0, 300);
        }
      }
      insert.clear();
      pending = 0;
    };
    while (sqlite3_step(st) == SQLITE_ROW) {
      insert += pending ? ",(" : "(";
      for (int i = 0; i < sqlite3_column_count(st); ++i) {
        if (i) insert += ",";
        switch (sqlite3_column_type(st, i)) {
          case SQLITE_NULL: insert += "NULL"; break;
          case SQLITE_INTEGER: insert += std::to_string(sqlite3_column_int64(st, i)); break;
          case SQLITE_FLOAT: {
            char text[40];
            std::snprintf(text, sizeof text, "%.17g", sqlite3_column_double(st, i));
            insert += text;
            break;
          }
          default: {
            std::string value = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
            for (std::size_t at = 0; (at = value.find('\'', at)) != std::string::npos; at += 2) value.insert(at, "'");
            insert += "'" + value + "'";
          }
        }
      }
      insert += ")";
      if (++pending == 2000) flush();
    }
    flush();
    sqlite3_finalize(st);
  }
  sqlite3_close(db);
}

// A fresh program folder, demo and KEL company; imports from one source.
struct Import : kel_test::DemoFolders {
  transfer::Importer importer;
  kel_test::RecordingUi ui;

  Import() { ui.default_answer = true; }

  // Stages `source` with format `index` and imports the five groups; the
  // load's warnings and the final message are checked on the way.
  void run(const std::string& source, int index, std::size_t steps = 5) {
    preview::StagedPreview preview;
    mapping::MappingPanel mapping;
    session::MainWindowController c(prog, ui, importer, preview, mapping);
    c.Form_Load(company.string() + "*" + source + "*" + std::to_string(index));
    ASSERT_EQ(c.state.cmbFormato_index, index);
    c.Form_Activate();
    ASSERT_FALSE(preview.lblDatosCP_visible) << (ui.log.empty() ? "" : ui.log.back());
    EXPECT_EQ(c.last_load_stats.statements_failed, 0);
    for (const std::string& w : c.last_load_warnings) ADD_FAILURE() << w;
    const session::ImportResult result = c.cbImportar_Click();
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(result.steps.size(), steps);
    for (std::size_t i = 0; i < steps; ++i) EXPECT_EQ(result.steps[i].group, static_cast<int>(i));
    ASSERT_FALSE(ui.log.empty());
    EXPECT_EQ(ui.log.back(), "INFO: Importación Satisfactoria!!");
    c.Form_Unload();
  }
};

// What the demo's KEL company holds after staging the demo, mapping nothing
// and importing the five groups (every question answered Yes).
const std::map<std::string, std::size_t> kImportedCounts = {
    {"Empresa", 1},          {"Planillas", 5},       {"Cargos", 12},
    {"Personas", 52},        {"Contrato", 64},       {"Declaraciones", 39},
    {"PersonasRela", 33},    {"rPersonas_Dto_Comunicacion", 124},
    {"rPlanillas", 201},     {"Legajo", 64},         {"Conceptos", 79},
    {"TiposLiquidacion", 10}, {"Encabezados", 1998}, {"Datos_Liquidacion", 36324},
    {"Calendario_liq", 245}, {"Cotizacion", 25},
};

TEST(SourceKinds, TheDemoFromEverySourceKindLeavesTheSameKelCompany) {
  ASSERT_TRUE(fs::exists(kBuiltProgram / "demo" / "Origen_CSV" / "Empresa.csv")) << "the build makes the demo";
  // The interchange folder is the reference.
  Import reference;
  reference.run((reference.demo / "Origen_CSV").string(), 0);
  const Dump expected = dump_tables(reference.company);
  for (const auto& [table, rows] : kImportedCounts) ASSERT_EQ(expected.at(table).size(), rows) << table;
  const auto kel = [&](const std::string& sql) { return kel_test::query_text(reference.company, sql); };
  EXPECT_EQ(kel("SELECT count(*) FROM Personas WHERE id_Persona >= 1000000000"), "0");
  EXPECT_EQ(kel("SELECT Nombre FROM Empresa WHERE IdEmpresa = 1"),
            reference.staged("SELECT Nombre FROM Empresa"));
  // Person 27 was in KEL already (matched by document): its contract kept
  // its id and took the person's number; the staged ones came above.
  EXPECT_EQ(kel("SELECT group_concat(Id_Contrato || ':' || NUMERO_ALTERNATIVO || ':' || FECHA_INICIO, ',') FROM "
                "(SELECT * FROM Contrato WHERE Id_Persona = 27 ORDER BY Id_Contrato)"),
            "6:27:2009-05-01,43:27_1:2009-05-15,44:27_2:2023-06-28");
  // A month's headers with their recomputed totals.
  EXPECT_EQ(kel("SELECT count(*) || '/' || round(sum(Cod1), 2) || '/' || round(sum(Liquido), 2) FROM Encabezados "
                "WHERE MesDeLiq = '2024-12-01'"),
            "128/4865912.78/5009230.73");
  // The KEL file is left in its own journal mode.
  EXPECT_EQ(kel("PRAGMA journal_mode"), "delete");

  std::unique_ptr<PgTestServer> server;
  struct Kind {
    const char* name;
    std::function<std::string(Import&)> source;  // "" = skipped (the reason is in `skipped`)
    int format;
  };
  std::string skipped;
  const std::vector<Kind> kinds = {
      {"archivo SQLite", [](Import& i) { return (i.demo / "Origen_BD").string(); }, 1},
      {"ODBC sobre SQLite",
       [&](Import& i) -> std::string {
         if (!kel_test::sqlite_odbc_declared()) {
           skipped = "no está instalado el controlador ODBC de SQLite (libsqliteodbc)";
           return "";
         }
         kel_test::use_sqlite_data_sources(i.tmp.path(), {{"kel_demo", i.demo / "Origen_BD" / "origen.mdb"}});
         return "kel_demo";
       },
       2},
      {"ODBC sobre PostgreSQL",
       [&](Import& i) -> std::string {
         server = std::make_unique<PgTestServer>();
         if (!server->started()) {
           skipped = PgTestServer::reason();
           return "";
         }
         db::OdbcConnection pg;
         EXPECT_TRUE(pg.open(server->connection_text())) << pg.last_error();
         copy_to_server(i.demo / "Origen_BD" / "origen.mdb", pg);
         return server->connection_text();
       },
       2},
  };
  for (const Kind& kind : kinds) {
    SCOPED_TRACE(kind.name);
    Import import;
    skipped.clear();
    const std::string source = kind.source(import);
    if (source.empty()) {
      std::printf("[ OMITIDO ] %s: %s\n", kind.name, skipped.c_str());
      continue;
    }
    import.run(source, kind.format);
    EXPECT_EQ(first_difference(expected, dump_tables(import.company)), "");
  }
}

// The Access sample through a format written for its tables: a company from
// its first shipper, job titles from its products, persons from its employees.
TEST(SourceKinds, AnAccessFileIsImportedIntoKel) {
  const fs::path sample = fs::path(KEL_SHARED_DIR) / "fixtures" / "access" / "nwind.mdb";
  if (!fs::exists(sample)) GTEST_SKIP() << "Faltan las bases de Access de prueba en " << sample.parent_path();
  Import i;
  fs::create_directories(i.tmp.path() / "access");
  fs::copy_file(sample, i.tmp.path() / "access" / "nwind.mdb");
  const std::string before = TempDir::read(i.tmp.path() / "access" / "nwind.mdb");
  kel_test::write_file(i.prog / "ConfIMP.ini", TempDir::read(i.prog / "ConfIMP.ini") + "Muestra de Access|nwind.fmt\r\n");
  kel_test::write_file(i.prog / "nwind.fmt",
                       "TipoBD=1\r\nBD=\r\nEmpresa|NOM(*.mdb)|nw\\empresa.sql|1\r\nCargos|NOM(*.mdb)|nw\\cargos.sql|2\r\n"
                       "Personas|NOM(*.mdb)|nw\\personas.sql|3\r\n");
  kel_test::write_file(i.prog / "nw" / "empresa.sql",
                       "Insert Into Empresa (IdEmpresa, Nombre, RazonSocial) Select ShipperID, CompanyName, "
                       "CompanyName From Shippers in '[BDOrigen]' Where ShipperID = 1;\r\n");
  kel_test::write_file(i.prog / "nw" / "cargos.sql",
                       "Insert Into Cargos (id_Cargo, Cargo, Laudo) Select ProductID, ProductName, UnitPrice "
                       "From Products in '[BDOrigen]';\r\n");
  kel_test::write_file(i.prog / "nw" / "personas.sql",
                       "Insert Into Personas (id_Persona, NUMERO, Apellido_1, Nombre_1, Fecha_Nacimiento) Select "
                       "EmployeeID, 'NW' & EmployeeID, LastName, FirstName, BirthDate From Employees in '[BDOrigen]';\r\n");
  i.run((i.tmp.path() / "access").string(), 3, 3);  // the fourth format (after the shipped ones), groups 1 to 3
  // Staged whole, through a copy kept beside the staging database.
  EXPECT_EQ(i.staged("SELECT count(*) || '/' || sum(Laudo > 0) FROM Cargos"), "77/77");
  bool cached = false;
  for (const auto& e : fs::directory_iterator(i.staging.parent_path()))
    cached = cached || e.path().string().ends_with(".origen.db");
  EXPECT_TRUE(cached) << "the copy is kept beside the staging database";
  const auto kel = [&](const std::string& sql) { return kel_test::query_text(i.company, sql); };
  EXPECT_EQ(kel("SELECT count(*) FROM Cargos WHERE Cargo IN ('Chai', 'Chang', 'Aniseed Syrup')"), "3");
  EXPECT_EQ(kel("SELECT group_concat(Nombre_1 || ' ' || Apellido_1, ',') FROM (SELECT * FROM Personas WHERE NUMERO "
                "LIKE 'NW_' ORDER BY NUMERO)"),
            "Nancy Davolio,Andrew Fuller,Janet Leverling,Margaret Peacock,Steven Buchanan,Michael Suyama,Robert King,"
            "Laura Callahan,Anne Dodsworth");
  EXPECT_EQ(kel("SELECT Fecha_Nacimiento FROM Personas WHERE NUMERO = 'NW1'"), "1948-12-08");
  EXPECT_EQ(TempDir::read(i.tmp.path() / "access" / "nwind.mdb"), before);
}

}  // namespace

namespace {

// Keys read through an ODBC data source are checked like any other source's:
// a repeated id refuses the table, naming the rows; with the option to set
// rows aside, the later row goes to rechazados/Personas.csv and the rest loads.
TEST(SourceKinds, KeysFromAnOdbcSourceAreRefusedOrSetAside) {
  if (!kel_test::sqlite_odbc_declared()) GTEST_SKIP() << "no está instalado el controlador ODBC de SQLite (libsqliteodbc)";
  for (const bool set_aside : {false, true}) {
    SCOPED_TRACE(set_aside ? "apartadas" : "rechazada");
    Import i;
    const fs::path source = i.tmp.path() / "sueldos.db";
    kel_test::run_sqlite(source,
                         "CREATE TABLE Personas (id_Persona INTEGER, NUMERO TEXT, Apellido_1 TEXT, Nombre_1 TEXT, "
                         "Apellido_2 TEXT, Nombre_2 TEXT, Direccion TEXT, Id_Sexo INTEGER, ID_EstadoCivil INTEGER, "
                         "Fecha_Nacimiento TEXT, Id_Localidad INTEGER, Id_dpto INTEGER, id_Nacionalidad INTEGER, "
                         "id_Pais INTEGER, ID_Doc_Exigidos INTEGER, FECHA_EMISION TEXT, FECHA_VENCIMIENTO TEXT);"
                         "INSERT INTO Personas (id_Persona, Nombre_1, Apellido_1) VALUES (1, 'Ana', 'Pérez'), "
                         "(2, 'Luis', 'Gómez'), (1, 'Otra', 'Ana'), (NULL, 'Sin', 'Número');");
    // One data source name per round: the driver manager caches what it read
    // of odbc.ini for a while, under the name, not under the file.
    const std::string dsn = set_aside ? "kel_apartadas" : "kel_claves";
    kel_test::use_sqlite_data_sources(i.tmp.path(), {{dsn, source}});
    preview::StagedPreview preview;
    mapping::MappingPanel mapping;
    session::MainWindowController c(i.prog, i.ui, i.importer, preview, mapping);
    c.ApartarRechazados = set_aside;
    c.Form_Load(i.company.string() + "*" + dsn + "*2");
    c.Form_Activate();
    const std::string rejects = (i.staging.parent_path() / "rechazados" / "Personas.csv").string();
    const std::vector<std::string> expected =
        set_aside ? std::vector<std::string>{"DSN=" + dsn + ";: 2 filas apartadas en " + rejects +
                                             " (id_Persona 1 repetido, ...); el resto de la tabla Personas se cargó"}
                  : std::vector<std::string>{"DSN=kel_claves;: la tabla Personas no se cargó: id_Persona vacío en la "
                                             "fila 4; id_Persona 1 repetido en las filas 1 y 3",
                                             "No se cargó ningún dato desde kel_claves: no se importa nada"};
    EXPECT_EQ(c.last_load_warnings, expected);
    EXPECT_EQ(kel_test::query_text(i.staging, "SELECT group_concat(id_Persona || ':' || Nombre_1) FROM Personas"),
              set_aside ? "1:Ana,2:Luis" : "");
    if (set_aside) {
      const std::string set = TempDir::read(rejects);
      EXPECT_EQ(set.rfind("Fila;Motivo;id_Persona;NUMERO;Apellido_1;Nombre_1;", 0), 0u) << set;
      EXPECT_NE(set.find("\r\n3;id_Persona 1 repetido;1;;Ana;Otra;"), std::string::npos) << set;
      EXPECT_NE(set.find("\r\n4;id_Persona vacío;;;Número;Sin;"), std::string::npos) << set;
    }
    c.Form_Unload();
  }
}

}  // namespace
