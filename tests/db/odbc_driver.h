// tests/db/odbc_driver.h — the SQLite ODBC driver as the machine's driver
// manager declares it, so that tests do not depend on where it is installed.
#pragma once

#include <cstdio>
#include <string>

namespace testing_db {

// The Driver= value of the driver manager's "SQLite3" driver (a library name
// or path), or "" when the driver is not declared.
inline std::string sqlite_odbc_driver() {
  static const std::string driver = [] {
    std::string out;
    if (FILE* pipe = popen("odbcinst -q -d -n SQLite3 2>/dev/null", "r")) {
      char line[1024];
      while (std::fgets(line, sizeof line, pipe)) {
        std::string text(line);
        if (text.rfind("Driver=", 0) == 0) {
          out = text.substr(7);
          while (!out.empty() && (out.back() == '\n' || out.back() == '\r' || out.back() == ' ')) out.pop_back();
        }
      }
      pclose(pipe);
    }
    return out;
  }();
  return driver;
}

}  // namespace testing_db
