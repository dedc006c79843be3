// Tests of catalogue entries, the keyed catalogue and matching a folder.
#include <gtest/gtest.h>

#include "settings/cond_tree.h"
#include "staging/catalogue.h"
#include "support/temp_dir.h"

using namespace staging;

TEST(CatalogueEntry, BuiltFromAFormatLine) {
  std::string warning;
  auto e = EntryFromLine("Empleados|NOM(emp*.txt)*FL(Legajo)*PASS=x;|sql\\emp.sql|3", true, &warning);
  ASSERT_TRUE(e) << warning;
  EXPECT_EQ(e->Codigo, "Empleados*3");
  EXPECT_EQ(e->option(), 3);
  EXPECT_EQ(e->name(), "Empleados");
  EXPECT_EQ(e->ArchConf, "sql\\emp.sql");
  EXPECT_TRUE(e->TipoAR);
  EXPECT_FALSE(e->Existe);
  EXPECT_EQ(e->ColCond.items.size(), 3u);
  EXPECT_EQ(settings::DevPass(e->ColCond), "x");
  auto bd = EntryFromLine(" Personas | | personas.sql | 3 |extra", false, &warning);
  ASSERT_TRUE(bd);
  EXPECT_EQ(bd->Codigo + (bd->TipoAR ? "/AR" : "/BD"), "Personas*3/BD");
  EXPECT_TRUE(bd->ColCond.items.empty());
}

TEST(CatalogueEntry, BadLinesAreSkippedWithAReason) {
  const std::vector<std::pair<std::string, std::string>> bad = {
      {"Emp|NOM(a)|emp.sql", "campo"},
      {"Emp", "campo"},
      {"Emp|NOM(a)|emp.sql|6", "del 1 al 5"},
      {"Emp|NOM(a)|emp.sql|x", "del 1 al 5"},
      {"Emp|NOM(a)|emp.sql|2.5", "del 1 al 5"},
      {"|NOM(a)|emp.sql|1", "nombre"},
      {"Em*p|NOM(a)|emp.sql|1", "'*'"},
      {"Emp|NOM(a|emp.sql|1", "paréntesis"},
  };
  for (const auto& [line, why] : bad) {
    std::string warning;
    EXPECT_FALSE(EntryFromLine(line, true, &warning)) << line;
    EXPECT_NE(warning.find("Se ignora la línea"), std::string::npos) << warning;
    EXPECT_NE(warning.find(why), std::string::npos) << warning;
  }
}

TEST(Catalogue, KeyedOrderedCollection) {
  ColArchsBD cat;
  std::vector<std::string> warnings;
  int added = AddEntriesFromKey(cat,
                                "B|NOM(b)|b.sql|2\r\n"
                                "\r\n"
                                "A|NOM(a)|a.sql|1\r\n"
                                "a|NOM(x)|x.sql|1\r\n"  // same key as A*1
                                "A|NOM(a)|a5.sql|5\r\n"
                                "corta|x\r\n",
                                true, "Archivos", &warnings);
  EXPECT_EQ(added, 3);
  ASSERT_EQ(warnings.size(), 2u);
  EXPECT_EQ(warnings[0].rfind("Archivos: ", 0), 0u);
  EXPECT_NE(warnings[0].find("repite"), std::string::npos);
  std::vector<std::string> keys;
  for (const ClaArchBD& e : cat) keys.push_back(e.Codigo);
  EXPECT_EQ(keys, (std::vector<std::string>{"B*2", "A*1", "A*5"}));
  EXPECT_EQ(cat.ColArchTablas("a*1").ArchConf, "a.sql");
  EXPECT_THROW(cat.ColArchTablas("Z*1"), std::out_of_range);
  EXPECT_TRUE(cat.remove("b*2"));
  EXPECT_FALSE(cat.remove("b*2"));
}

namespace {

ColArchsBD Catalogue(const std::string& archivos, const std::string& bd = "") {
  ColArchsBD cat;
  std::vector<std::string> warnings;
  AddEntriesFromKey(cat, archivos, true, "Archivos", &warnings);
  AddEntriesFromKey(cat, bd, false, "BD", &warnings);
  EXPECT_TRUE(warnings.empty()) << warnings.front();
  return cat;
}

}  // namespace

TEST(MatchFolder, FirstFileByNameWinsAndOnlyTickedGroupsAreMatched) {
  TempDir dir;
  dir.write("emp_b.txt", "Legajo;Nombre\r\n1;Ana\r\n2;Luis\r\n");
  dir.write("EMP_a.txt", "Legajo;Nombre\r\n3;Eva");
  dir.write("liq.txt", "Mes;Importe\n");
  dir.write("Sueldos.mdb", "x");
  ColArchsBD cat = Catalogue(
      "Empleados|NOM(emp*.txt)*FL(Legajo)|emp.sql|3\r\n"
      "Liquidaciones|FL(Mes)|liq.sql|5\r\n"
      "Conceptos|NOM(conc.txt)|conc.sql|4\r\n",
      "Tablas|NOM(*.mdb)*PASS=k;|t.sql|1");
  cat.ColArchTablas("Conceptos*4").Existe = true;  // left over from an earlier matching
  std::array<bool, 5> chk = {true, false, true, true, false};
  int calls = 0;
  MatchResult r = MatchFolder(cat, dir.path(), chk, [&] { ++calls; });
  EXPECT_EQ(calls, 4);
  const ClaArchBD& emp = cat.ColArchTablas("Empleados*3");
  EXPECT_TRUE(emp.Existe);
  EXPECT_EQ(emp.Ruta, (dir / "EMP_a.txt").string());  // sorted by name without regard to case
  EXPECT_FALSE(cat.ColArchTablas("Liquidaciones*5").Existe);  // its box is not ticked
  EXPECT_FALSE(cat.ColArchTablas("Conceptos*4").Existe);      // cleared, no file
  EXPECT_TRUE(cat.ColArchTablas("Tablas*1").Existe);
  EXPECT_EQ(cat.ColArchTablas("Tablas*1").Ruta, (dir / "Sueldos.mdb").string());
  EXPECT_EQ(chk, (std::array<bool, 5>{true, false, true, false, false}));
  // EMP_a.txt has 2 lines (+1); the database entry adds 1.
  EXPECT_EQ(r.total_lines, 3 + 1);
}

TEST(MatchFolder, ReadsEachFileAtMostOnceAndOnlyWhenContentsAreTested) {
  TempDir dir;
  dir.write("a.txt", "uno\r\n");
  dir.write("b.txt", "dos\r\n");
  dir.write("c.txt", "tres\r\n");
  std::array<bool, 5> chk = {true, true, true, true, true};
  ColArchsBD names = Catalogue("A|NOM(c.txt)|a.sql|1\r\nB|NOM(*.txt)|b.sql|2\r\n");
  MatchResult r = MatchFolder(names, dir.path(), chk);
  EXPECT_EQ(r.files_read, 0);
  EXPECT_EQ(r.total_lines, 2 + 2);
  EXPECT_EQ(names.ColArchTablas("B*2").Ruta, (dir / "a.txt").string());

  chk = {true, true, true, true, true};
  ColArchsBD contents = Catalogue(
      "A|FL(tres)|a.sql|1\r\n"
      "B|DINT(dos)|b.sql|2\r\n"
      "C|FL(nada)|c.sql|3\r\n");
  r = MatchFolder(contents, dir.path(), chk);
  // FL reads the three first lines once; DINT reads a.txt and b.txt whole
  // (the search stops at b.txt); C reuses what is already read.
  EXPECT_EQ(r.first_lines_read, 3);
  EXPECT_EQ(r.files_read, 2);
  EXPECT_EQ(contents.ColArchTablas("A*1").Ruta, (dir / "c.txt").string());
  EXPECT_EQ(contents.ColArchTablas("B*2").Ruta, (dir / "b.txt").string());
  EXPECT_FALSE(contents.ColArchTablas("C*3").Existe);
  EXPECT_EQ(chk, (std::array<bool, 5>{true, true, false, false, false}));
}

TEST(MatchFolder, MissingFolderFindsNothing) {
  TempDir dir;
  ColArchsBD cat = Catalogue("A|NOM(*)|a.sql|1");
  std::array<bool, 5> chk = {true, true, true, true, true};
  MatchResult r = MatchFolder(cat, dir / "no_existe", chk);
  EXPECT_FALSE(cat.ColArchTablas("A*1").Existe);
  EXPECT_EQ(r.total_lines, 0);
  EXPECT_EQ(chk, (std::array<bool, 5>{}));
}

TEST(MatchTables, DatabaseEntriesFindTheDataSourceTablesByName) {
  ColArchsBD cat = Catalogue("Empleados|NOM(emp*.txt)|emp.sql|3\r\n",
                             "Personas|NOM(personas)|p.sql|3\r\n"
                             "Sueldos|NOM(sueldo*)-|s.sql|5\r\n"
                             "Conceptos|NOM(conceptos)|c.sql|4\r\n"
                             "Cargos|NOM(cargos)|k.sql|2\r\n");
  cat.ColArchTablas("Cargos*2").Existe = true;  // left over from an earlier matching
  std::array<bool, 5> chk = {true, true, true, false, true};
  std::vector<std::string> matched;
  const std::string text = "DSN=origen;";
  MatchResult r = MatchTables(cat, {"SUELDOS_2024", "Personas", "emp_a.txt", "Liquidaciones"}, text, chk, &matched);
  EXPECT_TRUE(cat.ColArchTablas("Personas*3").Existe);  // case aside
  EXPECT_EQ(cat.ColArchTablas("Personas*3").Ruta, text);
  // A negated test: the first table whose name does not start with "sueldo".
  EXPECT_TRUE(cat.ColArchTablas("Sueldos*5").Existe);
  EXPECT_FALSE(cat.ColArchTablas("Empleados*3").Existe) << "interchange entries are never found";
  EXPECT_FALSE(cat.ColArchTablas("Conceptos*4").Existe) << "box not ticked";
  EXPECT_FALSE(cat.ColArchTablas("Cargos*2").Existe) << "cleared, no table";
  EXPECT_EQ(matched, (std::vector<std::string>{"Personas"}));
  EXPECT_EQ(chk, (std::array<bool, 5>{false, false, true, false, true}));
  EXPECT_EQ(r.total_lines, 2);
}
