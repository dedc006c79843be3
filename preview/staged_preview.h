// preview/staged_preview.h — the preview of the staged company (ActuGrillas):
// the company boxes, the catalogue, contract and declaration grids, the
// liquidation browser and the label that says the data were staged earlier;
// on its way it fills the mapping panels' lookups and refreshes their grids.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "db/connection.h"
#include "mapping/mapping_panel.h"
#include "preview/grid_model.h"
#include "preview/liquidation_browser.h"

namespace preview {

// What a refresh reads besides the databases.
struct PreviewInputs {
  db::Connection* staging = nullptr;      // nothing is done unless it is open
  db::Connection* destination = nullptr;  // KEL lookups and mapping grids need it open
  std::string desde;                      // the month range as texts cdate reads
  std::string hasta;
  std::string txtRuta;                    // the source path box
  std::string* conc_crear = nullptr;      // rebuilt by the concept grid
  std::function<void()> advance;          // the progress bar, between groups
};

class StagedPreview {
 public:
  // txtDatEmp: Nombre, RazonSocial, RUC, NBPS, Telefono1-Fax, Direccion,
  // Ramo, EMail.
  std::array<std::string, 8> txtDatEmp;
  GridModel GCargos, GSectores, GSucur, GHorario;  // id, Nombre
  GridModel GContra;                               // the contract fields
  GridModel GridDeduc;                             // declarations of the range
  LiquidationBrowser browser;                      // GridLiq and GridDatosLiq
  // "Importar Solo Conceptos Utilizados": a refresh deletes the staged
  // concepts no line uses, and their mappings, for good.
  bool chkImpSoloConUtil = false;
  // "Datos Cargados Previamente".
  bool lblDatosCP_visible = true;

  StagedPreview();

  // ActuGrillas: with the staging connection open, in this order: the tidy
  // of document numbers, the company boxes, the catalogue grids, contracts,
  // declarations, the lookups (KEL concepts and types, staged types), the
  // type grid and the browser, the deletion of unused concepts when asked,
  // the concept grid and the staged-concept lookup, lblDatosCP. A closed
  // destination leaves its lookups empty and the mapping grids untouched.
  // Database errors propagate.
  void ActuGrillas(const PreviewInputs& in, mapping::MappingPanel& mapping);
};

}  // namespace preview
