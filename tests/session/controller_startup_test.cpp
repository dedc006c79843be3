// Tests the controller's start-up: the command line's forms, the format index,
// the staging of the command line's source at the first activation, and the
// window's end.
#include "controller_fixture.h"

namespace {

using kel_test::Session;
using Log = std::vector<std::string>;

TEST(ControllerStartup, CommandLineForms) {
  struct Row {
    std::string line;  // DEST, SRC, NONE: the company's path, the source folder's, a missing file's
    Log log;
    int index;
    std::string txtRuta;
    bool destination, auto_refresh, browse = true, empty_conf = false;
  };
  const std::string bad_index = "AVISO: El formato número 7 no existe; se usa el primero";
  const std::string dialog = "archivo: Seleccionar la base a Importar Datos | Bases de Access (*.mdb)|*.mdb";
  const std::vector<Row> rows = {
      {"NONE", {"AVISO: Ruta de Base de Datos Inexistente"}, 0, "", false, false},
      {"   ", {}, 0, "", false, false},  // asks for the destination: no answer is a cancel
      {"  \"DEST\"  ", {}, 0, "", true, false},  // quoted and padded; no index: the first format
      {"DEST*SRC*2", {}, 2, "SRC", true, true},
      {"DEST*", {}, 0, "", true, true},
      {"\"DEST*SRC*7\"", {bad_index}, 0, "SRC", true, true},
      {"DEST**1", {}, 1, "", true, true, false},  // a format with neither source key: no browsing
      {"DEST*x*0", {"AVISO: El formato número 0 no existe; no hay formatos en ConfIMP.ini"}, -1, "x",
       true, true, true, true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.line);
    Session s;
    if (row.empty_conf) kel_test::write_file(s.prog / "ConfIMP.ini", "");
    std::string line = row.line, source = (s.tmp / "origen").string();
    for (auto [from, to] : {std::pair<std::string, std::string>{"DEST", s.company.string()},
                            {"SRC", source}, {"NONE", (s.tmp / "no" / "Empresa.mdb").string()}})
      if (auto at = line.find(from); at != std::string::npos) line.replace(at, from.size(), to);
    auto c = s.start(line);
    EXPECT_EQ(s.ui.log, row.log);
    EXPECT_EQ(c->state.cmbFormato_index, row.index);
    EXPECT_EQ(c->view.txtRuta, row.txtRuta == "SRC" ? source : row.txtRuta);
    EXPECT_EQ(c->destination && c->destination->is_open(), row.destination);
    EXPECT_EQ(c->auto_refresh, row.auto_refresh);
    EXPECT_EQ(c->state.cbBuscar_enabled, row.browse);
    EXPECT_EQ(c->PathDeEmp, row.destination ? s.company.string() : "");
    EXPECT_EQ(s.ui.dialogs, row.line == "   " ? Log{dialog} : Log{});
    // Without a destination the staging database sits in the program folder.
    if (row.line == "   ") {
      EXPECT_EQ(c->staging_folder(), s.prog);
    }
  }
}

TEST(ControllerStartup, DestinationAloneOpensEverythingAndStagesNothing) {
  Session s;
  auto c = s.start("\"" + s.company.string() + "\"");
  EXPECT_EQ(c->view.LblEmpresa, s.company.string());
  EXPECT_EQ(c->staging_folder(), s.prog / "E001");
  EXPECT_TRUE(c->staging && c->staging->is_open());
  // Default months: Hasta the current month, Desde a year earlier, unticked.
  EXPECT_EQ(c->state.period.desde, session::Month::Current().AddMonths(-12));
  EXPECT_EQ(c->state.period.txtMes[0], "");
  c->Form_Activate();
  // No source: no load ran, and the empty staging has no earlier data to show.
  EXPECT_FALSE(s.preview.lblDatosCP_visible);
  EXPECT_EQ(s.staged("SELECT count(*) FROM Empresa"), "0");
}

TEST(ControllerStartup, SourceOnTheCommandLineIsStagedAtTheFirstActivationOnly) {
  Session s;
  kel_test::write_file(s.tmp / "origen" / "empresa01.txt", "una linea\r\n");
  auto c = s.start(s.company.string() + "*" + (s.tmp / "origen").string() + "*2");
  EXPECT_EQ(c->state.current_format_file, "c.fmt");
  EXPECT_EQ(c->state.TipoImp.kind, 1);
  EXPECT_EQ(s.staged("SELECT count(*) FROM Empresa"), "0");  // nothing staged before activation
  EXPECT_EQ(s.preview.txtDatEmp[0], "");                     // the preview shows the empty staging

  // While the load runs the view says so, for the window to keep its
  // buttons disabled; afterwards it does not.
  bool running_seen = false;
  c->view.Barra.yield = [&] { running_seen = running_seen || c->view.running; };
  c->Form_Activate();
  EXPECT_TRUE(running_seen);
  EXPECT_FALSE(c->view.running);
  EXPECT_EQ(s.staged("SELECT Nombre FROM Empresa"), "Cargada");
  EXPECT_EQ(s.staged("SELECT count(*) FROM Cargos"), "0");  // no cargos file in the folder
  EXPECT_EQ(c->state.ChkOP, (std::array<bool, 5>{true, false, false, false, false}));
  EXPECT_FALSE(s.preview.lblDatosCP_visible);
  EXPECT_EQ(s.preview.txtDatEmp[0], "Cargada");  // the preview after the load
  EXPECT_FALSE(c->view.Barra.visible());  // the load ends with a reset

  kel_test::run_sqlite(s.staging_db, "DELETE FROM Empresa;");
  c->Form_Activate();
  EXPECT_EQ(s.staged("SELECT count(*) FROM Empresa"), "0");
  EXPECT_TRUE(s.ui.log.empty());
}

TEST(ControllerStartup, ExitSavesTheFormatKeysAndClosesTheSource) {
  Session s;
  auto c = s.start(s.company.string() + "**2");
  c->state.ConcCrear = "12,15";
  c->state.relations.set(1, 0, 99);
  c->cbConfig_Click();
  EXPECT_TRUE(c->view.AreConf_visible);
  c->cbConfig_Click();
  EXPECT_FALSE(c->view.AreConf_visible);

  kel_test::make_source_company(s.tmp / "src.db", "ACME", "ACME SA");
  db::open_database((s.tmp / "src.db").string(), c->source);
  ASSERT_TRUE(c->source->is_open());
  c->cbSalir_Click();
  EXPECT_TRUE(c->ended());
  EXPECT_TRUE(c->source == nullptr);
  const std::string fmt = TempDir::read(s.prog / "c.fmt");  // written in full by FormUnload's tests
  EXPECT_NE(fmt.find("Relaciones=99\r\n13\r\n"), std::string::npos) << fmt;
  EXPECT_NE(fmt.find("ConcCrear=12,15\r\n"), std::string::npos) << fmt;
}

}  // namespace
