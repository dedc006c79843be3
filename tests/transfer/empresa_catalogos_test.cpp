// Tests the company and the catalogues steps on hand-made databases: what a
// staged company or registration list does to KEL's, and the merge rules of
// the catalogues (ids 0 kept, KEL-only rows kept, empty assignment values
// filled from the contract, the merge run twice changing nothing).
#include "transfer/catalogos.h"
#include "transfer/empresa.h"
#include "transfer_fixture.h"

namespace transfer_test {
namespace {

const char* const kKelCompany = R"SQL(
INSERT INTO Empresa (IdEmpresa, Nombre) VALUES (1, 'KEL viejo');
INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES (0, '', '-', 2), (1, '', 'BSE-viejo', 1);
)SQL";

TEST_F(TransferTest, CompanyStepReplacesCompanyAndRegistrations) {
  struct Case {
    const char* what;
    const char* staged;
    Rows empresa;
    Rows planillas;
  };
  const std::vector<Case> cases = {
      {"one company, registrations: the neutral 0 then the staged ones",
       "INSERT INTO Empresa (IdEmpresa, Nombre) VALUES (7, 'Nuevo');"
       "INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES (3, '', 'BPS-3', 3), (2, '', 'M', 2);",
       {"1|Nuevo"},
       {"0|-|2", "3|BPS-3|3", "2|M|2"}},
      {"no staged company: no company and no registration 0, the registrations still copied",
       "INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES (3, '', 'BPS-3', 3);",
       {},
       {"3|BPS-3|3"}},
      {"two staged companies both become 1; a staged registration 0 is copied beside the neutral one",
       "INSERT INTO Empresa (IdEmpresa, Nombre) VALUES (1, 'A'), (2, 'B');"
       "INSERT INTO Planillas (id_planilla, SubNombre, Numero, id_Tplanilla) VALUES (0, 'x', 'propia', 1);",
       {"1|A", "1|B"},
       {"0|-|2", "0|propia|1"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    kel_.execute_native("DELETE FROM Empresa; DELETE FROM Planillas;");
    kel_.execute_native(kKelCompany);
    staging_.execute_native("DELETE FROM Empresa; DELETE FROM Planillas;");
    staging_.execute_native(c.staged);
    transfer::StepContext ctx = context();
    const transfer::StepReport report = transfer::import_company(ctx);
    EXPECT_EQ(kel("SELECT IdEmpresa, Nombre FROM Empresa ORDER BY Nombre"), c.empresa);
    EXPECT_EQ(kel("SELECT id_planilla, Numero, id_Tplanilla FROM Planillas ORDER BY rowid"), c.planillas);
    EXPECT_EQ(report.statements_run, 5);
    EXPECT_EQ(report.total("insertadas"), static_cast<std::int64_t>(c.empresa.size() + c.planillas.size()));
  }
}

TEST_F(TransferTest, CataloguesMergeByIdAndFillEmptyAssignments) {
  kel_.execute_native(R"SQL(
INSERT INTO Cargos (id_Cargo, Cargo, Laudo) VALUES (1, 'Viejo', 10), (9, 'Solo KEL', 90);
INSERT INTO Sucursales (id_Sucursal, Nombre) VALUES (0, 'Sin sucursal'), (1, 'Norte viejo');
INSERT INTO TRegHorario (id_Regimen, Descripcion, CantHxDia, HorasXSem) VALUES (0, 'Ninguno KEL', 0, 0);
INSERT INTO Contrato (Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, id_Cargo, id_Seguro_Sal, id_Exoneracion)
  VALUES (1, '1', 1, 2, 5, 6);
INSERT INTO rCC_Cont (id_Contrato, idCC, Porcentaje, id_Cargo, id_Seguro_Sal, id_Exonera)
  VALUES (1, 1, 100, 0, NULL, 3), (99, 1, 100, 0, 0, NULL);
)SQL");
  staging_.execute_native(R"SQL(
INSERT INTO Cargos (id_Cargo, Cargo, Laudo) VALUES (1, 'Nuevo', 11), (2, 'Dos', 20);
INSERT INTO Sucursales (id_Sucursal, Nombre) VALUES (0, 'Central del origen'), (1, 'Norte'), (2, 'Sur');
INSERT INTO TRegHorario (id_Regimen, Descripcion, CantHxDia, HorasXSem) VALUES (0, 'Ninguno origen', 1, 1),
  (1, 'Comercio', 8, 44);
INSERT INTO CentroCosto (idCC, NombreCC) VALUES (1, 'Administración');
)SQL");
  for (int run = 1; run <= 2; ++run) {
    SCOPED_TRACE(run);
    transfer::StepContext ctx = context();
    transfer::import_catalogues(ctx);
    EXPECT_EQ(kel("SELECT id_Cargo, Cargo, Laudo FROM Cargos ORDER BY 1"),
              (Rows{"1|Nuevo|11.0", "2|Dos|20.0", "9|Solo KEL|90.0"}));
    EXPECT_EQ(kel("SELECT id_Sucursal, Nombre FROM Sucursales ORDER BY 1"),
              (Rows{"0|Sin sucursal", "1|Norte", "2|Sur"}));
    EXPECT_EQ(kel("SELECT id_Regimen, Descripcion FROM TRegHorario ORDER BY 1"),
              (Rows{"0|Ninguno KEL", "1|Comercio"}));
    EXPECT_EQ(kel("SELECT idCC, NombreCC FROM CentroCosto"), (Rows{"1|Administración"}));
    EXPECT_TRUE(kel("SELECT * FROM Obras").empty());
    // Empty or 0 values come from the contract, a set one stays; an
    // assignment without a contract is left alone.
    EXPECT_EQ(kel("SELECT id_Contrato, id_Cargo, id_Seguro_Sal, id_Exonera FROM rCC_Cont ORDER BY 1"),
              (Rows{"1|2|5|3", "99|0|0|-"}));
  }
}

}  // namespace
}  // namespace transfer_test
