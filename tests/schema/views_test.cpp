// tests/schema/views_test.cpp — the saved queries return what their comments say.
//
// Hand-made fixtures with known lines and registrations, read with plain SQLite.
#include <gtest/gtest.h>

#include "schema_helpers.h"

namespace schema_test {
namespace {

TEST(KelViews, LiquidationTotalsAddEachHeadersRelatedLines) {
  TempDir dir;
  const Db kel{make_kel(dir.path())};
  kel.exec(
      "INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato) VALUES"
      " (1, 1, '2024-03-01', 1), (2, 1, '2024-04-01', 1), (3, 3, '2024-04-01', 1);"
      "INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Monto) VALUES"
      " (1, 1, 1, 30, 20000),"   // salary: no BPS relation, counted nowhere
      " (2, 1, 17, 0, 20000),"   // code 1
      " (3, 1, 13, 0, 10000),"   // code 2
      " (4, 1, 45, 0, 150),"     // code 5
      " (5, 1, 12, 0, 500),"     // code 7
      " (6, 1, 71, 0, 300),"     // code 8
      " (7, 1, 72, 0, 1200),"    // code 41
      " (8, 1, 9, 4, 1000), (9, 1, 10, 0, 800),"   // other earnings
      " (10, 1, 5, 15, 3000), (11, 1, 6, 4.5, 900),"  // contributions
      " (12, 1, 53, 0, 25000), (13, 1, 4, 0, 5000),"  // net pay = haberes - descuentos
      " (14, 1, 3, 22, 0), (15, 1, 20, 3, 0),"        // worked and paid days
      " (16, 1, 81, 0, 700), (17, 1, 82, 0, 50), (18, 1, 83, 0, 60),"  // additional part
      " (19, 3, 1, 30, 999), (20, 1, 17, 0, NULL)");
  // A header without lines, and one with only unrelated lines, have zeros.
  const std::string zeros = "|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0|0.0";
  EXPECT_EQ(kel.rows("SELECT id_Encabezado, TotCod1, TotCod2, TotCod5, TotCod7, TotCod8, TotCod41, TotOtrosH, TotApo, "
                     "TotLiq, DTE, DTP, TotCod1AD, TotCod5AD, TotOtrosHAD FROM cLiqTotBPS ORDER BY id_Encabezado"),
            (Rows{"1|20000.0|10000.0|150.0|500.0|300.0|1200.0|1800.0|3900.0|20000.0|22.0|25.0|700.0|50.0|60.0",
                  "2" + zeros, "3" + zeros}));
}

TEST(KelViews, WorkedDaysComeFromTheLinesOfDayConcepts) {
  TempDir dir;
  const Db kel{make_kel(dir.path())};
  kel.exec(
      "INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Monto) VALUES"
      " (1, 1, 3, 22, 0), (2, 1, 20, 3, 0), (3, 1, 1, 30, 20000), (4, 2, 3, NULL, 0);"
      "INSERT INTO rConcepto_BPS (id_Concepto, CodBPS, Signo) VALUES (21, 'DTE', -1)");
  EXPECT_EQ(kel.rows("SELECT id_Dato, DTE, DTP FROM CDetaLiq_DiasTrab ORDER BY id_Dato"),
            (Rows{"1|22.0|22.0", "2|0.0|3.0", "4|0.0|0.0"}));
  // The relation's sign applies to days too.
  kel.exec("INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad) VALUES (5, 1, 21, 2)");
  EXPECT_EQ(kel.rows("SELECT DTE, DTP FROM CDetaLiq_DiasTrab WHERE id_Dato = 5"), (Rows{"-2.0|0.0"}));
}

TEST(KelViews, RegistrationViewsListContractsByRegistrationType) {
  TempDir dir;
  const Db kel{make_kel(dir.path())};
  kel.exec(
      "INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES"
      " (0, '', '-', 2), (1, '', 'BSE', 1), (2, '', 'MTSS', 2), (3, '', 'BPS', 3), (4, '', 'BSE 2', 1);"
      "INSERT INTO rPlanillas (idContrato, idPlanilla) VALUES (10, 1), (10, 4), (11, 2), (12, 3), (13, 0), (14, 9)");
  EXPECT_EQ(kel.rows("SELECT idContrato FROM Con_Planilla_BSE ORDER BY 1"), (Rows{"10"}));
  EXPECT_EQ(kel.rows("SELECT idContrato FROM Con_Planilla_MTSS ORDER BY 1"), (Rows{"11", "13"}));
  EXPECT_EQ(kel.rows("SELECT idContrato FROM Con_Planilla_BPS ORDER BY 1"), (Rows{"12"}));
}

class StagingViews : public ::testing::Test {
 protected:
  void SetUp() override {
    staging_.file = make_staging(dir_.path());
    staging_.exec(
        "INSERT INTO Personas (id_Persona, NUMERO, Apellido_1, Nombre_1, Apellido_2, Nombre_2, Id_Sexo, "
        "Fecha_Nacimiento) VALUES (1, '123', 'Perez', 'Juan', 'Gomez', 'Carlos', 1, '1980-02-03'),"
        " (2, '456', 'Lopez', 'Maria', NULL, NULL, 2, '1990-05-06');"
        "INSERT INTO Cargos (id_Cargo, Cargo) VALUES (1, 'Administrativo');"
        "INSERT INTO Sectores (id_Sector, Descripcion) VALUES (1, 'Ventas');"
        "INSERT INTO Contrato (Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, FECHA_INICIO, vigente, "
        "id_TipoRem, id_CobraPor, id_Cargo, id_Sector) VALUES"
        " (1, '1_1', 1, 25000, '2023-01-01', -1, 1, 8, 1, 1), (2, '7', 7, NULL, '2020-01-01', 0, 9, 9, 9, 9);"
        "INSERT INTO TiposLiquidacion (id_TipoLiq, Nombre) VALUES (1, 'Mensual');"
        "INSERT INTO Conceptos (id_Concepto, Codigo, Nombre, TipoDato, TipoOperacion) VALUES (1, 'SUE', 'Sueldo', 0, "
        "'S'), (2, 'JUB', 'Jubilatorio', 1, 'R');"
        "INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, id_Contrato) VALUES"
        " (1, 1, '2024-03-05', '2024-03-01', 1), (2, 9, '2024-12-01', '2024-11-01', 99);"
        "INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, Monto) VALUES"
        " (1, 1, 1, 30, 833.33, 25000), (2, 1, 2, 15, 25000, 3750), (3, 1, 999, 1, 1, 1)");
  }

  TempDir dir_;
  Db staging_;
};

TEST_F(StagingViews, HeadersShowPersonMonthAndTypeEvenWhenTheirContractIsMissing) {
  EXPECT_EQ(staging_.rows("SELECT id_Encabezado, id_Persona, id_Contrato, NUMERO_ALTERNATIVO, Nombres, strMesDeLiq, "
                           "DescTipoLiq, MesDeLiq, id_TipoLiq FROM CHistLiq ORDER BY id_Encabezado"),
            (Rows{"1|1|1|1_1|Perez Gomez, Juan Carlos|03/2024|Mensual|2024-03-01|1", "2|-|99|-||11/2024|-|2024-11-01|9"}));
}

TEST_F(StagingViews, LinesCarryTheirConceptsCodeNameAndOperation) {
  EXPECT_EQ(staging_.rows("SELECT id_Dato, Codigo, Nombre, Cantidad, Coeficiente, Monto, TipoDato, TipoOperacion, "
                           "id_Concepto, id_Encabezado FROM cLisLiquida ORDER BY id_Dato"),
            (Rows{"1|SUE|Sueldo|30.0|833.33|25000.0|0|S|1|1", "2|JUB|Jubilatorio|15.0|25000.0|3750.0|1|R|2|1",
                  "3|-|-|1.0|1.0|1.0|-|-|999|1"}));
}

TEST_F(StagingViews, ContractsNameTheirCataloguesAndSalaryUnit) {
  EXPECT_EQ(staging_.rows("SELECT NUMERO_ALTERNATIVO, Nombres, Apellidos, TipoRemDesc, SueldoCobraX, CarNombre, "
                           "SecNombre, NUMERO, FECHA_INICIO, FECHA_FIN, id_Persona FROM cLstCont ORDER BY id_Contrato"),
            (Rows{"1_1|Juan Carlos|Perez Gomez|Mensual|25000.00 x Mes|Administrativo|Ventas|123|2023-01-01|-|1",
                  "7|||-|-|-|-|-|2020-01-01|-|7"}));
}

TEST_F(StagingViews, DeclarationsTakeTheRelatedPersonFromPersonasWhenItWorksHere) {
  staging_.exec(
      "INSERT INTO PersonasRela (id_PersRelac, NomRela_1, NomRela_2, ApeRela_1, ApeRela_2, NDocRela, FecNacRela) "
      "VALUES (7, 'Lucia', NULL, 'Perez', 'Diaz', '789', '2015-01-01'), (2, 'Otra', NULL, 'Persona', NULL, '000', NULL);"
      "INSERT INTO RubrosDeduccion VALUES (1, 'Hijos');"
      "INSERT INTO RelacionesFiliares VALUES (3, 'Hija');"
      "INSERT INTO Declaraciones (idDeclaracion, id_Persona, idRubroDed, id_PersRelac, id_RelacFil, Trabaja, Desde, "
      "Hasta) VALUES (1, 1, 1, 7, 3, 0, '2024-01-01', NULL), (2, 1, 1, 2, 3, -1, '2023-01-01', '2023-12-01')");
  EXPECT_EQ(staging_.rows("SELECT idDeclaracion, DescripRubro, DescRelaFil, NomRela_1, ApeRela_1, ApeRela_2, NDoc, "
                           "NDocRela, NumeroRela, FecNacRela, Id_SexoRela, Nombre_1, Apellido_1, Desde, Hasta "
                           "FROM cDeclaraciones ORDER BY idDeclaracion"),
            (Rows{"1|Hijos|Hija|Lucia|Perez|Diaz|123|789|-|2015-01-01|-|Juan|Perez|2024-01-01|-",
                  "2|Hijos|Hija|Maria|Lopez|-|123|456|2|1990-05-06|2|Juan|Perez|2023-01-01|2023-12-01"}));
}

}  // namespace
}  // namespace schema_test
