// Tests of statement files: statements, replacement pairs and the data-file layout.
#include <gtest/gtest.h>

#include "settings/statement_file.h"
#include "support/temp_dir.h"

using namespace settings;

// Where statements end is the splitter's (statement_splitter_test.cpp); the
// file adds that a section line ends the statement before it.
TEST(StatementFile, StatementsEndAtSemicolonsAndAtSections) {
  StatementFile f;
  ASSERT_TRUE(f.load_text("-- carga\r\nDelete * From Personas;\r\n\r\nInsert Into Personas (Nombre)\r\n"
                          "  Select Nombre\r\n  From [Emp] in '[BDOrigen]'\r\n;\r\nSelect 1\r\n@PARES\r\n"));
  ASSERT_EQ(f.statement_count(), 3);
  EXPECT_EQ(f.statement(1), "Delete * From Personas");
  EXPECT_EQ(f.statement(2), "Insert Into Personas (Nombre)\n  Select Nombre\n  From [Emp] in '[BDOrigen]'");
  EXPECT_EQ(f.statement(3), "Select 1");
  EXPECT_THROW(f.statement(0), std::out_of_range);
  EXPECT_THROW(f.statement(4), std::out_of_range);
  EXPECT_TRUE(f.pairs().empty());
  EXPECT_FALSE(f.layout());
  EXPECT_TRUE(f.load_text("-- nada\r\n;\r\n  ;\r\n@PARES\r\n"));  // no statements is valid
  EXPECT_EQ(f.statement_count(), 0);
}

TEST(StatementFile, ReadsPairsInOrderWithValorAsWritten) {
  StatementFile f;
  ASSERT_TRUE(f.load_text(
      "@PARES\n [Empresa] |E001\n[Anio]| 2024 \nsin barra\n[Vacio]|\n@SENTENCIAS\n"
      "Select [Empresa];\n@pares\n"
      "[X]|a|b\n"));
  ASSERT_EQ(f.pairs().size(), 4u);
  EXPECT_EQ(f.pairs()[0].Campo, " [Empresa] ");
  EXPECT_EQ(f.pairs()[0].Valor, "E001");
  EXPECT_EQ(f.pairs()[1].Valor, " 2024 ");
  EXPECT_EQ(f.pairs()[2].Valor, "");
  EXPECT_EQ(f.pairs()[3].Campo, "[X]");
  EXPECT_EQ(f.pairs()[3].Valor, "a|b");
  ASSERT_EQ(f.warnings().size(), 1u);
  EXPECT_NE(f.warnings()[0].find("Línea 4"), std::string::npos);
  EXPECT_EQ(f.statement_count(), 1);
}

TEST(StatementFile, LoadsFilesInAnyEncodingAndRefusesBinaryOnes) {
  TempDir dir;
  StatementFile f;
  EXPECT_FALSE(f.load(dir / "falta.sql"));
  EXPECT_NE(f.error().find("No existe"), std::string::npos);
  auto bin = dir.write("bin.sql", std::string("Select\0", 7));
  EXPECT_FALSE(f.load(bin));
  EXPECT_FALSE(f.error().empty());
  auto ansi = dir.write("a.sql", "Insert Into T Values ('Compa\xF1\xED" "a');\r\n");
  ASSERT_TRUE(f.load(ansi)) << f.error();
  EXPECT_EQ(f.statement(1), "Insert Into T Values ('Compañía')");
}

TEST(StatementFile, ReadsTheDataFileLayout) {
  StatementFile f;
  ASSERT_TRUE(f.load_text(
      "@ARCHIVO\nTabla=Imp_Empleados\nSeparador=TAB\nComillas=NINGUNA\nEncabezado=Si\nSaltar=2\n"
      "Codificacion=windows-1252\nDecimal=,\n-- columnas\nColumna=Codigo:entero\nColumna=Nombre\n"
      "Columna=Sueldo:real\nColumna=Ingreso:fecha:yyyyMMdd\nColumna=Egreso:fecha\n@SENTENCIAS\n"
      "Insert Into Personas Select * From Imp_Empleados;\n"))
      << f.error();
  ASSERT_TRUE(f.layout());
  const DataFileLayout& l = *f.layout();
  EXPECT_EQ(l.table, "Imp_Empleados");
  EXPECT_FALSE(l.fixed_width);
  EXPECT_EQ(l.delimiter, '\t');
  EXPECT_FALSE(l.quote);
  EXPECT_TRUE(l.header);
  EXPECT_EQ(l.skip_lines, 2);
  EXPECT_EQ(l.encoding, TextEncoding::Windows1252);
  EXPECT_EQ(l.decimal_separator, ',');
  const std::vector<std::pair<ColumnType, std::string>> columns = {
      {ColumnType::Integer, ""}, {ColumnType::Text, ""}, {ColumnType::Real, ""},
      {ColumnType::Date, "yyyyMMdd"}, {ColumnType::Date, "dd/MM/yyyy"}};  // the default pattern
  ASSERT_EQ(l.columns.size(), columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    EXPECT_EQ(l.columns[i].type, columns[i].first) << i;
    EXPECT_EQ(l.columns[i].date_pattern, columns[i].second) << i;
  }
  EXPECT_EQ(f.statement_count(), 1);
}

TEST(DataFileLayout, DefaultsAndABlankSeparator) {
  std::string err;
  auto header_only = ParseDataFileLayout({"Tabla=T", "Encabezado=Si", "Separador=,"}, &err);
  ASSERT_TRUE(header_only) << err;
  EXPECT_EQ(header_only->quote, '"');
  EXPECT_FALSE(header_only->encoding);
  auto blank_sep = ParseDataFileLayout({"Tabla=T", "Separador= ", "Columna=A"}, &err);
  ASSERT_TRUE(blank_sep) << err;
  EXPECT_EQ(blank_sep->delimiter, ' ');
}

TEST(DataFileLayout, BadSectionsAreErrors) {
  const std::vector<std::vector<std::string>> bad = {
      {"Columna=A"},                                                       // no Tabla
      {"Tabla=T"},                                                         // no columns and no header
      {"Tabla=T", "Formato=Fijo", "Columna=A", "Columna=B", "Anchos=5"},   // widths do not match
      {"Tabla=T", "Formato=Fijo", "Columna=A"},                            // no widths
      {"Tabla=T", "Anchos=5", "Columna=A"},                                // widths without Fijo
      {"Tabla=T", "Columna=A:moneda"},                                     // unknown type
      {"Tabla=T", "Columna=A:entero:x"},                                   // pattern on a non-date
      {"Tabla=T", "Columna=A", "Clave=1"},                                 // unknown key
      {"Tabla=T", "Columna=A", "Separador=;;"},                            // two-character separator
      {"Tabla=T", "Columna=A", "Saltar=-1"},                               // not a count
      {"Tabla=T", "Columna=A", "sin igual"},                               // not Clave=valor
      {"Tabla=T", "Columna=A", "Separador=\"", "Comillas=\""},              // same separator and quote
  };
  for (const auto& lines : bad) {
    std::string err;
    EXPECT_FALSE(ParseDataFileLayout(lines, &err)) << lines.back();
    EXPECT_NE(err.find("@ARCHIVO"), std::string::npos) << lines.back();
  }
  StatementFile f;
  EXPECT_FALSE(f.load_text("Select 1;\n@ARCHIVO\nTabla=T\n"));
  EXPECT_EQ(f.statement_count(), 0);
  EXPECT_FALSE(f.load_text("@ARCHIVO\nTabla=T\nColumna=A\n@ARCHIVO\nTabla=U\n"));
}

TEST(DataFileLayout, ReadsDatesWithPatterns) {
  const std::vector<std::array<std::string, 3>> good = {
      {"31/01/2024", "dd/MM/yyyy", "2024-01-31"}, {"1/2/2024", "dd/MM/yyyy", "2024-02-01"},
      {"20240229", "yyyyMMdd", "2024-02-29"},     {" 05/03/99 ", "dd/MM/yy", "1999-03-05"},
      {"05/03/29", "dd/MM/yy", "2029-03-05"}};
  for (const auto& [text, pattern, iso] : good) EXPECT_EQ(ParseDateWithPattern(text, pattern), iso) << text;
  EXPECT_FALSE(ParseDateWithPattern("20230229", "yyyyMMdd"));  // not a leap year
  for (const char* bad : {"31/04/2024", "31-01-2024", "", "01/01/2024x"})
    EXPECT_FALSE(ParseDateWithPattern(bad, "dd/MM/yyyy")) << bad;
}
