// tests/corpus/corpus_fixture.cpp — databases, demo rows and the runner.
#include "corpus_fixture.h"

#include "db/error.h"
#include "schema/database_scripts.h"
#include "support/query_rows.h"

namespace corpus_test {
namespace {

std::filesystem::path schema_script(const char* name) {
  return std::filesystem::path(KEL_SOURCE_DIR) / "schema" / name;
}

// A small company as a source system's statements would stage it.
const char* const kStagingRows = R"SQL(
INSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial, Direccion, RUC, Email, Telefono1, Fax, Ramo, Seccion_Policial,
                     InicioDeAct, DiasXMesEnContrato, CodigoEmp)
  VALUES (1, 'Demo S.A.', 'Demo Sociedad Anónima', 'Av. Italia 1234', '210000000012', 'info@demo.com.uy',
          '2600 0000', '2600 0001', 'Comercio', '1ra', '2001-03-01', 30, 'E001');
INSERT INTO Planillas VALUES (1, '', 'BSE-555', 1, NULL, 0, 0, 0), (2, '', 'MTSS-777', 2, NULL, 0, 0, 0),
                             (3, '', 'BPS-999', 3, NULL, 1, 2, 3);
INSERT INTO Cargos VALUES (1, 'Administrativo', 30000, 8, 1), (2, 'Operario', 1200, 4, 2);
INSERT INTO Sectores VALUES (1, 'Ventas'), (2, 'Planta');
INSERT INTO Sucursales VALUES (0, 'Central del origen', '', '', '', '', NULL, 10),
                              (1, 'Sucursal Norte', 'Ruta 5 km 20', '2222', 'n@demo.com', 'Luis', '2010-01-01', 3);
INSERT INTO TRegHorario VALUES (0, 'Ninguno', 0, 0), (1, 'Comercio', 8, 44);
INSERT INTO Personas (id_Persona, NUMERO, Apellido_1, Nombre_1, Apellido_2, Nombre_2, Id_Sexo, Fecha_Nacimiento)
  VALUES (1, ' 1234567-8', 'Perez', 'Juan', 'Gomez', 'Carlos', 1, '1980-02-03'),
         (2, '2345678-9', 'Lopez', 'Maria', NULL, NULL, 2, '1990-05-06'),
         (3, '3456789_0', 'Silva', 'Pedro', 'Rios', NULL, 1, '1975-11-30');
INSERT INTO PersonasRela VALUES (1, 'Lucia', NULL, 'Perez', 'Diaz', 2, 1, 1, '5555555', 1, '2015-01-01');
INSERT INTO RubrosDeduccion VALUES (1, 'Hijos');
INSERT INTO Declaraciones (idDeclaracion, id_Persona, idRubroDed, id_PersRelac, id_RelacFil, Trabaja, TieneMonto,
                           CantBPC, FechaDeclaracion, Desde, Hasta)
  VALUES (1, 1, 1, 1, 1, 0, 0, 2, '2024-01-05', '2024-01-01', NULL),
         (2, 2, 1, 1, 2, -1, 0, 1, '2023-01-05', '2023-01-01', '2024-12-01');
INSERT INTO Contrato (Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, HORAS, FECHA_INICIO, FECHA_FIN, vigente,
                      id_Tipo_Contrato, id_TipoRem, id_Sucursal, id_Regimen, AcuLab, id_CobraPor, Confidencial,
                      id_Cargo, id_Sector, id_Moneda, CantDiasXMes, TomaDTdeCont, idCC, id_Seguro_Sal,
                      id_Exoneracion)
  VALUES (1, '1_1', 1, 30000, 8, '2023-01-01', NULL, -1, 1, 1, 1, 1, 0, 8, 0, 1, 1, 1, 30, 0, 1, 2, 0),
         (2, '2_1', 2, 1200, 8, '2022-05-01', '2024-06-30', 0, 1, 2, 1, 1, 0, 8, 0, 2, 2, 1, 30, 0, 2, 1, 0),
         (3, '2_2', 2, 1300, 8, '2024-07-01', NULL, -1, 1, 2, 1, 1, 0, 4, 0, 2, 2, 1, 30, 0, 2, 1, 0),
         (4, '3_1', 3, 20000, NULL, '2024-01-01', NULL, -1, NULL, 1, 1, 1, 0, 8, 0, 1, 1, 1, 30, 0, 1, 1, 0);
INSERT INTO Conceptos VALUES
  (1, 'SUE', 'Sueldo', 'Sueldo mensual', NULL, 0, 'S', -1, 2, 2, 1, '', '', -1),
  (2, 'HEX', 'Hs extra', 'Horas extra', NULL, 2, 'S', -1, 2, 2, 1, 'HorasExtra', '', -1),
  (3, 'JUB', 'Jubilat.', 'Aporte jubilatorio', NULL, 1, 'R', 0, 2, 2, 1, '', '15', -1),
  (4, 'LIC', 'Licencia', 'Licencia gozada', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (5, 'DTR', 'Dias', 'Días trabajados', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (6, 'UNU', 'Sin uso', 'Concepto sin uso', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (7, '17', 'Imponible', 'Monto imponible', NULL, 0, 'S', 0, 2, 2, 1, 'Suma(''A'')', ' Base ', -1),
  (8, 'PRE', 'Premio', 'Premio por asistencia', 3, 0, 'S', -1, 2, 2, 1, '', '', -1);
INSERT INTO TiposLiquidacion VALUES (1, 'Mensual', 0, -1, -1, 0, 1), (2, 'Aguinaldo', 0, 0, -1, 0, 2),
                                    (3, 'Licencia', 0, -1, -1, -1, 1), (4, 'Especial', 0, 0, -1, 0, 1);
INSERT INTO RelacConc (CodKEL, CodOS) VALUES (1, 1), (9, 2), (5, 3), (20, 4), (3, 5), (-1, 6), (17, 13);
INSERT INTO RelacTLiq (CodKEL, CodOS) VALUES (1, 1), (3, 2), (5, 3);
INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Impreso, Terminado, id_Contrato,
                         id_Usuario)
  VALUES (1, 1, '2024-01-31', '2024-01-01', 0, -1, 1, 1), (2, 1, '2024-02-29', '2024-02-01', 0, -1, 1, 1),
         (3, 2, '2023-12-20', '2023-12-01', 0, -1, 1, 1), (4, 3, '2024-02-15', '2024-02-01', 0, -1, 1, 1),
         (5, 1, '2024-03-31', '2024-03-01', 0, -1, 2, 1), (6, 1, '2024-02-29', '2024-02-01', 0, -1, 4, 1),
         (7, 1, '2021-01-31', '2021-01-01', 0, -1, 1, 1), (8, 4, '2024-02-29', '2024-02-01', 0, -1, 2, 1);
INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa,
                               Monto, Relacion, DTE, DTP)
  VALUES (1, 1, 1, 30, 1000, 0, 0, 30000, NULL, 0, 0), (2, 1, 3, 15, 30000, 0, 0, 4500, NULL, 0, 0),
         (3, 1, 5, 22, 0, 0, 0, 0, NULL, 0, 0), (4, 2, 1, 30, 1000, 0, 0, 30000, NULL, 0, 0),
         (5, 2, 2, 4, 250, 0, 0, 1000, NULL, 0, 0), (6, 2, 4, 3, 1000, 0, 0, 3000, NULL, 0, 0),
         (7, 3, 1, 1, 15000, 0, 0, 15000, NULL, 0, 0), (8, 4, 4, 10, 1000, 0, 0, 10000, NULL, 0, 0),
         (9, 5, 1, 25, 1200, 0, 0, 30000, NULL, 0, 0), (10, 6, 1, 30, 666.67, 0, 0, 20000, NULL, 0, 0),
         (11, 6, 7, 0, 0, 0, 0, 20000, NULL, 0, 0), (12, 7, 1, 30, 900, 0, 0, 27000, NULL, 0, 0),
         (13, 8, 1, 1, 500, 0, 0, 500, NULL, 0, 0);
)SQL";

// The KEL company the company check compares with.
const char* const kKelRows =
    "INSERT INTO Empresa (IdEmpresa, Nombre, RazonSocial) VALUES (1, 'DEMO S.A.', 'Demo Sociedad Anónima');";

}  // namespace

void CorpusTest::SetUp() {
  // A blank in the folder name, as in many company folders.
  staging_path_ = (dir_.path() / "Mi Empresa" / "Pasaje.mdb").string();
  kel_path_ = (dir_.path() / "Datos" / "Empresa.mdb").string();
  std::string error;
  ASSERT_TRUE(schema::create_database_from_scripts(staging_path_, {schema_script("pasaje.sql")}, error)) << error;
  ASSERT_TRUE(schema::create_database_from_scripts(
      kel_path_, {schema_script("kel.sql"), schema_script("kel_base.sql")}, error))
      << error;
  ASSERT_TRUE(staging_.open(staging_path_)) << staging_.last_error();
  ASSERT_TRUE(kel_.open(kel_path_)) << kel_.last_error();
  staging_.execute_native(kStagingRows);
  kel_.execute_native(kKelRows);
}

void CorpusTest::TearDown() {
  std::string report;
  for (const auto& refusal : refused_) report += "\n" + refusal;
  EXPECT_TRUE(refused_.empty()) << refused_.size() << " de " << statements_run_
                                << " instrucciones rechazadas:" << report;
  staging_.close();
  kel_.close();
}

void CorpusTest::refuse(const std::string& sql, const db::Error& e) {
  refused_.push_back("* " + sql + "\n    -> " + e.message() + "\n    SQLite: " + e.translated_text());
}

void CorpusTest::run(db::SqliteConnection& connection, const std::string& sql) {
  ++statements_run_;
  try {
    connection.execute(sql);
  } catch (const db::Error& e) {
    refuse(sql, e);
  }
}

void CorpusTest::run_all(db::SqliteConnection& connection, const std::vector<std::string>& statements) {
  for (const auto& sql : statements) run(connection, sql);
}

db::Recordset CorpusTest::query(db::SqliteConnection& connection, const std::string& sql) {
  ++statements_run_;
  try {
    return connection.open_recordset(sql);
  } catch (const db::Error& e) {
    refuse(sql, e);
    return {};
  }
}

std::int64_t CorpusTest::count(db::SqliteConnection& connection, const std::string& native_sql) {
  const std::vector<std::string> rows = test_support::QueryRows(connection, native_sql);
  return rows.empty() ? -1 : std::stoll(rows[0]);
}

}  // namespace corpus_test
