// mapping/mapping_panel.cpp — the add/remove buttons, the automatic links and
// the keyboard flow of the mapping panels.
#include "mapping/mapping_panel.h"

#include <cmath>

#include "mapping/grid_sql.h"
#include "settings/strings.h"

namespace mapping {
namespace {

const char* const kConceptSelectionWarning =
    "Debe seleccionar la relación con los codigos de KEL y del sistema A Importar";
const char* const kTypeSelectionWarning =
    "Debe seleccionar la relación con los codigos de KEL y del sistema a Importar";
const char* const kRemoveSelectionWarning = "Debe seleccionar una relación para quitar";

// number(Val(text)): the leading number of a text, rounded to a whole number;
// an empty text gives 0.
std::int64_t whole_value(const std::string& text) {
  return static_cast<std::int64_t>(std::nearbyint(db::as_double(db::Value(text))));
}

// The removal buttons need a selected grid row or a current row with a KEL code.
bool removable(const GridCursor& cursor, const std::string& current_kel_code) {
  return !cursor.selected_rows.empty() || !settings::Trim(current_kel_code).empty();
}

// Selects in `lookup` the row whose key is `code` (-1 when none).
void select_code(lookup::LookupModel& lookup, const std::string& code) {
  lookup.set_indSel(lookup::FindRow(lookup.Datos(), 0, code));
}

}  // namespace

MappingPanel::MappingPanel() {
  objCodOS.SalirDelControl = [this] {
    focus = PanelFocus::kObjCodKel;
    ObjCodKel.SetFocus();
  };
  ObjCodKel.SalirDelControl = [this] { focus = PanelFocus::kCmbImportar; };
}

void MappingPanel::add_concept_relation(const Databases& dbs, MappingMessages& ui, std::string& conc_crear) {
  const bool no_importar = cmbImportar >= 1;
  if (objCodOS.indSel() == -1 || (ObjCodKel.indSel() == -1 && !no_importar)) {
    ui.warning(kConceptSelectionWarning);
    return;
  }
  const std::string cod_os = objCodOS.Dato1();
  dbs.staging.execute(sql::concept_relation_delete(cod_os));
  std::string cod_kel = ObjCodKel.Dato1();
  if (no_importar) {
    cod_kel = "-1";
  } else if (cod_kel.empty()) {
    cod_kel = "Null";
  }
  dbs.staging.execute(sql::concept_relation_insert(cod_kel, cod_os));
  objCodOS.set_indSel(-1);
  ObjCodKel.set_indSel(-1);
  refresh_concepts_keeping_sort(dbs, conc_crear);
  cmbImportar = 0;
  focus = PanelFocus::kObjCodOS;
  objCodOS.SetFocus();
}

void MappingPanel::remove_concept_relation(const Databases& dbs, MappingMessages& ui, std::string& conc_crear) {
  const ConceptMappingGrid::Row row = GridRelacConc.current();
  if (!removable(GridRelacConc.cursor, row.CodigoKEL)) {
    ui.warning(kRemoveSelectionWarning);
    return;
  }
  select_code(ObjCodKel, row.CodigoKEL);
  select_code(objCodOS, row.CodigoOS);
  // A "No Importar" row has no KEL code: the statement asks for CodKEL=0 and
  // leaves it in place. That is how the button has always behaved.
  dbs.staging.execute(sql::concept_relation_remove(whole_value(ObjCodKel.Dato1()), objCodOS.Dato1()));
  refresh_concepts_keeping_sort(dbs, conc_crear);
}

void MappingPanel::add_type_relation(const Databases& dbs, MappingMessages& ui) {
  if (objCodOSTL.indSel() == -1 || objCodKELTL.indSel() == -1) {
    ui.warning(kTypeSelectionWarning);
    return;
  }
  // No earlier row is deleted: a type may be mapped more than once.
  dbs.staging.execute(sql::type_relation_insert(objCodKELTL.Dato1(), objCodOSTL.Dato1()));
  objCodOSTL.set_indSel(-1);
  objCodKELTL.set_indSel(-1);
  refresh_types(dbs);
}

void MappingPanel::remove_type_relation(const Databases& dbs, MappingMessages& ui) {
  const TypeMappingGrid::Row row = GridRelacTL.current();
  if (!removable(GridRelacTL.cursor, row.CodigoKEL)) {
    ui.warning(kRemoveSelectionWarning);
    return;
  }
  select_code(objCodKELTL, row.CodigoKEL);
  select_code(objCodOSTL, row.CodigoOS);
  // Compared as trimmed text; without a KEL code every relation of the
  // source type goes.
  dbs.staging.execute(
      sql::type_relation_delete(settings::Trim(objCodOSTL.Dato1()), whole_value(objCodKELTL.Dato1())));
  refresh_types(dbs);
}

void MappingPanel::delete_automatic_links(const Databases& dbs, MappingMessages& ui, const RelationTable& relations,
                                          std::string& conc_crear) {
  if (!ui.ask_yes_no("Confirma borrar los vinculos ingresados automaticamente")) return;
  dbs.staging.execute(sql::automatic_links_delete(relations.JoinKelIds()));
  refresh_concepts_keeping_sort(dbs, conc_crear);
}

void MappingPanel::request_automatic_links(MappingMessages& ui, std::string& conc_crear) {
  conc_crear.clear();
  ui.information("Debe Actualizar la carga inicial para que se vulevan a cargar los vinculos iniciales");
}

void MappingPanel::cmbImportar_key_press(int key) {
  if (key == lookup::kKeyEnter) focus = PanelFocus::kCbAgregar;
}

}  // namespace mapping
