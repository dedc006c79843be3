// session/safety_copy.cpp — naming, making and restoring the safety copy.
#include "session/safety_copy.h"

#include <cstdio>
#include <iterator>
#include <vector>

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
  // What follows the marker must be the date the program writes:
  // yyyy-MM-dd-HHmm, then maybe the seconds, then maybe "-<counter>".
  const std::string date = name.substr(at + std::char_traits<char>::length(kSafetyCopyMarker));
  const std::string shape = "dddd-dd-dd-dddd";
  if (date.size() < shape.size()) return {};
  auto digit = [](char c) { return c >= '0' && c <= '9'; };
  for (std::size_t i = 0; i < shape.size(); ++i)
    if (shape[i] == 'd' ? !digit(date[i]) : date[i] != shape[i]) return {};
  std::size_t i = shape.size();
  if (i + 2 <= date.size() && digit(date[i]) && digit(date[i + 1])) i += 2;
  if (i < date.size()) {
    if (date[i] != '-' || i + 1 == date.size()) return {};
    for (++i; i < date.size(); ++i)
      if (!digit(date[i])) return {};
  }
  return copy.parent_path() / name.substr(0, at);
}

void RestoreSafetyCopy(const fs::path& copy, const fs::path& company) {
  db::restore_database(copy.string(), company.string());
}

fs::path StagingCopyOf(const fs::path& copy) {
  return copy.string() + ".auxiliar";
}

void SaveStagingMappings(const fs::path& staging, const fs::path& copy) {
  db::backup_tables(
      staging.string(),
      std::vector<std::string>(std::begin(kStagingMappingTables), std::end(kStagingMappingTables)),
      StagingCopyOf(copy).string());
}

void RestoreStagingMappings(const fs::path& copy, const fs::path& staging) {
  db::restore_tables(StagingCopyOf(copy).string(), staging.string());
}

fs::path StagingFileOf(const fs::path& program_folder, const fs::path& company) {
  std::error_code ec;
  fs::path absolute = fs::absolute(company, ec);
  if (ec) absolute = company;
  return program_folder / absolute.parent_path().filename() / "Pasaje.mdb";
}

}  // namespace session
