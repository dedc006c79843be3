// Tests the choice of destination and source and the staging database: the
// staging file's name and reuse, a missing template, the folder browser, a
// missing source folder, and an error that escapes the staging load.
#include "controller_fixture.h"

namespace {

using kel_test::has_line;

TEST(ControllerStaging, StagingFileIsNamedAfterTheCompanyFolderAndKept) {
  kel_test::TempFolder tmp;
  const auto prog = tmp.path() / "prog";
  kel_test::make_program_folder(prog);
  const auto first = tmp.path() / "Datos" / "E001" / "Empresa.mdb";
  const auto second = tmp.path() / "Otros" / "E001" / "Empresa.mdb";
  kel_test::make_kel_company(first, "UNO", "UNO SA");
  kel_test::make_kel_company(second, "DOS", "DOS SA");

  kel_test::RecordingUi ui;
  {
    session::MainWindowController c(prog, ui);
    c.Form_Load(first.string());
    ASSERT_TRUE(c.staging && c.staging->is_open());
    EXPECT_EQ(c.staging->data_source_name(), (prog / "E001" / "Pasaje.mdb").string());
    c.staging->execute("Insert Into RelacConc (CodOS, CodKEL) Values (5, 17)");
  }
  {
    // The second company of a same-named folder shares the staging file, with
    // what the first one left there.
    session::MainWindowController c(prog, ui);
    c.Form_Load(second.string());
    EXPECT_EQ(c.staging_folder(), prog / "E001");
    EXPECT_EQ(kel_test::query_text(prog / "E001" / "Pasaje.mdb", "SELECT CodKEL FROM RelacConc WHERE CodOS = 5"),
              "17");
    // A Windows-style folder name keeps only its last part; a nested one is
    // made with its parents.
    EXPECT_TRUE(c.PrepararBDAux("D:\\Datos\\E002"));
    EXPECT_EQ(c.staging_folder(), prog / "E002");
    EXPECT_TRUE(std::filesystem::exists(prog / "E002" / "Pasaje.mdb"));
    EXPECT_FALSE(std::filesystem::exists(prog / "E002" / "Pasaje.mdb.copiando"));
  }
  EXPECT_TRUE(ui.log.empty());

  // Without the template, even an existing staging file is not used.
  std::filesystem::remove(prog / "Generica" / "Pasaje.mdb");
  kel_test::RecordingUi ui2;
  session::MainWindowController c(prog, ui2);
  c.Form_Load(first.string());
  EXPECT_EQ(ui2.log, (std::vector<std::string>{
                         "AVISO: Falta Base Genérica para poder realizar el pasaje",
                         "AVISO: No se pudo preparar la base de datos auxiliar para la importacion de datos"}));
  EXPECT_TRUE(c.destination && c.destination->is_open());
  EXPECT_TRUE(c.staging == nullptr);
  EXPECT_FALSE(c.PrepararBDAux("E001"));
}

TEST(ControllerStaging, DestinationThatIsNotADatabaseIsReported) {
  kel_test::TempFolder tmp;
  const auto prog = tmp.path() / "prog";
  kel_test::make_program_folder(prog);
  const auto bad = tmp.path() / "E009" / "Empresa.mdb";
  kel_test::write_file(bad, "esto no es una base de datos, es texto");
  kel_test::RecordingUi ui;
  session::MainWindowController c(prog, ui);
  c.Form_Load(bad.string());
  ASSERT_FALSE(ui.log.empty());
  EXPECT_EQ(ui.log.front().rfind("AVISO: Error al abrir la base ubicada en " + bad.string(), 0), 0u) << ui.log.front();
  EXPECT_FALSE(c.destination->is_open());
  // The staging database is still prepared for the company folder.
  EXPECT_EQ(c.staging_folder(), prog / "E009");
}

TEST(ControllerStaging, BrowsingTheSourceFolder) {
  kel_test::TempFolder tmp;
  const auto prog = tmp.path() / "prog";
  kel_test::make_program_folder(prog);
  const auto company = tmp.path() / "E001" / "Empresa.mdb";
  kel_test::make_kel_company(company, "UNO", "UNO SA");
  const auto src = tmp.path() / "origen";
  kel_test::write_file(src / "cargos.txt", "x\r\n");

  kel_test::RecordingUi ui;
  session::MainWindowController c(prog, ui);
  c.Form_Load(company.string() + "*" + (tmp.path() / "antes").string() + "*2");
  ui.folders = {std::nullopt, src.string()};
  c.cbBuscar_Click(0);  // cancelled: nothing changes, nothing staged
  EXPECT_EQ(c.txtRuta, (tmp.path() / "antes").string());
  EXPECT_TRUE(c.lblDatosCP_visible);
  c.cbBuscar_Click(0);
  EXPECT_EQ(c.txtRuta, src.string());
  EXPECT_FALSE(c.lblDatosCP_visible);
  EXPECT_EQ(kel_test::query_text(prog / "E001" / "Pasaje.mdb", "SELECT Cargo FROM Cargos"), "Peón");
  EXPECT_EQ(c.state.ChkOP, (std::array<bool, 5>{false, true, false, false, false}));
  EXPECT_EQ(ui.dialogs[0], "carpeta: Seleccionar Carpeta | Seleccione la carpeta de los Archivos de intercambio | " +
                               (tmp.path() / "antes").string());

  // A database source chosen by its folder asks where the database is.
  c.cmbFormato_Click(0);
  ui.folders = {std::nullopt};
  c.cbBuscar_Click(0);
  EXPECT_EQ(ui.dialogs.back(), "carpeta: Seleccionar Carpeta | Seleccione la carpeta donde se encuentra la BD | " +
                                   src.string());

  // Index 1 picks another destination and stages nothing.
  ui.files = {company.string()};
  c.cbBuscar_Click(1);
  EXPECT_EQ(ui.dialogs.back(), "archivo: Seleccionar la base a Importar Datos | Bases de Access (*.mdb)|*.mdb");
  EXPECT_TRUE(c.destination->is_open());

  // A source folder that is gone.
  c.cmbFormato_Click(2);
  c.txtRuta = (tmp.path() / "borrada").string();
  c.cbActualizar_Click(0);
  EXPECT_EQ(ui.log.back(), "AVISO: La carpeta " + c.txtRuta + " No existe");
  EXPECT_FALSE(c.Barra.visible());
}

TEST(ControllerStaging, MatchingProgressAndReopeningTheDestination) {
  kel_test::TempFolder tmp;
  const auto prog = tmp.path() / "prog";
  kel_test::make_program_folder(prog);
  const auto company = tmp.path() / "E001" / "Empresa.mdb";
  kel_test::make_kel_company(company, "UNO", "UNO SA");
  const auto src = tmp.path() / "origen";
  kel_test::write_file(src / "empresa.txt", "a\r\nb\r\nc\r\n");

  kel_test::RecordingUi ui;
  session::MainWindowController c(prog, ui);
  c.Form_Load(company.string() + "**2");
  c.ActuBarra();
  c.state.ChkOP = {true, true, false, false, false};
  c.BuscarArchivos(src.string());
  EXPECT_FLOAT_EQ(c.Barra.percentage(), 2);  // one point per entry offered
  EXPECT_EQ(c.total_lines, 4);               // the file's three lines plus one
  EXPECT_EQ(c.state.ChkOP, (std::array<bool, 5>{true, false, false, false, false}));
  c.state.ChkOP = {false, false, false, false, true};  // no entry of group 5
  c.BuscarArchivos(src.string());
  EXPECT_EQ(c.total_lines, 0);
  EXPECT_FALSE(c.state.ColArchTablas.ColArchTablas("Empresa*1").Existe);

  // Any index but 0 reopens the destination on PathDeEmp.
  c.destination->close();
  c.cbActualizar_Click(1);
  ASSERT_TRUE(c.destination && c.destination->is_open());
  EXPECT_EQ(c.destination->data_source_name(), company.string());

  c.TipoImp_Click(0);
  EXPECT_EQ(c.state.TipoImp.kind, 0);
  EXPECT_EQ(c.state.TipoImp.pressed, (std::array<bool, 2>{true, false}));
}

TEST(ControllerStaging, OdbcSourceIsPickedAndNeverTestedForExistence) {
  kel_test::TempFolder tmp;
  const auto prog = tmp.path() / "prog";
  kel_test::make_program_folder(prog);
  kel_test::write_file(prog / "b.fmt", "TipoBD=0\r\nBD=\r\nEmpresa|NOM(x)|empresa.sql|1\r\n");
  const auto company = tmp.path() / "E001" / "Empresa.mdb";
  kel_test::make_kel_company(company, "UNO", "UNO SA");
  const auto src_db = tmp.path() / "fuente.db";
  kel_test::make_source_company(src_db, "UNO", "UNO SA");

  kel_test::RecordingUi ui;
  ui.data_sources = {"Sueldos"};
  session::MainWindowController c(prog, ui);
  std::vector<std::string> opened;
  c.ListarODBC = [] { return std::vector<std::string>{"Sueldos", "Otra"}; };
  c.open_odbc = [&](const std::string& text) {
    opened.push_back(text);
    std::unique_ptr<db::Connection> conn;
    db::open_database(src_db.string(), conn);
    return conn;
  };
  c.Form_Load(company.string() + "**1");
  c.cbBuscar_Click(0);
  EXPECT_EQ(opened, std::vector<std::string>{"DSN=Sueldos;"});
  EXPECT_EQ(c.txtRuta, "Sueldos");
  ASSERT_TRUE(c.source && c.source->is_open());
  EXPECT_FALSE(c.lblDatosCP_visible);  // staged with no folder test
  EXPECT_FALSE(has_line(ui.log, "AVISO: La carpeta Sueldos No existe"));
}

TEST(ControllerStaging, ErrorBeforeTheLoadsFirstStatementIsReportedAndEndsTheProgram) {
  kel_test::TempFolder tmp;
  const auto prog = tmp.path() / "prog";
  kel_test::make_program_folder(prog);
  const auto company = tmp.path() / "E001" / "Empresa.mdb";
  kel_test::make_kel_company(company, "UNO", "UNO SA");
  const auto src = tmp.path() / "origen";
  kel_test::write_file(src / "empresa.txt", "x\r\n");

  kel_test::RecordingUi ui;
  session::MainWindowController c(prog, ui);
  c.Form_Load(company.string() + "*" + src.string() + "*2");
  // A staging table that refuses to be emptied: the load fails before it runs
  // any statement of its own.
  c.staging->close();
  kel_test::run_sqlite(prog / "E001" / "Pasaje.mdb",
                       "INSERT INTO Cargos (id_Cargo, Cargo) VALUES (1, 'x');"
                       "CREATE TRIGGER no_borrar BEFORE DELETE ON Cargos BEGIN SELECT RAISE(ABORT, 'tabla bloqueada'); END;");
  db::open_database((prog / "E001" / "Pasaje.mdb").string(), c.staging);

  EXPECT_THROW(c.Form_Activate(), session::SessionAborted);
  EXPECT_TRUE(c.ended());
  const auto report_file = prog / "E001" / "kelimport-errores.txt";
  ASSERT_TRUE(std::filesystem::exists(report_file));
  const std::string report = kel_test::read_file(report_file);
  EXPECT_NE(report.find("Procedimiento: cbActualizar_Click"), std::string::npos) << report;
  EXPECT_NE(report.find("Delete * From Cargos"), std::string::npos) << report;
  EXPECT_NE(report.find("tabla bloqueada"), std::string::npos) << report;
  ASSERT_FALSE(ui.log.empty());
  EXPECT_NE(ui.log.back().find(report_file.string()), std::string::npos) << ui.log.back();
  EXPECT_EQ(kel_test::query_text(prog / "E001" / "Pasaje.mdb", "SELECT count(*) FROM Empresa"), "0");
}

}  // namespace
