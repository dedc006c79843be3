// Tests the choice of destination and source and the staging database: the
// staging file's name and reuse, a missing template, the folder browser, a
// missing source folder. (An error that escapes the staging load is tested
// through the batch run in tests/app.)
#include "controller_fixture.h"
#include "db/file_kind.h"

#include <cstdlib>
#include <fstream>

#include "db/odbc_sources.h"

namespace {

using kel_test::Session;
using Log = std::vector<std::string>;

TEST(ControllerStaging, StagingFileIsNamedAfterTheCompanyFolderAndKept) {
  Session s;
  const auto second = s.tmp / "Otros" / "E001" / "Empresa.mdb";
  kel_test::make_kel_company(second, "DOS", "DOS SA");
  {
    auto c = s.start();
    ASSERT_TRUE(c->staging && c->staging->is_open());
    EXPECT_EQ(c->staging->data_source_name(), s.staging_db.string());
    c->staging->execute("Insert Into RelacConc (CodOS, CodKEL) Values (5, 17)");
  }
  {
    // The second company of a same-named folder shares the staging file, with
    // what the first one left there, once the user agrees.
    s.ui.answers = {true};
    auto c = s.start(second.string());
    ASSERT_EQ(s.ui.log.size(), 1u);
    EXPECT_EQ(s.ui.log[0].rfind("PREGUNTA: La base auxiliar " + s.staging_db.string() + " fue preparada para la empresa " +
                                    s.company.string() + "\r\ny ahora se abre para " + second.string(),
                                0),
              0u)
        << s.ui.log[0];
    EXPECT_EQ(s.ui.log[0].substr(s.ui.log[0].size() - 6), "-> Sí");
    EXPECT_EQ(c->staging_folder(), s.prog / "E001");
    EXPECT_EQ(s.staged("SELECT CodKEL FROM RelacConc WHERE CodOS = 5"), "17");
    // A Windows-style folder name keeps only its last part.
    EXPECT_TRUE(c->PrepararBDAux("D:\\Datos\\E002"));
    EXPECT_EQ(c->staging_folder(), s.prog / "E002");
    EXPECT_TRUE(std::filesystem::exists(s.prog / "E002" / "Pasaje.mdb"));
    EXPECT_FALSE(std::filesystem::exists(s.prog / "E002" / "Pasaje.mdb.copiando"));
    // An empty staging file (left by another tool that opened the name) holds
    // nothing: it is made again from the template.
    std::filesystem::create_directories(s.prog / "E003");
    std::ofstream(s.prog / "E003" / "Pasaje.mdb").close();
    EXPECT_TRUE(c->PrepararBDAux("E003"));
    EXPECT_EQ(std::filesystem::file_size(s.prog / "E003" / "Pasaje.mdb"),
              std::filesystem::file_size(s.prog / "Generica" / "Pasaje.mdb"));
    EXPECT_NO_THROW(c->staging->open_recordset("Select count(*) From Empresa"));
  }
  s.ui.log.clear();

  // Without the template, even an existing staging file is not used.
  std::filesystem::remove(s.prog / "Generica" / "Pasaje.mdb");
  auto c = s.start();
  EXPECT_EQ(s.ui.log, (Log{"AVISO: Falta Base Genérica para poder realizar el pasaje",
                           "AVISO: No se pudo preparar la base de datos auxiliar para la "
                           "importacion de datos"}));
  EXPECT_TRUE(c->destination && c->destination->is_open());
  EXPECT_TRUE(c->staging == nullptr);
  EXPECT_FALSE(c->PrepararBDAux("E001"));
}

TEST(ControllerStaging, DestinationThatIsNotADatabaseIsReported) {
  Session s;
  const auto bad = s.tmp / "E009" / "Empresa.mdb";
  kel_test::write_file(bad, "esto no es una base de datos, es texto");
  auto c = s.start(bad.string());
  ASSERT_FALSE(s.ui.log.empty());
  EXPECT_EQ(s.ui.log.front(), "AVISO: " + db::file_kind_message(db::FileKind::kOther, bad.string()));
  EXPECT_FALSE(c->destination->is_open());
  // Nothing is prepared for a file that is not a company.
  EXPECT_EQ(c->staging_folder(), std::filesystem::path());
  EXPECT_FALSE(std::filesystem::exists(s.prog / "E009"));
}

TEST(ControllerStaging, BrowsingTheSourceFolder) {
  Session s;
  const auto src = s.tmp / "origen", before = s.tmp / "antes";
  kel_test::write_file(src / "cargos.txt", "x\r\n");
  auto c = s.start(s.company.string() + "*" + before.string() + "*2");
  s.ui.folders = {std::nullopt, src.string()};
  c->cbBuscar_Click(0);  // cancelled: nothing changes, nothing staged
  EXPECT_EQ(c->view.txtRuta, before.string());
  EXPECT_EQ(s.staged("SELECT count(*) FROM Cargos"), "0");
  c->cbBuscar_Click(0);
  EXPECT_EQ(c->view.txtRuta, src.string());
  EXPECT_FALSE(s.preview.lblDatosCP_visible);
  EXPECT_EQ(s.staged("SELECT Cargo FROM Cargos"), "Peón");
  EXPECT_EQ(c->state.ChkOP, (std::array<bool, 5>{false, true, false, false, false}));
  EXPECT_EQ(s.ui.dialogs[0], "carpeta: Seleccionar Carpeta | Seleccione la carpeta de los Archivos "
                             "de intercambio | " + before.string());

  // A database source chosen by its folder asks where the database is.
  c->cmbFormato_Click(0);
  s.ui.folders = {std::nullopt};
  c->cbBuscar_Click(0);
  EXPECT_EQ(s.ui.dialogs.back(), "carpeta: Seleccionar Carpeta | Seleccione la carpeta donde se "
                                 "encuentra la BD | " + src.string());

  // Index 1 picks another destination and stages nothing.
  s.ui.files = {s.company.string()};
  c->cbBuscar_Click(1);
  EXPECT_EQ(s.ui.dialogs.back(),
            "archivo: Seleccionar la base a Importar Datos | Bases de Access (*.mdb)|*.mdb");
  EXPECT_TRUE(c->destination->is_open());

  // A source folder that is gone.
  c->cmbFormato_Click(2);
  c->view.txtRuta = (s.tmp / "borrada").string();
  c->cbActualizar_Click(0);
  EXPECT_EQ(s.ui.log.back(), "AVISO: La carpeta " + c->view.txtRuta + " No existe");
  EXPECT_FALSE(c->view.Barra.visible());
}

TEST(ControllerStaging, MatchingProgressAndReopeningTheDestination) {
  Session s;
  kel_test::write_file(s.tmp / "origen" / "empresa.txt", "a\r\nb\r\nc\r\n");
  auto c = s.start(s.company.string() + "**2");
  c->ActuBarra();
  c->state.ChkOP = {true, true, false, false, false};
  c->BuscarArchivos((s.tmp / "origen").string());
  EXPECT_FLOAT_EQ(c->view.Barra.percentage(), 2);  // one point per entry offered
  EXPECT_EQ(c->total_lines, 4);               // the file's three lines plus one
  EXPECT_EQ(c->state.ChkOP, (std::array<bool, 5>{true, false, false, false, false}));
  c->state.ChkOP = {false, false, false, false, true};  // no entry of group 5
  c->BuscarArchivos((s.tmp / "origen").string());
  EXPECT_EQ(c->total_lines, 0);
  EXPECT_FALSE(c->state.ColArchTablas.ColArchTablas("Empresa*1").Existe);

  // Any index but 0 reopens the destination on PathDeEmp.
  c->destination->close();
  c->cbActualizar_Click(1);
  ASSERT_TRUE(c->destination && c->destination->is_open());
  EXPECT_EQ(c->destination->data_source_name(), s.company.string());
}

TEST(ControllerStaging, OdbcSourceIsPickedAndNeverTestedForExistence) {
  Session s;
  // A real data source: the SQLite ODBC driver on a source company file.
  kel_test::write_file(s.prog / "b.fmt", "TipoBD=0\r\nBD=\r\nEmpresa|NOM(empresa)|empresa.sql|1\r\n");
  kel_test::make_source_company(s.tmp / "fuente.db", "ACME", "ACME SA");
  kel_test::use_sqlite_data_sources(s.tmp.path(), {{"Sueldos", s.tmp / "fuente.db"}});
  s.ui.data_sources = {"Sueldos"};
  auto c = s.start(s.company.string() + "**1");
  c->cbBuscar_Click(0);
  EXPECT_EQ(c->view.txtRuta, "Sueldos");
  ASSERT_TRUE(c->source);
  if (!c->source->is_open()) GTEST_SKIP() << "no está instalado el controlador ODBC de SQLite";
  EXPECT_EQ(c->source->data_source_name(), "Sueldos");
  EXPECT_FALSE(s.preview.lblDatosCP_visible);  // staged with no folder test
  EXPECT_FALSE(kel_test::has_line(s.ui.log, "AVISO: La carpeta Sueldos No existe"));
  EXPECT_EQ(s.staged("SELECT Nombre FROM Empresa"), "Cargada");
  EXPECT_EQ(c->state.ColArchTablas.ColArchTablas("Empresa*1").Ruta, "DSN=Sueldos;");
}

}  // namespace
