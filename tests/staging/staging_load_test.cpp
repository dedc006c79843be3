// Tests of CargarDatos: what is emptied, which entries load, the order of the
// progress calls, and where errors stop the load and where they are ignored.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "db/error.h"

#include "staging/condition.h"
#include "staging/staging_load.h"
#include "staging_db.h"
#include "support/temp_dir.h"

using staging::CargarDatos;
using staging::ClaArchBD;
using staging::StagingLoad;

namespace {

class CargarDatosTest : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeDatabase(dir_ / "Pasaje.mdb",
                 "CREATE TABLE Conceptos (id INTEGER);"
                 "CREATE TABLE Conceptos2 (id INTEGER);"
                 "CREATE TABLE RelacConc (CodKEL INTEGER, CodOS INTEGER);"
                 "CREATE TABLE RelacTLiq (CodKEL INTEGER, CodOS INTEGER);"
                 "CREATE TABLE Personas (id_Persona INTEGER PRIMARY KEY, Nombre TEXT);"
                 "CREATE TABLE Contador (n INTEGER PRIMARY KEY AUTOINCREMENT, x INTEGER);"
                 "CREATE VIEW VPersonas AS SELECT * FROM Personas;"
                 "INSERT INTO Conceptos VALUES (1); INSERT INTO Conceptos2 VALUES (1);"
                 "INSERT INTO RelacConc VALUES (501, 1); INSERT INTO RelacTLiq VALUES (1, 1);"
                 "INSERT INTO Personas VALUES (99, 'vieja'); INSERT INTO Contador (x) VALUES (1);");
    MakeDatabase(dir_ / "Origen.mdb",
                 "CREATE TABLE Emp (id INTEGER, nombre TEXT);"
                 "INSERT INTO Emp VALUES (1, 'Ana'); INSERT INTO Emp VALUES (2, 'Luis');");
    connection_ = OpenStaging(dir_ / "Pasaje.mdb");
    load_.staging = connection_.get();
    load_.program_folder = dir_.path();
    load_.TablaNoBorrar = "RelacConc,RelacTLiq";
    load_.catalogue = &catalogue_;
    load_.ChkOP = {true, true, true, true, true};
    load_.values.relation_ids = {1, 2, 5, 7, 8, 100, 200};
    load_.values.destination = (dir_ / "Datos.mdb").string();
    load_.ActuBarra = [this](float v) { calls_.push_back("barra " + std::to_string(v)); };
    load_.hide_lblDatosCP = [this] { calls_.push_back("ocultar"); };
    load_.ActuGrillas = [this] { calls_.push_back("grillas"); };
    load_.CargarMes = [this] { calls_.push_back("mes"); };
  }

  // Adds a database entry named `name` with option `option` whose statement
  // file `file` (relative, with "\") holds `statements`.
  void AddEntry(const std::string& name, int option, const std::string& file, const std::string& statements,
                bool found = true) {
    if (!statements.empty()) {
      std::string relative = file;
      for (char& ch : relative)
        if (ch == '\\') ch = '/';
      dir_.write(relative, statements);
    }
    ClaArchBD e;
    e.Codigo = name + "*" + std::to_string(option);
    e.ArchConf = file;
    e.Existe = found;
    e.Ruta = (dir_ / "Origen.mdb").string();
    catalogue_.add(e);
  }

  // Adds an interchange entry `code` whose statement file is csv/personas.sql
  // and whose data file is datos/<data_file>.
  void AddFileEntry(const std::string& code, const std::string& data_file) {
    ClaArchBD e;
    e.Codigo = code;
    e.ArchConf = "csv\\personas.sql";
    e.Existe = true;
    e.TipoAR = true;
    e.Ruta = (dir_ / "datos" / data_file).string();
    catalogue_.add(e);
  }

  int CountCalls(const std::string& call) const {
    return static_cast<int>(std::count(calls_.begin(), calls_.end(), call));
  }

  TempDir dir_;
  std::unique_ptr<db::SqliteConnection> connection_;
  staging::ColArchsBD catalogue_;
  StagingLoad load_;
  std::vector<std::string> calls_;
};

const std::string kCopyEmp = "Insert into Personas (id_Persona, Nombre) Select id, nombre From Emp in '[BDOrigen]';\n";

}  // namespace

TEST_F(CargarDatosTest, KeepsOnlyTheListedTablesAndLeavesViewsAndEngineTablesAlone) {
  AddEntry("Vacio", 1, "sql/vacio.sql", "-- nada que cargar\n");
  load_.TablaNoBorrar = "relacconc,RELACTLIQ";
  CargarDatos(load_);
  auto& c = *connection_;
  EXPECT_EQ(QueryCount(c, "RelacConc"), 1);  // the user's mappings survive, whatever the case
  EXPECT_EQ(QueryCount(c, "RelacTLiq"), 1);
  EXPECT_EQ(QueryCount(c, "Conceptos"), 0);
  EXPECT_EQ(QueryCount(c, "Conceptos2"), 0);
  EXPECT_EQ(QueryCount(c, "Personas"), 0);
  EXPECT_EQ(QueryCount(c, "Contador"), 0);
  EXPECT_EQ(QueryCount(c, "sqlite_sequence"), 1);  // the engine's own table is not the format's

  // The commas delimit whole names: Conceptos2 does not keep Conceptos. A
  // staging database without its own list keeps the mappings anyway.
  c.execute_native("INSERT INTO Conceptos VALUES (1); INSERT INTO Conceptos2 VALUES (1);");
  load_.TablaNoBorrar = "Conceptos2";
  CargarDatos(load_);
  EXPECT_EQ(QueryCount(c, "Conceptos"), 0);
  EXPECT_EQ(QueryCount(c, "Conceptos2"), 1);
  EXPECT_EQ(QueryCount(c, "RelacConc"), 1);
  EXPECT_EQ(QueryCount(c, "RelacTLiq"), 1);

  // With its own list, the staging database's list is kept (and the list
  // itself), whatever the format says.
  c.execute_native(
      "CREATE TABLE TablasPropias (Tabla TEXT); INSERT INTO TablasPropias VALUES ('Conceptos'), ('RelacConc');"
      "INSERT INTO Conceptos VALUES (1);");
  load_.TablaNoBorrar = "";
  CargarDatos(load_);
  EXPECT_EQ(QueryCount(c, "Conceptos"), 1);
  EXPECT_EQ(QueryCount(c, "Conceptos2"), 0);
  EXPECT_EQ(QueryCount(c, "RelacConc"), 1);
  EXPECT_EQ(QueryCount(c, "RelacTLiq"), 0);
  EXPECT_EQ(QueryCount(c, "TablasPropias"), 2);

  EXPECT_TRUE(staging::IsKeptTable("A,Conceptos", "conceptos"));
  EXPECT_FALSE(staging::IsKeptTable("A, Conceptos", "Conceptos"));  // blanks are part of the names
  EXPECT_FALSE(staging::IsKeptTable("", "Conceptos"));
}

TEST_F(CargarDatosTest, ProgressAndHooksInOrder) {
  load_.total_lines = 40;
  AddEntry("Emp", 3, "sql\\emp.sql", kCopyEmp);
  CargarDatos(load_);
  std::vector<std::string> expected = {"barra 1.000000", "ocultar"};
  // One step per emptied table (Conceptos, Conceptos2, Personas, Contador),
  // none for the kept ones.
  for (int i = 0; i < 4; ++i) expected.push_back("barra -1.000000");
  expected.push_back("barra -1.000000");                               // the entry
  expected.insert(expected.end(), {"grillas", "barra 100.000000", "barra -2.000000", "mes"});
  EXPECT_EQ(calls_, expected);
  EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(Nombre, ',') FROM Personas"), "Ana,Luis");
  EXPECT_EQ(load_.stats.statements_run, 1);
  EXPECT_TRUE(load_.warnings.empty());
}

TEST_F(CargarDatosTest, OnlyOptionFiveIsGatedByItsBox) {
  AddEntry("Cinco", 5, "sql/cinco.sql", "Insert into Conceptos (id) Values (5);\n");
  AddEntry("Tres", 3, "sql/tres.sql", "Insert into Conceptos (id) Values (3);\n");
  AddEntry("NoEsta", 1, "sql/noesta.sql", "Insert into Conceptos (id) Values (1);\n", /*found=*/false);
  load_.ChkOP = {true, true, false, true, false};
  CargarDatos(load_);
  EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(id) FROM Conceptos"), "3");

  load_.ChkOP[4] = true;
  CargarDatos(load_);
  EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(id) FROM Conceptos"), "5,3");
}

TEST_F(CargarDatosTest, EmptyMissingAndClosedCasesMoveNothing) {
  AddEntry("Vacio", 1, "sql/vacio.sql", "-- nada que cargar\n");
  AddEntry("Falta", 2, "sql/falta.sql", "");  // no file written
  AddEntry("Emp", 3, "SQL/EMP.sql", kCopyEmp);
  dir_.write("sql/emp.sql", kCopyEmp);  // found despite the case of its name
  EXPECT_NO_THROW(CargarDatos(load_));
  EXPECT_EQ(QueryCount(*connection_, "Personas"), 2);
  // Steps: 4 tables, then one per entry whose file exists (Vacio, Emp).
  EXPECT_EQ(CountCalls("barra -1.000000"), 6);
  EXPECT_EQ(load_.stats.statements_run, 1);

  calls_.clear();
  connection_->close();
  EXPECT_NO_THROW(CargarDatos(load_));
  EXPECT_TRUE(calls_.empty());
  load_.staging = nullptr;
  EXPECT_NO_THROW(CargarDatos(load_));
  EXPECT_TRUE(calls_.empty());
}

TEST_F(CargarDatosTest, ErrorsBeforeTheFirstStatementPropagate) {
  // An option past the boxes, even on an entry that was not found.
  AddEntry("Mala", 7, "sql/mala.sql", kCopyEmp, /*found=*/false);
  AddEntry("Emp", 3, "sql/emp.sql", kCopyEmp);
  EXPECT_THROW(CargarDatos(load_), std::out_of_range);
  EXPECT_EQ(QueryCount(*connection_, "Conceptos"), 0);  // the tables were emptied before
  EXPECT_EQ(QueryCount(*connection_, "Personas"), 0);
  EXPECT_EQ(CountCalls("grillas"), 0);

  // A relation table too small for the first statement.
  catalogue_.clear();
  AddEntry("Emp", 3, "sql/emp.sql", kCopyEmp);
  load_.values.relation_ids = {1, 2, 3};
  EXPECT_THROW(CargarDatos(load_), std::out_of_range);

  // A table that cannot be emptied (a foreign key pointing at it).
  load_.values.relation_ids = {1, 2, 5, 7, 8, 100, 200};
  connection_->execute_native(
      "CREATE TABLE Hijos (id INTEGER, p INTEGER REFERENCES Personas(id_Persona));"
      "INSERT INTO Personas VALUES (1, 'x'); INSERT INTO Hijos VALUES (1, 1);");
  EXPECT_THROW(CargarDatos(load_), db::Error);
}

TEST_F(CargarDatosTest, ErrorsAfterTheFirstStatementAreIgnored) {
  AddEntry("Emp", 3, "sql/emp.sql",
           "Insert into Tabla_Que_No_Existe Values (1);\n" + kCopyEmp +
               "Insert into Conceptos (id) Values ([BPS8]);\n");
  AddEntry("Mala", 9, "sql/mala.sql", kCopyEmp);  // after the switch: ignored
  AddEntry("Otra", 4, "sql/otra.sql", "Insert into Conceptos (id) Values ([Desc]);\n");
  EXPECT_NO_THROW(CargarDatos(load_));
  EXPECT_EQ(QueryCount(*connection_, "Personas"), 2);
  EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(id) FROM Conceptos"), "8,200");
  EXPECT_EQ(load_.stats.statements_failed, 1);
  EXPECT_TRUE(Contains(load_.warnings, "sql/emp.sql, sentencia 1"));
  EXPECT_TRUE(Contains(load_.warnings, "Mala*9"));
  EXPECT_EQ(CountCalls("mes"), 1);
}

TEST_F(CargarDatosTest, PathsAreAttachedBeforeTheEntryTransaction) {
  // The source is named only by the second statement: it must still be
  // readable although the entry runs in one transaction, in either spelling
  // of the clause.
  for (const std::string in : {"in '[BDOrigen]'", "in '' [MS Access;DATABASE=[BDOrigen]]"}) {
    SCOPED_TRACE(in);
    connection_ = OpenStaging(dir_ / "Pasaje.mdb");  // nothing attached yet
    load_.staging = connection_.get();
    catalogue_.clear();
    AddEntry("Emp", 3, "sql/emp.sql",
             "Delete * From Conceptos;\nInsert into Personas (id_Persona, Nombre) Select id, nombre From Emp " + in +
                 ";\nInsert into Conceptos (id) Select id From Emp " + in + ";\n");
    CargarDatos(load_);
    EXPECT_TRUE(load_.warnings.empty()) << load_.warnings.front();
    EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(Nombre) FROM Personas"), "Ana,Luis");
    EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(id) FROM Conceptos"), "1,2");
  }

  // A source that is not there: each statement that reads it says why, even
  // inside the entry's transaction, and the load goes on.
  catalogue_.ColArchTablas("Emp*3").Ruta = (dir_ / "Falta.mdb").string();
  CargarDatos(load_);
  EXPECT_EQ(QueryCount(*connection_, "Personas"), 0);
  EXPECT_EQ(std::count_if(load_.warnings.begin(), load_.warnings.end(),
                          [](const std::string& w) { return w.find("el archivo no existe") != std::string::npos; }),
            2);
  EXPECT_EQ(load_.stats.statements_failed, 2);
}

TEST_F(CargarDatosTest, InterchangeEntriesReadTheirDataFile) {
  dir_.write("datos/personas.csv", "Id;Nombre;Alta\n1;Ana;01/02/2020\n2;Luis;31/02/2020\n");
  dir_.write("csv/personas.sql",
             "Insert into Personas (id_Persona, Nombre) Select Id, Nombre & ' ' & Format(Alta, 'yyyy') From Imp_P;\n"
             "@ARCHIVO\nTabla=Imp_P\nEncabezado=Si\nColumna=Id:entero\nColumna=Nombre\nColumna=Alta:fecha\n");
  AddFileEntry("Personas*3", "personas.csv");
  AddFileEntry("Otra*3", "otra.csv");  // its data file is missing: a warning, nothing else
  CargarDatos(load_);
  EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(Nombre, ',') FROM Personas"), "Ana 2020,Luis ");
  EXPECT_EQ(load_.stats.data_rows, 2);
  EXPECT_EQ(load_.stats.bad_values, 1);
  EXPECT_TRUE(Contains(load_.warnings, "personas.csv, línea 3, columna Alta"));
  EXPECT_TRUE(Contains(load_.warnings, "otra.csv"));
  // The load table does not outlive its entry.
  EXPECT_EQ(QueryText(*connection_, "SELECT count(*) FROM temp.sqlite_master WHERE name = 'Imp_P'"), "0");
}

TEST_F(CargarDatosTest, NothingToLoadEmptiesNothing) {
  struct Case {
    const char* what;
    std::function<void()> arrange;
    std::vector<std::string> warnings;
  };
  const std::string kept = "la base auxiliar quedó como estaba";
  const std::vector<Case> cases = {
      {"sin entradas", [] {},
       {"El formato elegido no tiene archivos ni tablas de origen (revise ConfIMP.ini y el archivo del formato): no se "
        "cargó nada y " + kept}},
      {"nada encontrado", [this] { AddEntry("Emp", 3, "sql/emp.sql", kCopyEmp, /*found=*/false); },
       {"No se encontró en el origen ningún archivo o tabla del formato elegido: no se cargó nada y " + kept}},
      {"sin archivo de sentencias", [this] { AddEntry("Emp", 3, "sql/falta.sql", ""); },
       {"Origen.mdb: no se cargó porque falta el archivo de sentencias sql/falta.sql del formato",
        "Falta el archivo de sentencias de todas las entradas encontradas: no se cargó nada y " + kept}},
  };
  for (const Case& c : cases) {
    catalogue_.clear();
    c.arrange();
    CargarDatos(load_);
    EXPECT_EQ(load_.warnings, c.warnings) << c.what;
    EXPECT_FALSE(load_.stats.emptied) << c.what;
    EXPECT_EQ(QueryCount(*connection_, "Personas"), 1) << c.what;  // the earlier load's row
    EXPECT_EQ(QueryCount(*connection_, "Conceptos"), 1) << c.what;
  }
}

// The rows a table's key refuses are told by line in a data file and by row
// in what a statement reads from a source database, and refuse the table or
// are set aside; the source database itself (attached read-only) is never
// changed.
TEST_F(CargarDatosTest, RowsTheKeyRefusesAreToldOrSetAside) {
  struct Case {
    const char* what;
    bool database;        // `rows` are the VALUES of Emp (id, nombre) in Origen.mdb, not a data file
    std::string rows;
    bool set_aside;
    std::string staged;   // group_concat of the staged ids
    std::string warning;  // the one warning
    std::string rejects;  // rechazados/Personas.csv ("" = none)
  };
  const std::string rejects_file = (dir_ / "rechazados" / "Personas.csv").string();
  const std::string set_aside = " apartada en " + rejects_file, rest = "; el resto de la tabla Personas se cargó";
  const std::vector<Case> cases = {
      // Numbers the engine would make up for the empty keys (2, 6) collide
      // with nothing: only the load's own check refuses them.
      {"archivo: clave vacía", false, "1;Ana\n;Sin id\n5;Luis\n;\n", false, "",
       "Personas.csv: la tabla Personas no se cargó: id_Persona vacío en las líneas 3 y 5", ""},
      {"archivo: clave repetida", false, "1;Ana\n2;Luis\n1;Otra Ana\n3;Eva\n2;Otro\n2;Tercero\n", false, "",
       "Personas.csv: la tabla Personas no se cargó: id_Persona 1 repetido en las líneas 2 y 4; "
       "id_Persona 2 repetido en las líneas 3, 6 y 7",
       ""},
      // The statement stops at the repeated key first; the empty one is still
      // what the table is refused for.
      {"archivo: repetida antes que vacía", false, "1;Ana\n1;Otra\n;Sin id\n", false, "",
       "Personas.csv: la tabla Personas no se cargó: id_Persona vacío en la línea 4", ""},
      {"archivo: vacía, apartada", false, "1;Ana\n;Sin id\n2;Luis\n", true, "1,2",
       "Personas.csv: 1 fila" + set_aside + " (id_Persona vacío)" + rest,
       "Linea;Motivo;id_Persona;Nombre\r\n3;id_Persona vacío;;Sin id\r\n"},
      {"archivo: repetida, apartada", false, "1;Ana\n2;Luis\n1;\"Otra; Ana\"\n", true, "1,2",
       "Personas.csv: 1 fila" + set_aside + " (id_Persona 1 repetido)" + rest,
       "Linea;Motivo;id_Persona;Nombre\r\n4;id_Persona 1 repetido;1;\"Otra; Ana\"\r\n"},
      {"base: clave vacía", true, "(1, 'Ana'), (NULL, 'Sin id'), (2, 'Luis')", false, "",
       "Origen.mdb: la tabla Personas no se cargó: id_Persona vacío en la fila 2", ""},
      {"base: clave repetida", true, "(1, 'Ana'), (2, 'Luis'), (1, 'Otra'), (3, 'Eva')", false, "",
       "Origen.mdb: la tabla Personas no se cargó: id_Persona 1 repetido en las filas 1 y 3", ""},
      {"base: vacía y repetida, apartadas", true, "(1, 'Ana'), (NULL, 'Sin id'), (4, 'Eva'), (4, 'Otra Eva')", true,
       "1,4", "Origen.mdb: 2 filas apartadas en " + rejects_file + " (id_Persona vacío, ...)" + rest,
       "Fila;Motivo;id_Persona;Nombre\r\n2;id_Persona vacío;;Sin id\r\n4;id_Persona 4 repetido;4;Otra Eva\r\n"},
      {"base: sin problemas", true, "(1, 'Ana'), (2, 'Luis')", false, "1,2", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    catalogue_.clear();
    std::filesystem::remove_all(dir_ / "rechazados");
    if (c.database) {
      connection_->close();  // the source is attached no longer: it can be rewritten
      MakeDatabase(dir_ / "Origen.mdb", "CREATE TABLE Emp (id INTEGER, nombre TEXT); INSERT INTO Emp VALUES " + c.rows);
      connection_ = OpenStaging(dir_ / "Pasaje.mdb");
      load_.staging = connection_.get();
      AddEntry("Emp", 1, "emp.sql", kCopyEmp);
    } else {
      dir_.write("datos/Personas.csv", "id_Persona;Nombre\n" + c.rows);
      dir_.write("csv/personas.sql",
                 "Insert into Personas (id_Persona, Nombre) Select id_Persona, Nombre From Imp_Personas;\n"
                 "@ARCHIVO\nTabla=Imp_Personas\nEncabezado=Si\nColumna=id_Persona:entero\nColumna=Nombre\n");
      AddFileEntry("Personas*3", "Personas.csv");
    }
    const std::string before = TempDir::read(dir_ / "Origen.mdb");
    load_.set_aside_bad_rows = c.set_aside;
    load_.rejects_folder = dir_ / "rechazados";
    CargarDatos(load_);
    EXPECT_EQ(load_.warnings, c.warning.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.warning});
    EXPECT_EQ(QueryText(*connection_, "SELECT group_concat(id_Persona) FROM (SELECT id_Persona FROM Personas ORDER BY 1)"),
              c.staged);
    EXPECT_EQ(std::filesystem::exists(rejects_file) ? TempDir::read(rejects_file) : "", c.rejects);
    const auto rejected = std::count(c.rejects.begin(), c.rejects.end(), '\n');
    EXPECT_EQ(load_.stats.rows_set_aside, rejected ? rejected - 1 : 0);
    if (c.database) {
      EXPECT_EQ(load_.stats.statements_failed, c.staged.empty() ? 1 : 0);
    }
    EXPECT_EQ(TempDir::read(dir_ / "Origen.mdb"), before);
  }
}
