// app/batch.cpp — `kelimport --batch` (see batch.h).
#include "app/batch.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <sstream>

#include "app/batch_ui.h"
#include "app/staged_counts.h"
#include "session/main_controller.h"
#include "settings/strings.h"
#include "transfer/importer.h"

namespace app {

namespace {

// "MM/yyyy" (also "M/yyyy"), a month of the calendar.
std::optional<session::Month> parse_month(const std::string& text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos || slash == 0 || slash > 2 || text.size() != slash + 5) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (i != slash && (text[i] < '0' || text[i] > '9')) return std::nullopt;
  const int month = std::stoi(text.substr(0, slash));
  const int year = std::stoi(text.substr(slash + 1));
  if (month < 1 || month > 12 || year < 1900) return std::nullopt;
  return session::Month(year, month);
}

// "1,3,5": the 1-based groups to tick; "" ticks none.
std::optional<std::array<bool, 5>> parse_groups(const std::string& text) {
  std::array<bool, 5> groups{};
  if (settings::Trim(text).empty()) return groups;
  for (const std::string& field : settings::SplitChar(text, ',')) {
    const std::string g = settings::Trim(field);
    if (g.size() != 1 || g[0] < '1' || g[0] > '5') return std::nullopt;
    groups[static_cast<std::size_t>(g[0] - '1')] = true;
  }
  return groups;
}

// A message as printed: its own line breaks become continuation lines
// indented by two blanks, so that every line that starts a message starts
// with its prefix (AVISO:, PREGUNTA: ...) and scripts can pick them out.
std::string PrintedMessage(const std::string& line) {
  std::string out;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\r' || line[i] == '\n') {
      if (line[i] == '\r' && i + 1 < line.size() && line[i + 1] == '\n') ++i;
      out += "\n  ";
    } else {
      out += line[i];
    }
  }
  return out;
}

// The progress bar on a terminal: the percentage rewritten in place.
class TerminalProgress {
 public:
  explicit TerminalProgress(std::ostream& err) : err_(err) {}
  ~TerminalProgress() {
    if (shown_) err_ << "\r          \r" << std::flush;
  }
  void show(const session::ProgressBar& bar) {
    std::string text = bar.visible() ? bar.lblPorc() : std::string();
    if (text == last_) return;
    last_ = text;
    err_ << "\r" << (text.empty() ? std::string("    ") : "  " + text + "  ") << std::flush;
    shown_ = true;
  }

 private:
  std::ostream& err_;
  std::string last_;
  bool shown_ = false;
};

void print_staging_summary(session::MainWindowController& c, std::ostream& out) {
  const staging::StagingLoadStats& st = c.last_load_stats;
  // What the load left out was printed as AVISO: lines when it ended.
  out << "CARGA: " << st.entries_loaded << " entradas cargadas, " << st.statements_run
      << " instrucciones ejecutadas, " << st.statements_failed << " rechazadas, " << st.data_rows
      << " filas leídas de archivos";
  if (st.rows_set_aside > 0) out << ", " << st.rows_set_aside << " filas apartadas";
  out << "\n";
  for (const std::string& note : c.last_load_notes) out << "CARGA: nota: " << note << "\n";
  for (const auto& [table, rows] : StagedRowCounts(c.staging.get()))
    if (rows > 0) out << "CARGA: " << table << ": " << rows << (rows == 1 ? " fila\n" : " filas\n");
  out << std::flush;
}

// What each step that ran transferred: one line per step, then one per
// table and action with its rows.
void print_transferred(const session::ImportResult& result, std::ostream& out) {
  for (const session::StepRun& run : result.steps) {
    const std::string step = std::to_string(run.group + 1) + ". " + run.report.step;
    out << "TRANSFERIDO: " << step << ": " << run.report.statements_run << " instrucciones";
    if (run.report.statements_ignored > 0)
      out << ", " << run.report.statements_ignored << " rechazadas sin efecto (se ignoran sus errores)";
    out << "\n";
    for (const transfer::TableChange& change : run.report.changes)
      out << "TRANSFERIDO: " << step << ": " << change.table << ": " << change.rows << " " << change.action << "\n";
    for (const std::string& note : run.report.notes) out << "TRANSFERIDO: " << step << ": " << note << "\n";
  }
  out << std::flush;
}

// The run's import report, one INFORME: line each, and where it was written.
void print_import_report(const session::MainWindowController& c, std::ostream& out) {
  for (const std::string& line : c.last_import_report) out << "INFORME: " << line << "\n";
  if (!c.last_import_report_file.empty())
    out << "INFORME: escrito en " << c.last_import_report_file.string() << "\n";
  out << std::flush;
}

}  // namespace

bool BatchSucceeded(const session::ImportResult& result) { return result.finished && !result.steps.empty(); }

int BatchExitStatus(const BatchOutcome& outcome) {
  if (outcome.blocked || outcome.load_failed) return kBatchError;
  if (!outcome.finished) return kBatchStopped;
  return outcome.left_out > 0 ? kBatchIncomplete : kBatchOk;
}

std::string batch_usage() {
  return "Uso: kelimport --batch [opciones] \"DESTINO*ORIGEN*FORMATO\"\n"
         "\n"
         "Importa sin ventana: abre la base de KEL DESTINO, carga la base auxiliar desde\n"
         "ORIGEN con el formato número FORMATO de ConfIMP.ini (contando desde 0) y\n"
         "transfiere los grupos marcados. Cada mensaje de la ventana se escribe en una\n"
         "línea: AVISO, PREGUNTA, INFO o ERROR.\n"
         "\n"
         "Opciones:\n"
         "  --groups 1,2,3,4,5   grupos a importar (1 Empresa, 2 Cargos y sectores,\n"
         "                       3 Empleados, 4 Conceptos, 5 Liquidaciones); por omisión\n"
         "                       los que la búsqueda de archivos deja marcados\n"
         "  --from MM/aaaa       importar desde ese mes\n"
         "  --to MM/aaaa         importar hasta ese mes\n"
         "  --yes | --no         respuesta a todas las preguntas (sin ella, una pregunta\n"
         "                       es un error)\n"
         "  --only-used-concepts importar solo los conceptos utilizados\n"
         "  --set-aside-bad-rows apartar las filas con clave vacía o repetida en\n"
         "                       rechazados/<tabla>.csv y cargar el resto de la tabla\n"
         "                       (sin ella, esa tabla no se carga)\n"
         "  --restore-on-error   si un error detiene la importación, devolver la base de\n"
         "                       KEL desde la copia de seguridad tomada antes del primer paso\n"
         "  --help               esta ayuda\n"
         "\n"
         "Cada paso transferido se resume en líneas TRANSFERIDO (filas por tabla), y el\n"
         "informe de la importación en líneas INFORME (también escrito junto a la base\n"
         "auxiliar). Antes del primer paso se copia la base de KEL a su lado\n"
         "(<base>.antes-de-importar-<fecha>); kelimport --restore COPIA la devuelve.\n"
         "\n"
         "Resultado: 0 importación satisfactoria (al menos un grupo transferido), sin\n"
         "nada omitido; 1 una respuesta detuvo la importación o no había ningún grupo\n"
         "marcado; 2 un error detuvo la importación (ver el informe de errores) o la\n"
         "carga no cargó nada; 3 argumentos incorrectos; 4 la importación terminó pero\n"
         "algo se omitió, se rechazó o se apartó (cada cosa en una línea AVISO).\n";
}

std::optional<BatchOptions> ParseBatchArguments(const std::vector<std::string>& args, std::string* error) {
  BatchOptions o;
  bool have_command_line = false;
  auto fail = [&](const std::string& text) -> std::optional<BatchOptions> {
    if (error) *error = text;
    return std::nullopt;
  };
  for (std::size_t i = 0; i < args.size(); ++i) {
    std::string arg = args[i];
    std::string value;
    bool has_inline_value = false;
    if (arg.rfind("--", 0) == 0) {
      const std::size_t eq = arg.find('=');
      if (eq != std::string::npos) {
        value = arg.substr(eq + 1);
        arg = arg.substr(0, eq);
        has_inline_value = true;
      }
    }
    auto take_value = [&]() -> bool {
      if (has_inline_value) return true;
      if (i + 1 >= args.size()) return false;
      value = args[++i];
      return true;
    };
    if (arg == "--help" || arg == "-h") {
      o.help = true;
    } else if (arg == "--yes" || arg == "--no") {
      const bool answer = arg == "--yes";
      if (o.answer && *o.answer != answer) return fail("--yes y --no no pueden usarse juntas");
      o.answer = answer;
    } else if (arg == "--only-used-concepts") {
      o.only_used_concepts = true;
    } else if (arg == "--set-aside-bad-rows") {
      o.set_aside_bad_rows = true;
    } else if (arg == "--restore-on-error") {
      o.restore_on_error = true;
    } else if (arg == "--groups") {
      if (!take_value()) return fail("Falta la lista de grupos después de --groups");
      o.groups = parse_groups(value);
      if (!o.groups) return fail("Lista de grupos incorrecta: '" + value + "' (números del 1 al 5 separados por comas)");
    } else if (arg == "--from" || arg == "--to") {
      if (!take_value()) return fail("Falta el mes después de " + arg);
      std::optional<session::Month> m = parse_month(value);
      if (!m) return fail("Mes incorrecto para " + arg + ": '" + value + "' (se espera MM/aaaa)");
      (arg == "--from" ? o.from : o.to) = m;
    } else if (arg.rfind("--", 0) == 0) {
      return fail("Opción desconocida: " + arg);
    } else {
      if (have_command_line) return fail("Sobra el argumento: " + arg + " (la línea de comandos va entre comillas)");
      o.command_line = arg;
      have_command_line = true;
    }
  }
  if (o.help) return o;
  if (!have_command_line || settings::Trim(o.command_line).empty())
    return fail("Falta la línea de comandos \"DESTINO*ORIGEN*FORMATO\"");
  if (o.from && o.to && *o.to < *o.from) return fail("El mes de --from es posterior al de --to");
  return o;
}

int run_batch(const std::vector<std::string>& args, const std::filesystem::path& program_folder,
              std::ostream& out, std::ostream& err, bool show_progress) {
  std::string error;
  std::optional<BatchOptions> options = ParseBatchArguments(args, &error);
  if (!options) {
    out << "ERROR: " << error << "\n";
    err << "\n" << batch_usage();
    return kBatchBadArguments;
  }
  if (options->help) {
    out << batch_usage();
    return kBatchOk;
  }

  BatchUserInterface ui([&out](const std::string& line) { out << PrintedMessage(line) << "\n" << std::flush; },
                        options->answer);
  transfer::Importer importer;
  preview::StagedPreview preview;
  mapping::MappingPanel mapping;
  session::MainWindowController c(program_folder, ui, importer, preview, mapping);
  TerminalProgress progress(err);
  if (show_progress) c.view.Barra.yield = [&] { progress.show(c.view.Barra); };

  c.ApartarRechazados = options->set_aside_bad_rows;
  BatchOutcome outcome;
  try {
    c.Form_Load(options->command_line);
    if (c.run_blocked) {
      outcome.blocked = true;
      return BatchExitStatus(outcome);
    }
    if (!c.destination || !c.destination->is_open()) {
      std::string named = options->command_line.substr(0, options->command_line.find('*'));
      std::erase(named, '"');
      out << "ERROR: No hay una base de KEL abierta (" << settings::Trim(named) << "); no se importa nada\n";
      return kBatchBadArguments;
    }
    if (options->from) {
      c.state.period.desde = *options->from;
      c.state.period.desde_checked = true;
    }
    if (options->to) {
      c.state.period.hasta = *options->to;
      c.state.period.hasta_checked = true;
    }
    session::CargarMes(c.state.period);
    preview.chkImpSoloConUtil = options->only_used_concepts;
    c.restore_on_error = options->restore_on_error;
    // The boxes are ticked before the source is matched, as a user ticks them
    // before pressing refresh: the matching then unticks the groups whose
    // sources it does not find.
    if (options->groups) c.state.ChkOP = *options->groups;

    if (!c.staging || !c.staging->is_open()) {
      out << "ERROR: No hay una base auxiliar abierta para la empresa; no se importa nada\n";
      outcome.blocked = true;
      return BatchExitStatus(outcome);
    }

    c.Form_Activate();
    if (!preview.lblDatosCP_visible) print_staging_summary(c, out);
    outcome.left_out = c.last_load_warnings.size();
    if (c.last_load_failed && !settings::Trim(c.view.txtRuta).empty()) {
      // The transfer would carry the staging database's previous content.
      out << "ERROR: La carga de la base auxiliar no cargó nada; no se importa nada\n";
      outcome.load_failed = true;
      c.Form_Unload();
      return BatchExitStatus(outcome);
    }
    // What the mapping grids say, so that a scripted run shows what is
    // imported under which KEL code.
    for (const std::string& line : mapping::RelationSummary(mapping.GridRelacConc, mapping.GridRelacTL))
      out << "RELACION: " << line << "\n";

    // The window shows its closing box even with no box ticked; a batch run
    // that would transfer nothing says so and is not a success.
    if (std::find(c.state.ChkOP.begin(), c.state.ChkOP.end(), true) == c.state.ChkOP.end()) {
      out << "ERROR: No hay ningún grupo marcado para importar; no se transfiere nada\n";
      c.Form_Unload();
      return kBatchStopped;
    }
    const session::ImportResult result = c.cbImportar_Click();
    print_transferred(result, out);
    outcome.finished = BatchSucceeded(result);
    print_import_report(c, out);
    c.Form_Unload();
    return BatchExitStatus(outcome);
  } catch (const session::SessionAborted& e) {
    print_import_report(c, out);
    out << "ERROR: " << e.what();
    if (!e.report_file().empty()) out << " (detalle en " << e.report_file().string() << ")";
    out << "\n";
    return kBatchError;
  } catch (const session::UnansweredQuestion&) {
    out << "ERROR: Hay una pregunta y no se indicó la respuesta (--yes o --no)\n";
    return kBatchBadArguments;
  } catch (const std::exception& e) {
    // Outside a guarded step (start-up, the company check): still the
    // program's end, without a report file.
    out << "ERROR: " << e.what() << "\n";
    return kBatchError;
  }
}

std::filesystem::path ProgramFolder(const char* argv0) {
  std::error_code ec;
  std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (!ec && !exe.empty()) return exe.parent_path();
  return std::filesystem::absolute(argv0 ? argv0 : ".", ec).parent_path();
}

}  // namespace app
