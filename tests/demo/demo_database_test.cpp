// tests/demo/demo_database_test.cpp — what the demo databases hold: references
// that resolve, months inside contracts, consistent amounts, mappings onto
// KEL's base ids, and the same bytes for the same arguments.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include "demo/concepts.h"
#include "demo/demo.h"
#include "demo_test_util.h"

namespace {

using demo_test::Db;
using demo_test::TempDir;

// Expects no row for each query, given from FROM on (its text is the failure message).
void ExpectNone(const Db& db, const std::vector<std::string>& queries) {
  for (const auto& q : queries) EXPECT_EQ(db.integer("SELECT COUNT(*) " + q), 0) << q;
}

// One demo of 20 employees over a year, shared by the suite.
class DemoDatabases : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = std::make_unique<TempDir>();
    demo::DemoOptions options;
    options.employees = 20;
    options.years = 1;
    report_ = std::make_unique<demo::DemoReport>(
        demo::build_demo(options, {dir_->file("Origen.mdb"), dir_->file("Empresa/Datos.mdb"), demo_test::schema_dir()}));
  }
  static void TearDownTestSuite() { report_.reset(), dir_.reset(); }
  static Db source() { return Db{dir_->file("Origen.mdb")}; }
  static Db kel() { return Db{dir_->file("Empresa/Datos.mdb")}; }

  static inline std::unique_ptr<TempDir> dir_;
  static inline std::unique_ptr<demo::DemoReport> report_;
};

TEST_F(DemoDatabases, EveryGeneratedColumnExistsInTheSchemas) {
  // A column the schema lost (or the generator misspelt) would silently stay Null.
  EXPECT_TRUE(report_->missing.empty()) << *report_->missing.begin();
  EXPECT_EQ(report_->source_rows.at("Datos_Liquidacion"), report_->liquidations.lines);
  EXPECT_EQ(report_->source_rows.at("Encabezados"), report_->liquidations.headers);
}

TEST_F(DemoDatabases, ReferencesResolve) {
  Db db = source();
  ExpectNone(db, {
      "FROM Datos_Liquidacion WHERE id_Encabezado NOT IN (SELECT id_Encabezado FROM Encabezados)",
      "FROM Encabezados WHERE id_Contrato NOT IN (SELECT Id_Contrato FROM Contrato)",
      "FROM Encabezados WHERE Id_TipoLiq NOT IN (SELECT id_TipoLiq FROM TiposLiquidacion)",
      "FROM Datos_Liquidacion WHERE id_Concepto NOT IN (SELECT id_Concepto FROM Conceptos)",
      "FROM Contrato WHERE Id_Persona NOT IN (SELECT id_Persona FROM Personas)",
      "FROM rPersonas_Dto_Comunicacion WHERE Id_Persona NOT IN (SELECT id_Persona FROM Personas)",
      "FROM Declaraciones WHERE id_Persona NOT IN (SELECT id_Persona FROM Personas)",
      // Declarations of a working spouse point at another staged person; the others at a related person.
      "FROM Declaraciones WHERE Trabaja <> 0 AND (id_PersRelac = id_Persona OR "
      "id_PersRelac NOT IN (SELECT id_Persona FROM Personas))",
      "FROM Declaraciones WHERE Trabaja = 0 AND id_PersRelac NOT IN (SELECT id_PersRelac FROM PersonasRela)",
  });
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Declaraciones WHERE Trabaja <> 0"), 0);
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Declaraciones WHERE Trabaja = 0"), 0);
  // The registrations of the three kinds the contracts are attached to.
  EXPECT_EQ(db.integer("SELECT COUNT(DISTINCT id_Tplanilla) FROM Planillas WHERE id_planilla >= 1 AND id_Tplanilla IN (1,2,3)"), 3);
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Empresa"), 1);
}

TEST_F(DemoDatabases, LiquidationMonthsLieWithinTheirContracts) {
  Db db = source();
  ExpectNone(db, {
      "FROM Encabezados WHERE MesDeLiq NOT LIKE '____-__-01'",
      "FROM Encabezados AS E JOIN Contrato AS C ON C.Id_Contrato = E.id_Contrato WHERE E.MesDeLiq < "
      "substr(C.FECHA_INICIO, 1, 8) || '01' OR (C.vigente = 0 AND E.MesDeLiq > C.FECHA_FIN)",
      "FROM Encabezados WHERE MesDeLiq < '2024-01-01' OR MesDeLiq > '2024-12-01'",
      // One header per contract, month and type.
      "FROM (SELECT 1 FROM Encabezados GROUP BY id_Contrato, MesDeLiq, Id_TipoLiq HAVING COUNT(*) > 1)",
      // Open contracts have no end; closed ones have one and get a final settlement.
      "FROM Contrato WHERE (vigente = -1) <> (FECHA_FIN IS NULL)",
      "FROM Contrato AS C WHERE vigente = 0 AND FECHA_FIN >= '2024-01-01' AND NOT EXISTS "
      "(SELECT 1 FROM Encabezados AS E WHERE E.id_Contrato = C.Id_Contrato AND E.Id_TipoLiq = 5)",
      // Flags are Yes/No values.
      "FROM Encabezados WHERE Impreso NOT IN (-1, 0) OR Terminado NOT IN (-1, 0)",
  });
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Contrato WHERE vigente = 0"), 0);
}

TEST_F(DemoDatabases, ContractNumbersAndAgreements) {
  Db db = source();
  // A person with two contracts numbers them id_1 and id_2; a single contract
  // is the id, or now and then id_1 (which the preview's clean-up shortens).
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Contrato AS C WHERE (SELECT COUNT(*) FROM Contrato AS B WHERE B.Id_Persona = C.Id_Persona) = 1 "
                       "AND NUMERO_ALTERNATIVO NOT IN (CAST(Id_Persona AS TEXT), Id_Persona || '_1')"), 0);
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Contrato AS C WHERE (SELECT COUNT(*) FROM Contrato AS B WHERE B.Id_Persona = C.Id_Persona) = 1 "
                       "AND NUMERO_ALTERNATIVO = Id_Persona || '_1'"), 1);
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Contrato WHERE NUMERO_ALTERNATIVO = Id_Persona || '_2'"), 0);
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Contrato AS C WHERE (SELECT COUNT(*) FROM Contrato AS B WHERE B.Id_Persona = C.Id_Persona) = 2 "
                       "AND NUMERO_ALTERNATIVO NOT IN (Id_Persona || '_1', Id_Persona || '_2')"), 0);
  // Concurrent contracts of one person run under different agreements.
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Contrato AS A JOIN Contrato AS B ON A.Id_Persona = B.Id_Persona AND A.Id_Contrato < B.Id_Contrato "
                       "WHERE A.vigente = -1 AND B.vigente = -1 AND A.AcuLab <> B.AcuLab"), 0);
  // A rehired person's second contract starts after the first one ended.
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Contrato AS A JOIN Contrato AS B ON A.Id_Persona = B.Id_Persona AND A.Id_Contrato < B.Id_Contrato "
                       "WHERE A.vigente = 0 AND B.FECHA_INICIO <= A.FECHA_FIN"), 0);
}

TEST_F(DemoDatabases, AmountsAreConsistent) {
  Db db = source();
  // Quantity lines: quantity x unit value; percentage lines (TipoDato 1): base x percent / 100.
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Datos_Liquidacion AS D JOIN Conceptos AS C ON C.id_Concepto = D.id_Concepto "
                       "WHERE abs(D.Monto - round(CASE WHEN C.TipoDato = 1 THEN D.Cantidad * D.Coeficiente / 100 "
                       "ELSE D.Cantidad * D.Coeficiente END, 2)) > 0.0101"), 0);
  // Net pay = earnings - deductions + rounding, per header.
  auto line = [](int concepto) {
    return "(SELECT Monto FROM Datos_Liquidacion WHERE id_Encabezado = E.id_Encabezado AND id_Concepto = " +
           std::to_string(concepto) + ")";
  };
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Encabezados AS E WHERE Id_TipoLiq <> " + std::to_string(demo::kAdelantoQuincenal) +
                       " AND (" + line(demo::kLiquido) + " IS NULL OR abs(" + line(demo::kLiquido) + " - " + line(demo::kTotalHaberes) +
                       " + " + line(demo::kTotalDescuentos) + " - COALESCE(" + line(demo::kRedondeo) + ", 0)) > 0.011)"), 0);
  // Earnings add up to the total.
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Encabezados AS E WHERE Id_TipoLiq = 1 AND abs(" + line(demo::kTotalHaberes) +
                       " - (SELECT total(Monto) FROM Datos_Liquidacion WHERE id_Encabezado = E.id_Encabezado AND id_Concepto <= 20)) > 0.011"), 0);
  // The header's net pay is the net pay line's.
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Encabezados AS E JOIN Datos_Liquidacion AS D ON D.id_Encabezado = E.id_Encabezado "
                       "AND D.id_Concepto = " + std::to_string(demo::kLiquido) + " WHERE abs(E.Liquido - D.Monto) > 0.001"), 0);
  EXPECT_EQ(db.integer("SELECT COUNT(*) FROM Datos_Liquidacion WHERE Monto < 0"), 0);
  // Leave is paid in some months, with the leave concept.
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Datos_Liquidacion WHERE id_Concepto = " + std::to_string(demo::kLicencia)), 0);
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Cotizacion WHERE id_Moneda = 2"), 11);
}

TEST_F(DemoDatabases, MappingsPointAtKelBaseIdsOrNoImportar) {
  Db db{dir_->file("Origen.mdb"), dir_->file("Empresa/Datos.mdb")};
  ExpectNone(db, {"FROM RelacConc WHERE CodKEL <> -1 AND CodKEL NOT IN (SELECT id_Concepto FROM kel.Conceptos)",
                  "FROM RelacConc WHERE CodOS NOT IN (SELECT id_Concepto FROM Conceptos)",
                  "FROM RelacTLiq WHERE CodKEL <> -1 AND CodKEL NOT IN (SELECT id_TipoLiq FROM kel.TiposLiquidacion)",
                  "FROM RelacTLiq WHERE CodOS NOT IN (SELECT id_TipoLiq FROM TiposLiquidacion)"});
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM RelacConc WHERE CodKEL = -1"), 0);
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM RelacConc WHERE CodKEL <> -1"), 0);
  // Something is left for the user to map or to create, and some concepts no line uses.
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM Conceptos WHERE id_Concepto NOT IN (SELECT CodOS FROM RelacConc)"), 5);
  EXPECT_GE(db.integer("SELECT COUNT(*) FROM Conceptos WHERE id_Concepto NOT IN (SELECT DISTINCT id_Concepto FROM Datos_Liquidacion)"), 4);
  EXPECT_GT(db.integer("SELECT COUNT(*) FROM TiposLiquidacion WHERE id_TipoLiq NOT IN (SELECT CodOS FROM RelacTLiq)"), 0);
  EXPECT_EQ(db.value("SELECT group_concat(DISTINCT TipoOperacion) FROM (SELECT TipoOperacion FROM Conceptos ORDER BY 1)"), "R,S");
}

TEST_F(DemoDatabases, KelCompanyHoldsTheBaseDataAndItsOwnPeople) {
  Db k = kel();
  EXPECT_GE(k.integer("SELECT COUNT(*) FROM Conceptos"), 30);
  EXPECT_EQ(k.integer("SELECT COUNT(*) FROM Personas"), report_->kel_rows.at("Personas"));
  EXPECT_EQ(k.integer("SELECT COUNT(*) FROM Legajo WHERE id_TMLegajo = 1"), k.integer("SELECT COUNT(*) FROM Contrato"));
  // Its people, contracts and liquidation lines point at its own rows and base concepts.
  ExpectNone(k, {"FROM Contrato WHERE Id_Persona NOT IN (SELECT id_Persona FROM Personas)",
                 "FROM Personas WHERE id_Persona NOT IN (SELECT Id_Persona FROM Contrato)",
                 "FROM Datos_Liquidacion WHERE id_Encabezado NOT IN (SELECT id_Encabezado FROM Encabezados) "
                 "OR id_Concepto NOT IN (SELECT id_Concepto FROM Conceptos)",
                 "FROM Encabezados WHERE id_Contrato NOT IN (SELECT Id_Contrato FROM Contrato)"});
  // Its declarations point at its own people: a related person, and a working spouse.
  EXPECT_EQ(k.integer("SELECT COUNT(*) FROM Declaraciones WHERE Trabaja <> 0 AND id_PersRelac IN (SELECT id_Persona FROM Personas) "
                      "AND id_PersRelac <> id_Persona"), 1);
  EXPECT_EQ(k.integer("SELECT COUNT(*) FROM Declaraciones WHERE Trabaja = 0 AND id_PersRelac IN (SELECT id_PersRelac FROM PersonasRela)"), 1);
  // The same company as the source, so the company check passes.
  EXPECT_EQ(k.value("SELECT upper(Nombre) || '|' || upper(RazonSocial) FROM Empresa"),
            source().value("SELECT upper(Nombre) || '|' || upper(RazonSocial) FROM Empresa"));
}

std::string file_bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(DemoDeterminism, SameArgumentsSameBytesOtherSeedOtherData) {
  TempDir dir;
  demo::DemoOptions options;
  options.employees = 12;
  options.years = 1;
  demo::build_demo(options, {dir.file("a/O.mdb"), dir.file("a/E/D.mdb"), demo_test::schema_dir()});
  demo::build_demo(options, {dir.file("b/O.mdb"), dir.file("b/E/D.mdb"), demo_test::schema_dir()});
  options.seed = 2;
  demo::build_demo(options, {dir.file("c/O.mdb"), dir.file("c/E/D.mdb"), demo_test::schema_dir()});
  const std::string checksum =
      "SELECT COUNT(*) || ':' || total(id_Encabezado * 7 + id_Concepto * 3 + Cantidad + Coeficiente + Monto) FROM Datos_Liquidacion";
  const std::string people = "SELECT group_concat(id_Persona || NUMERO || Apellido_1 || Nombre_1, ';') FROM Personas";
  EXPECT_EQ(file_bytes(dir.file("a/O.mdb")), file_bytes(dir.file("b/O.mdb")));
  EXPECT_EQ(file_bytes(dir.file("a/E/D.mdb")), file_bytes(dir.file("b/E/D.mdb")));
  EXPECT_NE(Db{dir.file("a/O.mdb")}.value(people), Db{dir.file("c/O.mdb")}.value(people));
  EXPECT_NE(Db{dir.file("a/O.mdb")}.value(checksum), Db{dir.file("c/O.mdb")}.value(checksum));
}

TEST(DemoErrors, BadOptionsAndMissingSchemaAreReportedInSpanish) {
  TempDir dir;
  demo::DemoOptions options;
  options.employees = 0;
  demo_test::ExpectError(
      [&] { demo::build_demo(options, {dir.file("O.mdb"), dir.file("E/D.mdb"), demo_test::schema_dir()}); },
      "empleados");
  options.employees = 5;
  demo_test::ExpectError(
      [&] { demo::build_demo(options, {dir.file("O.mdb"), dir.file("E/D.mdb"), dir.file("no-such-folder")}); },
      "pasaje.sql");
  EXPECT_THROW(demo::build_demo(options, {dir.file("X.mdb"), dir.file("X.mdb"), demo_test::schema_dir()}), std::runtime_error);
}

}  // namespace
