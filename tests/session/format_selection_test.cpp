// Tests of the format list, choosing a format, the source-kind buttons and
// saving the format's keys on close.
#include <gtest/gtest.h>

#include "session/format_selection.h"
#include "support/temp_dir.h"

using namespace session;

namespace {

// A program folder with three formats: both keys, neither key, database only.
const std::string kAmbos =
    "TipoBD=1\r\nRelaciones=20\r\n-1\r\nArchivos=Empleados|NOM(emp*.txt)|emp.sql|3\r\nMal|NOM(x)\r\n"
    "Liq|FL(Mes)|liq.sql|5\r\nBD=Tablas|NOM(*.mdb)*PASS=k;|t.sql|1\r\n"
    "TablaNoBorrar=RelacConc,RelacTLiq\r\nConcCrear=12,7,30\r\n";
struct ProgramFolder {
  TempDir dir;
  ProgramFolder() {
    dir.write("ConfIMP.ini", "; formatos\r\nAmbos|ambos.fmt\r\nNinguno|ninguno.fmt\r\nBase=base\\base.fmt\r\n");
    dir.write("ambos.fmt", kAmbos);
    dir.write("ninguno.fmt", "TipoBD=0\r\nConcCrear=\r\n");
    dir.write("base/base.fmt", "TipoBD=2.6\nBD=Personas||p.sql|3\n");
  }
  SessionState Start() {
    SessionState s;
    s.program_folder = dir.path();
    LoadFormatList(s);
    return s;
  }
};

// Chooses the format at `index` and returns the session's source-kind view:
// kinds offered (database, folder), kind pressed, browse button.
std::string Choose(SessionState& s, int index) {
  s.cmbFormato_index = index;
  cmbFormato_Click(s);
  return std::to_string(s.TipoImp.selected[0]) + std::to_string(s.TipoImp.selected[1]) + " " +
         std::to_string(s.TipoImp.kind) + std::to_string(s.TipoImp.pressed[0]) +
         std::to_string(s.TipoImp.pressed[1]) + " " + std::to_string(s.cbBuscar_enabled);
}

}  // namespace

TEST(FormatList, ReadsConfImpAndLeavesNothingSelected) {
  ProgramFolder pf;
  SessionState s = pf.Start();
  EXPECT_EQ(s.cmbFormato, (std::vector<std::string>{"Ambos", "Ninguno", "Base"}));
  EXPECT_EQ(s.cmbFormato_index, -1);
  EXPECT_EQ(s.formats.cell(2, 1), "base\\base.fmt");
  EXPECT_TRUE(s.warnings.empty());
  pf.dir.write("ConfIMP.ini", "Bueno|a.fmt\nSinArchivo\n");
  SessionState w = pf.Start();
  EXPECT_EQ(w.cmbFormato.size(), 2u);
  ASSERT_EQ(w.warnings.size(), 1u);
  EXPECT_NE(w.warnings[0].find("SinArchivo"), std::string::npos);
  // An empty or missing ConfIMP.ini: no formats, no warning.
  pf.dir.write("ConfIMP.ini", "");
  for (int i = 0; i < 2; ++i, std::filesystem::remove(pf.dir / "ConfIMP.ini")) {
    SessionState e = pf.Start();
    EXPECT_TRUE(e.cmbFormato.empty() && e.warnings.empty()) << i;
  }
}

TEST(FormatChoice, KeysDecideTheSourceKindsAndTheLists) {
  ProgramFolder pf;
  SessionState s = pf.Start();
  EXPECT_EQ(Choose(s, 0), "11 101 1");  // both keys: both kinds, the folder pressed
  EXPECT_EQ(s.current_format_file, "ambos.fmt");
  std::vector<std::string> keys;
  for (const auto& e : s.ColArchTablas) keys.push_back(e.Codigo);
  EXPECT_EQ(keys, (std::vector<std::string>{"Empleados*3", "Liq*5", "Tablas*1"}));
  EXPECT_TRUE(s.ColArchTablas.ColArchTablas("Empleados*3").TipoAR);
  EXPECT_FALSE(s.ColArchTablas.ColArchTablas("Tablas*1").TipoAR);
  EXPECT_EQ(s.TablaNoBorrar, "RelacConc,RelacTLiq");
  EXPECT_EQ(s.ConcCrear, "12,7,30");
  EXPECT_EQ(s.TipoBD, 1);
  EXPECT_EQ(s.relations.kel(0), 20);
  EXPECT_EQ(s.relations.kel(1), -1);
  EXPECT_EQ(s.lstRelaciones.entries.size(), 6u);
  ASSERT_EQ(s.warnings.size(), 1u);  // the "Mal" line
  EXPECT_NE(s.warnings[0].find("Mal|NOM(x)"), std::string::npos);

  // No selection only empties the catalogue.
  Choose(s, -1);
  EXPECT_TRUE(s.ColArchTablas.empty());
  EXPECT_EQ(s.current_format_file, "ambos.fmt");
  EXPECT_EQ(s.ConcCrear, "12,7,30");
  EXPECT_EQ(s.lstRelaciones.entries.size(), 6u);

  // Neither key: no kind (none left over from the first format), no browsing,
  // the default relations listed below the old entries.
  EXPECT_EQ(Choose(s, 1), "00 101 0");
  EXPECT_TRUE(s.ColArchTablas.empty());
  EXPECT_EQ(s.ConcCrear, "");
  EXPECT_EQ(s.TipoBD, 0);
  EXPECT_EQ(s.relations.kel(0), 17);
  EXPECT_EQ(s.lstRelaciones.entries.size(), 13u);
  EXPECT_EQ(s.lstRelaciones.entries[6].text, "BPS 1 -> KEL 17");

  // A database-only format selects kind 0; TipoBD is rounded.
  EXPECT_EQ(Choose(s, 2), "10 010 1");
  EXPECT_EQ(s.TipoBD, 3);
  EXPECT_EQ(s.ColArchTablas.size(), 1u);

  // Pressing a kind button releases the other; an unknown one is ignored.
  TipoImp_Click(s, 1);
  TipoImp_Click(s, 5);
  EXPECT_EQ(s.TipoImp.kind, 1);
  EXPECT_FALSE(s.TipoImp.pressed[0]);
  EXPECT_TRUE(s.TipoImp.pressed[1]);
}

TEST(FormatChoice, MissingOrUnreadableFormatFilesAreReportedAndNeverWritten) {
  ProgramFolder pf;
  pf.dir.write("ConfIMP.ini", "Falta|falta.fmt\r\nRoto|roto.fmt\r\n");
  pf.dir.write("roto.fmt", std::string("BD=\0\0", 5));
  SessionState s = pf.Start();
  EXPECT_EQ(Choose(s, 0), "00 000 0");
  ASSERT_EQ(s.warnings.size(), 1u);
  EXPECT_NE(s.warnings[0].find("falta.fmt"), std::string::npos);
  Choose(s, 1);
  ASSERT_EQ(s.warnings.size(), 2u);
  EXPECT_NE(s.warnings[1].find("roto.fmt"), std::string::npos);
  EXPECT_FALSE(SaveFormatKeys(s));
  EXPECT_EQ(TempDir::read(pf.dir / "roto.fmt"), std::string("BD=\0\0", 5));
}

TEST(FormUnload, StoresRelacionesAndConcCrearOnly) {
  ProgramFolder pf;
  SessionState s = pf.Start();
  EXPECT_TRUE(SaveFormatKeys(s));  // no format chosen: nothing written
  Choose(s, 0);
  mapping::AddRelation(s.relations, s.lstRelaciones, "2-Aguinaldo", 1, "14");
  s.ConcCrear = "12,7";
  ASSERT_TRUE(SaveFormatKeys(s));
  std::string expected = kAmbos;
  expected.replace(expected.find("20\r\n-1\r\n"), 8, "20\r\n14\r\n45\r\n12\r\n71\r\n53\r\n4\r\n");
  expected.replace(expected.find("12,7,30"), 7, "12,7");
  EXPECT_EQ(TempDir::read(pf.dir / "ambos.fmt"), expected);
  // The format in a subfolder, named with "\", keeps its LF line endings.
  Choose(s, 2);
  s.ConcCrear = "9";
  ASSERT_TRUE(SaveFormatKeys(s));
  EXPECT_EQ(TempDir::read(pf.dir / "base/base.fmt"),
            "TipoBD=2.6\nBD=Personas||p.sql|3\nRelaciones=17\n13\n45\n12\n71\n53\n4\nConcCrear=9\n");
}
