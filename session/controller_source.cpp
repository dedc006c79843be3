// session/controller_source.cpp — choosing the destination and the source,
// preparing the staging database and staging the source: cbBuscar_Click,
// SelEmpresaAImp, PrepararBDAux, cbActualizar_Click, BuscarArchivos.
#include <chrono>
#include <system_error>
#include <thread>

#include "db/access_reader.h"
#include "db/odbc_image.h"
#include "db/odbc_sources.h"
#include "db/open_database.h"
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

std::string before_last_separator(const std::string& path) {
  std::size_t pos = path.find_last_of("\\/");
  return pos == std::string::npos ? std::string() : path.substr(0, pos);
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

}  // namespace

void MainWindowController::SelEmpresaAImp(const std::string& path) {
  std::string chosen = path;
  if (!chosen.empty() && !file_exists(chosen)) chosen.clear();
  PathDeEmp = !chosen.empty() ? chosen
                              : ui_.open_file("Seleccionar la base a Importar Datos", "Bases de Access (*.mdb)|*.mdb");

  std::string company_folder;
  if (!settings::Trim(PathDeEmp).empty()) {
    db::open_database(PathDeEmp, destination);
    if (!destination->is_open()) {
      std::string text = "Error al abrir la base ubicada en " + PathDeEmp;
      if (!destination->last_error().empty()) text += "\r\n" + destination->last_error();
      ui_.warning(text);
    }
    // A relative path names its folder through the current folder.
    std::error_code ec;
    std::string absolute = std::filesystem::absolute(PathDeEmp, ec).string();
    if (ec) absolute = PathDeEmp;
    company_folder = after_last_separator(before_last_separator(absolute));
  }
  LblEmpresa = PathDeEmp;

  if (PrepararBDAux(company_folder) || company_folder.empty()) {
    if (ActuGrillas) ActuGrillas();
  } else {
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
  // Access sources are read through SQLite copies kept beside the staging database.
  db::use_access_reader(folder);

  const std::filesystem::path file = folder / "Pasaje.mdb";
  if (!file_exists(file)) {
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

  db::open_database(file.string(), staging);
  ui_.repaint();
  return staging->is_open();
}

std::string MainWindowController::SeleccionarDSN() {
  std::vector<std::string> sources = ListarODBC ? ListarODBC() : std::vector<std::string>{};
  std::string name = ui_.pick_data_source(txtRuta, sources);
  if (name.empty()) return {};
  if (source && source->is_open()) source->close();
  source = open_odbc ? open_odbc("DSN=" + name + ";") : nullptr;
  return name;
}

void MainWindowController::cbBuscar_Click(int index) {
  std::string new_path;
  if (index == 1) {
    SelEmpresaAImp("");
  } else {
    ActuBarra();
    if (state.TipoImp.kind == 1 || state.TipoBD == 1) {
      std::string prompt = std::string("Seleccione la carpeta ") +
                           (state.TipoImp.kind == 1 ? "de los Archivos de intercambio" : "donde se encuentra la BD");
      // A cancelled browser chooses nothing: txtRuta stays and nothing is staged.
      new_path = ui_.browse_folder("Seleccionar Carpeta", prompt, txtRuta).value_or(std::string());
    } else {
      new_path = SeleccionarDSN();
      if (!new_path.empty()) txtRuta = new_path;
      AF_GenImp();
    }
  }
  if (!settings::Trim(new_path).empty() && staging && staging->is_open()) {
    txtRuta = new_path;
    cbActualizar_Click(0);
  }
}

void MainWindowController::cbActualizar_Click(int index) {
  if (index != 0) {
    if (!settings::Trim(PathDeEmp).empty()) db::open_database(PathDeEmp, destination);
    return;
  }
  ui_.repaint();
  ActuBarra();
  const bool by_folder = state.TipoImp.kind == 1 || state.TipoBD == 1;
  // An ODBC data source is not tested here: the load finds out.
  const bool usable = by_folder ? folder_exists(txtRuta) : (state.TipoImp.kind == 0 && state.TipoBD != 1);
  if (!usable) {
    ui_.warning("La carpeta " + txtRuta + " No existe");
    return;
  }
  run_guarded(
      "cbActualizar_Click",
      [this, by_folder] {
        std::shared_ptr<db::SourceReader> odbc_reader;
        if (by_folder) {
          BuscarArchivos(txtRuta);
        } else if (!(odbc_reader = BuscarTablasODBC())) {
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
  const std::string name = settings::Trim(txtRuta);
  const std::string connection_text = db::is_connection_text(name) ? name : "DSN=" + name + ";";
  if (!(source && source->is_open())) {
    if (open_odbc) {
      source = open_odbc(connection_text);
    } else {
      db::open_odbc(connection_text, source);
    }
  }
  auto* odbc = dynamic_cast<db::OdbcConnection*>(source.get());
  if (odbc == nullptr || !odbc->is_open()) {
    ui_.warning("No se pudo abrir el origen de datos ODBC " + name +
                (source ? ": " + source->last_error() : std::string()));
    return nullptr;
  }
  const std::array<bool, 5> ticked = state.ChkOP;
  std::vector<std::string> matched;
  staging::MatchResult result = staging::MatchTables(state.ColArchTablas, odbc->table_names(), connection_text,
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
  auto reader = std::make_shared<db::OdbcImageReader>(connection_text, *odbc, matched, staging_folder_);
  db::register_source_reader(reader);
  if (staging && staging->is_open()) db::open_database(staging->data_source_name(), staging);
  return reader;
}

void MainWindowController::BuscarArchivos(const std::string& folder) {
  staging::MatchResult result =
      staging::MatchFolder(state.ColArchTablas, folder, state.ChkOP, [this] { ActuBarra(1); });
  total_lines = result.total_lines;
}

}  // namespace session
