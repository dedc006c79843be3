// session/controller_import.cpp — the import run (cbImportar_Click): the
// company check, the ticked transfer steps in their fixed order, the mapping
// grids and the closing box.
#include <array>
#include <string>
#include <vector>

#include "session/main_controller.h"

namespace session {

namespace {

// The captions of the ChkOP boxes, which name the steps in the error report.
const std::array<const char*, 5> kStepNames = {
    "Datos de la Empresa",
    "Cargos, Sectores, Regimenes Horarios y Sucursales",
    "Empleados, Contratos y Deducciones",
    "Conceptos y Tipos de Liquidaciones",
    "Liquidaciones",
};

}  // namespace

void MainWindowController::cbImportar_Click() {
  if (!Valido(true)) return;
  ImportaEmpleados = state.ChkOP[2];

  std::string current;
  std::vector<std::string> applied;
  run_guarded(
      "cbImportar_Click",
      [&] {
        for (std::size_t i = 0; i < kStepNames.size(); ++i) {
          if (!state.ChkOP[i] || !Valido(false)) continue;
          current = std::to_string(i + 1) + ". " + kStepNames[i];
          if (i < steps.size()) {
            if (steps[i]) steps[i]();
          } else if (step_liquidaciones) {
            // The months go as "yyyy-MM-01", a text Jet's CDate reads in any
            // locale; an unticked bound goes as "".
            step_liquidaciones(DesdeText(state.period), HastaText(state.period));
          }
          applied.push_back("paso " + current);
        }
        current = "actualización de las grillas de relaciones";
        ActuGridConc(-1);
        ActuGridTliq();
      },
      [&] { return current; }, [&] { return applied; });
  ui_.information("Importación Satisfactoria!!");
}

}  // namespace session
