// tests/support/program_folder.h — a throw-away copy of the built program
// folder, for tests that run a session, the window or the executable on it
// without touching the build tree.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace test_support {

// Copies the built program folder `from` to `to`: the formats, their statement
// files and the template, without the demo and without any staging database
// an earlier run left there. The executable comes along only when
// `with_executable`, hard-linked when it can be (it is large).
inline void copy_program_folder(const std::filesystem::path& from, const std::filesystem::path& to,
                                bool with_executable = false) {
  namespace fs = std::filesystem;
  fs::create_directories(to);
  for (const fs::directory_entry& e : fs::directory_iterator(from)) {
    const std::string name = e.path().filename().string();
    if (e.is_directory()) {
      if (name == "demo" || (name != "Generica" && fs::exists(e.path() / "Pasaje.mdb"))) continue;
      fs::copy(e.path(), to / name, fs::copy_options::recursive);
    } else if (name != "kelimport") {
      fs::copy_file(e.path(), to / name);
    } else if (with_executable) {
      std::error_code ec;
      fs::create_hard_link(e.path(), to / name, ec);
      if (ec) fs::copy_file(e.path(), to / name);
    }
  }
}

}  // namespace test_support
