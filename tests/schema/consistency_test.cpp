// tests/schema/consistency_test.cpp — the staging and KEL schemas agree.
//
// The transfer copies whole staged rows into the destination by name, so every
// table present in both databases must have the same columns with the same
// types, collations and keys. Also checks that no foreign key is declared.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include <sqlite3.h>

#include "schema_helpers.h"

namespace schema_test {
namespace {

std::set<std::string> tables_of(const Db& db) {
  const Rows names = db.rows("SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%'");
  return {names.begin(), names.end()};
}

Rows columns_of(const Db& db, const std::string& table) {
  return db.rows("SELECT name FROM pragma_table_info('" + table + "')");
}

// One line per column: name, declared type, collation, not null, key, default.
Rows column_signature(const Db& db, const std::string& table) {
  sqlite3* h = nullptr;
  sqlite3_open_v2(db.file.string().c_str(), &h, SQLITE_OPEN_READONLY, nullptr);
  Rows result;
  for (const std::string& row : db.rows("SELECT name, 'nn=' || \"notnull\" || ' pk=' || pk || ' def=' || "
                                        "ifnull(dflt_value, 'NULL') FROM pragma_table_info('" + table + "')")) {
    const std::string column = row.substr(0, row.find('|'));
    const char* type = nullptr;
    const char* collation = nullptr;
    int not_null = 0, primary_key = 0, autoincrement = 0;
    sqlite3_table_column_metadata(h, "main", table.c_str(), column.c_str(), &type, &collation, &not_null,
                                  &primary_key, &autoincrement);
    result.push_back(column + " " + (type ? type : "") + " " + (collation ? collation : "") + " " +
                     row.substr(row.find('|') + 1));
  }
  sqlite3_close(h);
  return result;
}

TEST(SchemaConsistency, StagedTablesMatchTheDestinationColumnByColumn) {
  TempDir dir;
  const Db kel{make_kel(dir.path())};
  const Db staging{make_staging(dir.path())};
  const auto kel_tables = tables_of(kel);
  const auto staging_tables = tables_of(staging);

  // The tables the transfer reads from the staging database.
  for (const char* table : {"Empresa", "Planillas", "Cargos", "Sectores", "Sucursales", "TRegHorario", "Obras",
                            "CentroCosto", "Personas", "PersonasRela", "Declaraciones", "rPersonas_Dto_Comunicacion",
                            "Contrato", "Conceptos", "TiposLiquidacion", "Encabezados", "Datos_Liquidacion",
                            "Cotizacion"}) {
    EXPECT_TRUE(kel_tables.count(table)) << table << " falta en kel.sql";
    EXPECT_TRUE(staging_tables.count(table)) << table << " falta en pasaje.sql";
  }

  int shared = 0;
  for (const auto& table : staging_tables) {
    if (!kel_tables.count(table)) continue;
    ++shared;
    EXPECT_EQ(column_signature(staging, table), column_signature(kel, table)) << "tabla " << table;
  }
  EXPECT_GE(shared, 18);

  // Only the mapping tables, the deduction catalogues and the staging
  // database's own bookkeeping are staging-only.
  for (const auto& table : staging_tables) {
    if (kel_tables.count(table)) continue;
    EXPECT_TRUE(table == "RelacConc" || table == "RelacTLiq" || table.find("Deduc") != std::string::npos ||
                table == "RelacionesFiliares" || table == "CausalesBajaRela" || table == "TablasPropias" ||
                table == "PasajeEmpresa")
        << "tabla solo en la base de pasaje: " << table;
  }
  EXPECT_EQ(columns_of(staging, "RelacConc"), (Rows{"CodKEL", "CodOS"}));
  EXPECT_EQ(columns_of(staging, "RelacTLiq"), (Rows{"CodKEL", "CodOS"}));
}

TEST(SchemaConsistency, StagedLineIdAliasIsHiddenFromTheCopiedColumns) {
  TempDir dir;
  const Db staging{make_staging(dir.path())};
  // id_Datos is generated: not in the copied column list, but readable.
  const auto columns = columns_of(staging, "Datos_Liquidacion");
  EXPECT_EQ(std::count(columns.begin(), columns.end(), "id_Datos"), 0);
  staging.exec("INSERT INTO Datos_Liquidacion (id_Dato, id_Encabezado, id_Concepto, Monto) VALUES (41, 1, 7, 10)");
  EXPECT_EQ(staging.value("SELECT id_Datos FROM Datos_Liquidacion WHERE id_Dato = 41"), "41");
  // A positional insert of the copied columns is still accepted.
  staging.exec("INSERT INTO Datos_Liquidacion VALUES (42, 1, 7, 1, 1, 0, 0, 5, NULL, 0, 0)");
  EXPECT_EQ(staging.value("SELECT id_Datos FROM Datos_Liquidacion WHERE id_Dato = 42"), "42");
}

TEST(SchemaConsistency, NoForeignKeysAndTheKeysTheTransferReliesOn) {
  TempDir dir;
  const Db kel{make_kel(dir.path())};
  const Db staging{make_staging(dir.path())};
  for (const Db* db : {&kel, &staging}) {
    for (const auto& table : tables_of(*db)) {
      EXPECT_TRUE(db->rows("PRAGMA foreign_key_list(\"" + table + "\")").empty()) << table;
    }
  }
  // Unique ids the statements assume.
  kel.exec("INSERT INTO Personas (id_Persona, NUMERO) VALUES (1, '1')");
  sqlite3* h = nullptr;
  sqlite3_open(kel.file.string().c_str(), &h);
  EXPECT_NE(sqlite3_exec(h, "INSERT INTO Personas (id_Persona, NUMERO) VALUES (1, '2')", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(h);
  // Every staged company row goes in as IdEmpresa 1, and a staged neutral
  // registration 0 may join the one the transfer creates.
  kel.exec("INSERT INTO Empresa (IdEmpresa, Nombre) VALUES (1, 'A'); INSERT INTO Empresa (IdEmpresa, Nombre) VALUES (1, 'B')");
  kel.exec("INSERT INTO Planillas (id_planilla, id_Tplanilla) VALUES (0, 2); INSERT INTO Planillas (id_planilla, id_Tplanilla) VALUES (0, 2)");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM Empresa"), "2");
  EXPECT_EQ(kel.value("SELECT COUNT(*) FROM Planillas"), "2");
  // The scratch table numbers rows in insertion order, never reusing a number.
  kel.exec("INSERT INTO AuxOtrosRep (C1, C2) VALUES ('5', '6'); DELETE FROM AuxOtrosRep;"
           "INSERT INTO AuxOtrosRep (C1, C2) VALUES (7, 8)");
  EXPECT_EQ(kel.value("SELECT id || '|' || typeof(C1) FROM AuxOtrosRep"), "2|text");
}

TEST(SchemaConsistency, SavedQueriesHaveTheColumnsTheirReadersUse) {
  // The views' other columns are read by name in the views tests; these are read by position.
  TempDir dir;
  const Db staging{make_staging(dir.path())};
  const auto hist = columns_of(staging, "CHistLiq");  // the browser sorts grid column 5 as a date
  ASSERT_GT(hist.size(), 8u);
  EXPECT_EQ(hist[0], "id_Encabezado");
  EXPECT_EQ(hist[5], "strMesDeLiq");
}

}  // namespace
}  // namespace schema_test
