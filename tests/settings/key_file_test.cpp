// Tests of format-file keys: reading values and writing one key in place.
#include <gtest/gtest.h>

#include "settings/key_file.h"
#include "settings/text_file.h"
#include "support/temp_dir.h"

using namespace settings;

TEST(KeyValue, ReadsSingleAndMultiLineValues) {
  const std::string text =
      "; Formato de ejemplo\r\nTipoBD=1\r\nRelaciones=20\r\n-1\r\n\r\narchivos=\r\n"
      "Emp|NOM(emp.txt)|emp.sql|3\r\nLiq|FL(=a=b)|liq.sql|5\r\n\\Tabla=x\r\n\\\\server\\share\r\n"
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

// Writing keys keeps the file's encoding, byte-order mark and line ending; a
// value that Windows-1252 cannot hold switches the file to UTF-8 with a mark;
// a file that is not text is refused and left alone.
TEST(WriteKey, KeepsTheFilesEncodingAndLineEnding) {
  struct Row {
    std::string name, original;  // no original: the file does not exist
    std::vector<std::pair<std::string, std::string>> writes;
    bool ok;
    std::string expected;
  };
  const std::string binary("TipoBD=1\r\n\0\0\x01", 13);
  const std::vector<Row> rows = {
      {"ansi.fmt",
       "; Compa\xF1\xED" "a\r\nTipoBD=1\r\nRelaciones=20\r\n-1\r\nConcCrear=\r\nArchivos=Se\xF1or|x.sql|1\r\n",
       {{"Relaciones", "17\r\n13\r\n45"}, {"ConcCrear", "12,7,A\xC3\xB1o"}}, true,  // "Año" in UTF-8
       "; Compa\xF1\xED" "a\r\nTipoBD=1\r\nRelaciones=17\r\n13\r\n45\r\nConcCrear=12,7,A\xF1o\r\n"
       "Archivos=Se\xF1or|x.sql|1\r\n"},
      {"lf.fmt", "\xEF\xBB\xBFTipoBD=2\nBD=t|NOM(a)|a.sql|1", {{"ConcCrear", "5,6"}}, true,
       "\xEF\xBB\xBFTipoBD=2\nBD=t|NOM(a)|a.sql|1\nConcCrear=5,6\n"},
      {"han.fmt", "Nombre=Compa\xF1\xED" "a\r\n", {{"ConcCrear", "漢"}}, true,
       "\xEF\xBB\xBFNombre=Compañía\r\nConcCrear=漢\r\n"},
      {"nuevo.fmt", "", {{"Relaciones", "1\r\n2"}}, true, "Relaciones=1\r\n2\r\n"},
      {"roto.fmt", binary, {{"ConcCrear", "1"}}, false, binary},
  };
  TempDir dir;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    if (!row.original.empty()) dir.write(row.name, row.original);
    for (const auto& [key, value] : row.writes) {
      std::string err;
      EXPECT_EQ(WriteKey(dir / row.name, key, value, &err), row.ok) << err;
      EXPECT_EQ(err.find(row.name) != std::string::npos, !row.ok) << err;
    }
    EXPECT_EQ(TempDir::read(dir / row.name), row.expected);
  }
}
