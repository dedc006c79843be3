// tests/schema/scripts_test.cpp — making databases from definition scripts,
// and the base data of a fresh KEL company.
#include <gtest/gtest.h>

#include "schema/database_scripts.h"
#include "schema_helpers.h"

namespace schema_test {
namespace {

TEST(DatabaseScripts, CreatesAfreshAndReportsTheRefusedLine) {
  TempDir dir;
  const auto db_path = dir.path() / "sub" / "x.db";
  const auto a = dir.write("a.sql", "-- tabla\nCREATE TABLE T (a INTEGER);\nINSERT INTO T VALUES (1);\n-- fin\n");
  const auto b = dir.write("b.sql", "INSERT INTO T VALUES (2);\n\n  INSERT INTO Nada VALUES (3);\n");
  std::string error;

  // Missing parent folders are created.
  ASSERT_TRUE(schema::create_database_from_scripts(db_path, {a}, error)) << error;
  const Db db{db_path};
  db.exec("INSERT INTO T VALUES (9)");
  // A second creation starts from an empty file, not from the old contents.
  ASSERT_TRUE(schema::create_database_from_scripts(db_path, {a}, error)) << error;
  EXPECT_EQ(db.value("SELECT group_concat(a) FROM T"), "1");

  // A missing script is reported before the existing file is touched.
  EXPECT_FALSE(schema::create_database_from_scripts(db_path, {dir.path() / "falta.sql"}, error));
  EXPECT_NE(error.find("falta.sql"), std::string::npos) << error;
  EXPECT_TRUE(std::filesystem::exists(db_path));

  // A refused statement names its script and line; nothing is left behind.
  EXPECT_FALSE(schema::create_database_from_scripts(db_path, {a, b}, error));
  EXPECT_NE(error.find("b.sql, línea 3"), std::string::npos) << error;
  EXPECT_NE(error.find("Nada"), std::string::npos) << error;
  EXPECT_FALSE(std::filesystem::exists(db_path));
}

TEST(KelBaseData, FreshCompanyHasTheConceptsTypesAndRelationsTheImporterAssumes) {
  TempDir dir;
  const Db kel{make_kel(dir.path())};
  // Standard concepts stay at or below 100: the importer creates from 101.
  EXPECT_EQ(kel.value("SELECT MAX(id_Concepto) FROM Conceptos"), "100");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM Conceptos WHERE id_Concepto IN (17, 13, 45, 12, 71, 53, 4, 20, 22, 14, 66)"),
            "11");
  // The BPS codes and net pay relate existing concepts (which ones is pinned
  // by the totals in views_test.cpp).
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM rConcepto_BPS WHERE id_Concepto NOT IN (SELECT id_Concepto FROM "
                      "Conceptos)"),
            "0");
  // Types the liquidation step relies on: 1 and 2 salary, 5 and 6 per employee.
  EXPECT_EQ(kel.rows("SELECT id_TipoLiq, Salarial, ParaEmp FROM TiposLiquidacion WHERE id_TipoLiq IN (1,2,5,6) "
                     "ORDER BY 1"),
            (Rows{"1|-1|0", "2|-1|0", "5|-1|-1", "6|-1|-1"}));
  // Type 1 carries the 'VCM' contribution; the other salary types do not.
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM rAporPat_TipoLiq WHERE id_TipoLiq = 1 AND Codigo = 'VCM'"), "1");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM rAporPat_TipoLiq WHERE id_TipoLiq <> 1 AND Codigo = 'VCM'"), "0");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM rAporPat_TipoLiq WHERE id_TipoLiq = 1"), "5");
  // Local currency with a rate; neutral branch and working-time scheme.
  EXPECT_EQ(kel.value("SELECT Valor FROM Cotizacion WHERE id_Moneda = 1"), "1.0");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM Sucursales WHERE id_Sucursal = 0"), "1");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM TRegHorario WHERE id_Regimen = 0"), "1");
  // Text compares without regard to case.
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM TiposLiquidacion WHERE Nombre = 'MENSUAL'"), "1");
  // No company record: that is the company's data, not base data.
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM Empresa"), "0");
}

}  // namespace
}  // namespace schema_test
