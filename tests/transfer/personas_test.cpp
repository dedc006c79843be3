// Tests the persons and contracts step on hand-made databases: the answer
// (which id each person ends with, which contracts, declarations, contact
// rows, registrations and file entries exist) was worked out by hand from the
// statements, and whole tables are compared with it.
#include "db/error.h"
#include "transfer/personas.h"
#include "transfer_fixture.h"

namespace transfer_test {
namespace {

// KEL before the import. Persons: 7 has the document of staged person 1; 2,
// 5 and 10 match nobody. Staged ids are 1, 2 and 6, so MaxP is 6: 2 is taken
// (goes to MaxP+1 = 7 first), 5 and 10 are free. The map then holds 5->5
// (row 2), 10->10 (row 3), 2->7 (row 4); MaxID 10 lifts every value above 6
// to 10, and the spreading by row (MinID 2) gives 10->11 and 2->12, while 5
// (not above MaxP) keeps 5.
const char* const kKel = R"SQL(
INSERT INTO Personas (id_Persona, NUMERO, Apellido_1) VALUES (7, '12345678', 'PEREZ viejo'), (2, '99999999', 'Otro'),
  (5, '55555555', 'Cinco'), (10, '88888888', 'Ruiz');
INSERT INTO Contrato (Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, HORAS, FECHA_INICIO, FECHA_FIN, AcuLab,
                      id_Tipo_Contrato)
  VALUES (1, '7_1', 7, 28000, 8, '2023-01-01', NULL, 0, 1), (2, '2', 2, 1000, 8, '2020-01-01', '2021-12-31', 0, 1),
         (3, '10_2', 10, 15000, 0, '2019-01-01', NULL, 0, 1), (4, '5', 5, 500, 8, '2018-01-01', NULL, 0, 1),
         (5, '5_1', 5, 500, 8, '2018-01-01', NULL, 0, 1), (6, '5_2', 5, 500, 8, '2018-01-01', NULL, 0, 1);
INSERT INTO Declaraciones (idDeclaracion, id_Persona, id_PersRelac, Trabaja)
  VALUES (1, 7, 7, -1), (2, 2, 10, -1), (3, 10, 3, 0);
INSERT INTO rPersonas_Dto_Comunicacion VALUES (1, 7, '2600 1111'), (2, 2, '098 000 000'), (1, 10, 'diez');
INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES (0, '', '-', 2), (11, '', 'BSE-1', 1),
  (12, '', 'BSE-2', 1), (20, '', 'BPS-1', 3);
INSERT INTO rPlanillas VALUES (1, 11);
INSERT INTO Legajo (id_Legajo, id_TMLegajo, id_Contrato, id_Usuario, aId) VALUES (3, 1, 1, 1, 0), (5, 2, 2, 1, 0);
INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato) VALUES (1, 1, '2018-02-01', 6),
  (2, 1, '2018-02-01', 5);
)SQL";

// The staging database: three persons (numbers with a blank, a dash and an
// underscore before the check digit), no declarations nor related persons,
// contracts of which the first equals KEL's contract 1 (same person after the
// match, start and empty end).
const char* const kStaged = R"SQL(
INSERT INTO Personas (id_Persona, NUMERO, Apellido_1) VALUES (1, '1234567-8', 'Perez'), (2, '2345678_9', 'Lopez'),
  (6, ' 6666666 ', 'Seis');
INSERT INTO Contrato (Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, HORAS, FECHA_INICIO, FECHA_FIN, AcuLab,
                      id_Tipo_Contrato)
  VALUES (1, '1_1', 1, 30000, 8, '2023-01-01', NULL, 0, 1), (2, '2', 2, 1200, 8, '2022-05-01', NULL, 0, 1),
         (3, '6', 6, 2000, NULL, '2024-01-01', NULL, 0, NULL);
INSERT INTO rPersonas_Dto_Comunicacion VALUES (1, 1, '099 staged'), (3, 2, 'maria@example.com');
)SQL";

TEST_F(TransferTest, PersonsAreReconciledAndEveryReferenceFollows) {
  kel_.execute_native(kKel);
  staging_.execute_native(kStaged);
  transfer::StepContext ctx = context();
  const transfer::StepReport report = transfer::import_persons(ctx);

  EXPECT_EQ(rows(staging_, "SELECT id_Persona, NUMERO FROM Personas ORDER BY 1"),
            (Rows{"1|12345678", "2|23456789", "6|6666666"}));
  // 7 took the staged id 1 and the staged names; 5 is back; 10 and 2 above.
  EXPECT_EQ(kel("SELECT id_Persona, NUMERO, Apellido_1 FROM Personas ORDER BY 1"),
            (Rows{"1|12345678|Perez", "2|23456789|Lopez", "5|55555555|Cinco", "6|6666666|Seis", "11|88888888|Ruiz",
                  "12|99999999|Otro"}));
  // Contract numbers follow their person, keeping "_" and its character;
  // staged contract 1 equals KEL's and only refreshes it (by number); the
  // others arrive at 6 + staged id; of the three equal contracts of person
  // 5 only the highest (6) goes; empty or zero hours become 8.
  EXPECT_EQ(kel("SELECT Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, HORAS, id_Tipo_Contrato FROM Contrato "
                "ORDER BY 1"),
            (Rows{"1|1_1|1|30000.0|8.0|1", "2|12|12|1000.0|8.0|1", "3|11_2|11|15000.0|8.0|1", "4|5|5|500.0|8.0|1",
                  "5|5_1|5|500.0|8.0|1", "8|2|2|1200.0|8.0|1", "9|6|6|2000.0|8.0|1"}));
  EXPECT_EQ(kel("SELECT id_Encabezado, id_Contrato FROM Encabezados ORDER BY 1"), (Rows{"2|5"}));
  // Declarations (none staged, so KEL's are kept): the related person moves
  // only where it is the person itself and works in the company; 2's related
  // person 10 stays parked.
  EXPECT_EQ(kel("SELECT idDeclaracion, id_Persona, id_PersRelac, Trabaja FROM Declaraciones ORDER BY 1"),
            (Rows{"1|1|1|-1", "2|12|1000000010|-1", "3|11|3|0"}));
  // Contact rows: the staged row of a kind person 1 already has is not added.
  EXPECT_EQ(kel("SELECT ID_Dto_Comunicacion, Id_Persona, Dato FROM rPersonas_Dto_Comunicacion ORDER BY 2, 1"),
            (Rows{"1|1|2600 1111", "3|2|maria@example.com", "1|11|diez", "2|12|098 000 000"}));
  // Every contract of that moment (6 included) gets the first BSE (11) and
  // BPS (20) registration it lacks; there is no MTSS one but 0.
  EXPECT_EQ(kel("SELECT idContrato || ':' || idPlanilla FROM rPlanillas ORDER BY idContrato, idPlanilla"),
            (Rows{"1:11", "1:20", "2:11", "2:20", "3:11", "3:20", "4:11", "4:20", "5:11", "5:20", "6:11", "6:20",
                  "8:11", "8:20", "9:11", "9:20"}));
  // Start-of-employment entries numbered from the highest file id (5).
  EXPECT_EQ(kel("SELECT id_Legajo, id_TMLegajo, id_Contrato, id_Usuario, aId FROM Legajo ORDER BY 1"),
            (Rows{"3|1|1|1|0", "5|2|2|1|0", "7|1|2|1|0", "8|1|3|1|0", "9|1|4|1|0", "10|1|5|1|0", "13|1|8|1|0",
                  "14|1|9|1|0"}));
  EXPECT_EQ(kel("SELECT strAValor FROM Legajo WHERE id_Legajo = 13"), (Rows{"01/05/2022"}));
  EXPECT_EQ(report.statements_ignored, 0);
  EXPECT_EQ(report.total("insertadas"), 2 + 1 + 2 + 7 + 8 + 6);  // persons, contact, contracts, BSE, BPS, file
  // The report names every destination person that moved, in three groups,
  // and the duplicate contracts (the highest of person 5's three equal ones).
  EXPECT_EQ(report.notes,
            (Rows{"1 persona(s) de KEL identificada(s) por documento con una persona importada (número anterior -> "
                  "nuevo):",
                  "  7 -> 1", "1 persona(s) de KEL sin pareja en la importación conservan su número:", "  5 -> 5",
                  "2 persona(s) de KEL sin pareja en la importación reciben un número nuevo, porque el suyo lo "
                  "ocupa una persona importada (número anterior -> nuevo):",
                  "  10 -> 11", "  2 -> 12",  // in the map's order: 10 was listed first
                  "1 contrato(s) duplicado(s) eliminado(s) con sus liquidaciones"}));
}

// A long renumbering lists the first fifty moves and says how many more.
TEST_F(TransferTest, PersonsReportCapsTheListOfMoves) {
  kel_.execute_native("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 53) "
                      "INSERT INTO Personas (id_Persona, NUMERO) SELECT i, CAST(1000 + i AS TEXT) FROM s;");
  staging_.execute_native("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 53) "
                          "INSERT INTO Personas (id_Persona, NUMERO) SELECT i, CAST(2000 + i AS TEXT) FROM s;");
  transfer::StepContext ctx = context();
  const transfer::StepReport report = transfer::import_persons(ctx);
  ASSERT_EQ(report.notes.size(), 52u);
  EXPECT_EQ(report.notes[0].rfind("53 persona(s) de KEL sin pareja en la importación reciben un número nuevo", 0), 0u);
  // Every staged id is taken, so the parked persons follow MaxP = 53 in order.
  EXPECT_EQ(report.notes[1], "  1 -> 54");
  EXPECT_EQ(report.notes[50], "  50 -> 103");
  EXPECT_EQ(report.notes[51], "  ... y 3 más");
  EXPECT_EQ(kel("SELECT id_Persona FROM Personas WHERE NUMERO = '1050'"), Rows{"103"});
}

// Edge cases of the reconciliation, each on fresh databases.
TEST_F(TransferTest, PersonsEdgeCases) {
  // An empty KEL: nothing parked or matched, contract ids kept (base 0).
  staging_.execute_native(kStaged);
  transfer::StepContext ctx = context();
  transfer::import_persons(ctx);
  EXPECT_EQ(kel("SELECT id_Persona FROM Personas ORDER BY 1"), (Rows{"1", "2", "6"}));
  EXPECT_EQ(kel("SELECT Id_Contrato, NUMERO_ALTERNATIVO FROM Contrato ORDER BY 1"), (Rows{"1|1_1", "2|2", "3|6"}));
}

TEST_F(TransferTest, PersonsWithoutStagedPersonsStopWithKelParked) {
  kel_.execute_native(kKel);
  transfer::StepContext ctx = context();
  EXPECT_THROW(transfer::import_persons(ctx), db::Error);
  kel_.close();  // the unfinished transaction goes
  ASSERT_TRUE(kel_.open(kel_path_, db::JournalMode::kKeep));
  EXPECT_EQ(kel("SELECT id_Persona FROM Personas ORDER BY 1"),
            (Rows{"1000000002", "1000000005", "1000000007", "1000000010"}));
}

// Where errors are ignored a refused statement changes nothing: a contact row
// left at a parked id by an interrupted run makes the unconditional shift
// clash with the unique key, so no contact row moves.
TEST_F(TransferTest, RefusedContactShiftChangesNothing) {
  kel_.execute_native(
      "INSERT INTO Personas (id_Persona, NUMERO) VALUES (5, '55555555');"
      "INSERT INTO rPersonas_Dto_Comunicacion VALUES (1, 5, 'a'), (1, 1000000005, 'b'), (2, 5, 'c');");
  staging_.execute_native("INSERT INTO Personas (id_Persona, NUMERO) VALUES (1, '1');");
  transfer::StepContext ctx = context();
  const transfer::StepReport report = transfer::import_persons(ctx);
  EXPECT_EQ(report.statements_ignored, 1);
  EXPECT_EQ(kel("SELECT id_Persona FROM Personas ORDER BY 1"), (Rows{"1", "5"}));
  // Nothing was shifted; on the way back the parked 'b' finds its place taken.
  EXPECT_EQ(kel("SELECT ID_Dto_Comunicacion, Id_Persona, Dato FROM rPersonas_Dto_Comunicacion ORDER BY 3"),
            (Rows{"1|5|a", "1|1000000005|b", "2|5|c"}));
}

}  // namespace
}  // namespace transfer_test
