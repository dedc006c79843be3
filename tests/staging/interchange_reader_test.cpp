// Tests of reading interchange data files: decoding, splitting into records
// and fields, and converting typed fields.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <sstream>
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

// A converted field as text: "!" when refused, "null", "i:<n>", "r:<x>" or "t:<text>".
std::string Convert(const std::string& field, const DataColumn& column, char decimal = '.', bool quoted = false) {
  FieldValue v;
  if (!ConvertField(field, column, decimal, v, quoted)) return v.kind == FieldValue::Kind::Null ? "!" : "!not null";
  switch (v.kind) {
    case FieldValue::Kind::Integer: return "i:" + std::to_string(v.integer);
    case FieldValue::Kind::Real: { std::ostringstream s; s << v.real; return "r:" + s.str(); }
    case FieldValue::Kind::Text: return "t:" + std::string(v.text);
    default: return "null";
  }
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

  // (Detecting Windows-1252 is in StrayBytesInUtf8.)
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

// Auto-detection: a UTF-8 file with a few stray bytes stays UTF-8 (each stray
// byte read as Windows-1252, and the user told where); only a file with no
// valid UTF-8 sequence at all is Windows-1252.
TEST(InterchangeDecode, StrayBytesInUtf8) {
  struct Case {
    std::string bytes, text, warning;
    TextEncoding found;
  };
  const std::vector<Case> cases = {
      {"Año;Muñoz\nPe\xF1" "a\n", "Año;Muñoz\nPeña\n", "línea 2", TextEncoding::Utf8},
      {"Pe\xF1" "a\nAño\n", "Peña\nAño\n", "línea 1", TextEncoding::Utf8},
      {"\xEF\xBB\xBFId\nPe\xF1" "a\n", "Id\nPeña\n", "línea 2", TextEncoding::Utf8Bom},  // the mark says UTF-8
      {"Pe\xF1" "a\nMu\xF1oz\n", "Peña\nMuñoz\n", "", TextEncoding::Windows1252},
      {"x\xC3", "xÃ", "", TextEncoding::Windows1252},  // a sequence cut by the end is not one
      {"é\xC3", "éÃ", "línea 1", TextEncoding::Utf8},
  };
  for (const Case& c : cases) {
    std::string bytes = c.bytes, error, warning;
    TextEncoding found = TextEncoding::Utf16Le;
    ASSERT_TRUE(DecodeDataFile(bytes, std::nullopt, "p.csv", &found, &error, &warning)) << c.bytes;
    EXPECT_EQ(bytes, c.text);
    EXPECT_EQ(found, c.found) << c.bytes;
    if (c.warning.empty()) {
      EXPECT_EQ(warning, "") << c.bytes;
    } else {
      EXPECT_NE(warning.find("p.csv"), std::string::npos) << warning;
      EXPECT_NE(warning.find(c.warning), std::string::npos) << warning;
    }
  }
}

// Files are looked at and decoded block by block: any cut between blocks
// gives what the whole file gives.
TEST(InterchangeDecode, BlocksGiveWhatTheWholeFileGives) {
  const std::vector<std::string> files = {"Año;Muñoz\nPe\xF1" "a €\n\xF0\x9F\x98\x80;\xE2\x82\n\xC3",
                                          "Pe\xF1" "a\r\nMu\xF1oz\n"};
  for (const std::string& bytes : files) {
    staging::EncodingScanner whole_scan;
    whole_scan.feed(bytes);
    whole_scan.finish();
    for (auto decoding : {staging::ByteDecoding::Utf8Mixed, staging::ByteDecoding::Windows1252}) {
      std::string whole;
      staging::ChunkDecoder(decoding).decode(bytes, true, whole);
      for (std::size_t block = 1; block <= 5; ++block) {
        staging::EncodingScanner scan;
        staging::ChunkDecoder decoder(decoding);
        std::string out;
        for (std::size_t at = 0; at < bytes.size(); at += block) {
          scan.feed(std::string_view(bytes).substr(at, block));
          decoder.decode(std::string_view(bytes).substr(at, block), at + block >= bytes.size(), out);
        }
        scan.finish();
        EXPECT_EQ(out, whole) << "block " << block;
        EXPECT_EQ(scan.first_bad_line(), whole_scan.first_bad_line()) << "block " << block;
        EXPECT_EQ(scan.has_valid_multibyte(), whole_scan.has_valid_multibyte()) << "block " << block;
      }
    }
  }
}

// The record reader on windows of a longer text (as the file reader gives
// them) reads what it reads from the whole text, at every cut.
TEST(InterchangeParse, WindowsGiveWhatTheWholeTextGives) {
  DataFileLayout delimited;
  delimited.skip_lines = 1;
  DataFileLayout fixed;
  fixed.fixed_width = true;
  fixed.columns = {Col("a", ColumnType::Text, 2), Col("b", ColumnType::Text, 3)};
  const std::vector<std::pair<DataFileLayout, std::string>> cases = {
      {delimited, "saltada\r\n1;\"dos\r\nlíneas\";\"a\"\"b\"\r\n\r\n  \n3; x ;\r4;\"abierta"},
      {delimited, "s\n\n\n1;2\n"},
      {fixed, "ññabc\r\nxyz\r\n\r\nab"},
  };
  for (const auto& [layout, text] : cases) {
    std::vector<std::size_t> whole_lines;
    const Records whole = ReadAll(text, layout, &whole_lines);
    for (std::size_t block = 1; block <= 9; ++block) {
      Records got;
      std::vector<std::size_t> lines;
      std::string buffer;
      std::size_t fed = 0;
      RecordReader reader(std::string_view(), layout);
      reader.set_window(buffer, 0, false);
      for (;;) {
        if (reader.next()) {
          got.emplace_back(reader.fields().begin(), reader.fields().end());
          lines.push_back(reader.line());
          continue;
        }
        if (!reader.needs_more()) break;
        const std::size_t dropped = reader.consumed();
        buffer.erase(0, dropped);
        buffer += text.substr(fed, block);
        fed = std::min(text.size(), fed + block);
        reader.set_window(buffer, dropped, fed >= text.size());
      }
      EXPECT_EQ(got, whole) << "block " << block << " of " << text;
      EXPECT_EQ(lines, whole_lines) << "block " << block << " of " << text;
    }
  }
}

TEST(InterchangeConvert, TypedFieldsAndBadValues) {
  const DataColumn integer = Col("N", ColumnType::Integer), real = Col("R", ColumnType::Real);
  const DataColumn date = Col("F", ColumnType::Date, 0, "dd/MM/yyyy"), iso = Col("F", ColumnType::Date, 0, "yyyy-MM-dd");
  const DataColumn text = Col("T", ColumnType::Text);
  struct Case {
    std::string field;
    const DataColumn& column;
    char decimal;
    bool quoted;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {" -42 ", integer, '.', false, "i:-42"}, {"+7", integer, '.', false, "i:7"},
      {"12.00", integer, '.', false, "i:12"},  // spreadsheets write whole numbers so
      {"12.5", integer, '.', false, "!"}, {"12a", integer, '.', false, "!"},
      {"99999999999999999999", integer, '.', false, "!"}, {"", integer, '.', false, "null"},
      {"1234.56", real, '.', false, "r:1234.56"}, {"-0,5", real, ',', false, "r:-0.5"},
      {"1.234,5", real, ',', false, "!"},  // group separators are not guessed
      {"1,5", real, '.', false, "!"}, {"nan", real, '.', false, "!"}, {"inf", real, '.', false, "!"},
      {"1e+05", real, '.', false, "r:100000"},  // as some exports write large numbers
      {"1e", real, '.', false, "!"}, {"e5", real, '.', false, "!"},
      {"29/02/2024", date, '.', false, "t:2024-02-29"}, {"29/02/2023", date, '.', false, "!"},
      {"2023-02-01", date, '.', false, "!"}, {"2023-02-01", iso, '.', false, "t:2023-02-01"},
      // A time of day after the date: dropped at midnight, kept otherwise, so
      // that every date is stored in one form.
      {"2023-02-01 00:00:00", iso, '.', false, "t:2023-02-01"}, {"29/02/2024 00:00", date, '.', false, "t:2024-02-29"},
      {"2023-02-01T13:05:07.000", iso, '.', false, "t:2023-02-01 13:05:07"},
      {"2023-02-01 8:05", iso, '.', false, "t:2023-02-01 08:05:00"}, {"2023-02-01 24:00", iso, '.', false, "!"},
      {"2023-02-01 00:00:00 x", iso, '.', false, "!"}, {"2023-02-30 00:00:00", iso, '.', false, "!"},
      // Text is kept exactly, blanks included; only an empty field is Null.
      {" a ", text, '.', false, "t: a "}, {"", text, '.', false, "null"},
      // "" (quoted) is an empty text; for other types it is still no value.
      {"", text, '.', true, "t:"}, {"", integer, '.', true, "null"},
  };
  for (const Case& c : cases) EXPECT_EQ(Convert(c.field, c.column, c.decimal, c.quoted), c.expected) << c.field;
}

// Real fields give exactly the double a full correctly rounded parse gives,
// on the short path for plain decimals and the long one for the rest.
TEST(InterchangeConvert, RealsMatchAFullParseBitForBit) {
  std::vector<std::string> texts = {"0.1", "-0.0", "1234567.89", "999999999999999", "0.000000000000001",
                                    "123456789012.345", "1234567890123456.7", "1.5E+05", "-3.3333333333333",
                                    "0.30000000000000004", "2.675", "1e-7"};
  std::uint64_t x = 88172645463325252ULL;  // a fixed xorshift sequence of amounts
  for (int i = 0; i < 2000; ++i) {
    x ^= x << 13;
    x ^= x >> 7;
    x ^= x << 17;
    std::string digits = std::to_string(x % 100000000000000ULL);
    const std::size_t point = x % (digits.size() + 1);
    if (point < digits.size()) digits.insert(digits.size() - point, ".");
    if (digits.front() == '.') digits.insert(0, "0");
    texts.push_back((i % 3 ? "" : "-") + digits);
  }
  DataColumn real = Col("Monto", ColumnType::Real);
  for (const std::string& text : texts) {
    FieldValue v;
    ASSERT_TRUE(ConvertField(text, real, '.', v)) << text;
    double expected = 0;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    EXPECT_EQ(std::memcmp(&v.real, &expected, sizeof expected), 0) << text << " " << v.real << " " << expected;
  }
}
