// preview/staged_preview.cpp — ActuGrillas, the refresh of everything the
// window shows of the staging database.
#include "preview/staged_preview.h"

#include <optional>

#include "db/error.h"
#include "db/list_query.h"
#include "preview/preview_sql.h"
#include "settings/strings.h"

namespace preview {
namespace {

std::vector<std::vector<std::string>> texts_of(const db::Recordset& rs) {
  std::vector<std::vector<std::string>> rows;
  rows.reserve(rs.row_count());
  for (const std::vector<db::Value>& r : rs.rows()) {
    std::vector<std::string> texts;
    for (const db::Value& v : r) texts.push_back(db::as_text(v));
    rows.push_back(std::move(texts));
  }
  return rows;
}

void fill_list(GridModel& grid, const std::string& source, const char* fields, db::Connection& conn) {
  grid.set_rows(db::list_query(source, fields, "", conn));
}

void fill_company(std::array<std::string, 8>& boxes, db::Connection& staging) {
  db::Recordset rs = staging.open_recordset(sql::company_select());
  if (rs.eof()) return;  // the boxes keep what they showed
  auto t = [&](const char* field) { return db::as_text(rs.field(field)); };
  boxes = {t("Nombre"), t("RazonSocial"), t("RUC"), t("NBPS"),
           t("Telefono1") + "-" + t("Fax"), t("Direccion"), t("Ramo"), t("Email")};
}

}  // namespace

StagedPreview::StagedPreview() {
  const std::vector<GridColumn> catalogue = {{"id", "id"}, {"Nombre", "Nombre"}};
  for (GridModel* g : {&GCargos, &GSectores, &GSucur, &GHorario}) g->set_columns(catalogue);
  GContra.set_columns(GridModel::ColumnsNamed(settings::SplitChar(sql::kContractFields, ',')));
}

void StagedPreview::ActuGrillas(const PreviewInputs& in, mapping::MappingPanel& mapping) {
  if (!in.staging || !in.staging->is_open()) return;
  db::Connection& staging = *in.staging;
  db::Connection* destination = in.destination && in.destination->is_open() ? in.destination : nullptr;
  auto advance = [&] {
    if (in.advance) in.advance();
  };

  // The tidy-ups run like every database helper, errors ignored: the third
  // one is refused as a whole (Left with a length of -1) as soon as a person
  // with a single contract has a number without "_n", and then changes nothing.
  for (const std::string& statement : sql::staging_tidy()) {
    try {
      staging.execute(statement);
    } catch (const db::Error&) {
    }
  }
  advance();
  fill_company(txtDatEmp, staging);
  advance();
  fill_list(GCargos, sql::cargos_grid(), sql::kCatalogueFields, staging);
  fill_list(GSectores, sql::sectores_grid(), sql::kCatalogueFields, staging);
  fill_list(GSucur, sql::sucursales_grid(), sql::kCatalogueFields, staging);
  fill_list(GHorario, sql::horarios_grid(), sql::kCatalogueFields, staging);
  advance();
  fill_list(GContra, sql::contracts_grid(), sql::kContractFields, staging);
  advance();
  {
    db::Recordset rs = staging.open_recordset(sql::declarations_select(in.hasta, in.desde));
    GridDeduc.set_columns(GridModel::ColumnsNamed(rs.names()));
    GridDeduc.set_rows(texts_of(rs));
  }
  advance();

  if (destination) {
    mapping.ObjCodKel.CargarDatos(texts_of(destination->open_recordset(sql::kel_concepts_lookup())));
    mapping.objCodKELTL.CargarDatos(texts_of(destination->open_recordset(sql::kel_types_lookup())));
  } else {
    mapping.ObjCodKel.CargarDatos({});
    mapping.objCodKELTL.CargarDatos({});
  }
  mapping.objCodOSTL.CargarDatos(texts_of(staging.open_recordset(sql::staged_types_lookup())));
  advance();

  std::optional<mapping::Databases> dbs;
  if (destination) dbs.emplace(mapping::Databases{staging, *destination});
  if (dbs) mapping.refresh_types(*dbs);
  browser.refresh(staging, -1);
  advance();

  if (chkImpSoloConUtil) {
    staging.execute(sql::unused_concepts_delete());
    staging.execute(sql::unused_relations_delete());
  }
  std::string ignored;
  if (dbs) mapping.refresh_concepts(*dbs, -1, in.conc_crear ? *in.conc_crear : ignored);
  mapping.objCodOS.CargarDatos(texts_of(staging.open_recordset(sql::staged_concepts_lookup())));
  advance();

  lblDatosCP_visible = settings::Trim(in.txtRuta).empty() && browser.GridDatosLiq().row_count() > 0;
}

}  // namespace preview
