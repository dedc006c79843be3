// Tests the controller's start-up: the command line's forms, the format index,
// and the staging of the command line's source at the first activation.
#include "controller_fixture.h"

namespace {

using kel_test::has_line;

struct Session {
  kel_test::TempFolder tmp;
  std::filesystem::path prog = tmp.path() / "prog";
  std::filesystem::path company = tmp.path() / "Datos con espacio" / "E001" / "Empresa.mdb";
  std::filesystem::path source = tmp.path() / "origen";
  kel_test::RecordingUi ui;

  Session() {
    kel_test::make_program_folder(prog);
    kel_test::make_kel_company(company, "ACME", "ACME SA");
    kel_test::write_file(source / "empresa01.txt", "una linea\r\n");
  }
  std::string staged(const std::string& sql) const {
    return kel_test::query_text(prog / "E001" / "Pasaje.mdb", sql);
  }
};

TEST(ControllerStartup, QuotedAndMissingDestinationPaths) {
  Session s;
  {
    session::MainWindowController c(s.prog, s.ui);
    c.Form_Load("  \"" + s.company.string() + "\"  ");
    ASSERT_TRUE(c.destination && c.destination->is_open());
    EXPECT_EQ(c.PathDeEmp, s.company.string());
    EXPECT_EQ(c.LblEmpresa, s.company.string());
    EXPECT_EQ(c.staging_folder(), s.prog / "E001");
    EXPECT_TRUE(std::filesystem::exists(s.prog / "E001" / "Pasaje.mdb"));
    EXPECT_TRUE(c.staging && c.staging->is_open());
    EXPECT_EQ(c.state.cmbFormato_index, 0);  // no index given: the first format
    EXPECT_EQ(c.state.cmbFormato.size(), 3u);
    EXPECT_EQ(c.cmbCodBPS.front(), "1-Monto Imponible Mensual");
    EXPECT_EQ(c.cmbCodBPS.back(), "D-Descuentos");
    EXPECT_FALSE(c.auto_refresh);
    EXPECT_TRUE(s.ui.log.empty()) << s.ui.log.front();
    // Default months: Hasta the current month, Desde a year earlier, unticked.
    EXPECT_EQ(c.state.period.desde, session::Month::Current().AddMonths(-12));
    EXPECT_EQ(c.state.period.txtMes[0], "");
  }
  {
    kel_test::RecordingUi ui;
    session::MainWindowController c(s.prog, ui);
    c.Form_Load((s.tmp.path() / "no" / "Empresa.mdb").string());
    EXPECT_EQ(ui.log, std::vector<std::string>{"AVISO: Ruta de Base de Datos Inexistente"});
    EXPECT_TRUE(c.destination == nullptr);
    EXPECT_EQ(c.PathDeEmp, "");
    EXPECT_TRUE(ui.dialogs.empty());
  }
  {
    // An empty command line asks for the destination; cancelling leaves none.
    kel_test::RecordingUi ui;
    ui.files = {""};
    session::MainWindowController c(s.prog, ui);
    c.Form_Load("   ");
    EXPECT_EQ(ui.dialogs,
              std::vector<std::string>{"archivo: Seleccionar la base a Importar Datos | Bases de Access (*.mdb)|*.mdb"});
    EXPECT_TRUE(c.destination == nullptr);
    // Without a destination the staging database sits in the program folder.
    EXPECT_EQ(c.staging_folder(), s.prog);
  }
}

TEST(ControllerStartup, DestinationSourceAndFormatIndexStageAtFirstActivation) {
  Session s;
  int grids = 0;
  session::MainWindowController c(s.prog, s.ui);
  c.ActuGrillas = [&] { ++grids; };
  c.Form_Load(s.company.string() + "*" + s.source.string() + "*2");
  ASSERT_TRUE(c.destination && c.destination->is_open());
  EXPECT_EQ(c.txtRuta, s.source.string());
  EXPECT_EQ(c.state.cmbFormato_index, 2);
  EXPECT_EQ(c.state.current_format_file, "c.fmt");
  EXPECT_EQ(c.state.TipoImp.kind, 1);
  EXPECT_TRUE(c.auto_refresh);
  EXPECT_EQ(s.staged("SELECT count(*) FROM Empresa"), "0");  // nothing staged before activation
  EXPECT_EQ(grids, 1);                                      // the preview after SelEmpresaAImp

  c.Form_Activate();
  EXPECT_EQ(s.staged("SELECT Nombre FROM Empresa"), "Cargada");
  EXPECT_EQ(s.staged("SELECT count(*) FROM Cargos"), "0");  // no cargos file in the folder
  EXPECT_EQ(c.state.ChkOP, (std::array<bool, 5>{true, false, false, false, false}));
  EXPECT_FALSE(c.lblDatosCP_visible);
  EXPECT_EQ(grids, 2);
  EXPECT_FALSE(c.Barra.visible());  // the load ends with a reset

  // A later activation does not stage again.
  kel_test::run_sqlite(s.prog / "E001" / "Pasaje.mdb", "DELETE FROM Empresa;");
  c.Form_Activate();
  EXPECT_EQ(s.staged("SELECT count(*) FROM Empresa"), "0");
  EXPECT_TRUE(s.ui.log.empty());
}

TEST(ControllerStartup, EmptySourceFieldAndFormatIndexPastTheList) {
  Session s;
  {
    session::MainWindowController c(s.prog, s.ui);
    c.Form_Load(s.company.string() + "*");
    EXPECT_TRUE(c.destination && c.destination->is_open());
    EXPECT_EQ(c.txtRuta, "");
    EXPECT_TRUE(c.auto_refresh);
    c.Form_Activate();
    EXPECT_TRUE(c.lblDatosCP_visible);  // no load ran
    EXPECT_EQ(c.state.cmbFormato_index, 0);
    EXPECT_TRUE(s.ui.log.empty());
  }
  {
    kel_test::RecordingUi ui;
    session::MainWindowController c(s.prog, ui);
    c.Form_Load("\"" + s.company.string() + "*" + s.source.string() + "*7\"");
    EXPECT_EQ(ui.log, std::vector<std::string>{"AVISO: El formato número 7 no existe; se usa el primero"});
    EXPECT_EQ(c.state.cmbFormato_index, 0);
    EXPECT_EQ(c.state.current_format_file, "a.fmt");
    EXPECT_EQ(c.txtRuta, s.source.string());
  }
  {
    // A format with neither source key switches the browse button off.
    kel_test::RecordingUi ui;
    session::MainWindowController c(s.prog, ui);
    c.Form_Load(s.company.string() + "**1");
    EXPECT_EQ(c.state.cmbFormato_index, 1);
    EXPECT_FALSE(c.state.cbBuscar_enabled);
  }
  {
    // An empty ConfIMP.ini: no format at all, and an index names none.
    kel_test::RecordingUi ui;
    kel_test::write_file(s.prog / "ConfIMP.ini", "");
    session::MainWindowController c(s.prog, ui);
    c.Form_Load(s.company.string() + "*x*0");
    EXPECT_EQ(c.state.cmbFormato_index, -1);
    EXPECT_EQ(ui.log, std::vector<std::string>{
                          "AVISO: El formato número 0 no existe; no hay formatos en ConfIMP.ini"});
  }
}

TEST(ControllerStartup, UnloadSavesFormatKeysAndExitClosesSource) {
  Session s;
  session::MainWindowController c(s.prog, s.ui);
  c.Form_Load(s.company.string() + "**2");
  c.state.ConcCrear = "12,15";
  c.state.relations.set(1, 0, 99);
  c.cbConfig_Click();
  EXPECT_TRUE(c.AreConf_visible);
  c.cbConfig_Click();
  EXPECT_FALSE(c.AreConf_visible);

  kel_test::make_source_company(s.tmp.path() / "src.db", "ACME", "ACME SA");
  db::open_database((s.tmp.path() / "src.db").string(), c.source);
  ASSERT_TRUE(c.source->is_open());
  c.cbSalir_Click();
  EXPECT_TRUE(c.ended());
  EXPECT_TRUE(c.source == nullptr);
  const std::string fmt = kel_test::read_file(s.prog / "c.fmt");
  EXPECT_NE(fmt.find("ConcCrear=12,15"), std::string::npos) << fmt;
  EXPECT_NE(fmt.find("99"), std::string::npos) << fmt;
  EXPECT_NE(fmt.find("Empresa|NOM(empresa*.txt)|empresa.sql|1"), std::string::npos);
}

}  // namespace
