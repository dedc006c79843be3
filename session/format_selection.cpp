// session/format_selection.cpp — format list and format choice (see format_selection.h).
#include "session/format_selection.h"

#include <system_error>

#include "base/number.h"
#include "settings/key_file.h"
#include "settings/paths.h"
#include "settings/strings.h"
#include "settings/text_file.h"

namespace session {

void LoadFormatList(SessionState& s) {
  settings::FileText conf = settings::ReadFile(settings::ProgramPath(s.program_folder, "ConfIMP.ini"));
  s.formats = settings::FormatsTable();
  s.cmbFormato.clear();
  s.cmbFormato_index = -1;
  if (!conf.error.empty()) {
    s.warnings.push_back(conf.error);
    return;
  }
  if (conf.text.empty()) return;
  for (const std::string& line : settings::SplitLines(conf.text)) {
    if (!settings::ParseLine(line, s.formats)) continue;
    std::size_t row = s.formats.size() - 1;
    s.cmbFormato.push_back(s.formats.cell(row, 0));
    if (settings::Trim(s.formats.cell(row, 1)).empty())
      s.warnings.push_back("ConfIMP.ini: la línea '" + settings::Trim(line) +
                           "' no indica el archivo del formato (se escribe nombre|archivo)");
  }
}

void TipoImp_Click(SessionState& s, int index) {
  if (index < 0 || index > 1) return;
  s.TipoImp.pressed[static_cast<std::size_t>(s.TipoImp.kind)] = false;
  s.TipoImp.pressed[static_cast<std::size_t>(index)] = true;
  s.TipoImp.kind = index;
}

void cmbFormato_Click(SessionState& s) {
  s.ColArchTablas.clear();
  if (s.cmbFormato_index < 0 || static_cast<std::size_t>(s.cmbFormato_index) >= s.formats.size()) return;

  s.current_format_file = s.formats.cell(static_cast<std::size_t>(s.cmbFormato_index), 1);
  std::filesystem::path path = settings::ProgramPath(s.program_folder, s.current_format_file);
  settings::FileText file = settings::ReadFile(path);
  if (!file.exists)
    s.warnings.push_back("No se encuentra el archivo del formato " + path.string());
  else if (!file.error.empty())
    s.warnings.push_back(file.error);
  const std::string& text = file.text;

  std::vector<std::string> rel_warnings = s.relations.Load(settings::KeyValue(text, "Relaciones"));
  s.warnings.insert(s.warnings.end(), rel_warnings.begin(), rel_warnings.end());
  mapping::ListRelations(s.relations, s.lstRelaciones);

  std::string archivos = settings::KeyValue(text, "Archivos");
  s.TipoImp.selected[1] = !archivos.empty();
  if (!archivos.empty()) staging::AddEntriesFromKey(s.ColArchTablas, archivos, true, "Archivos", &s.warnings);

  s.TablaNoBorrar = settings::KeyValue(text, "TablaNoBorrar");
  s.ConcCrear = settings::KeyValue(text, "ConcCrear");
  s.TipoBD = base::ValInt32(settings::KeyValue(text, "TipoBD"));

  std::string bd = settings::KeyValue(text, "BD");
  s.TipoImp.selected[0] = !bd.empty();
  if (!bd.empty()) staging::AddEntriesFromKey(s.ColArchTablas, bd, false, "BD", &s.warnings);

  if (!s.TipoImp.selected[0] && !s.TipoImp.selected[1]) {
    s.cbBuscar_enabled = false;
  } else {
    s.cbBuscar_enabled = true;
    TipoImp_Click(s, s.TipoImp.selected[1] ? 1 : 0);
  }
}

bool SaveFormatKeys(SessionState& s) {
  if (settings::Trim(s.current_format_file).empty()) return true;
  std::filesystem::path path = settings::ProgramPath(s.program_folder, s.current_format_file);
  // A format file that has gone away is not made again from the session's values.
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) return true;
  std::string error;
  if (!settings::WriteKey(path, "Relaciones", s.relations.Store(), &error) ||
      !settings::WriteKey(path, "ConcCrear", s.ConcCrear, &error)) {
    s.warnings.push_back(error);
    return false;
  }
  return true;
}

}  // namespace session
