// tests/concepts_liquidations/liquidaciones_test.cpp — the liquidations step
// on a small company whose right answer was worked out by hand: month range,
// headers and their existence test, lines, calendar, leave and totals.
#include "db/error.h"
#include "settings/data_layout.h"
#include "staging/interchange_table.h"
#include "transfer/transfer_fixture.h"
#include "transfer/liquidaciones.h"

namespace transfer_test {
namespace {

// Two staged persons with one open contract each. Headers: 1 and 2 monthly,
// 3 a month before its contract started, 4 a leave liquidation, 5 to 7 the
// year-end bonus (not per employee, not salary) of two remuneration types, 8
// after the Hasta month. Concepts: 1 -> KEL 17 (BPS code 1), 2 "No
// Importar", 3 unmapped, 4 -> 20 (leave, days paid), 5 -> 3 (worked days),
// 6 -> 5 (contribution).
const char* const kStaged = R"SQL(
INSERT INTO Personas (id_Persona, NUMERO) VALUES (1, '11-1'), (2, '222');
INSERT INTO Contrato (Id_Contrato, Id_Persona, FECHA_INICIO, FECHA_FIN, vigente, AcuLab, id_TipoRem) VALUES
  (1, 1, '2023-01-01', NULL, -1, 0, 1), (2, 2, '2023-06-01', NULL, -1, 0, 2);
INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Impreso, Terminado, id_Contrato, id_Usuario)
  VALUES (1, 1, '2023-01-31', '2023-01-01', 0, -1, 1, 1), (2, 1, '2023-02-28', '2023-02-01', 0, -1, 1, 1),
         (3, 1, '2022-12-31', '2022-12-01', 0, -1, 1, 1), (4, 2, '2023-02-15', '2023-02-01', 0, -1, 1, 1),
         (5, 3, '2023-06-20', '2023-06-01', 0, -1, 1, 1), (6, 3, '2023-07-20', '2023-07-01', 0, -1, 2, 1),
         (7, 3, '2023-12-20', '2023-12-01', 0, -1, 1, 1), (8, 1, '2024-03-31', '2024-03-01', 0, -1, 2, 1);
INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa, Monto,
                               Relacion, DTE, DTP) VALUES
  (1, 1, 1, 30, 0, 0, 0, 1000, 0, 0, 0), (2, 1, 5, 22, 0, 0, 0, 0, 0, 0, 0), (3, 2, 1, 30, 0, 0, 0, 1100, 0, 0, 0),
  (4, 2, 2, 1, 0, 0, 0, 50, 0, 0, 0), (5, 2, 3, 1, 0, 0, 0, 60, 0, 0, 0), (6, 2, 6, 15, 0, 0, 0, 165, 0, 0, 0),
  (7, 3, 1, 30, 0, 0, 0, 900, 0, 0, 0), (8, 4, 4, 5, 0, 0, 0, 500, 0, 0, 0), (9, 5, 1, 1, 0, 0, 0, 600, 0, 0, 0),
  (10, 6, 1, 1, 0, 0, 0, 700, 0, 0, 0), (11, 7, 1, 1, 0, 0, 0, 800, 0, 0, 0), (12, 8, 1, 30, 0, 0, 0, 1200, 0, 0, 0);
INSERT INTO RelacTLiq (CodKEL, CodOS) VALUES (1, 1), (5, 2), (3, 3);
INSERT INTO RelacConc (CodKEL, CodOS) VALUES (17, 1), (-1, 2), (20, 4), (3, 5), (5, 6);
INSERT INTO Cotizacion VALUES (2, '2023-01-01', 40), (1, '2023-01-01', 1);
)SQL";

// The KEL company: the same two contracts, already liquidated for January.
std::string kel_rows(int first_person, int second_person) {
  const std::string p1 = std::to_string(first_person);
  const std::string p2 = std::to_string(second_person);
  return "INSERT INTO Personas (id_Persona, NUMERO) VALUES (" + p1 + ", '111'), (" + p2 + ", '222');" +
         "INSERT INTO Contrato (Id_Contrato, Id_Persona, FECHA_INICIO, FECHA_FIN, vigente, AcuLab, id_TipoRem) VALUES "
         "(10, " + p1 + ", '2023-01-01', NULL, -1, 0, 1), (11, " + p2 + ", '2023-06-01', NULL, -1, 0, 2);"
         "INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, id_Contrato) VALUES "
         "(1, 1, '2023-01-31', '2023-01-01', 10);"
         "INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Monto) VALUES "
         "(1, 1, 17, 30, 990);"
         "INSERT INTO Cotizacion VALUES (1, '2022-01-01', 1), (2, '2022-01-01', 38);";
}

const char* const kHeaders = "SELECT id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato, Cod1, Aporte, DTE, DTP "
                             "FROM Encabezados ORDER BY 1";
const char* const kLines = "SELECT id_Dato, id_Encabezado, id_Concepto, Monto, DTE, DTP FROM Datos_Liquidacion ORDER BY 1";
const char* const kCalendar = "SELECT * FROM Calendario_liq ORDER BY 1";

// Matching contracts by person id (persons imported in the same run, same
// ids on both sides) or by document number (other ids in KEL).
struct MatchCase {
  const char* name;
  bool persons_imported;
  int first_person;
  int second_person;
};

class LiquidationSteps : public StepTest, public ::testing::WithParamInterface<MatchCase> {
 protected:
  void SetUp() override {
    StepTest::SetUp();
    staging_.execute_native(kStaged);
    kel_.execute_native(kel_rows(GetParam().first_person, GetParam().second_person));
  }
  transfer::StepReport run_step(const std::string& desde, const std::string& hasta) {
    transfer::StepContext ctx = context();
    return transfer::import_liquidations(ctx, desde, hasta, GetParam().persons_imported);
  }
};

TEST_P(LiquidationSteps, CopiesHeadersLinesCalendarLeaveAndTotals) {
  const transfer::StepReport report = run_step("", "2024-01-01");

  // The staged number lost its dash; header 8 and its line left the staging database.
  EXPECT_EQ(rows(staging_, "SELECT NUMERO FROM Personas ORDER BY 1"), (Rows{"111", "222"}));
  EXPECT_EQ(rows(staging_, "SELECT id_Encabezado FROM Encabezados WHERE id_Encabezado = 8"), Rows{});
  // January exists in KEL already (not inserted again); header 3 predates
  // its contract; the rest take header base 2 + their staged id. Totals come
  // from KEL's view: BPS code 1, contributions and worked days.
  EXPECT_EQ(rows(kel_, kHeaders), (Rows{"1|1|2023-01-01|10|1990.0|0.0|22.0|22.0", "4|1|2023-02-01|10|1100.0|165.0|0.0|0.0",
                                        "6|5|2023-02-01|10|0.0|0.0|0.0|5.0", "7|3|2023-06-01|10|600.0|0.0|0.0|0.0",
                                        "8|3|2023-07-01|11|700.0|0.0|0.0|0.0", "9|3|2023-12-01|10|800.0|0.0|0.0|0.0"}));
  // Lines take line base 2 + their staged id; January's go under KEL's own
  // header; "No Importar" and unmapped concepts, and the lines of header 3,
  // are left out. Worked days come from KEL's view for concepts 3 and 20.
  EXPECT_EQ(rows(kel_, kLines), (Rows{"1|1|17|990.0|-|-", "3|1|17|1000.0|0.0|0.0", "4|1|3|0.0|22.0|22.0",
                                      "5|4|17|1100.0|0.0|0.0", "8|4|5|165.0|0.0|0.0", "10|6|20|500.0|0.0|5.0",
                                      "11|7|17|600.0|0.0|0.0", "12|8|17|700.0|0.0|0.0", "13|9|17|800.0|0.0|0.0"}));
  // One entry for the leave header's contract; the bonus groups of
  // remuneration type 1; the last group of the walk (July, type 2) is
  // never inserted.
  EXPECT_EQ(rows(kel_, kCalendar), (Rows{"1|5|2023-02-01|10|", "2|3|2023-06-01|-|id_TipoRem in (1)",
                                         "3|3|2023-12-01|-|id_TipoRem in (1)"}));
  // The leave header becomes one day of leave, linked to its leave line.
  EXPECT_EQ(rows(kel_, "SELECT * FROM licencias"), (Rows{"6|10|2023-02-01|2023-02-01|1.0|0"}));
  EXPECT_EQ(rows(kel_, "SELECT * FROM rLic_Enc"), (Rows{"6|6|10"}));
  // KEL keeps its local-currency rates and takes every staged rate.
  EXPECT_EQ(rows(kel_, "SELECT * FROM Cotizacion ORDER BY Fecha, id_Moneda"),
            (Rows{"1|2000-01-01|1.0", "1|2022-01-01|1.0", "1|2023-01-01|1.0", "2|2023-01-01|40.0"}));
  EXPECT_EQ(rows(kel_, "SELECT name FROM sqlite_master WHERE name = 'AuxXX'"), Rows{});
  EXPECT_EQ(report.statements_ignored, 0);
  EXPECT_GT(repaints_, 0);
}

TEST_P(LiquidationSteps, ASecondRunAddsTheLinesAgainButNoHeaderOrCalendarEntry) {
  run_step("", "2024-01-01");
  const Rows calendar = rows(kel_, kCalendar);
  const transfer::StepReport report = run_step("", "2024-01-01");

  EXPECT_EQ(rows(kel_, "SELECT id_Encabezado FROM Encabezados ORDER BY 1"), (Rows{"1", "4", "6", "7", "8", "9"}));
  // Line base 14 now: the same eight lines again under the same headers.
  EXPECT_EQ(rows(kel_, "SELECT id_Dato, id_Encabezado FROM Datos_Liquidacion WHERE id_Dato > 13 ORDER BY 1"),
            (Rows{"15|1", "16|1", "17|4", "20|4", "22|6", "23|7", "24|8", "25|9"}));
  EXPECT_EQ(rows(kel_, kCalendar), calendar);
  // The leave exists (its insert is refused and passed over); the new leave
  // line is linked to it.
  EXPECT_EQ(rows(kel_, "SELECT id_Lic FROM licencias"), Rows{"6"});
  EXPECT_EQ(rows(kel_, "SELECT * FROM rLic_Enc ORDER BY 3"), (Rows{"6|6|10", "6|6|22"}));
  EXPECT_EQ(report.statements_ignored, 1);
  // Totals count the doubled lines.
  EXPECT_EQ(rows(kel_, "SELECT Cod1 FROM Encabezados WHERE id_Encabezado = 1"), Rows{"2990.0"});
}

TEST_P(LiquidationSteps, TheMonthRangeDeletesStagedLiquidationsForGood) {
  run_step("2023-02-01", "2023-12-01");
  EXPECT_EQ(rows(staging_, "SELECT id_Encabezado FROM Encabezados ORDER BY 1"), (Rows{"2", "4", "5", "6", "7"}));
  EXPECT_EQ(rows(staging_, "SELECT id_Dato FROM Datos_Liquidacion ORDER BY 1"),
            (Rows{"3", "4", "5", "6", "8", "9", "10", "11"}));
  // January's staged lines are gone, so KEL's January header keeps only its own.
  EXPECT_EQ(rows(kel_, "SELECT id_Dato FROM Datos_Liquidacion WHERE id_Encabezado = 1"), Rows{"1"});
  // A later run with no bounds finds nothing more to bring.
  const Rows headers = rows(kel_, "SELECT id_Encabezado FROM Encabezados ORDER BY 1");
  run_step("", "");
  EXPECT_EQ(rows(kel_, "SELECT id_Encabezado FROM Encabezados ORDER BY 1"), headers);
  EXPECT_EQ(rows(staging_, "SELECT COUNT(*) FROM Encabezados"), Rows{"5"});
  EXPECT_EQ(rows(staging_, "SELECT COUNT(*) FROM Datos_Liquidacion"), Rows{"8"});
}

// A source file that writes its dates as timestamps at midnight: the loader
// stores them as the dates themselves, so the month range finds them (before,
// "2023-02-01 00:00:00" sorted after "2023-02-01" and was taken for a later
// month, or was refused as no date at all). January and March go, February
// stays.
TEST_P(LiquidationSteps, MonthsGivenWithAMidnightTimeAreFoundByTheMonthRange) {
  staging_.execute_native("DELETE FROM Datos_Liquidacion; DELETE FROM Encabezados;");
  const auto file = dir_.write("encabezados.csv",
                               "id_Encabezado;Id_TipoLiq;FechaDeLiq;MesDeLiq;Impreso;Terminado;id_Contrato;id_Usuario\n"
                               "1;1;2023-01-31 00:00:00;2023-01-01 00:00:00;0;-1;1;1\n"
                               "2;1;2023-02-28 13:05:00;2023-02-01 00:00:00;0;-1;1;1\n"
                               "8;1;2023-03-31 00:00;2023-03-01 00:00:00;0;-1;2;1\n");
  std::string error;
  auto layout = settings::ParseDataFileLayout(
      {"Tabla=Imp_Encabezados", "Encabezado=Si", "Columna=id_Encabezado:entero", "Columna=Id_TipoLiq:entero",
       "Columna=FechaDeLiq:fecha:yyyy-MM-dd", "Columna=MesDeLiq:fecha:yyyy-MM-dd", "Columna=Impreso:entero",
       "Columna=Terminado:entero", "Columna=id_Contrato:entero", "Columna=id_Usuario:entero"},
      &error);
  ASSERT_TRUE(layout) << error;
  auto table = staging::OpenDataTable(staging_, file, *layout);
  ASSERT_TRUE(table.ok()) << table.error();
  staging_.execute("Insert into Encabezados Select * From Imp_Encabezados");
  EXPECT_EQ(table.Close().bad_values, 0);
  EXPECT_EQ(rows(staging_, "SELECT id_Encabezado, FechaDeLiq, MesDeLiq FROM Encabezados ORDER BY 1"),
            (Rows{"1|2023-01-31|2023-01-01", "2|2023-02-28 13:05:00|2023-02-01", "8|2023-03-31|2023-03-01"}));

  run_step("2023-02-01", "2023-02-01");
  EXPECT_EQ(rows(staging_, "SELECT id_Encabezado FROM Encabezados ORDER BY 1"), Rows{"2"});
}

// The figure of the report's note "Líneas de liquidación no importadas: N
// <reason>", 0 when there is no such note.
std::int64_t left_out(const transfer::StepReport& report, const std::string& reason) {
  const std::string head = "Líneas de liquidación no importadas: ";
  for (const std::string& note : report.notes) {
    if (note.rfind(head, 0) != 0) continue;
    std::size_t used = 0;
    const std::int64_t lines = std::stoll(note.substr(head.size()), &used);
    if (note.substr(head.size() + used) == reason) return lines;
  }
  return 0;
}

// Every staged line either arrives or is left out for one reason, and the
// report gives each reason's figure. Besides the case's own lines (4 "No
// Importar", 5 unmapped, 7 of a header before its contract, 12 after Hasta),
// line 13 sits under a type with no mapping and line 14 under a contract KEL
// does not have (another start date); the other eight arrive.
TEST_P(LiquidationSteps, TheReportCountsTheLinesLeftOutByReason) {
  staging_.execute_native(
      "INSERT INTO Contrato (Id_Contrato, Id_Persona, FECHA_INICIO, FECHA_FIN, vigente, AcuLab, id_TipoRem) VALUES "
      "(3, 2, '2020-01-01', NULL, -1, 0, 2);"
      "INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Impreso, Terminado, id_Contrato, "
      "id_Usuario) VALUES (9, 4, '2023-03-31', '2023-03-01', 0, -1, 1, 1), (10, 1, '2023-03-31', '2023-03-01', 0, -1, "
      "3, 1);"
      "INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa, "
      "Monto, Relacion, DTE, DTP) VALUES (13, 9, 1, 1, 0, 0, 0, 10, 0, 0, 0), (14, 10, 1, 1, 0, 0, 0, 20, 0, 0, 0);");

  const transfer::StepReport report = run_step("", "2024-01-01");

  EXPECT_EQ(rows(kel_, "SELECT COUNT(*) FROM Datos_Liquidacion"), Rows{"9"});  // KEL's own line and eight
  EXPECT_EQ(rows(staging_, "SELECT COUNT(*) FROM Datos_Liquidacion"), Rows{"13"});
  const std::pair<const char*, std::int64_t> reasons[] = {
      {" fuera del rango de meses", 1},
      {" con concepto asociado a \"No Importar\"", 1},
      {" con concepto sin asociar", 1},
      {" con tipo de liquidación sin asociar", 1},
      {" sin contrato que coincida en KEL (o con el mes fuera del contrato)", 2}};
  for (const auto& [reason, lines] : reasons) EXPECT_EQ(left_out(report, reason), lines) << reason;
}

// An AuxXX left by an interrupted run makes the snapshot fail; the totals are
// then taken from the old table, which is dropped afterwards.
TEST_P(LiquidationSteps, ALeftOverAuxTableGivesTheOldTotals) {
  kel_.execute_native("CREATE TABLE AuxXX AS SELECT * FROM cLiqTotBPS; UPDATE AuxXX SET TotCod1 = 12345;");
  const transfer::StepReport report = run_step("", "2024-01-01");
  EXPECT_EQ(report.statements_ignored, 1);
  EXPECT_EQ(rows(kel_, "SELECT id_Encabezado, Cod1 FROM Encabezados WHERE id_Encabezado IN (1, 4) ORDER BY 1"),
            (Rows{"1|12345.0", "4|0.0"}));
  EXPECT_EQ(rows(kel_, "SELECT name FROM sqlite_master WHERE name = 'AuxXX'"), Rows{});
}

// A refused calendar insert ends the step; the entries before it stay.
TEST_P(LiquidationSteps, ARefusedCalendarInsertKeepsTheEntriesBeforeIt) {
  // A second per-employee header whose month is no date: its insert is refused.
  kel_.execute_native("INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato) VALUES "
                      "(100, 7, 'sin fecha', 11);");
  EXPECT_THROW(run_step("", "2024-01-01"), db::Error);
  EXPECT_EQ(rows(kel_, kCalendar), Rows{"1|5|2023-02-01|10|"});
  EXPECT_EQ(rows(kel_, "SELECT COUNT(*) FROM licencias"), Rows{"0"});
}

INSTANTIATE_TEST_SUITE_P(Matches, LiquidationSteps,
                         ::testing::Values(MatchCase{"ByPersonId", true, 1, 2},
                                           MatchCase{"ByDocumentNumber", false, 7, 8}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace transfer_test
