// db/odbc_sources.cpp — listing data sources through the unixODBC driver
// manager, which keeps them in odbc.ini files instead of a registry.
#include "db/odbc_sources.h"

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "db/odbc_connection.h"

namespace db {

std::vector<std::string> odbc_system_data_sources() {
  std::vector<std::string> names;
  SQLHENV env = SQL_NULL_HENV;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env))) return names;
  SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLUSMALLINT direction = SQL_FETCH_FIRST_SYSTEM;
  for (;;) {
    SQLCHAR name[256] = {};
    SQLCHAR description[256] = {};
    SQLSMALLINT name_length = 0;
    SQLSMALLINT description_length = 0;
    SQLRETURN rc = SQLDataSources(env, direction, name, sizeof name, &name_length, description,
                                  sizeof description, &description_length);
    if (!SQL_SUCCEEDED(rc)) break;
    std::string text(reinterpret_cast<char*>(name));
    if (!text.empty()) names.push_back(text);
    direction = SQL_FETCH_NEXT;
  }
  SQLFreeHandle(SQL_HANDLE_ENV, env);
  return names;
}

namespace {

std::string trimmed(const std::string& text) {
  std::size_t start = text.find_first_not_of(" \t\r");
  if (start == std::string::npos) return {};
  std::size_t end = text.find_last_not_of(" \t\r");
  return text.substr(start, end - start + 1);
}

bool ends_with_dsn(const std::string& text) {
  if (text.size() <= 4) return false;
  std::string tail = text.substr(text.size() - 4);
  for (char& c : tail) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return tail == ".dsn";
}

bool same_word(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::toupper(static_cast<unsigned char>(a[i])) !=
        std::toupper(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

// The value of `key` in `section` of an ini file, or "".
std::string ini_value(const std::string& file, const std::string& section, const std::string& key) {
  std::ifstream in(file);
  std::string line;
  bool inside = false;
  while (std::getline(in, line)) {
    std::string t = trimmed(line);
    if (t.empty() || t[0] == ';' || t[0] == '#') continue;
    if (t.front() == '[' && t.back() == ']') {
      inside = same_word(trimmed(t.substr(1, t.size() - 2)), section);
      continue;
    }
    std::size_t eq = t.find('=');
    if (inside && eq != std::string::npos && same_word(trimmed(t.substr(0, eq)), key)) {
      return trimmed(t.substr(eq + 1));
    }
  }
  return {};
}

}  // namespace

std::string odbc_file_dsn_folder() {
  // The driver manager's own rule: "FileDSNPath" of the [ODBC] section of
  // odbcinst.ini, else ODBCDataSources beside it; ODBCSYSINI moves both.
  const char* system = std::getenv("ODBCSYSINI");
  std::string folder = system && *system ? system : "/etc";
  std::string path = ini_value(folder + "/odbcinst.ini", "ODBC", "FileDSNPath");
  if (path.empty()) path = folder + "/ODBCDataSources";
  if (path.back() != '/') path += '/';
  return path;
}

std::vector<std::string> odbc_file_data_sources() {
  std::vector<std::string> names;
  std::error_code ec;
  // A folder that cannot be read lists nothing, like a missing one.
  for (std::filesystem::directory_iterator it(odbc_file_dsn_folder(), ec), end; !ec && it != end;
       it.increment(ec)) {
    std::string name = it->path().filename().string();
    std::error_code kind_ec;
    if (ends_with_dsn(name) && it->is_regular_file(kind_ec)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> odbc_data_sources() {
  std::vector<std::string> names = odbc_system_data_sources();
  std::vector<std::string> files = odbc_file_data_sources();
  names.insert(names.end(), files.begin(), files.end());
  return names;
}

std::string odbc_connection_text(const std::string& name) {
  const std::string t = trimmed(name);
  if (!ends_with_dsn(t)) return "DSN=" + t + ";";
  if (t.find('/') != std::string::npos) return "FILEDSN=" + t + ";";
  return "FILEDSN=" + odbc_file_dsn_folder() + t + ";";
}

bool odbc_picker_can_be_skipped(const std::string& current, const std::vector<std::string>& sources) {
  return sources.size() == 1 && !trimmed(current).empty() && same_word(trimmed(current), trimmed(sources[0]));
}

void open_odbc(const std::string& connection_text, std::unique_ptr<Connection>& conn) {
  if (conn && conn->is_open()) conn->close();
  auto fresh = std::make_unique<OdbcConnection>();
  fresh->open(connection_text);  // the caller reads the state
  conn = std::move(fresh);
}

}  // namespace db
