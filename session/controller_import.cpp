// session/controller_import.cpp — the import run (cbImportar_Click): the
// company check, the ticked transfer steps in their fixed order, the mapping
// grids and the closing box.
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "db/sql_text.h"
#include "session/main_controller.h"
#include "settings/strings.h"

namespace session {

namespace {

// The steps' questions (the concept and liquidation-type replacements) as
// Yes/No boxes with the question icon.
class UiQuestions final : public transfer::Questions {
 public:
  explicit UiQuestions(UserInterface& ui) : ui_(ui) {}
  bool ask_yes_no(const std::string& text) override {
    return ui_.ask_yes_no(text, QuestionIcon::kQuestion);
  }

 private:
  UserInterface& ui_;
};

}  // namespace

ImportResult MainWindowController::cbImportar_Click() {
  ImportResult result;
  RunningScope running(view);
  // A load from a source that staged nothing leaves the previous company's
  // rows (or none) in the staging database: importing them would carry the
  // wrong data, so the run stops before its questions.
  if (last_load_failed && !settings::Trim(view.txtRuta).empty()) {
    ui_.warning("La carga de la base auxiliar no cargó nada; no se importa nada");
    return result;
  }
  if (!Valido(true)) return result;
  result.confirmed = true;
  // The persons step's box of this run: the later steps read it.
  const bool importa_empleados = state.ChkOP[2];

  const std::string started = NowText();
  if (!take_safety_copy(result)) {
    write_import_report(result, started, "no se importó nada: no se pudo hacer la copia de seguridad");
    return result;
  }

  UiQuestions questions(ui_);
  std::string current;
  std::vector<std::string> applied;
  try {
    run_guarded(
        "cbImportar_Click",
        [&] {
          for (int group = 0; group < transfer::kGroupCount; ++group) {
            if (!state.ChkOP[static_cast<std::size_t>(group)] || !Valido(false)) continue;
            current = std::to_string(group + 1) + ". " + transfer::group_caption(group);
            if (!destination || !destination->is_open())
              throw std::runtime_error("No hay una base de KEL abierta");
            if (!staging || !staging->is_open())
              throw std::runtime_error("No hay una base auxiliar abierta");
            transfer::StepContext ctx{*destination, *staging,
                                      db::jet_path_literal(staging->data_source_name()),
                                      questions, [this](float argument) { ActuBarra(argument); }};
            // The months go as "yyyy-MM-01", a text Jet's CDate reads in any
            // locale; an unticked bound goes as "".
            const transfer::RunInputs inputs{DesdeText(state.period), HastaText(state.period),
                                             importa_empleados};
            const auto step_started = std::chrono::steady_clock::now();
            transfer::StepReport report = transfer_.run_step(group, ctx, inputs);
            const std::chrono::duration<double> took = std::chrono::steady_clock::now() - step_started;
            result.steps.push_back({group, std::move(report), took.count()});
            applied.push_back("paso " + current);
          }
          current = "actualización de las grillas de relaciones";
          ActuGridConc(-1);
          ActuGridTliq();
        },
        [&] { return current; }, [&] { return applied; });
  } catch (const SessionAborted& e) {
    if (!result.safety_copy.empty()) offer_restore(result);
    write_import_report(result, started, std::string("detenida por un error: ") + e.what());
    throw;
  }
  write_import_report(result, started, "importación terminada");
  ui_.information("Importación Satisfactoria!!");
  result.finished = true;
  return result;
}

}  // namespace session
