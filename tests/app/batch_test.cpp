// Tests `kelimport --batch` on a copy of the bundled demo company: the exit
// statuses, the printed lines, and that the staging database and the error
// report land in the program folder the executable runs from.
//
// The executable is copied (or hard-linked) into a temporary program folder
// with the formats and the template, so a run never touches the build tree.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <map>
#include <regex>
#include <sstream>

#include "run_program.h"
#include "support/program_folder.h"
#include "support/sqlite_file.h"

namespace {

namespace fs = std::filesystem;
using BatchResult = testing_app::RunResult;

// Every row of every table of a SQLite file, in a fixed order, each value
// written by quote() (so that 1, 1.0, '1' and Null differ), with the schema:
// two files with the same text hold the same data.
std::string dump(const fs::path& file) {
  using test_support::native_rows;
  if (!fs::exists(file)) return "(no se abre)";
  std::string text;
  for (const std::string& row : native_rows(file, "SELECT name || ': ' || ifnull(sql, '') FROM sqlite_master ORDER BY name"))
    text += row + ";\n";
  for (const std::string& table : native_rows(file, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
    std::string columns;
    for (const std::string& column : native_rows(file, "SELECT name FROM pragma_table_info('" + table + "')"))
      columns += (columns.empty() ? "quote(\"" : " || '|' || quote(\"") + column + "\")";
    for (const std::string& row : native_rows(file, "SELECT " + columns + " FROM \"" + table + "\" ORDER BY rowid"))
      text += table + ":" + row + "\n";
  }
  return text;
}

// (table -> rows) of a SQLite file.
std::map<std::string, long long> counts(const fs::path& file) {
  std::map<std::string, long long> rows;
  for (const std::string& table : test_support::native_rows(file, "SELECT name FROM sqlite_master WHERE type = 'table'"))
    rows[table] = std::stoll(test_support::query_text(file, "SELECT count(*) FROM \"" + table + "\""));
  return rows;
}

// The path after `prefix` on the output line that starts with it ("" when none).
std::string line_after(const std::string& out, const std::string& prefix) {
  const std::size_t at = out.find("\n" + prefix);
  if (at == std::string::npos) return "";
  const std::size_t start = at + 1 + prefix.size();
  return out.substr(start, out.find('\n', start) - start);
}

class BatchRun : public ::testing::Test {
 protected:
  void SetUp() override {
    const fs::path built = fs::path(KEL_EXECUTABLE).parent_path();
    ASSERT_TRUE(fs::exists(built / "demo" / "Empresa" / "Datos.mdb")) << "the build makes the demo";
    test_support::copy_program_folder(built, prog_, true);
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

// A run that transfers nothing is never a success (nor is one whose step
// fails: SafetyCopyIsRestoredOnErrorOrByHand).
TEST_F(BatchRun, NothingTickedIsNotASuccess) {
  // With no group ticked nothing is looked for, so nothing is staged and the
  // run stops before the transfer.
  BatchResult none = run({"--yes", "--groups", "", demo_line()});
  EXPECT_EQ(none.status, 2) << none.out;
  EXPECT_TRUE(none.has("ERROR: La carga de la base auxiliar no cargó nada; no se importa nada\n")) << none.out;
  EXPECT_FALSE(none.has("Importación Satisfactoria!!"));
  EXPECT_FALSE(none.has("TRANSFERIDO:"));
}

TEST_F(BatchRun, ErrorInTheLoadWritesTheReportAndExitsWithTwo) {
  BatchResult first = run({"--no", demo_line()});
  ASSERT_EQ(first.status, 1) << first.out;
  test_support::run_sqlite(prog_ / "Empresa" / "Pasaje.mdb",
                           "CREATE TRIGGER no_borrar BEFORE DELETE ON Personas "
                           "BEGIN SELECT RAISE(ABORT, 'tabla bloqueada'); END;");

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

// An error late in the run (the liquidations' headers are refused): with
// --restore-on-error the KEL file is back as it was; without, the copy is
// named and `kelimport --restore` puts it back after asking.
TEST_F(BatchRun, SafetyCopyIsRestoredOnErrorOrByHand) {
  const fs::path kel = root_ / "demo" / "Empresa" / "Datos.mdb";
  test_support::run_sqlite(kel,
                           "CREATE TRIGGER no_insertar BEFORE INSERT ON Encabezados "
                           "BEGIN SELECT RAISE(ABORT, 'encabezados bloqueados'); END;");
  const std::string before = dump(kel);

  BatchResult restored = run({"--yes", "--restore-on-error", demo_line()});
  EXPECT_EQ(restored.status, 2) << restored.out;
  const std::string copy = line_after(restored.out, "INFO: Copia de seguridad de la base de KEL: ");
  ASSERT_FALSE(copy.empty()) << restored.out;
  EXPECT_EQ(copy.rfind(kel.string() + ".antes-de-importar-", 0), 0u) << copy;
  EXPECT_TRUE(restored.has("INFO: La base de KEL " + kel.string() + " fue devuelta al estado anterior")) << restored.out;
  EXPECT_TRUE(restored.has("\nINFORME: Resultado: detenida por un error: ")) << restored.out;
  EXPECT_EQ(dump(kel), before);
  EXPECT_EQ(dump(copy), before);
  EXPECT_TRUE(fs::exists(copy + ".auxiliar")) << "the staging database is copied with it";

  BatchResult kept = run({"--yes", demo_line()});
  EXPECT_EQ(kept.status, 2) << kept.out;
  const std::string copy2 = line_after(kept.out, "INFO: Copia de seguridad de la base de KEL: ");
  ASSERT_FALSE(copy2.empty());
  EXPECT_NE(copy2, copy) << "a new copy per run, the old one kept";
  EXPECT_TRUE(fs::exists(copy));
  EXPECT_TRUE(kept.has("kelimport --restore \"" + copy2 + "\"")) << kept.out;
  EXPECT_FALSE(kept.has("Importación Satisfactoria!!")) << kept.out;
  EXPECT_NE(dump(kel), before) << "the steps before the error stay applied";

  const std::string program = (prog_ / "kelimport").string();
  const std::vector<std::tuple<std::vector<std::string>, std::string, int, std::string>> cases = {
      {{"--restore", copy2}, "n\n", 1, "INFO: No se cambió nada"},
      {{"--restore", kel.string()}, "", 3, "no tiene el nombre de una copia de seguridad"},
      {{"--restore"}, "", 3, "Falta la copia"},
      {{"--restore", copy2}, "s\n", 0, "de la base auxiliar " + (prog_ / "Empresa" / "Pasaje.mdb").string() + " volvieron"},
      {{"--restore", "--yes", copy}, "", 0, "fue devuelta al estado de la copia"},
  };
  for (const auto& [args, input, status, text] : cases) {
    SCOPED_TRACE(args.back() + " <- " + input);
    const BatchResult r = testing_app::run_kelimport(args, input, root_.path(), program);
    EXPECT_EQ(r.status, status) << r.out;
    EXPECT_TRUE(r.has(text)) << r.out;
    EXPECT_EQ(dump(kel) == before, status == 0);
  }
  // After a restore the next run starts from the state before the first one.
  EXPECT_EQ(run({"--yes", demo_line()}).status, 2) << "the trigger still refuses the headers";
}

// The report's figures are the databases' own: the rows it says were staged
// are the staging tables' rows, and per KEL table the rows inserted minus the
// rows deleted are what the table gained over the run.
TEST_F(BatchRun, ImportReportFiguresMatchTheDatabases) {
  const fs::path kel = root_ / "demo" / "Empresa" / "Datos.mdb";
  const std::map<std::string, long long> kel_before = counts(kel);
  BatchResult r = run({"--yes", demo_line()});
  ASSERT_EQ(r.status, 0) << r.out;
  const std::map<std::string, long long> kel_after = counts(kel);
  const std::map<std::string, long long> staged = counts(prog_ / "Empresa" / "Pasaje.mdb");

  std::map<std::string, long long> reported_staged, gained;
  long long lines_inserted = 0, lines_left_out = 0;
  const std::regex left_out_line(R"(INFORME:   Líneas de liquidación no importadas: (\d+) (.*))");
  bool in_staged = false;
  const std::regex staged_line(R"(INFORME:   (\w+): (\d+))");
  const std::regex change_line(R"(INFORME:   (\w+): (\d+) (insertadas|actualizadas|borradas))");
  std::istringstream in(r.out);
  for (std::string line; std::getline(in, line);) {
    std::smatch m;
    if (line == "INFORME: Filas en la base auxiliar:") in_staged = true;
    else if (line.rfind("INFORME: Paso ", 0) == 0) in_staged = false;
    if (in_staged && std::regex_match(line, m, staged_line)) reported_staged[m[1]] = std::stoll(m[2]);
    if (!in_staged && std::regex_match(line, m, change_line)) {
      const long long rows = std::stoll(m[2]);
      if (m[3] == "insertadas") gained[m[1]] += rows;
      if (m[3] == "insertadas" && m[1] == "Datos_Liquidacion") lines_inserted += rows;
      if (m[3] == "borradas") gained[m[1]] -= rows;
    }
    // Lines outside the month range are gone from the staging database.
    if (std::regex_match(line, m, left_out_line) && m[2] != "fuera del rango de meses")
      lines_left_out += std::stoll(m[1]);
  }
  ASSERT_FALSE(reported_staged.empty()) << r.out;
  for (const auto& [table, rows] : staged) {
    if (rows > 0) {
      EXPECT_EQ(reported_staged[table], rows) << table;
    }
  }
  ASSERT_GE(gained.size(), 5u) << r.out;
  for (const auto& [table, rows] : gained) {
    // The steps also write the staging database's mapping tables; only the
    // KEL tables are compared.
    if (!kel_before.count(table) && !kel_after.count(table)) continue;
    const long long before = kel_before.count(table) ? kel_before.at(table) : 0;
    const long long after = kel_after.count(table) ? kel_after.at(table) : 0;
    EXPECT_EQ(after - before, rows) << table;
  }
  EXPECT_GT(gained["Datos_Liquidacion"], 1000);
  // Every staged liquidation line arrived or is told as left out.
  EXPECT_EQ(lines_inserted + lines_left_out, staged.at("Datos_Liquidacion")) << r.out;
  // The same lines went to the report file, beside the staging database.
  const std::string file = line_after(r.out, "INFORME: escrito en ");
  EXPECT_EQ(fs::path(file).parent_path(), prog_ / "Empresa");
  EXPECT_NE(TempDir::read(file).find("Resultado: importación terminada\r\n"), std::string::npos);
}

// Another program holds a write transaction on the KEL file: the run waits
// for it up to the busy timeout, then stops with a message that names the
// file, and nothing changed.
TEST_F(BatchRun, LockedKelFileStopsTheRunWithNothingChanged) {
  const fs::path kel = root_ / "demo" / "Empresa" / "Datos.mdb";
  const std::string before = dump(kel);
  sqlite3* holder = nullptr;
  ASSERT_EQ(sqlite3_open(kel.c_str(), &holder), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(holder, "BEGIN IMMEDIATE; UPDATE Empresa SET Nombre = Nombre;", nullptr, nullptr, nullptr),
            SQLITE_OK);
  BatchResult locked = run({"--yes", "--groups", "1", demo_line()});
  sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(holder);
  EXPECT_EQ(locked.status, 1) << locked.out;
  EXPECT_TRUE(locked.has("AVISO: No se importa nada: La base " + kel.string() +
                         " está bloqueada por otro programa (se esperó 15 segundos)")) << locked.out;
  EXPECT_FALSE(locked.has("Copia de seguridad de la base de KEL:")) << locked.out;
  EXPECT_FALSE(locked.has("TRANSFERIDO:")) << locked.out;
  EXPECT_EQ(dump(kel), before);
}

}  // namespace
