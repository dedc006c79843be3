// Tests of format-file keys: reading values and writing one key in place.
#include <gtest/gtest.h>

#include "settings/key_file.h"
#include "settings/text_file.h"
#include "support/temp_dir.h"

using namespace settings;

TEST(KeyValue, ReadsSingleAndMultiLineValues) {
  const std::string text =
      "; Formato de ejemplo\r\n"
      "TipoBD=1\r\n"
      "Relaciones=20\r\n"
      "-1\r\n"
      "\r\n"
      "archivos=\r\n"
      "Emp|NOM(emp.txt)|emp.sql|3\r\n"
      "Liq|FL(=a=b)|liq.sql|5\r\n"
      "\\Tabla=x\r\n"
      "\\\\server\\share\r\n"
      "ConcCrear=\r\n"
      "TablaNoBorrar=RelacConc,RelacTLiq";
  EXPECT_EQ(KeyValue(text, "TipoBD"), "1");
  EXPECT_EQ(KeyValue(text, "relaciones"), "20\r\n-1");  // blank line before the next key is not part of it
  EXPECT_EQ(KeyValue(text, "Archivos"),
            "Emp|NOM(emp.txt)|emp.sql|3\r\nLiq|FL(=a=b)|liq.sql|5\r\nTabla=x\r\n\\\\server\\share");
  EXPECT_EQ(KeyValue(text, "ConcCrear"), "");
  EXPECT_EQ(KeyValue(text, "TablaNoBorrar"), "RelacConc,RelacTLiq");
  EXPECT_EQ(KeyValue(text, "BD"), "");
  EXPECT_EQ(KeyValue(text, "Formato"), "");  // the comment before the first key is no key
  EXPECT_EQ(KeyValue("A=1\nA=2\n", "a"), "1");  // the first of two counts
  EXPECT_EQ(KeyValue("", "A"), "");
}

TEST(SetKeyInText, ReplacesInPlaceAndWrittenValuesReadBackExactly) {
  EXPECT_EQ(SetKeyInText("# cabecera\nTipoBD=1\nrelaciones=1\n2\n3\n\nBD=a|b|c|1\n", "Relaciones",
                         "17\r\n13", "\n"),
            "# cabecera\nTipoBD=1\nrelaciones=17\n13\n\nBD=a|b|c|1\n");
  EXPECT_EQ(SetKeyInText("A=1", "B", "2", "\r\n"), "A=1\r\nB=2\r\n");
  EXPECT_EQ(SetKeyInText("", "B", "", "\r\n"), "B=\r\n");
  for (const std::string v : {"", "uno", "17\r\n13\r\n45", "\r\nsegunda", "Tabla=x\r\n\\Tabla=y\r\nok",
                              "línea con ñ\r\n=igual al comienzo"}) {
    std::string text = SetKeyInText("Antes=1\r\nDespues=2\r\n", "Medio", v, "\r\n");
    text = SetKeyInText(SetKeyInText(text, "Medio", v + "x", "\r\n"), "Medio", v, "\r\n");
    EXPECT_EQ(KeyValue(text, "Medio"), v) << v;
    EXPECT_EQ(KeyValue(text, "Antes") + KeyValue(text, "Despues"), "12") << v;
  }
}

TEST(WriteKey, KeepsWindows1252AndCrLf) {
  TempDir dir;
  const std::string original =
      "; Formato de la compa\xF1\xED" "a\r\n"
      "TipoBD=1\r\n"
      "Relaciones=20\r\n"
      "-1\r\n"
      "ConcCrear=\r\n"
      "Archivos=Se\xF1or|NOM(x.txt)|x.sql|1\r\n";
  auto p = dir.write("fmt.fmt", original);
  std::string err;
  ASSERT_TRUE(WriteKey(p, "Relaciones", "17\r\n13\r\n45", &err)) << err;
  ASSERT_TRUE(WriteKey(p, "ConcCrear", "12,7,A\xC3\xB1o", &err)) << err;  // "12,7,Año" in UTF-8
  const std::string expected =
      "; Formato de la compa\xF1\xED" "a\r\n"
      "TipoBD=1\r\n"
      "Relaciones=17\r\n"
      "13\r\n"
      "45\r\n"
      "ConcCrear=12,7,A\xF1o\r\n"
      "Archivos=Se\xF1or|NOM(x.txt)|x.sql|1\r\n";
  EXPECT_EQ(TempDir::read(p), expected);
  FileText f = ReadFile(p);
  EXPECT_EQ(f.encoding, TextEncoding::Windows1252);
  EXPECT_EQ(KeyValue(f.text, "Archivos"), "Señor|NOM(x.txt)|x.sql|1");
}

TEST(WriteKey, KeepsLfAndBomAddsMissingKeysAndSwitchesToUtf8WhenNeeded) {
  TempDir dir;
  auto lf = dir.write("lf.fmt", "\xEF\xBB\xBFTipoBD=2\nBD=t|NOM(a)|a.sql|1");
  ASSERT_TRUE(WriteKey(lf, "ConcCrear", "5,6"));
  EXPECT_EQ(TempDir::read(lf), "\xEF\xBB\xBFTipoBD=2\nBD=t|NOM(a)|a.sql|1\nConcCrear=5,6\n");

  auto ansi = dir.write("ansi.fmt", "Nombre=Compa\xF1\xED" "a\r\n");
  ASSERT_TRUE(WriteKey(ansi, "ConcCrear", "漢"));  // not in Windows-1252
  FileText f = ReadFile(ansi);
  EXPECT_EQ(f.encoding, TextEncoding::Utf8Bom);
  EXPECT_EQ(KeyValue(f.text, "Nombre"), "Compañía");
  EXPECT_EQ(KeyValue(f.text, "ConcCrear"), "漢");

  ASSERT_TRUE(WriteKey(dir / "nuevo.fmt", "Relaciones", "1\r\n2"));
  EXPECT_EQ(TempDir::read(dir / "nuevo.fmt"), "Relaciones=1\r\n2\r\n");
}

TEST(WriteKey, RefusesFilesThatAreNotTextAndLeavesThemAlone) {
  TempDir dir;
  const std::string bytes("TipoBD=1\r\n\0\0\x01", 13);
  auto p = dir.write("roto.fmt", bytes);
  std::string err;
  EXPECT_FALSE(WriteKey(p, "ConcCrear", "1", &err));
  EXPECT_NE(err.find("roto.fmt"), std::string::npos);
  EXPECT_EQ(TempDir::read(p), bytes);
}
