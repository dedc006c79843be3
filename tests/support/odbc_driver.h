// tests/support/odbc_driver.h — an ODBC driver as the machine's driver
// manager declares it, so that tests do not depend on where it is installed.
#pragma once

#include <cstdio>
#include <string>

namespace test_support {

// The Driver= value (a library name or path) of the machine's driver `name`,
// or "" when the driver is not declared. A test-local odbcinst.ini (ODBCSYSINI,
// which another test of the same program may have set) is not looked at.
inline std::string odbc_driver_library(const std::string& name) {
  std::string out;
  if (FILE* pipe = popen(("env -u ODBCSYSINI odbcinst -q -d -n '" + name + "' 2>/dev/null").c_str(), "r")) {
    char line[1024];
    while (std::fgets(line, sizeof line, pipe)) {
      std::string text(line);
      if (text.rfind("Driver=", 0) != 0) continue;
      out = text.substr(7);
      while (!out.empty() && (out.back() == '\n' || out.back() == '\r' || out.back() == ' ')) out.pop_back();
    }
    pclose(pipe);
  }
  return out;
}

}  // namespace test_support
