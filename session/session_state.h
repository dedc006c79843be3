// session/session_state.h — what the main window keeps for the whole session
// about the import formats: the format list, the chosen format and its keys,
// the source kind, the catalogue, the BPS relations, the option boxes, the
// month range and the warnings waiting to be shown.
//
// The main-window controller owns one SessionState; the functions of
// session/format_selection.h work on it.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "mapping/bps_relations.h"
#include "session/month.h"
#include "settings/formats_table.h"
#include "staging/catalogue.h"

namespace session {

// The two source-kind buttons TipoImp(0) (database) and TipoImp(1) (folder of
// interchange files).
struct SourceKindButtons {
  std::array<bool, 2> selected{};  // each button's selection, set by the format choice
  std::array<bool, 2> pressed{};   // each button's pressed look
  int kind = 0;                    // the source kind: 0 database, 1 interchange files
};

struct SessionState {
  std::filesystem::path program_folder;

  settings::FormatsTable formats;          // rows of ConfIMP.ini
  std::vector<std::string> cmbFormato;     // the format list (item i = row i)
  int cmbFormato_index = -1;               // selected item, -1 none
  std::string current_format_file;         // column 1 of the chosen row, "" before any choice

  staging::ColArchsBD ColArchTablas;       // the catalogue of the chosen format
  std::string TablaNoBorrar;
  std::string ConcCrear;
  int TipoBD = 0;                          // whole-number value of the TipoBD key

  SourceKindButtons TipoImp;
  bool cbBuscar_enabled = true;

  mapping::RelationTable relations;
  mapping::RelationList lstRelaciones;

  std::array<bool, 5> ChkOP{true, true, true, true, true};  // the five transfer groups
  Period period;

  // Messages for the user (Spanish), in the order they arose; the window shows
  // and clears them.
  std::vector<std::string> warnings;
};

}  // namespace session
