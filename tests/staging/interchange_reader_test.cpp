// Tests of reading interchange data files: decoding, splitting into records
// and fields, and converting typed fields.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/data_layout.h"
#include "staging/interchange_convert.h"
#include "staging/interchange_decode.h"
#include "staging/interchange_parse.h"

using settings::ColumnType;
using settings::DataColumn;
using settings::DataFileLayout;
using settings::TextEncoding;
using staging::ConvertField;
using staging::DecodeDataFile;
using staging::FieldValue;
using staging::RecordReader;

namespace {

using Records = std::vector<std::vector<std::string>>;

Records ReadAll(const std::string& text, const DataFileLayout& layout, std::vector<std::size_t>* lines = nullptr) {
  Records out;
  RecordReader reader(text, layout);
  while (reader.next()) {
    out.emplace_back(reader.fields().begin(), reader.fields().end());
    if (lines) lines->push_back(reader.line());
  }
  return out;
}

DataColumn Col(const std::string& name, ColumnType type, int width = 0, const std::string& pattern = {}) {
  DataColumn c;
  c.name = name;
  c.type = type;
  c.width = width;
  c.date_pattern = pattern;
  return c;
}

}  // namespace

TEST(InterchangeParse, DelimitedQuotingAndLineBreaks) {
  DataFileLayout layout;  // ";" and '"'
  std::vector<std::size_t> lines;
  Records r = ReadAll(
      "1;\"Pérez; Juan\";x\r\n"
      "2;\"dice \"\"hola\"\"\";y\r\n"
      "3;\"dos\r\nlíneas\";z\n"
      "\r\n"
      "  4 ; sin comillas ;\n"
      "5;\"abierta",
      layout, &lines);
  ASSERT_EQ(r.size(), 5u);
  EXPECT_EQ(r[0], (std::vector<std::string>{"1", "Pérez; Juan", "x"}));
  EXPECT_EQ(r[1], (std::vector<std::string>{"2", "dice \"hola\"", "y"}));
  EXPECT_EQ(r[2], (std::vector<std::string>{"3", "dos\r\nlíneas", "z"}));
  // Unquoted fields are trimmed; a trailing delimiter gives an empty field.
  EXPECT_EQ(r[3], (std::vector<std::string>{"4", "sin comillas", ""}));
  EXPECT_EQ(r[4], (std::vector<std::string>{"5", "abierta"}));
  // Line numbers count the line break inside the quoted field and the blank line.
  EXPECT_EQ(lines, (std::vector<std::size_t>{1, 2, 3, 6, 7}));

  RecordReader quoted("\"\";;\"x\"\n", layout);
  ASSERT_TRUE(quoted.next());
  EXPECT_EQ(quoted.quoted(), (std::vector<bool>{true, false, true}));

  RecordReader reader("a;\"b", layout);
  ASSERT_TRUE(reader.next());
  EXPECT_TRUE(reader.unterminated_quote());
}

TEST(InterchangeParse, OtherDelimitersQuotesAndSkippedLines) {
  DataFileLayout layout;
  layout.delimiter = '\t';
  layout.quote.reset();
  layout.skip_lines = 2;
  Records r = ReadAll("título\nfecha\n\"a\"\tb c\t\rx\ty\r", layout);
  ASSERT_EQ(r.size(), 2u);
  // Without a quote character, quotes are data; a lone CR ends a record.
  EXPECT_EQ(r[0], (std::vector<std::string>{"\"a\"", "b c", ""}));
  EXPECT_EQ(r[1], (std::vector<std::string>{"x", "y"}));

  layout = DataFileLayout{};
  layout.delimiter = ',';
  layout.quote = '\'';
  r = ReadAll("'a,b'x,'it''s'\n", layout);
  ASSERT_EQ(r.size(), 1u);
  EXPECT_EQ(r[0], (std::vector<std::string>{"a,bx", "it's"}));
}

TEST(InterchangeParse, FixedWidthCountsCharactersNotBytes) {
  DataFileLayout layout;
  layout.fixed_width = true;
  layout.columns = {Col("Cod", ColumnType::Integer, 3), Col("Nombre", ColumnType::Text, 6),
                    Col("Sueldo", ColumnType::Real, 8)};
  Records r = ReadAll("001Muñoz 12500.50\r\n002Ana\n\n003ÁÉÍÓÚÑ    7.25\n", layout);
  ASSERT_EQ(r.size(), 3u);
  EXPECT_EQ(r[0], (std::vector<std::string>{"001", "Muñoz", "12500.50"}));
  EXPECT_EQ(r[1], (std::vector<std::string>{"002", "Ana", ""}));
  EXPECT_EQ(r[2], (std::vector<std::string>{"003", "ÁÉÍÓÚÑ", "7.25"}));
}

TEST(InterchangeDecode, DetectsAndForcesEncodings) {
  TextEncoding found = TextEncoding::Utf16Le;
  std::string error;

  std::string bytes = "\xEF\xBB\xBFNombre;Año\n";
  ASSERT_TRUE(DecodeDataFile(bytes, std::nullopt, "a.csv", &found, &error));
  EXPECT_EQ(bytes, "Nombre;Año\n");
  EXPECT_EQ(found, TextEncoding::Utf8Bom);

  bytes = "Mu\xF1oz;\x80\n";  // Windows-1252: ñ and the euro sign
  ASSERT_TRUE(DecodeDataFile(bytes, std::nullopt, "a.csv", &found, &error));
  EXPECT_EQ(bytes, "Muñoz;€\n");
  EXPECT_EQ(found, TextEncoding::Windows1252);

  // Forced Windows-1252 reads even valid UTF-8 bytes as single characters.
  bytes = "Año";
  ASSERT_TRUE(DecodeDataFile(bytes, TextEncoding::Windows1252, "a.csv", &found, &error));
  EXPECT_EQ(bytes, "AÃ±o");

  // Forced UTF-8 on Windows-1252 bytes: a clear message with the line.
  bytes = "Nombre\nPeña\nMu\xF1oz\n";
  EXPECT_FALSE(DecodeDataFile(bytes, TextEncoding::Utf8, "personas.csv", &found, &error));
  EXPECT_NE(error.find("personas.csv"), std::string::npos);
  EXPECT_NE(error.find("UTF-8"), std::string::npos);
  EXPECT_NE(error.find("línea 3"), std::string::npos);

  bytes = std::string("a;b\0c", 5);
  EXPECT_FALSE(DecodeDataFile(bytes, std::nullopt, "x.csv", &found, &error));
  EXPECT_NE(error.find("no es un archivo de texto"), std::string::npos);

  bytes = std::string("\xFF\xFE" "A\0;\0B\0", 8);
  ASSERT_TRUE(DecodeDataFile(bytes, std::nullopt, "u.csv", &found, &error));
  EXPECT_EQ(bytes, "A;B");
}

TEST(InterchangeConvert, TypedFieldsAndBadValues) {
  FieldValue v;
  const DataColumn integer = Col("N", ColumnType::Integer);
  EXPECT_TRUE(ConvertField(" -42 ", integer, '.', v));
  EXPECT_EQ(v.kind, FieldValue::Kind::Integer);
  EXPECT_EQ(v.integer, -42);
  EXPECT_TRUE(ConvertField("+7", integer, '.', v));
  EXPECT_EQ(v.integer, 7);
  EXPECT_TRUE(ConvertField("12.00", integer, '.', v));  // spreadsheets write whole numbers so
  EXPECT_EQ(v.integer, 12);
  EXPECT_FALSE(ConvertField("12.5", integer, '.', v));
  EXPECT_EQ(v.kind, FieldValue::Kind::Null);
  EXPECT_FALSE(ConvertField("12a", integer, '.', v));
  EXPECT_FALSE(ConvertField("99999999999999999999", integer, '.', v));
  EXPECT_TRUE(ConvertField("", integer, '.', v));
  EXPECT_EQ(v.kind, FieldValue::Kind::Null);

  const DataColumn real = Col("R", ColumnType::Real);
  EXPECT_TRUE(ConvertField("1234.56", real, '.', v));
  EXPECT_DOUBLE_EQ(v.real, 1234.56);
  EXPECT_TRUE(ConvertField("-0,5", real, ',', v));
  EXPECT_DOUBLE_EQ(v.real, -0.5);
  EXPECT_FALSE(ConvertField("1.234,5", real, ',', v));  // group separators are not guessed
  EXPECT_FALSE(ConvertField("1,5", real, '.', v));
  EXPECT_FALSE(ConvertField("nan", real, '.', v));
  EXPECT_TRUE(ConvertField("1e+05", real, '.', v));  // as some exports write large numbers
  EXPECT_DOUBLE_EQ(v.real, 100000);
  EXPECT_FALSE(ConvertField("1e", real, '.', v));
  EXPECT_FALSE(ConvertField("e5", real, '.', v));
  EXPECT_FALSE(ConvertField("inf", real, '.', v));

  const DataColumn date = Col("F", ColumnType::Date, 0, "dd/MM/yyyy");
  EXPECT_TRUE(ConvertField("29/02/2024", date, '.', v));
  EXPECT_EQ(v.kind, FieldValue::Kind::Text);
  EXPECT_EQ(std::string(v.text), "2024-02-29");
  EXPECT_FALSE(ConvertField("29/02/2023", date, '.', v));
  EXPECT_FALSE(ConvertField("2023-02-01", date, '.', v));
  const DataColumn iso = Col("F", ColumnType::Date, 0, "yyyy-MM-dd");
  EXPECT_TRUE(ConvertField("2023-02-01", iso, '.', v));
  EXPECT_EQ(std::string(v.text), "2023-02-01");

  // Text is kept exactly, blanks included; only an empty field is Null.
  const DataColumn text = Col("T", ColumnType::Text);
  EXPECT_TRUE(ConvertField(" a ", text, '.', v));
  EXPECT_EQ(std::string(v.text), " a ");
  EXPECT_TRUE(ConvertField("", text, '.', v));
  EXPECT_EQ(v.kind, FieldValue::Kind::Null);
  // "" (quoted) is an empty text; for other types it is still no value.
  EXPECT_TRUE(ConvertField("", text, '.', v, /*quoted=*/true));
  EXPECT_EQ(v.kind, FieldValue::Kind::Text);
  EXPECT_TRUE(ConvertField("", integer, '.', v, /*quoted=*/true));
  EXPECT_EQ(v.kind, FieldValue::Kind::Null);
}
