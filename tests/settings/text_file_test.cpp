// Tests of text decoding, whole-file reading and line splitting.
#include <gtest/gtest.h>

#include "settings/encoding.h"
#include "settings/text_file.h"
#include "support/temp_dir.h"

using namespace settings;

TEST(Encoding, DecodesUtf8Windows1252AndUtf16) {
  struct Row { std::string bytes, text; TextEncoding encoding; };
  const std::vector<Row> rows = {
      {"Ni\xC3\xB1o", "Niño", TextEncoding::Utf8},
      {"\xEF\xBB\xBFNi\xC3\xB1o", "Niño", TextEncoding::Utf8Bom},
      // Bytes that are not UTF-8 are Windows-1252: ñ, the euro sign, curly quotes.
      {"Ni\xF1o \x80 \x93x\x94", "Niño € “x”", TextEncoding::Windows1252},
      {"abc\xC3", "abcÃ", TextEncoding::Windows1252},  // a lone lead byte at the end
      {std::string("\xFF\xFEN\0\xF1\0", 6), "Nñ", TextEncoding::Utf16Le},
      {std::string("\xFE\xFF\0N\0\xF1", 6), "Nñ", TextEncoding::Utf16Be}};
  for (const Row& r : rows) {
    TextEncoding e{};
    std::string err;
    EXPECT_EQ(DecodeAuto(r.bytes, &e, &err).value_or("?"), r.text) << r.text;
    EXPECT_EQ(e, r.encoding) << r.text;
  }
  EXPECT_FALSE(IsValidUtf8("\xC0\x80"));      // overlong
  EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));  // surrogate
}

TEST(Encoding, RejectsBinaryAndRoundTripsEveryWindows1252Byte) {
  std::string err;
  EXPECT_FALSE(DecodeAuto(std::string("MZ\0\0\x90", 5), nullptr, &err));
  EXPECT_NE(err.find("nulos"), std::string::npos);
  std::string all;
  for (int b = 1; b < 256; ++b) all += static_cast<char>(b);
  std::string utf8 = Windows1252ToUtf8(all);
  auto back = Encode(utf8, TextEncoding::Windows1252);
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, all);
  EXPECT_FALSE(Encode("漢", TextEncoding::Windows1252));
  auto u16 = Encode("a€𝄞", TextEncoding::Utf16Le);
  EXPECT_EQ(*DecodeAuto(*u16, nullptr, &err), "a€𝄞");
  EXPECT_FALSE(DecodeAs("Ni\xF1o", TextEncoding::Utf8, &err));
}

TEST(TextFile, ReadsMissingBinaryAndEncodedFiles) {
  TempDir dir;
  EXPECT_EQ(ReadText(dir / "nada.txt"), "");
  FileText missing = ReadFile(dir / "nada.txt");
  EXPECT_FALSE(missing.exists);
  EXPECT_TRUE(missing.error.empty());

  auto bin = dir.write("datos.bin", std::string("\x01\x02\0\x03", 4));
  FileText b = ReadFile(bin);
  EXPECT_TRUE(b.exists);
  EXPECT_FALSE(b.ok());
  EXPECT_NE(b.error.find("datos.bin"), std::string::npos);
  EXPECT_EQ(ReadText(bin), "");

  auto ansi = dir.write("ansi.fmt", "Compa\xF1\xED" "a\r\nA\xF1o\r\n");
  FileText a = ReadFile(ansi);
  EXPECT_EQ(a.text, "Compañía\r\nAño\r\n");
  EXPECT_EQ(a.encoding, TextEncoding::Windows1252);
  EXPECT_EQ(a.line_ending, "\r\n");
  EXPECT_EQ(ReadFile(dir.write("lf.txt", "a\nb")).line_ending, "\n");
  EXPECT_EQ(ReadFile(dir.write("one.txt", "a")).line_ending, "\r\n");
}

TEST(TextFile, SplitsOnEveryLineBreakAndJoins) {
  using Lines = std::vector<std::string>;
  for (const auto& [text, lines] : std::vector<std::pair<std::string, Lines>>{
           {"", {}}, {"a\r\nb\nc\rd", {"a", "b", "c", "d"}}, {"a\r\n\r\nb\r\n", {"a", "", "b"}},
           {"\n", {""}}, {"a\r\r\nb", {"a", "", "b"}}})
    EXPECT_EQ(SplitLines(text), lines) << text;
  EXPECT_EQ(JoinLines({"17", "13", "45"}, "\r\n"), "17\r\n13\r\n45");
  EXPECT_EQ(JoinLines({}, ","), "");
}

TEST(TextFile, WritesAtomicallyAndCountsLines) {
  TempDir dir;
  auto p = dir / "f.txt";
  std::string err;
  ASSERT_TRUE(WriteBytesAtomic(p, "uno\r\ndos\rtres\ncuatro", &err)) << err;
  EXPECT_EQ(TempDir::read(p), "uno\r\ndos\rtres\ncuatro");
  EXPECT_EQ(CountFileLines(p), 4);
  ASSERT_TRUE(WriteBytesAtomic(p, "x\n", &err));
  EXPECT_EQ(CountFileLines(p), 1);
  EXPECT_EQ(CountFileLines(dir / "no"), 0);
  EXPECT_EQ(CountLines(""), 0);
  EXPECT_EQ(CountLines("a"), 1);
  EXPECT_EQ(CountLines("a\r\n\r\nb\rc\n"), 4);
  // Line breaks split across the 64 KiB read buffers are counted once.
  std::string big(65535, 'x');
  big += "\r\nfin\r";
  ASSERT_TRUE(WriteBytesAtomic(p, big, &err));
  EXPECT_EQ(CountFileLines(p), 2);
  EXPECT_EQ(CountLines(big), 2);
  EXPECT_EQ(ReadText(p).size(), big.size());
  // No temporary file is left behind.
  int files = 0;
  for (auto& e : std::filesystem::directory_iterator(dir.path())) (void)e, ++files;
  EXPECT_EQ(files, 1);
  EXPECT_FALSE(WriteBytesAtomic(dir / "no/such/folder/f.txt", "x", &err));
  EXPECT_NE(err.find("No se pudo guardar"), std::string::npos);
}

TEST(TextFile, ReadsOnlyTheFirstLine) {
  TempDir dir;
  EXPECT_EQ(ReadFirstLine(dir.write("a.txt", "Legajo;Nombre\r\n1;Ana\r\n")), "Legajo;Nombre");
  EXPECT_EQ(ReadFirstLine(dir.write("b.txt", "A\xF1o;Mes\n2024")), "Año;Mes");
  EXPECT_EQ(ReadFirstLine(dir.write("c.txt", "sin salto")), "sin salto");
  EXPECT_EQ(ReadFirstLine(dir.write("d.txt", "")), "");
  EXPECT_EQ(ReadFirstLine(dir / "falta.txt"), "");
  EXPECT_EQ(ReadFirstLine(dir.write("u16.txt", std::string("\xFF\xFEN\0\n\0x\0", 8))), "N");
  // A long first line stops at the limit without cutting a UTF-8 character in two.
  std::string line = std::string(9, 'x') + "\xC3\xB1" + "zz\nsegunda";
  EXPECT_EQ(ReadFirstLine(dir.write("e.txt", line), 10), "xxxxxxxxx");
  EXPECT_EQ(ReadFirstLine(dir.write("f.txt", line), 11), "xxxxxxxxxñ");
}
