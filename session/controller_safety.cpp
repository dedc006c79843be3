// session/controller_safety.cpp — the safety copy an import run takes before
// its first step, and the restore the error report offers.
#include <algorithm>

#include "db/backup.h"
#include "db/error.h"
#include "session/main_controller.h"
#include "session/safety_copy.h"

namespace session {

namespace fs = std::filesystem;

bool MainWindowController::take_safety_copy(ImportResult& result) {
  const bool any = std::find(state.ChkOP.begin(), state.ChkOP.end(), true) != state.ChkOP.end();
  if (!any) return true;  // nothing will touch the file
  if (!destination || !destination->is_open())
    return true;  // the run reports the missing base itself
  const fs::path company = destination->data_source_name();
  try {
    // A file another program is writing would stop the first step half-way:
    // better to wait for it (or give up) before anything starts.
    db::wait_until_writable(company.string());
  } catch (const db::Error& e) {
    ui_.warning("No se importa nada: " + e.message());
    return false;
  }
  try {
    result.safety_copy = MakeSafetyCopy(company);
    if (staging && staging->is_open())
      SaveStagingMappings(staging->data_source_name(), result.safety_copy);
  } catch (const db::Error& e) {
    ui_.warning(
        "No se importa nada: antes de cambiar la base de KEL se hace una copia de seguridad, "
        "y no se pudo hacer.\r\n" +
        e.message());
    return false;
  }
  ui_.information("Copia de seguridad de la base de KEL: " + result.safety_copy.string());
  return true;
}

void MainWindowController::offer_restore(ImportResult& result) {
  const fs::path company =
      destination ? fs::path(destination->data_source_name()) : fs::path(PathDeEmp);
  const fs::path staging_file = staging ? fs::path(staging->data_source_name()) : fs::path();
  const bool wanted = restore_on_error ? *restore_on_error
                                       : ui_.ask_yes_no(kRestoreQuestion, QuestionIcon::kQuestion);
  if (!wanted) {
    if (restore_on_error)
      ui_.information(
          "La base de KEL quedó como la dejó el error. Para devolverla al estado anterior a la "
          "importación: kelimport --restore \"" +
          result.safety_copy.string() + "\"");
    return;
  }
  // The session's connections must let go of the file before it is replaced;
  // the program ends after the report, so they are not reopened.
  if (destination) destination->close();
  if (staging) staging->close();
  try {
    RestoreSafetyCopy(result.safety_copy, company);
    const fs::path staging_copy = StagingCopyOf(result.safety_copy);
    std::error_code ec;
    if (!staging_file.empty() && fs::exists(staging_copy, ec))
      RestoreStagingMappings(result.safety_copy, staging_file);
  } catch (const db::Error& e) {
    ui_.warning(e.message() + "\r\nLa copia sigue en " + result.safety_copy.string());
    return;
  }
  result.restored = true;
  ui_.information("La base de KEL " + company.string() +
                  " fue devuelta al estado anterior a la importación (copia " +
                  result.safety_copy.string() + ")");
}

}  // namespace session
