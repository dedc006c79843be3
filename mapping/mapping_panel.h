// mapping/mapping_panel.h — the mapping panels of the main window as a model:
// the concept and liquidation-type grids, their four code lookups, the
// "Importar"/"No Importar" combo, the add/remove buttons (cbAgrQuit 0..3), the
// automatic-link buttons and the keyboard flow between them.
//
// The user's answers live in the staging tables RelacConc and RelacTLiq. The
// panel tells the user things through MappingMessages, which the session
// implements over its message boxes. Database errors are not caught: they
// stop the operation and the tables keep what ran before.
#pragma once

#include <string>

#include "lookup/lookup_model.h"
#include "mapping/bps_relations.h"
#include "mapping/mapping_grids.h"

namespace mapping {

// What the panel tells or asks the user.
class MappingMessages {
 public:
  virtual ~MappingMessages() = default;
  virtual void warning(const std::string& text) = 0;
  // A Yes/No box with the exclamation icon; true on Yes.
  virtual bool ask_yes_no(const std::string& text) = 0;
  virtual void information(const std::string& text) = 0;
};

// Where the keyboard flow of the concept panel left the focus.
enum class PanelFocus { kNone, kObjCodOS, kObjCodKel, kCmbImportar, kCbAgregar };

class MappingPanel {
 public:
  MappingPanel();
  MappingPanel(const MappingPanel&) = delete;
  MappingPanel& operator=(const MappingPanel&) = delete;

  // ---- Controls --------------------------------------------------------------
  ConceptMappingGrid GridRelacConc;
  TypeMappingGrid GridRelacTL;
  lookup::LookupModel objCodOS;     // staged concepts
  lookup::LookupModel ObjCodKel;    // KEL concepts
  lookup::LookupModel objCodOSTL;   // staged liquidation types
  lookup::LookupModel objCodKELTL;  // KEL liquidation types
  // cmbImportar: 0 "Importar", 1 "No Importar".
  static constexpr const char* kImportarItems[2] = {"Importar", "No Importar"};
  int cmbImportar = 0;
  PanelFocus focus = PanelFocus::kNone;

  // ---- Grids -----------------------------------------------------------------
  // ActuGridConc(Col): refills the concept grid (see ConceptMappingGrid).
  void refresh_concepts(const Databases& dbs, int sort_column, std::string& conc_crear) {
    GridRelacConc.refresh(dbs, sort_column, conc_crear);
  }
  // ActuGridTliq.
  void refresh_types(const Databases& dbs) { GridRelacTL.refresh(dbs); }

  // ---- Buttons ---------------------------------------------------------------
  // cbAgrQuit(index): 0 adds a concept relation, 1 removes one, 2 adds a type
  // relation, 3 removes one. Refused operations warn and change nothing.
  void add_concept_relation(const Databases& dbs, MappingMessages& ui, std::string& conc_crear);
  void remove_concept_relation(const Databases& dbs, MappingMessages& ui, std::string& conc_crear);
  void add_type_relation(const Databases& dbs, MappingMessages& ui);
  void remove_type_relation(const Databases& dbs, MappingMessages& ui);
  // btBorraTodosVinc: after a Yes, deletes the links onto the KEL concepts of
  // the BPS totalisation relations (the ones the staging load inserts).
  void delete_automatic_links(const Databases& dbs, MappingMessages& ui, const RelationTable& relations,
                              std::string& conc_crear);
  // btCargaAutomat: empties `conc_crear` and says that the staging load must
  // run again; nothing is reloaded here.
  void request_automatic_links(MappingMessages& ui, std::string& conc_crear);

  // ---- Keyboard flow ---------------------------------------------------------
  // Enter in cmbImportar (key 13) moves the focus to the add button without
  // pressing it. (Leaving objCodOS and ObjCodKel is wired in the constructor
  // through their SalirDelControl events.)
  void cmbImportar_key_press(int key);

 private:
  void refresh_concepts_keeping_sort(const Databases& dbs, std::string& conc_crear) {
    refresh_concepts(dbs, -1, conc_crear);
  }
};

}  // namespace mapping
