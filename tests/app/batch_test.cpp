// Tests `kelimport --batch` on a copy of the bundled demo company: the exit
// statuses, the printed lines, and that the staging database and the error
// report land in the program folder the executable runs from.
//
// The executable is copied (or hard-linked) into a temporary program folder
// with the formats and the template, so a run never touches the build tree.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "run_program.h"

namespace {

namespace fs = std::filesystem;
using BatchResult = testing_app::RunResult;

class BatchRun : public ::testing::Test {
 protected:
  void SetUp() override {
    const fs::path built = fs::path(KEL_EXECUTABLE).parent_path();
    ASSERT_TRUE(fs::exists(built / "demo" / "Empresa" / "Datos.mdb")) << "the build makes the demo";
    fs::create_directories(prog_);
    for (const fs::directory_entry& e : fs::directory_iterator(built)) {
      const std::string name = e.path().filename().string();
      std::error_code ec;
      if (!e.is_directory()) {
        if (name == "kelimport") fs::create_hard_link(e.path(), prog_ / name, ec);
        if (name != "kelimport" || ec) fs::copy_file(e.path(), prog_ / name);
      } else if (name == "Generica" || (name != "demo" && !fs::exists(e.path() / "Pasaje.mdb"))) {
        fs::copy(e.path(), prog_ / name, fs::copy_options::recursive);
      }
    }
    fs::copy(built / "demo", root_ / "demo", fs::copy_options::recursive);
  }

  std::string demo_line(int format = 1) const {
    return (root_ / "demo" / "Empresa" / "Datos.mdb").string() + "*" +
           (root_ / "demo" / (format == 0 ? "Origen_CSV" : "Origen_BD")).string() + "*" +
           std::to_string(format);
  }
  BatchResult run(std::vector<std::string> args) const {
    args.insert(args.begin(), "--batch");
    return testing_app::run_kelimport(args, "", root_.path(), (prog_ / "kelimport").string());
  }

  TempDir root_;
  fs::path prog_ = root_ / "prog";
};

TEST_F(BatchRun, BadArgumentsExitWithThreeAndTheUsage) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{}, "ERROR: Falta la línea de comandos"},
      {{"--yes", "--no", "x"}, "ERROR: --yes y --no no pueden usarse juntas"},
      {{"--groups", "1,7", "x"}, "ERROR: Lista de grupos incorrecta: '1,7'"},
      {{"--from", "13/2020", "x"}, "ERROR: Mes incorrecto para --from: '13/2020'"},
      {{"--from=03/2024", "--to", "02/2024", "x"}, "ERROR: El mes de --from es posterior al de --to"},
      {{"--verbose", "x"}, "ERROR: Opción desconocida: --verbose"},
      {{"a*b*0", "c"}, "ERROR: Sobra el argumento: c"},
  };
  for (const auto& [args, expected] : cases) {
    BatchResult r = run(args);
    EXPECT_EQ(r.status, 3) << expected;
    EXPECT_EQ(r.out.rfind(expected, 0), 0u) << r.out;
    EXPECT_NE(r.err.find("Uso: kelimport --batch"), std::string::npos) << expected;
  }
  BatchResult help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out.rfind("Uso: kelimport --batch", 0), 0u);

  // A destination that is not there: the window's warning, then the end.
  const std::string absent = (root_ / "no" / "Datos.mdb").string();
  BatchResult missing = run({"--yes", absent});
  EXPECT_EQ(missing.status, 3);
  EXPECT_EQ(missing.out, "AVISO: Ruta de Base de Datos Inexistente\nERROR: No hay una base de KEL abierta (" + absent +
                             "); no se importa nada\n");
  // In the three-field form a missing destination asks for one (no dialog in
  // batch mode: none is chosen).
  BatchResult missing3 = run({"--yes", absent + "*" + root_.path().string() + "*0"});
  EXPECT_EQ(missing3.status, 3);
  EXPECT_EQ(missing3.out, "ERROR: No hay una base de KEL abierta (" + absent + "); no se importa nada\n");
}

TEST_F(BatchRun, AnswersDecideTheExitStatus) {
  BatchResult no = run({"--no", demo_line()});
  EXPECT_EQ(no.status, 1) << no.out;
  // The staged company is the KEL company: only the confirmation is asked.
  EXPECT_TRUE(no.has("PREGUNTA: Confirma importar los datos de la empresa -> No\n")) << no.out;
  EXPECT_FALSE(no.has("La empresa de KEL tiene")) << no.out;
  EXPECT_FALSE(no.has("INFO:"));
  // Before the questions (and before any import created mappings), one line
  // per staged concept and type says what becomes of it.
  std::size_t relations = 0;
  for (std::size_t at = no.out.find("\nRELACION: "); at != std::string::npos; at = no.out.find("\nRELACION: ", at + 1))
    ++relations;
  EXPECT_EQ(relations, 52u + 8u) << no.out;
  EXPECT_TRUE(no.has("\nRELACION: concepto 11 (011->Sueldo anual complementario) -> KEL 13 (Aguinaldo)\n"));
  EXPECT_TRUE(no.has("\nRELACION: concepto 1 (001->Sueldo básico) -> se crea en KEL\n"));
  EXPECT_TRUE(no.has("\nRELACION: tipo 8 (Retroactivo convenio) -> se crea en KEL\n"));
  EXPECT_LT(no.out.find("RELACION: "), no.out.find("PREGUNTA: "));

  BatchResult yes = run({"--yes", "--from", "01/2024", demo_line(0)});
  EXPECT_EQ(yes.status, 0) << yes.out;
  EXPECT_TRUE(yes.has("\nCARGA: Personas: 50 filas\n")) << yes.out;
  EXPECT_TRUE(yes.has(" rechazadas, ")) << yes.out;
  EXPECT_FALSE(yes.has(" 0 filas leídas de archivos")) << yes.out;  // the CSV form reads files
  // The staged company is the KEL company: only the confirmation is asked.
  EXPECT_FALSE(yes.has("La empresa de KEL tiene")) << yes.out;
  EXPECT_TRUE(yes.has("PREGUNTA: Confirma importar los datos de la empresa -> Sí\n"));
  // The closing box, then what each step transferred.
  EXPECT_TRUE(yes.has("\nINFO: Importación Satisfactoria!!\nTRANSFERIDO: 1. Datos de la Empresa: 5 instrucciones\n"))
      << yes.out;
  EXPECT_TRUE(yes.has("\nTRANSFERIDO: 3. Empleados, Contratos y Deducciones: Personas: 40 insertadas\n")) << yes.out;
  EXPECT_TRUE(yes.has("\nTRANSFERIDO: 5. Liquidaciones: Encabezados: ")) << yes.out;
  EXPECT_EQ(yes.err, "");  // not a terminal: no progress
  EXPECT_TRUE(fs::exists(prog_ / "Empresa" / "Pasaje.mdb"));

  BatchResult unanswered = run({demo_line()});
  EXPECT_EQ(unanswered.status, 3);
  EXPECT_TRUE(unanswered.has("-> (sin respuesta)\nERROR: Hay una pregunta y no se indicó la respuesta (--yes o --no)\n"))
      << unanswered.out;

  // Only group 1: the other groups' sources are not looked for, so only the
  // company's tables are staged.
  BatchResult only_company = run({"--yes", "--groups", "1", demo_line()});
  EXPECT_EQ(only_company.status, 0);
  EXPECT_TRUE(only_company.has("CARGA: Empresa: 1 fila\n")) << only_company.out;
  EXPECT_FALSE(only_company.has("CARGA: Personas:"));
}

// A run that transfers nothing, or whose step fails, is never a success.
TEST_F(BatchRun, NothingTickedOrAFailingStepIsNotASuccess) {
  const std::string success = "Importación Satisfactoria!!";
  // With no group ticked nothing is looked for, so nothing is staged and the
  // run stops before the transfer.
  BatchResult none = run({"--yes", "--groups", "", demo_line()});
  EXPECT_EQ(none.status, 2) << none.out;
  EXPECT_TRUE(none.has("ERROR: La carga de la base auxiliar no cargó nada; no se importa nada\n")) << none.out;
  EXPECT_FALSE(none.has(success));
  EXPECT_FALSE(none.has("TRANSFERIDO:"));

  // The KEL company refuses to lose its company row: the first step stops.
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open((root_ / "demo" / "Empresa" / "Datos.mdb").c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db,
                         "CREATE TRIGGER no_borrar BEFORE DELETE ON Empresa "
                         "BEGIN SELECT RAISE(ABORT, 'empresa bloqueada'); END;",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(db);
  BatchResult failed = run({"--yes", "--groups", "1,2", demo_line()});
  EXPECT_EQ(failed.status, 2) << failed.out;
  EXPECT_TRUE(failed.has("AVISO: La importación se detuvo por un error en 1. Datos de la Empresa")) << failed.out;
  EXPECT_FALSE(failed.has(success));
  EXPECT_FALSE(failed.has("TRANSFERIDO:"));
}

TEST_F(BatchRun, ErrorInTheLoadWritesTheReportAndExitsWithTwo) {
  BatchResult first = run({"--no", demo_line()});
  ASSERT_EQ(first.status, 1) << first.out;
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open((prog_ / "Empresa" / "Pasaje.mdb").c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db,
                         "CREATE TRIGGER no_borrar BEFORE DELETE ON Personas "
                         "BEGIN SELECT RAISE(ABORT, 'tabla bloqueada'); END;",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(db);

  BatchResult failed = run({"--yes", demo_line()});
  EXPECT_EQ(failed.status, 2) << failed.out;
  const fs::path report = prog_ / "Empresa" / "kelimport-errores.txt";
  EXPECT_TRUE(failed.has("AVISO: La importación se detuvo por un error en carga de la base auxiliar"));
  EXPECT_TRUE(failed.has("ERROR: ")) << failed.out;
  EXPECT_TRUE(failed.has("(detalle en " + report.string() + ")\n")) << failed.out;
  EXPECT_FALSE(failed.has("PREGUNTA:"));
  const std::string text = TempDir::read(report);
  EXPECT_NE(text.find("Procedimiento: cbActualizar_Click"), std::string::npos) << text;
  EXPECT_NE(text.find("Delete * From Personas"), std::string::npos) << text;
  EXPECT_NE(text.find("tabla bloqueada"), std::string::npos) << text;
}

}  // namespace
