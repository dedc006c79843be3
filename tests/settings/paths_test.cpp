// Tests of program-folder names, folder creation and folder listing.
#include <gtest/gtest.h>

#include "settings/paths.h"
#include "support/temp_dir.h"

using namespace settings;

TEST(Paths, NormalisesSeparatorsAndFindsNamesOfAnotherCase) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"Sql\\emp.sql", "Sql/emp.sql"}, {".\\Sql\\\\sub//emp.sql", "Sql/sub/emp.sql"},
      {"..\\otro\\a.sql", "../otro/a.sql"}, {"\\raiz\\a", "/raiz/a"}, {"", ""}};
  for (const auto& [name, normal] : names) EXPECT_EQ(NormaliseRelativeName(name), normal) << name;

  TempDir dir;
  dir.write("Sql/Empleados.SQL", "x");
  EXPECT_EQ(ProgramPath(dir.path(), "Sql\\Empleados.SQL"), dir / "Sql/Empleados.SQL");
  EXPECT_EQ(ProgramPath(dir.path(), "sql\\empleados.sql"), dir / "Sql/Empleados.SQL");
  EXPECT_EQ(ProgramPath(dir.path(), "sql/falta.sql"), dir / "sql/falta.sql");
  EXPECT_EQ(ProgramPath(dir.path(), "/abs/a.sql"), std::filesystem::path("/abs/a.sql"));
  EXPECT_EQ(ProgramPath("/prog/", "ConfIMP.ini"), std::filesystem::path("/prog/ConfIMP.ini"));
}

TEST(Paths, CreatesNestedFoldersAndListsFilesSorted) {
  TempDir dir;
  EXPECT_TRUE(CreateFolders(dir / "a/b/c"));
  EXPECT_TRUE(std::filesystem::is_directory(dir / "a/b/c"));
  EXPECT_TRUE(CreateFolders(dir / "a/b/c"));  // already there
  dir.write("a/file", "x");
  EXPECT_FALSE(CreateFolders(dir / "a/file/sub"));  // a file stands in the way

  TempDir files;
  for (const char* n : {"b.txt", "A.txt", "c.TXT", "a.txt"}) files.write(n, "x");
  std::filesystem::create_directories(files / "z_sub");
  std::vector<std::string> names;
  for (const auto& p : ListFilesSorted(files.path())) names.push_back(p.filename().string());
  EXPECT_EQ(names, (std::vector<std::string>{"A.txt", "a.txt", "b.txt", "c.TXT"}));
  EXPECT_TRUE(ListFilesSorted(files / "no_such").empty());
}
