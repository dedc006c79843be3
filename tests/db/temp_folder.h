// tests/db/temp_folder.h — a fresh folder under the system's temporary folder,
// removed with everything in it when the test is done.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include <sqlite3.h>

namespace testing_db {

class TempFolder {
 public:
  explicit TempFolder(const std::string& name = "db") {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("kel_" + name + "_" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

  // Writes `text` to the file `name` in the folder and returns its path.
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
    return file(name);
  }

  // The whole content of a file ("" when it cannot be read).
  static std::string read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  // Creates the SQLite database `name` and runs native `sql` on it.
  std::string database(const std::string& name, const std::string& sql = "") const {
    sqlite3* db = nullptr;
    sqlite3_open(file(name).c_str(), &db);
    if (!sql.empty()) sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return file(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace testing_db
