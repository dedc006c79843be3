// Tests the company check and the import run: the questions' paths, the
// steps' order and gating, the month texts of the liquidations step, and an
// error inside a step.
#include "controller_fixture.h"

#include <ctime>

#include "session/safety_copy.h"
#include "session/valido_sql.h"

namespace {

namespace fs = std::filesystem;
using kel_test::has_line;
using Log = std::vector<std::string>;

const std::string kConfirm = "PREGUNTA: Confirma importar los datos de la empresa";
const std::string kDone = "INFO: Importación Satisfactoria!!";

// A transfer that records the steps it is asked to run instead of running
// them; `on_step` lets a test act inside a step.
struct RecordingSteps final : transfer::StepRunner {
  Log* calls = nullptr;
  std::vector<std::string> staging_paths;
  std::function<void(int)> on_step;
  std::vector<bool> persons_imported;  // what each step was told about group 2
  transfer::StepReport run_step(int group, transfer::StepContext& ctx, const transfer::RunInputs& in) override {
    persons_imported.push_back(in.persons_imported);
    calls->push_back(group == 4 ? "liquidaciones [" + in.desde + "] [" + in.hasta + "]"
                                : "paso " + std::to_string(group));
    staging_paths.push_back(ctx.staging_path);
    if (on_step) on_step(group);
    transfer::StepReport report;
    report.step = transfer::group_caption(group);
    return report;
  }
};

// A started controller on a KEL company and a source database, with the
// transfer replaced by a recorder; step 0 also stages a liquidation type,
// which the type grid shows once the run refreshed it.
struct ImportSession : kel_test::Session {
  std::filesystem::path source_db = tmp / "fuente.db";
  RecordingSteps steps;
  std::unique_ptr<session::MainWindowController> c;
  Log calls;

  ImportSession(const std::string& kel_name = "ACME", const std::string& kel_rs = "ACME SA",
                const std::string& src_name = "ACME", const std::string& src_rs = "ACME SA")
      : Session(kel_name, kel_rs) {
    kel_test::make_source_company(source_db, src_name, src_rs);
    steps.calls = &calls;
    c = std::make_unique<session::MainWindowController>(prog, ui, steps, preview, mapping);
    c->Form_Load(company.string());
    db::open_database(source_db.string(), c->source);
    steps.on_step = [this](int group) {
      if (group != 0) return;
      c->staging->execute("Delete * From TiposLiquidacion Where id_TipoLiq=9");
      c->staging->execute("Insert Into TiposLiquidacion (id_TipoLiq, Nombre) Values (9, ' Extra ')");
    };
  }
  std::string report() const { return TempDir::read(prog / "E001" / "kelimport-errores.txt"); }
};

std::string question(const std::string& what, const std::string& kel, const std::string& src,
                     bool yes) {
  return "PREGUNTA: La empresa de KEL tiene " + what + ": '" + kel +
         "'\r\ny la empresa a importar tiene " + what + ": '" + src +
         "'\r\n¿Desea continuar de todas formas?" + (yes ? " -> Sí" : " -> No");
}

TEST(ControllerValido, QuestionPaths) {
  enum Source { kOpen, kNone, kBroken };
  struct Row {
    std::string kel_name, kel_rs, src_name, src_rs;
    Source source;
    std::deque<bool> answers;
    bool result;
    Log log;
  };
  const std::vector<Row> rows = {
      // Equal names (case and blanks aside), different legal names: the
      // legal-name question, then the confirmation.
      {"  Acme ", "ACME SA", "acme", "ACME SRL", kOpen, {true, true}, true,
       {question("RS", "ACME SA", "ACME SRL", true), kConfirm + " -> Sí"}},
      // Different names and a Yes: the legal names are not compared.
      {"ACME", "ACME SA", "OTRA", "OTRA SRL", kOpen, {true, true}, true,
       {question("Nombre", "ACME", "OTRA", true), kConfirm + " -> Sí"}},
      // Everything equal: only the confirmation, and its No is the result.
      {"ACME", "ACME SA", "ACME", "ACME SA", kOpen, {false}, false, {kConfirm + " -> No"}},
      // A source whose query fails counts as an empty name as well.
      {"", "", "ACME", "ACME SA", kBroken, {false}, false, {kConfirm + " -> No"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.kel_name + "/" + row.src_name + "/" + std::to_string(row.source));
    ImportSession s(row.kel_name, row.kel_rs, row.src_name, row.src_rs);
    if (row.source == kNone) s.c->source.reset();
    if (row.source == kBroken) kel_test::run_sqlite(s.source_db, "DROP TABLE Empresa;");
    EXPECT_TRUE(s.c->Valido(false));  // not shown: no question at all
    EXPECT_TRUE(s.ui.log.empty());
    s.ui.answers = row.answers;
    EXPECT_EQ(s.c->Valido(true), row.result);
    EXPECT_EQ(s.ui.log, row.log);
  }
}

// The source's statements run untranslated on its own connection (an ODBC
// data source, in its own dialect): a SQLite source takes them as written.
TEST(ControllerValido, SourceStatementsAreTheSourcesOwnSql) {
  kel_test::TempFolder tmp;
  kel_test::make_source_company(tmp / "src.db", "Demo S.A.", "Demo Sociedad Anonima");
  EXPECT_EQ(test_support::native_rows(tmp / "src.db", session::sql::source_company_name()), Log{"DEMO S.A."});
  EXPECT_EQ(test_support::native_rows(tmp / "src.db", session::sql::source_legal_name()), Log{"DEMO SOCIEDAD ANONIMA"});
}

// Without a source connection the company staged from the folder is the one
// compared: the right company is only confirmed, another one or none asked about.
TEST(ControllerValido, WithoutASourceConnectionTheStagedCompanyIsCompared) {
  struct Row {
    const char* staged_sql;  // what the staging database's Empresa holds
    std::deque<bool> answers;
    Log log;
  };
  const std::vector<Row> rows = {
      {"INSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial) VALUES (1, ' acme ', 'Acme SA');",
       {true}, {kConfirm + " -> Sí"}},
      {"INSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial) VALUES (1, 'Acme', 'Otra SRL');",
       {true, true}, {question("RS", "ACME SA", "OTRA SRL", true), kConfirm + " -> Sí"}},
      {"INSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial) VALUES (1, 'Otra', 'Otra SRL');",
       {false}, {question("Nombre", "ACME", "OTRA", false)}},
      {"", {false}, {question("Nombre", "ACME", "", false)}},  // nothing staged
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.staged_sql);
    ImportSession s;
    s.c->source.reset();
    kel_test::run_sqlite(s.staging_db, std::string("DELETE FROM Empresa;") + row.staged_sql);
    s.ui.answers = row.answers;
    EXPECT_EQ(s.c->Valido(true), row.log.back().ends_with("Sí"));
    EXPECT_EQ(s.ui.log, row.log);
  }
}

TEST(ControllerImport, AnyNoTransfersNothingAndNoAnswerIsNotAnError) {
  for (std::deque<bool> answers : {std::deque<bool>{false}, std::deque<bool>{true, false}}) {
    ImportSession s("ACME", "ACME SA", "ACME", "OTRA SA");
    s.ui.answers = answers;
    const session::ImportResult result = s.c->cbImportar_Click();
    EXPECT_FALSE(result.confirmed);
    EXPECT_FALSE(result.finished);
    EXPECT_TRUE(s.calls.empty());
    EXPECT_FALSE(has_line(s.ui.log, kDone));
    EXPECT_FALSE(s.c->ended());
  }
  ImportSession s;
  EXPECT_THROW(s.c->cbImportar_Click(), session::UnansweredQuestion);
  EXPECT_FALSE(s.c->ended());
  EXPECT_FALSE(std::filesystem::exists(s.prog / "E001" / "kelimport-errores.txt"));
}

TEST(ControllerImport, StepsRunTickedInFixedOrderThenGridsAndClosingBox) {
  ImportSession s;
  s.ui.default_answer = true;
  s.c->state.ChkOP = {false, false, false, false, false};
  session::ImportResult result = s.c->cbImportar_Click();
  EXPECT_TRUE(result.finished);
  EXPECT_TRUE(result.steps.empty());
  EXPECT_EQ(s.calls, Log{});
  EXPECT_TRUE(result.safety_copy.empty());  // nothing ticked: no copy either
  for (const auto& entry : fs::directory_iterator(s.company.parent_path()))
    EXPECT_EQ(entry.path().filename().string().find(".antes-de-importar-"), std::string::npos);
  EXPECT_EQ(s.c->mapping().GridRelacTL.row_texts(), Log{});
  EXPECT_EQ(s.ui.log.back(), kDone);

  s.calls.clear();
  s.ui.log.clear();
  s.c->state.ChkOP = {true, false, true, false, true};
  s.c->state.period.desde = session::Month(2023, 3);
  s.c->state.period.desde_checked = true;
  s.c->state.period.hasta = session::Month(2024, 2);
  result = s.c->cbImportar_Click();
  EXPECT_EQ(s.calls, (Log{"paso 0", "paso 2", "liquidaciones [2023-03-01] []"}));
  ASSERT_EQ(result.steps.size(), 3u);
  EXPECT_EQ(result.steps[1].group, 2);
  EXPECT_EQ(result.steps[2].report.step, "Liquidaciones");
  EXPECT_TRUE(result.finished);
  EXPECT_EQ(s.c->mapping().GridRelacTL.row_texts(), Log{"'9'|'Extra'|''|'"});
  // Every step of a run that ticks the persons is told so.
  EXPECT_EQ(s.steps.persons_imported, (std::vector<bool>{true, true, true}));
  ASSERT_EQ(s.ui.log.size(), 3u);
  EXPECT_EQ(s.ui.log[0], kConfirm + " -> Sí");
  EXPECT_EQ(s.ui.log[1], "INFO: Copia de seguridad de la base de KEL: " + result.safety_copy.string());
  EXPECT_EQ(s.ui.log[2], kDone);

  // Both bounds go when ticked.
  s.calls.clear();
  s.c->state.ChkOP = {false, false, false, false, true};
  s.c->state.period.hasta_checked = true;
  s.c->cbImportar_Click();
  EXPECT_EQ(s.calls, (Log{"liquidaciones [2023-03-01] [2024-02-01]"}));
}

TEST(ControllerImport, ErrorInAStepIsReportedAndStopsTheRun) {
  ImportSession s;
  s.ui.default_answer = true;
  s.c->restore_on_error = false;  // the file stays as the error left it
  s.steps.on_step = [&](int group) {
    if (group != 1) return;
    s.c->destination->execute("Insert Into Cargos (id_Cargo, Cargo) Values (1, 'Peón')");
    s.c->destination->execute("Insert Into TablaQueNoEsta (a) Values (1)");
  };
  EXPECT_THROW(s.c->cbImportar_Click(), session::SessionAborted);
  EXPECT_EQ(s.calls, (Log{"paso 0", "paso 1"}));
  EXPECT_TRUE(s.c->ended());
  EXPECT_FALSE(has_line(s.ui.log, kDone));

  const std::string report = s.report();
  for (const std::string& part :
       Log{"Procedimiento: cbImportar_Click", "Paso: 2. Cargos, Sectores, Regimenes Horarios y Sucursales",
           "    Insert Into TablaQueNoEsta (a) Values (1)", "    paso 1. Datos de la Empresa",
           "Base de KEL: " + s.company.string()})
    EXPECT_NE(report.find(part), std::string::npos) << part << "\n" << report;
  EXPECT_NE(report.find("TablaQueNoEsta"), report.rfind("TablaQueNoEsta")) << "message names the table";
  // The work done before the error stays applied.
  EXPECT_EQ(kel_test::query_text(s.company, "SELECT Cargo FROM Cargos WHERE id_Cargo = 1"), "Peón");
  ASSERT_GE(s.ui.log.size(), 2u);
  const std::string& warning = s.ui.log[s.ui.log.size() - 2];
  EXPECT_NE(warning.find("AVISO: La importación se detuvo por un error en 2. Cargos"), std::string::npos) << warning;
  EXPECT_NE(warning.find((s.prog / "E001" / "kelimport-errores.txt").string()), std::string::npos);
  EXPECT_EQ(s.ui.log.back().rfind("INFO: La base de KEL quedó como la dejó el error. Para devolverla al estado "
                                  "anterior a la importación: kelimport --restore \"", 0), 0u) << s.ui.log.back();

  // A second error is appended to the same file.
  ImportSession s2;
  kel_test::write_file(s2.prog / "E001" / "kelimport-errores.txt", report);
  s2.ui.default_answer = true;
  s2.steps.on_step = [](int) { throw std::runtime_error("fallo de prueba"); };
  EXPECT_THROW(s2.c->cbImportar_Click(), session::SessionAborted);
  EXPECT_EQ(s2.report().rfind(report, 0), 0u);
  EXPECT_NE(s2.report().find("Mensaje: fallo de prueba", report.size()), std::string::npos);
}

// The copies' names: the minute, then the seconds, then a counter; the name
// says which company file a copy belongs to.
TEST(SafetyCopy, NamesAreFreeAndSayTheirCompany) {
  kel_test::TempFolder tmp;
  const fs::path company = tmp / "Datos.mdb";
  std::tm t{};
  t.tm_year = 2026 - 1900, t.tm_mon = 10, t.tm_mday = 22, t.tm_hour = 15, t.tm_min = 30, t.tm_sec = 7;
  t.tm_isdst = -1;
  const std::time_t now = std::mktime(&t);
  const std::string base = company.string() + ".antes-de-importar-2026-11-22-1530";
  const std::vector<std::string> expected = {base, base + "07", base + "07-2", base + "07-3"};
  for (const std::string& name : expected) {
    EXPECT_EQ(session::SafetyCopyPath(company, now).string(), name);
    EXPECT_EQ(session::CompanyFileOfCopy(name), company);
    kel_test::write_file(name, "x");
  }
  for (const std::string bad : {"Datos.mdb", "Datos.mdb.antes-de-importar-", "Datos.mdb.antes-de-importar-ayer",
                                "Datos.mdb.antes-de-importar-2026-11-22-1530.auxiliar",
                                "Datos.mdb.antes-de-importar-2026-11-22-1530.parcial",
                                "Datos.mdb.antes-de-importar-2026-11-22-153007-"})
    EXPECT_TRUE(session::CompanyFileOfCopy(tmp / bad).empty()) << bad;
}

// The copy is made before the first step (none when no group is ticked:
// StepsRunTickedInFixedOrderThenGridsAndClosingBox); a copy that cannot be
// made stops the run before anything changes.
TEST(SafetyCopy, TakenBeforeTheFirstStepOrTheRunDoesNotStart) {
  {
    ImportSession s;
    s.ui.default_answer = true;
    s.c->state.ChkOP = {true, false, false, false, false};
    const session::ImportResult result = s.c->cbImportar_Click();
    ASSERT_FALSE(result.safety_copy.empty());
    EXPECT_EQ(result.safety_copy.parent_path(), s.company.parent_path());
    EXPECT_EQ(session::CompanyFileOfCopy(result.safety_copy), s.company);
    EXPECT_EQ(kel_test::query_text(result.safety_copy, "SELECT Nombre FROM Empresa"), "ACME");
    EXPECT_TRUE(result.finished);
    // The report was written beside the staging database.
    ASSERT_FALSE(s.c->last_import_report_file.empty());
    const std::string report = TempDir::read(s.c->last_import_report_file);
    EXPECT_EQ(s.c->last_import_report_file.parent_path(), s.prog / "E001");
    EXPECT_NE(report.find("Copia de seguridad: " + result.safety_copy.string()), std::string::npos) << report;
    EXPECT_NE(report.find("Resultado: importación terminada"), std::string::npos) << report;
  }
  {
    // The company file is gone from its folder (the connection still holds
    // it open): no copy can be read, so nothing runs.
    ImportSession s;
    s.ui.default_answer = true;
    fs::remove(s.company);
    const session::ImportResult result = s.c->cbImportar_Click();
    EXPECT_TRUE(s.calls.empty());
    EXPECT_FALSE(result.finished);
    EXPECT_TRUE(result.safety_copy.empty());
    EXPECT_FALSE(s.c->ended());
    ASSERT_FALSE(s.ui.log.empty());
    EXPECT_EQ(s.ui.log.back().rfind("AVISO: No se importa nada: ", 0), 0u) << s.ui.log.back();
    EXPECT_NE(s.ui.log.back().find(s.company.string()), std::string::npos);
  }
}

// An error after the copy: the window asks whether the KEL file goes back to
// the copy. (The batch's own choice, --restore-on-error or not, is
// BatchRun.SafetyCopyIsRestoredOnErrorOrByHand.)
TEST(SafetyCopy, ErrorOffersTheRestore) {
  for (const bool restore : {true, false}) {
    SCOPED_TRACE(restore ? "restored" : "kept");
    ImportSession s;
    s.ui.answers = {true, restore};  // the confirmation, then the restore question
    s.steps.on_step = [&](int group) {
      if (group != 1) return;
      s.c->destination->execute("Insert Into Cargos (id_Cargo, Cargo) Values (1, 'Peón')");
      s.c->destination->execute("Update Empresa Set Nombre = 'OTRA'");
      throw std::runtime_error("fallo de prueba");
    };
    EXPECT_THROW(s.c->cbImportar_Click(), session::SessionAborted);
    EXPECT_TRUE(kel_test::has_line(s.ui.log, std::string("PREGUNTA: ") + session::kRestoreQuestion +
                                                 (restore ? " -> Sí" : " -> No")));
    EXPECT_EQ(kel_test::query_text(s.company, "SELECT count(*) FROM Cargos"), restore ? "0" : "1");
    EXPECT_EQ(kel_test::query_text(s.company, "SELECT Nombre FROM Empresa"), restore ? "ACME" : "OTRA");
    EXPECT_EQ(s.ui.log.back().rfind(restore ? "INFO: La base de KEL " : "PREGUNTA", 0), 0u) << s.ui.log.back();
    const std::string report = TempDir::read(s.c->last_import_report_file);
    EXPECT_NE(report.find("Resultado: detenida por un error: "), std::string::npos) << report;
    EXPECT_EQ(report.find("devuelta desde la copia") != std::string::npos, restore) << report;
  }
}

// The program's own steps through the controller, with a company folder
// whose name holds a single quote: the staging path goes into the `in`
// clauses with its quote doubled, and the staged rows arrive.
TEST(ControllerImport, RealStepsReadAStagingFolderWithAQuote) {
  kel_test::Session s("OBRIEN", "OBRIEN SA", fs::path("O'Brien") / "Empresa.mdb");
  s.ui.default_answer = true;
  auto c = s.start();
  ASSERT_EQ(c->staging_folder(), s.prog / "O'Brien");
  kel_test::run_sqlite(s.staging_db,
                       "INSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial) VALUES (9, 'O''Brien', 'O''Brien SA');"
                       "INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES (5, '', 'BPS-1', 3);"
                       "INSERT INTO Cargos (id_Cargo, Cargo) VALUES (4, 'Capataz');"
                       "INSERT INTO Personas (id_Persona, NUMERO, Apellido_1) VALUES (3, '1.234.567-8', 'Ruiz');"
                       "INSERT INTO Contrato (Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, HORAS, FECHA_INICIO, AcuLab) "
                       "VALUES (1, '3', 3, 8, '2024-01-01', 0);");
  c->state.ChkOP = {true, true, true, false, false};

  const session::ImportResult result = c->cbImportar_Click();

  ASSERT_TRUE(result.finished);
  ASSERT_EQ(result.steps.size(), 3u);
  EXPECT_EQ(s.ui.log.back(), "INFO: Importación Satisfactoria!!");
  const auto kel = [&](const std::string& sql) { return kel_test::query_text(s.company, sql); };
  EXPECT_EQ(kel("SELECT IdEmpresa || ':' || Nombre FROM Empresa"), "1:O'Brien");
  EXPECT_EQ(kel("SELECT group_concat(id_planilla || ':' || Numero, ',') FROM "
                "(SELECT * FROM Planillas ORDER BY id_planilla)"),
            "0:-,5:BPS-1");
  EXPECT_EQ(kel("SELECT Cargo FROM Cargos WHERE id_Cargo = 4"), "Capataz");
  EXPECT_EQ(kel("SELECT id_Persona || ':' || NUMERO FROM Personas"), "3:1.234.568");
  EXPECT_EQ(kel("SELECT Id_Contrato || ':' || NUMERO_ALTERNATIVO FROM Contrato"), "1:3");
  EXPECT_EQ(kel("SELECT idContrato || ':' || idPlanilla FROM rPlanillas"), "1:5");
  // The company file keeps its own journal mode; the staging database is ours.
  EXPECT_EQ(kel("PRAGMA journal_mode"), "delete");
  EXPECT_EQ(kel_test::query_text(s.staging_db, "PRAGMA journal_mode"), "wal");
  // What the run reports: the company's rows, counted.
  const transfer::StepReport& empresa = result.steps[0].report;
  EXPECT_EQ(empresa.total("insertadas"), 3);  // the company, the registration 0 and the staged one
  EXPECT_EQ(result.steps[2].report.total("insertadas"), 4);  // person, contract, registration, file entry
}

}  // namespace
