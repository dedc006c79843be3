// Tests of what the shipped CSV format does beyond copying rows: the month
// range of the liquidations, and the staging columns every format names. (The
// automatic links of the BPS totals are tested on the demo in
// shipped_formats_test.cpp.)
#include <gtest/gtest.h>

#include "format_run.h"
#include "settings/paths.h"
#include "settings/statement_file.h"
#include "support/query_rows.h"
#include "support/temp_dir.h"

using test_support::QueryValue;

TEST(FormatRules, LiquidationsOnlyForTheChosenMonths) {
  TempDir dir;
  dir.write("origen/Encabezados.csv",
            "id_Encabezado;Id_TipoLiq;MesDeLiq;Liquido\r\n"
            "1;1;2024-02-01;100\r\n2;1;2024-03-01;200\r\n3;1;2024-05-01;300\r\n4;1;2024-06-01;400\r\n");
  dir.write("origen/Datos_Liquidacion.csv",
            "id_Dato;id_Encabezado;id_Concepto;Monto\r\n"
            "1;1;5;10\r\n2;2;5;20\r\n3;3;5;30\r\n4;3;6;31\r\n5;4;5;40\r\n");
  FormatRun run;
  RunFormat(run, "Intercambio_CSV.fmt", dir.path() / "origen", dir.path() / "Pasaje.mdb", [](FormatRun& r) {
    r.load.values.desde = {2024, 3, true};
    r.load.values.hasta = {2024, 5, true};  // up to the last day of May
  });
  auto& c = *run.staging;
  EXPECT_EQ(QueryValue(c, "SELECT group_concat(id_Encabezado) FROM Encabezados"), "2,3");
  EXPECT_EQ(QueryValue(c, "SELECT group_concat(id_Dato) FROM Datos_Liquidacion"), "2,3,4");
  // Columns the files leave out take KEL's defaults or stay empty.
  EXPECT_EQ(QueryValue(c, "SELECT Cod1 || '/' || quote(FechaDeLiq) FROM Encabezados WHERE id_Encabezado = 2"), "0.0/NULL");

  // Without the boxes every month is staged.
  FormatRun all;
  RunFormat(all, "Intercambio_CSV.fmt", dir.path() / "origen", dir.path() / "Pasaje2.mdb");
  EXPECT_EQ(QueryValue(*all.staging, "SELECT count(*) FROM Encabezados"), "4");
  EXPECT_EQ(QueryValue(*all.staging, "SELECT count(*) FROM Datos_Liquidacion"), "5");
}

// The CSV layouts and both formats' inserts name every column of their
// staging table, so a column added to the staging schema is not silently
// left out of the interchange schema.
TEST(FormatRules, FormatsCoverEveryStagingColumn) {
  TempDir dir;
  MakeStagingDatabase(dir.path() / "Pasaje.mdb");
  db::SqliteConnection c;
  ASSERT_TRUE(c.open((dir.path() / "Pasaje.mdb").string()));
  const std::filesystem::path program = std::filesystem::path(KEL_SOURCE_DIR) / "formats";
  staging::ColArchsBD catalogue;
  std::vector<std::string> warnings;
  staging::AddEntriesFromKey(catalogue, settings::KeyValue(settings::ReadText(program / "Intercambio_CSV.fmt"), "Archivos"),
                             true, "Archivos", &warnings);
  ASSERT_EQ(catalogue.size(), 24u);
  for (const auto& entry : catalogue) {
    const std::string table = entry.name();
    std::string columns = QueryValue(c, "SELECT group_concat(name, ',') FROM pragma_table_info('" + table + "')");
    ASSERT_NE(columns, "-") << table;
    settings::StatementFile csv;
    ASSERT_TRUE(csv.load(settings::ProgramPath(program, entry.ArchConf))) << csv.error();
    ASSERT_TRUE(csv.layout()) << table;
    std::string declared;
    for (const auto& column : csv.layout()->columns) {
      if (column.name != "TotalBPS") declared += (declared.empty() ? "" : ",") + column.name;
    }
    EXPECT_EQ(declared, columns) << table;
    settings::StatementFile bd;
    ASSERT_TRUE(bd.load(program / "bd" / std::filesystem::path(settings::NormaliseRelativeName(entry.ArchConf)).filename()));
    for (const auto* file : {&csv, &bd}) {
      ASSERT_GE(file->statement_count(), 1) << table;
      std::string insert = file->statement(1);
      std::string list = insert.substr(insert.find('(') + 1, insert.find(')') - insert.find('(') - 1);
      std::string names;
      for (char ch : list)
        if (ch != ' ' && ch != '\n') names += ch;
      EXPECT_EQ(names, columns) << file->path();
    }
  }
}
