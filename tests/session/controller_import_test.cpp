// Tests the company check and the import run: the questions' paths, the
// steps' order and gating, the month texts of the liquidations step, and an
// error inside a step.
#include "controller_fixture.h"

namespace {

using kel_test::has_line;

const char* kConfirm = "PREGUNTA: Confirma importar los datos de la empresa";

struct ImportSession {
  kel_test::TempFolder tmp;
  std::filesystem::path prog = tmp.path() / "prog";
  std::filesystem::path company = tmp.path() / "E001" / "Empresa.mdb";
  std::filesystem::path source_db = tmp.path() / "fuente.db";
  kel_test::RecordingUi ui;
  std::unique_ptr<session::MainWindowController> c;
  std::vector<std::string> calls;

  ImportSession(const std::string& kel_name, const std::string& kel_rs, const std::string& src_name,
                const std::string& src_rs) {
    kel_test::make_program_folder(prog);
    kel_test::make_kel_company(company, kel_name, kel_rs);
    kel_test::make_source_company(source_db, src_name, src_rs);
    c = std::make_unique<session::MainWindowController>(prog, ui);
    c->Form_Load(company.string());
    db::open_database(source_db.string(), c->source);
    for (std::size_t i = 0; i < c->steps.size(); ++i)
      c->steps[i] = [this, i] { calls.push_back("paso " + std::to_string(i)); };
    c->step_liquidaciones = [this](const std::string& d, const std::string& h) {
      calls.push_back("liquidaciones [" + d + "] [" + h + "]");
    };
    c->ActuGridConc = [this] { calls.push_back("grilla conceptos"); };
    c->ActuGridTliq = [this] { calls.push_back("grilla tipos"); };
  }
};

std::string question(const std::string& what, const std::string& kel, const std::string& src, bool yes) {
  return "PREGUNTA: La empresa de KEL tiene " + what + ": '" + kel + "'\r\ny la empresa a importar tiene " + what +
         ": '" + src + "'\r\n¿Desea continuar de todas formas?" + (yes ? " -> Sí" : " -> No");
}

TEST(ControllerValido, QuestionPaths) {
  {
    // Equal names (case and blanks aside), different legal names: only the
    // legal-name question and the confirmation.
    ImportSession s("  Acme ", "ACME SA", "acme", "ACME SRL");
    s.ui.default_answer = true;
    EXPECT_TRUE(s.c->Valido(true));
    EXPECT_EQ(s.ui.log, (std::vector<std::string>{question("RS", "ACME SA", "ACME SRL", true),
                                                  std::string(kConfirm) + " -> Sí"}));
    s.ui.log.clear();
    EXPECT_TRUE(s.c->Valido(false));
    EXPECT_TRUE(s.ui.log.empty());
  }
  {
    // Different names and a Yes: the legal names are not compared.
    ImportSession s("ACME", "ACME SA", "OTRA", "OTRA SRL");
    s.ui.default_answer = true;
    EXPECT_TRUE(s.c->Valido(true));
    EXPECT_EQ(s.ui.log, (std::vector<std::string>{question("Nombre", "ACME", "OTRA", true),
                                                  std::string(kConfirm) + " -> Sí"}));
  }
  {
    // Everything equal: only the confirmation, and its No is the result.
    ImportSession s("ACME", "ACME SA", "ACME", "ACME SA");
    s.ui.answers = {false};
    EXPECT_FALSE(s.c->Valido(true));
    EXPECT_EQ(s.ui.log, std::vector<std::string>{std::string(kConfirm) + " -> No"});
  }
  {
    // No source connection: the source's name is empty and differs.
    ImportSession s("ACME", "ACME SA", "ACME", "ACME SA");
    s.c->source.reset();
    s.ui.answers = {false};
    EXPECT_FALSE(s.c->Valido(true));
    EXPECT_EQ(s.ui.log, std::vector<std::string>{question("Nombre", "ACME", "", false)});
  }
  {
    // A source whose query fails counts as an empty name as well.
    ImportSession s("", "", "ACME", "ACME SA");
    kel_test::run_sqlite(s.source_db, "DROP TABLE Empresa;");
    s.ui.default_answer = false;
    EXPECT_FALSE(s.c->Valido(true));
    EXPECT_EQ(s.ui.log, std::vector<std::string>{std::string(kConfirm) + " -> No"});
  }
}

TEST(ControllerImport, AnyNoTransfersNothing) {
  for (std::deque<bool> answers : {std::deque<bool>{false}, std::deque<bool>{true, false}}) {
    ImportSession s("ACME", "ACME SA", "ACME", "OTRA SA");
    s.ui.answers = answers;
    s.c->cbImportar_Click();
    EXPECT_TRUE(s.calls.empty());
    EXPECT_FALSE(has_line(s.ui.log, "INFO: Importación Satisfactoria!!"));
    EXPECT_FALSE(s.c->ended());
  }
}

TEST(ControllerImport, StepsRunTickedInFixedOrderThenGridsAndClosingBox) {
  {
    ImportSession s("ACME", "ACME SA", "ACME", "ACME SA");
    s.ui.default_answer = true;
    s.c->state.ChkOP = {false, false, false, false, false};
    s.c->cbImportar_Click();
    EXPECT_EQ(s.calls, (std::vector<std::string>{"grilla conceptos", "grilla tipos"}));
    EXPECT_EQ(s.ui.log.back(), "INFO: Importación Satisfactoria!!");
    EXPECT_FALSE(s.c->ImportaEmpleados);
  }
  {
    ImportSession s("ACME", "ACME SA", "ACME", "ACME SA");
    s.ui.default_answer = true;
    s.c->state.ChkOP = {false, false, false, false, false};
    s.c->state.ChkOP[4] = true;  // ticked last to first
    s.c->state.ChkOP[2] = true;
    s.c->state.ChkOP[0] = true;
    s.c->state.period.desde = session::Month(2023, 3);
    s.c->state.period.desde_checked = true;
    s.c->state.period.hasta = session::Month(2024, 2);
    s.c->cbImportar_Click();
    EXPECT_EQ(s.calls, (std::vector<std::string>{"paso 0", "paso 2", "liquidaciones [2023-03-01] []",
                                                 "grilla conceptos", "grilla tipos"}));
    EXPECT_TRUE(s.c->ImportaEmpleados);
    EXPECT_EQ(s.ui.log, (std::vector<std::string>{std::string(kConfirm) + " -> Sí",
                                                  "INFO: Importación Satisfactoria!!"}));

    // Steps that are not set are skipped; both bounds go when ticked.
    s.calls.clear();
    s.c->steps[0] = nullptr;
    s.c->state.period.hasta_checked = true;
    s.c->cbImportar_Click();
    EXPECT_EQ(s.calls, (std::vector<std::string>{"paso 2", "liquidaciones [2023-03-01] [2024-02-01]",
                                                 "grilla conceptos", "grilla tipos"}));
  }
}

TEST(ControllerImport, ErrorInAStepIsReportedAndStopsTheRun) {
  ImportSession s("ACME", "ACME SA", "ACME", "ACME SA");
  s.ui.default_answer = true;
  s.c->steps[1] = [&] {
    s.calls.push_back("paso 1");
    s.c->destination->execute("Insert Into Cargos (id_Cargo, Cargo) Values (1, 'Peón')");
    s.c->destination->execute("Insert Into TablaQueNoEsta (a) Values (1)");
  };
  EXPECT_THROW(s.c->cbImportar_Click(), session::SessionAborted);
  EXPECT_EQ(s.calls, (std::vector<std::string>{"paso 0", "paso 1"}));
  EXPECT_TRUE(s.c->ended());
  EXPECT_FALSE(has_line(s.ui.log, "INFO: Importación Satisfactoria!!"));

  const auto file = s.prog / "E001" / "kelimport-errores.txt";
  const std::string report = kel_test::read_file(file);
  EXPECT_NE(report.find("Procedimiento: cbImportar_Click"), std::string::npos) << report;
  EXPECT_NE(report.find("Paso: 2. Cargos, Sectores, Regimenes Horarios y Sucursales"), std::string::npos);
  EXPECT_NE(report.find("    Insert Into TablaQueNoEsta (a) Values (1)"), std::string::npos) << report;
  EXPECT_NE(report.find("TablaQueNoEsta"), report.rfind("TablaQueNoEsta")) << "message names the table";
  EXPECT_NE(report.find("    paso 1. Datos de la Empresa"), std::string::npos) << report;
  EXPECT_NE(report.find("Base de KEL: " + s.company.string()), std::string::npos);
  // The work done before the error stays applied.
  EXPECT_EQ(kel_test::query_text(s.company, "SELECT Cargo FROM Cargos WHERE id_Cargo = 1"), "Peón");
  ASSERT_FALSE(s.ui.log.empty());
  EXPECT_NE(s.ui.log.back().find("AVISO: La importación se detuvo por un error en 2. Cargos"), std::string::npos)
      << s.ui.log.back();
  EXPECT_NE(s.ui.log.back().find(file.string()), std::string::npos);

  // A second error is appended to the same file.
  ImportSession s2("ACME", "ACME SA", "ACME", "ACME SA");
  std::filesystem::copy_file(file, s2.prog / "E001" / "kelimport-errores.txt");
  s2.ui.default_answer = true;
  s2.c->steps[0] = [] { throw std::runtime_error("fallo de prueba"); };
  EXPECT_THROW(s2.c->cbImportar_Click(), session::SessionAborted);
  const std::string both = kel_test::read_file(s2.prog / "E001" / "kelimport-errores.txt");
  EXPECT_EQ(both.rfind(report, 0), 0u);
  EXPECT_NE(both.find("Mensaje: fallo de prueba", report.size()), std::string::npos);
}

TEST(ControllerImport, UnansweredQuestionIsNotAnError) {
  ImportSession s("ACME", "ACME SA", "ACME", "ACME SA");
  EXPECT_THROW(s.c->cbImportar_Click(), session::UnansweredQuestion);
  EXPECT_FALSE(s.c->ended());
  EXPECT_FALSE(std::filesystem::exists(s.prog / "E001" / "kelimport-errores.txt"));
}

}  // namespace
