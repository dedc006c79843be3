// settings/paths.cpp — program-folder names and folder helpers (see paths.h).
#include "settings/paths.h"

#include <algorithm>
#include <system_error>

#include "settings/strings.h"

namespace settings {

namespace fs = std::filesystem;

std::string NormaliseRelativeName(std::string_view name) {
  std::string out;
  bool absolute = !name.empty() && (name[0] == '/' || name[0] == '\\');
  std::vector<std::string> parts;
  std::string part;
  auto flush = [&] {
    if (!part.empty() && part != ".") parts.push_back(part);
    part.clear();
  };
  for (char c : name) {
    if (c == '/' || c == '\\') flush();
    else part += c;
  }
  flush();
  if (absolute) out.push_back('/');
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i) out += '/';
    out += parts[i];
  }
  return out;
}

namespace {

bool IsAbsoluteName(std::string_view name) {
  if (!name.empty() && (name[0] == '/' || name[0] == '\\')) return true;
  return name.size() >= 2 && name[1] == ':' &&
         ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z'));
}

}  // namespace

fs::path ProgramPath(const fs::path& program_folder, std::string_view name) {
  std::string rel = NormaliseRelativeName(name);
  if (IsAbsoluteName(name)) return fs::path(name.size() >= 2 && name[1] == ':' ? std::string(name) : rel);
  fs::path joined = program_folder / rel;
  std::error_code ec;
  if (rel.empty() || fs::exists(joined, ec)) return joined;
  // Look for each part without regard to case.
  fs::path current = program_folder;
  for (const std::string& part : SplitChar(rel, '/')) {
    fs::path exact = current / part;
    if (fs::exists(exact, ec)) {
      current = exact;
      continue;
    }
    bool found = false;
    for (const auto& e : fs::directory_iterator(current, ec)) {
      if (IEquals(e.path().filename().string(), part)) {
        current = e.path();
        found = true;
        break;
      }
    }
    if (!found) return joined;
  }
  return current;
}

bool CreateFolders(const fs::path& folder) {
  std::error_code ec;
  fs::create_directories(folder, ec);
  return fs::is_directory(folder, ec);
}

std::vector<fs::path> ListFilesSorted(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(folder, ec)) {
    std::error_code ec2;
    if (e.is_regular_file(ec2)) files.push_back(e.path());
  }
  std::sort(files.begin(), files.end(), [](const fs::path& a, const fs::path& b) {
    std::string fa = FoldCase(a.filename().string()), fb = FoldCase(b.filename().string());
    if (fa != fb) return fa < fb;
    return a.filename().string() < b.filename().string();
  });
  return files;
}

}  // namespace settings
