// session/controller_source.cpp — choosing the destination and the source,
// preparing the staging database and staging the source: cbBuscar_Click,
// SelEmpresaAImp, PrepararBDAux, cbActualizar_Click, BuscarArchivos.
//
// Before a company is used its file is checked (session/company_check.h) and
// its path made absolute and normal, a company in a folder named like the
// template's is refused, and the run takes the company's and the staging
// database's locks (session/run_lock.h). The staging database records the
// company it was prepared for, so that another company of a same-named folder
// is asked before it reuses that data.
#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>

#include "db/error.h"
#include "db/access_reader.h"
#include "db/odbc_image.h"
#include "db/odbc_sources.h"
#include "db/open_database.h"
#include "db/sqlite_connection.h"
#include "session/company_check.h"
#include "session/main_controller.h"
#include "settings/paths.h"
#include "settings/strings.h"
#include "staging/catalogue.h"

namespace session {

namespace {

// Paths come from Windows shortcuts as often as from this system, so both "\"
// and "/" separate their parts.
std::string after_last_separator(const std::string& path) {
  std::size_t pos = path.find_last_of("\\/");
  return pos == std::string::npos ? path : path.substr(pos + 1);
}

bool file_exists(const std::filesystem::path& path) {
  std::error_code ec;
  return std::filesystem::is_regular_file(path, ec);
}

bool folder_exists(const std::string& path) {
  std::error_code ec;
  return !path.empty() && std::filesystem::is_directory(path, ec);
}

// How long PrepararBDAux waits for the copy of the template to appear: the
// copy is made here and is normally there at once; a slow network folder gets
// a few seconds before the open is tried (and reported) anyway.
constexpr int kCopyWaitRounds = 50;
constexpr auto kCopyWaitStep = std::chrono::milliseconds(100);

// The template's folder: a company kept in a folder of this name would stage
// into the template itself.
constexpr const char* kTemplateFolder = "Generica";

// `path` absolute and without "." and ".." parts, so that its folder's name
// is the company folder's real name.
std::string NormalPath(const std::string& path) {
  std::error_code ec;
  std::filesystem::path absolute = std::filesystem::absolute(path, ec);
  if (ec) absolute = path;
  return absolute.lexically_normal().string();
}

// The text in single quotes for native SQL.
std::string Quoted(const std::string& text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

}  // namespace

void MainWindowController::SelEmpresaAImp(const std::string& path) {
  // Normal before it is tested: "Empresa/x/../Datos.mdb" is Empresa's file
  // even when there is no folder x.
  std::string chosen = settings::Trim(path).empty() ? path : NormalPath(path);
  if (!chosen.empty() && !file_exists(chosen)) chosen.clear();
  PathDeEmp = !chosen.empty() ? chosen
                              : ui_.open_file("Seleccionar la base a Importar Datos", "Bases de Access (*.mdb)|*.mdb");

  std::string company_folder;
  bool company_usable = true;
  if (!settings::Trim(PathDeEmp).empty()) {
    PathDeEmp = NormalPath(PathDeEmp);
    const std::string problem = CheckCompanyFile(PathDeEmp);
    company_usable = false;
    if (!problem.empty()) {
      ui_.warning(problem);
    } else if (!company_lock_.acquire(PathDeEmp + ".lock")) {
      ui_.warning(kRunInProgress);
      run_blocked = true;
    } else {
      company_usable = true;
    }
    if (company_usable) {
      // The company file keeps its own journal mode: it is KEL's file.
      db::open_database(PathDeEmp, destination, db::JournalMode::kKeep);
      watch_busy();
      if (!destination->is_open()) {
        std::string text = "Error al abrir la base ubicada en " + PathDeEmp;
        if (!destination->last_error().empty()) text += "\r\n" + destination->last_error();
        ui_.warning(text);
      }
    } else {
      // Nothing of this file is opened: the session has no company.
      if (destination && destination->is_open()) destination->close();
      destination = std::make_unique<db::SqliteConnection>();
      company_lock_.release();
    }
    company_folder = std::filesystem::path(PathDeEmp).parent_path().filename().string();
    if (company_usable && (company_folder.empty() || settings::IEquals(company_folder, kTemplateFolder))) {
      ui_.warning("La base de KEL " + PathDeEmp + " está en la carpeta \"" +
                  (company_folder.empty() ? std::string("/") : company_folder) +
                  "\", que no puede dar nombre a su base auxiliar (" + kTemplateFolder +
                  " es la carpeta de la base genérica): mueva la base de la empresa a una carpeta propia");
      company_usable = false;
      run_blocked = true;
    }
  }
  view.LblEmpresa = PathDeEmp;
  if (!company_usable) return;

  if (PrepararBDAux(company_folder) || company_folder.empty()) {
    ActuGrillas();
  } else if (!run_blocked) {
    ui_.warning("No se pudo preparar la base de datos auxiliar para la importacion de datos");
  }
}

bool MainWindowController::PrepararBDAux(const std::string& name) {
  const std::string folder_name = after_last_separator(name);
  std::filesystem::path folder = folder_name.empty() ? program_folder_ : program_folder_ / folder_name;
  const std::filesystem::path template_file = settings::ProgramPath(program_folder_, "Generica/Pasaje.mdb");
  if (!file_exists(template_file)) {
    ui_.warning("Falta Base Genérica para poder realizar el pasaje");
    return false;
  }
  settings::CreateFolders(folder);
  staging_folder_ = folder;
  if (const std::string problem = CheckStagingFile(folder, folder / "Pasaje.mdb"); !problem.empty()) {
    ui_.warning(problem);
    run_blocked = true;
    if (staging && staging->is_open()) staging->close();
    return false;
  }
  if (!staging_lock_.acquire(folder / "Pasaje.mdb.lock")) {
    ui_.warning(kRunInProgress);
    run_blocked = true;
    if (staging && staging->is_open()) staging->close();
    return false;
  }
  // Access sources are read through SQLite copies kept beside the staging database.
  db::use_access_reader(folder);

  const std::filesystem::path file = folder / "Pasaje.mdb";
  // An empty file holds nothing (another tool opened the name, or the program
  // stopped while it was made): it is replaced like a missing one.
  std::error_code size_ec;
  if (!file_exists(file) || std::filesystem::file_size(file, size_ec) == 0) {
    // Copied under another name and renamed, so that "the copy exists" means
    // the whole copy is there.
    std::error_code ec;
    std::filesystem::path partial = folder / "Pasaje.mdb.copiando";
    std::filesystem::copy_file(template_file, partial, std::filesystem::copy_options::overwrite_existing, ec);
    if (!ec) std::filesystem::rename(partial, file, ec);
    const bool copy_failed = static_cast<bool>(ec);
    if (copy_failed) std::filesystem::remove(partial, ec);
    for (int i = 0; i < 3; ++i) ui_.repaint();
    // A copy the system refused will not appear: no point in waiting for it.
    for (int round = 0; !copy_failed && round < kCopyWaitRounds && !file_exists(file); ++round)
      std::this_thread::sleep_for(kCopyWaitStep);
  }

  // The browser's open cursor reads the connection about to be replaced.
  preview_.browser.release();
  db::open_database(file.string(), staging);
  watch_busy();
  ui_.repaint();
  if (staging->is_open() && !claim_staging_for_company()) {
    staging->close();
    return false;
  }
  return staging->is_open();
}

void MainWindowController::watch_busy() {
  auto tell = [this](const std::string& text) { ui_.waiting(text); };
  destination_busy_.install(destination.get(), tell);
  staging_busy_.install(staging.get(), tell);
}

bool MainWindowController::claim_staging_for_company() {
  if (!staging || settings::Trim(PathDeEmp).empty()) return true;
  std::string previous;
  try {
    staging->execute_native(std::string("CREATE TABLE IF NOT EXISTS ") + staging::kPreparedForTable + " (Archivo TEXT)");
    db::Recordset rs = staging->open_recordset(std::string("Select Archivo From ") + staging::kPreparedForTable);
    if (!rs.eof()) previous = db::as_text(rs.field(std::size_t{0}));
  } catch (const db::Error&) {
    // A staging database that cannot record its company is used as before.
    return true;
  }
  if (!previous.empty() && previous != PathDeEmp) {
    const std::string text = "La base auxiliar " + staging->data_source_name() + " fue preparada para la empresa " +
                             previous + "\r\ny ahora se abre para " + PathDeEmp +
                             " (las dos carpetas tienen el mismo nombre).\r\n" +
                             "Sus datos cargados y sus relaciones son de la otra empresa. "
                             "¿Desea usarlos de todas formas?";
    if (!ui_.ask_yes_no(text, QuestionIcon::kWarning)) return false;
  }
  if (previous != PathDeEmp) {
    try {
      staging->execute_native(std::string("DELETE FROM ") + staging::kPreparedForTable + "; INSERT INTO " +
                             staging::kPreparedForTable + " (Archivo) VALUES (" + Quoted(PathDeEmp) + ")");
    } catch (const db::Error&) {
      // Not recorded: the next company is simply not told.
    }
  }
  return true;
}

std::string MainWindowController::SeleccionarDSN() {
  const std::vector<std::string> sources = db::odbc_data_sources();
  // The only source of the machine, already named in txtRuta, leaves nothing
  // to choose: the picker is not shown.
  const std::string name = db::odbc_picker_can_be_skipped(view.txtRuta, sources)
                               ? settings::Trim(view.txtRuta)
                               : ui_.pick_data_source(view.txtRuta, sources);
  if (name.empty()) return {};
  db::open_odbc(db::odbc_connection_text(name), source);  // closes the open one first
  return name;
}

void MainWindowController::cbBuscar_Click(int index) {
  RunningScope running(view);
  std::string new_path;
  if (index == 1) {
    SelEmpresaAImp("");
  } else {
    ActuBarra();
    if (state.TipoImp.kind == 1 || state.TipoBD == 1) {
      std::string prompt = std::string("Seleccione la carpeta ") +
                           (state.TipoImp.kind == 1 ? "de los Archivos de intercambio" : "donde se encuentra la BD");
      // A cancelled browser chooses nothing: txtRuta stays and nothing is staged.
      new_path = ui_.browse_folder("Seleccionar Carpeta", prompt, view.txtRuta).value_or(std::string());
    } else {
      new_path = SeleccionarDSN();
      if (!new_path.empty()) view.txtRuta = new_path;
      AF_GenImp();
    }
  }
  if (!settings::Trim(new_path).empty() && staging && staging->is_open()) {
    view.txtRuta = new_path;
    cbActualizar_Click(0);
  }
}

void MainWindowController::cbActualizar_Click(int index) {
  if (index != 0) {
    if (!settings::Trim(PathDeEmp).empty()) db::open_database(PathDeEmp, destination, db::JournalMode::kKeep);
    watch_busy();
    return;
  }
  RunningScope running(view);
  ui_.repaint();
  ActuBarra();
  const bool by_folder = state.TipoImp.kind == 1 || state.TipoBD == 1;
  // An ODBC data source is not tested here: the load finds out.
  const bool usable = by_folder ? folder_exists(view.txtRuta) : (state.TipoImp.kind == 0 && state.TipoBD != 1);
  if (!usable) {
    ui_.warning("La carpeta " + view.txtRuta + " No existe");
    last_load_failed = true;
    return;
  }
  run_guarded(
      "cbActualizar_Click",
      [this, by_folder] {
        looked_for_ = state.ChkOP;
        std::shared_ptr<db::SourceReader> odbc_reader;
        if (by_folder) {
          BuscarArchivos(view.txtRuta);
        } else if (state.ColArchTablas.empty()) {
          // No usable format: no data source to try; the load says so and
          // empties nothing.
        } else if (!(odbc_reader = BuscarTablasODBC())) {
          last_load_failed = true;
          return;
        }
        // The ODBC tables are read through the source connection during this
        // load only.
        struct Unregister {
          std::shared_ptr<db::SourceReader> reader;
          ~Unregister() {
            if (reader) db::unregister_source_reader(reader);
          }
        } unregister{odbc_reader};
        ActuBarra(3);
        ActuBarra(-1);
        CargarDatos();
      },
      [] { return std::string("carga de la base auxiliar (CargarDatos)"); },
      [] {
        return std::vector<std::string>{
            "nada en la base de KEL; la base auxiliar puede haber quedado vaciada en parte"};
      });
}

std::shared_ptr<db::SourceReader> MainWindowController::BuscarTablasODBC() {
  const std::string name = settings::Trim(view.txtRuta);
  const std::string connection_text = db::is_connection_text(name) ? name : db::odbc_connection_text(name);
  if (!(source && source->is_open())) db::open_odbc(connection_text, source);
  if (!(source && source->is_open())) {
    ui_.warning("No se pudo abrir el origen de datos ODBC " + name +
                (source ? ": " + source->last_error() : std::string()));
    return nullptr;
  }
  const std::array<bool, 5> ticked = state.ChkOP;
  std::vector<std::string> matched;
  staging::MatchResult result = staging::MatchTables(state.ColArchTablas, source->table_names(), connection_text,
                                                     state.ChkOP, &matched, [this] { ActuBarra(1); });
  if (matched.empty()) {
    // Nothing to load: the staging database and the ticked groups stay as they were.
    state.ChkOP = ticked;
    ui_.warning("Ninguna tabla del origen de datos ODBC " + name +
                " coincide con las del formato elegido: la base auxiliar no se modificó");
    return nullptr;
  }
  total_lines = result.total_lines;
  // Statements read the matched tables with in '<connection text>'; the
  // staging connection is opened afresh so that no copy of an earlier load
  // stays attached.
  std::shared_ptr<db::SourceReader> reader = db::odbc_image_reader(connection_text, *source, matched, staging_folder_);
  if (!reader) {
    ui_.warning("El origen de datos " + name + " no es una conexión ODBC");
    return nullptr;
  }
  db::register_source_reader(reader);
  if (staging && staging->is_open()) db::open_database(staging->data_source_name(), staging);
  return reader;
}

void MainWindowController::BuscarArchivos(const std::string& folder) {
  staging::MatchResult result =
      staging::MatchFolder(state.ColArchTablas, folder, state.ChkOP, [this] { ActuBarra(1); });
  total_lines = result.total_lines;
}

void MainWindowController::tell_unmatched_source_files(std::vector<std::string>& warnings,
                                                       std::vector<std::string>& notes) const {
  if (state.TipoImp.kind != 1 || !folder_exists(view.txtRuta)) return;
  std::vector<std::string> taken;
  for (const staging::ClaArchBD& entry : state.ColArchTablas)
    if (entry.Existe) taken.push_back(std::filesystem::path(entry.Ruta).filename().string());
  std::vector<std::string> names;
  std::error_code ec;
  for (const auto& e : std::filesystem::directory_iterator(view.txtRuta, ec)) {
    if (!e.is_regular_file(ec)) continue;
    const std::string name = e.path().filename().string();
    if (name.empty() || name[0] == '.') continue;
    if (std::find(taken.begin(), taken.end(), name) == taken.end()) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    // The shipped formats name each entry after its file: a file of that
    // name that the entry did not take fails the entry's other conditions.
    const std::string stem = std::filesystem::path(name).stem().string();
    const staging::ClaArchBD* entry = nullptr;
    for (const staging::ClaArchBD& e : state.ColArchTablas) {
      const int option = e.option();
      if (!e.Existe && option >= 1 && option <= 5 && looked_for_[static_cast<std::size_t>(option - 1)] &&
          settings::IEquals(e.Codigo.substr(0, e.Codigo.rfind('*')), stem))
        entry = &e;
    }
    if (entry) {
      warnings.push_back(name + ": no se cargó porque no cumple las condiciones de la entrada " + stem +
                         " del formato (revise su línea de encabezado)");
    } else {
      notes.push_back(name + ": ninguna entrada del formato lo usa; no se cargó");
    }
  }
}

}  // namespace session
