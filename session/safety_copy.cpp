// session/safety_copy.cpp — naming, making and restoring the safety copy.
#include "session/safety_copy.h"

#include <cstdio>

#include "db/backup.h"

namespace session {

namespace fs = std::filesystem;

fs::path SafetyCopyPath(const fs::path& company, std::time_t now) {
  std::tm local{};
  localtime_r(&now, &local);
  char minute[80];
  char second[16];
  std::snprintf(minute, sizeof minute, "%04d-%02d-%02d-%02d%02d", local.tm_year + 1900,
                local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min);
  std::snprintf(second, sizeof second, "%02d", local.tm_sec);
  const std::string base = company.string() + kSafetyCopyMarker + minute;
  std::error_code ec;
  // A partial file counts as taken too: it is a copy being made right now.
  auto taken = [&](const std::string& name) {
    return fs::exists(name, ec) || fs::exists(name + ".parcial", ec);
  };
  if (!taken(base)) return base;
  const std::string with_seconds = base + second;
  if (!taken(with_seconds)) return with_seconds;
  for (int n = 2;; ++n) {
    const std::string numbered = with_seconds + "-" + std::to_string(n);
    if (!taken(numbered)) return numbered;
  }
}

fs::path MakeSafetyCopy(const fs::path& company) {
  const fs::path copy = SafetyCopyPath(company, std::time(nullptr));
  db::backup_database(company.string(), copy.string());
  return copy;
}

fs::path CompanyFileOfCopy(const fs::path& copy) {
  const std::string name = copy.filename().string();
  const std::size_t at = name.rfind(kSafetyCopyMarker);
  if (at == std::string::npos || at == 0) return {};
  // What follows the marker must be the date the program writes.
  const std::string date = name.substr(at + std::char_traits<char>::length(kSafetyCopyMarker));
  if (date.size() < 15 || date[4] != '-' || date[7] != '-' || date[10] != '-') return {};
  return copy.parent_path() / name.substr(0, at);
}

void RestoreSafetyCopy(const fs::path& copy, const fs::path& company) {
  db::restore_database(copy.string(), company.string());
}

}  // namespace session
