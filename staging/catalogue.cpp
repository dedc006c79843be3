// staging/catalogue.cpp — catalogue entries and folder matching (see catalogue.h).
#include "staging/catalogue.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>

#include "base/number.h"
#include "settings/paths.h"
#include "settings/strings.h"
#include "settings/text_file.h"
#include "staging/condition.h"

namespace staging {

namespace fs = std::filesystem;

int ClaArchBD::option() const {
  std::size_t star = Codigo.find('*');
  if (star == std::string::npos) return 0;
  return base::ValInt32(std::string_view(Codigo).substr(star + 1));
}

std::string ClaArchBD::name() const { return Codigo.substr(0, Codigo.find('*')); }

ClaArchBD& ColArchsBD::ColArchTablas(std::string_view key) {
  ClaArchBD* e = find(key);
  if (!e) throw std::out_of_range("No hay ninguna entrada '" + std::string(key) + "' en el catálogo");
  return *e;
}

const ClaArchBD& ColArchsBD::ColArchTablas(std::string_view key) const {
  return const_cast<ColArchsBD*>(this)->ColArchTablas(key);
}

ClaArchBD* ColArchsBD::find(std::string_view key) {
  for (ClaArchBD& e : entries_)
    if (settings::IEquals(e.Codigo, key)) return &e;
  return nullptr;
}

bool ColArchsBD::add(ClaArchBD entry) {
  if (find(entry.Codigo)) return false;
  entries_.push_back(std::move(entry));
  return true;
}

bool ColArchsBD::remove(std::string_view key) {
  for (auto it = entries_.begin(); it != entries_.end(); ++it)
    if (settings::IEquals(it->Codigo, key)) {
      entries_.erase(it);
      return true;
    }
  return false;
}

std::optional<ClaArchBD> EntryFromLine(std::string_view line, bool tipo_ar, std::string* warning) {
  std::vector<std::string> f = settings::SplitChar(line, '|');
  auto fail = [&](const std::string& why) -> std::optional<ClaArchBD> {
    if (warning) *warning = "Se ignora la línea '" + std::string(line) + "': " + why;
    return std::nullopt;
  };
  if (f.size() < 4)
    return fail("tiene " + std::to_string(f.size()) +
                " campo(s) y se necesitan cuatro separados por '|' (nombre|condiciones|archivo de sentencias|opción)");
  std::string name = settings::Trim(f[0]);
  std::string option = settings::Trim(f[3]);
  if (name.empty()) return fail("falta el nombre");
  // The option number is read back from the text after the first "*".
  if (name.find('*') != std::string::npos) return fail("el nombre no puede contener '*'");
  double n = base::Val(option);
  if (option.empty() || n != std::floor(n) || n < 1 || n > 5)
    return fail("la opción '" + option + "' debe ser un número entero del 1 al 5");
  ConditionParse cond = ParseCondition(f[1]);
  if (!cond.ok()) return fail(cond.error);
  ClaArchBD e;
  e.Codigo = name + "*" + base::cstr_number(n);
  e.ColCond = std::move(cond.tree);
  e.ArchConf = settings::Trim(f[2]);
  e.TipoAR = tipo_ar;
  return e;
}

int AddEntriesFromKey(ColArchsBD& catalogue, std::string_view value, bool tipo_ar, const std::string& key_name,
                      std::vector<std::string>* warnings) {
  int added = 0;
  for (const std::string& line : settings::SplitLines(value)) {
    if (settings::Trim(line).empty()) continue;
    std::string why;
    std::optional<ClaArchBD> e = EntryFromLine(line, tipo_ar, &why);
    if (!e) {
      if (warnings) warnings->push_back(key_name + ": " + why);
      continue;
    }
    std::string codigo = e->Codigo;
    if (!catalogue.add(std::move(*e))) {
      if (warnings)
        warnings->push_back(key_name + ": Se ignora la línea '" + line + "': repite el nombre y la opción de otra (" +
                            codigo + ")");
      continue;
    }
    ++added;
  }
  return added;
}

MatchResult MatchFolder(ColArchsBD& catalogue, const fs::path& folder, std::array<bool, 5>& chk_op,
                        const std::function<void()>& on_entry) {
  MatchResult result;
  for (ClaArchBD& e : catalogue) {
    e.Existe = false;
    e.Ruta.clear();
  }
  const std::vector<fs::path> files = settings::ListFilesSorted(folder);
  // Contents and line counts of the files read so far in this pass.
  std::map<std::size_t, std::string> contents;     // whole texts
  std::map<std::size_t, std::string> first_lines;  // first lines of files not read whole
  std::map<std::size_t, long long> line_counts;
  std::array<bool, 5> found{};
  for (ClaArchBD& e : catalogue) {
    if (on_entry) on_entry();
    int n = e.option();
    if (n < 1 || n > 5 || !chk_op[static_cast<std::size_t>(n - 1)]) continue;
    // Database entries are recognised by name only; a condition that tests
    // only first lines reads just the first line of each file.
    const ContentNeed need = e.TipoAR ? ContentsNeeded(e.ColCond) : ContentNeed::None;
    for (std::size_t i = 0; i < files.size() && !e.Existe; ++i) {
      std::string_view text;
      auto whole = contents.find(i);
      if (need == ContentNeed::Whole && whole == contents.end()) {
        whole = contents.emplace(i, settings::ReadText(files[i])).first;
        ++result.files_read;
      }
      if (need != ContentNeed::None && whole != contents.end()) {
        text = whole->second;
      } else if (need == ContentNeed::FirstLine) {
        auto first = first_lines.find(i);
        if (first == first_lines.end()) {
          first = first_lines.emplace(i, settings::ReadFirstLine(files[i])).first;
          ++result.first_lines_read;
        }
        text = first->second;
      }
      if (!CoincideConCond(e.ColCond, files[i].filename().string(), text)) continue;
      e.Existe = true;
      e.Ruta = files[i].string();
      found[static_cast<std::size_t>(n - 1)] = true;
      long long lines = 0;
      if (e.TipoAR) {
        auto lc = line_counts.find(i);
        if (lc == line_counts.end()) {
          auto cached = contents.find(i);
          long long count = cached != contents.end()
                                ? settings::CountLines(cached->second)
                                : settings::CountFileLines(files[i]);
          lc = line_counts.emplace(i, count).first;
        }
        lines = lc->second;
      }
      result.total_lines += lines + 1;
    }
  }
  chk_op = found;
  return result;
}

MatchResult MatchTables(ColArchsBD& catalogue, const std::vector<std::string>& tables,
                        const std::string& connection_text, std::array<bool, 5>& chk_op,
                        std::vector<std::string>* matched, const std::function<void()>& on_entry) {
  MatchResult result;
  for (ClaArchBD& e : catalogue) {
    e.Existe = false;
    e.Ruta.clear();
  }
  std::array<bool, 5> found{};
  for (ClaArchBD& e : catalogue) {
    if (on_entry) on_entry();
    int n = e.option();
    if (e.TipoAR || n < 1 || n > 5 || !chk_op[static_cast<std::size_t>(n - 1)]) continue;
    for (const std::string& table : tables) {
      // Table names are tested as file names are; there are no contents.
      if (!CoincideConCond(e.ColCond, table, {})) continue;
      e.Existe = true;
      e.Ruta = connection_text;
      found[static_cast<std::size_t>(n - 1)] = true;
      result.total_lines += 1;
      if (matched && std::find(matched->begin(), matched->end(), table) == matched->end())
        matched->push_back(table);
      break;
    }
  }
  chk_op = found;
  return result;
}

}  // namespace staging
