// Tests of the golden file reader: records, their lines, and malformed files
// reported instead of silently passing.
#include <gtest/gtest.h>

#include "golden_file.h"

namespace {

TEST(GoldenFile, ReadsEveryKindOfRecord) {
  golden::File file = golden::parse(
      "# comentario\n"
      "\n"
      "sqlite\n"
      "CREATE TABLE T (id INTEGER);\n"
      "INSERT INTO T VALUES (1);\n"
      "\n"
      "statement ok\r\n"
      "Insert Into T\r\n"
      "Values (#01/02/2024#)\r\n"
      "\n"
      "statement error  no such table \n"
      "Select x From NoHay\n"
      "\n"
      "query\n"
      "Select id\n"
      "From T\n"
      "----\n"
      "id\n"
      "1\n"
      "\n\n"
      "explain\n"
      "Select 1 As X\n"
      "----\n"
      "SELECT 1 AS X\n"
      "\n"
      "connect otra\n"
      "query\n"
      "Select id From T Where id > 5\n"
      "----\n"
      "id\n");
  EXPECT_TRUE(file.problems.empty());
  ASSERT_EQ(file.records.size(), 7u);
  EXPECT_EQ(file.records[0].kind, golden::Kind::kSqlite);
  EXPECT_EQ(file.records[0].line, 3);
  EXPECT_EQ(file.records[0].sql, "CREATE TABLE T (id INTEGER);\nINSERT INTO T VALUES (1);");
  EXPECT_EQ(file.records[1].kind, golden::Kind::kStatementOk);
  EXPECT_EQ(file.records[1].sql, "Insert Into T\nValues (#01/02/2024#)") << "no CR, # kept";
  EXPECT_EQ(file.records[2].kind, golden::Kind::kStatementError);
  EXPECT_EQ(file.records[2].argument, "no such table");
  EXPECT_EQ(file.records[3].kind, golden::Kind::kQuery);
  EXPECT_EQ(file.records[3].line, 14);
  EXPECT_EQ(file.records[3].sql, "Select id\nFrom T");
  EXPECT_EQ(file.records[3].expected, (std::vector<std::string>{"id", "1"}));
  EXPECT_EQ(file.records[4].kind, golden::Kind::kExplain);
  EXPECT_EQ(file.records[4].expected, std::vector<std::string>{"SELECT 1 AS X"});
  EXPECT_EQ(file.records[5].kind, golden::Kind::kConnect);
  EXPECT_EQ(file.records[5].argument, "otra");
  EXPECT_EQ(file.records[6].expected, std::vector<std::string>{"id"}) << "header only: no rows";
}

TEST(GoldenFile, MalformedRecordsAreReportedWithTheirLine) {
  golden::File file = golden::parse(
      "query\n"
      "Select 1\n"
      "\n"
      "explain\n"
      "Select 1\n"
      "----\n"
      "\n"
      "consulta\n"
      "Select 1\n"
      "\n"
      "statement ok\n"
      "\n"
      "connect\n"
      "\n"
      "query\n"
      "Select 2\n"
      "----\n");
  ASSERT_EQ(file.problems.size(), 6u);
  EXPECT_EQ(file.problems[0], "línea 1: falta la línea ---- y el resultado");
  EXPECT_EQ(file.problems[1], "línea 4: explain espera exactamente una línea de resultado");
  EXPECT_EQ(file.problems[2], "línea 8: directiva desconocida: consulta");
  EXPECT_EQ(file.problems[3], "línea 11: registro sin instrucción");
  EXPECT_EQ(file.problems[4], "línea 13: connect sin nombre de base");
  EXPECT_EQ(file.problems[5], "línea 15: query sin línea de encabezado");
}

}  // namespace
