// Checks that the program folder is laid out by the build.
#include <filesystem>

#include <gtest/gtest.h>

TEST(Build, ProgramFolderExists) {
  EXPECT_TRUE(std::filesystem::is_directory(KEL_PROGRAM_DIR));
}
