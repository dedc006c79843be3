// The preview and mapping grids driven through the controller over the
// staged demo (its database-file form) and the demo KEL company: mapping,
// unmapping, "No Importar", sorting, the automatic links, the lookups, the
// preview's grids and the liquidation browser.

#include "controller_fixture.h"
#include "preview/preview_sql.h"
#include "settings/strings.h"

namespace {

namespace fs = std::filesystem;
using Log = std::vector<std::string>;
using mapping::PanelFocus;

using test_support::native_rows;
const std::string kAskLinks = "PREGUNTA: Confirma borrar los vinculos ingresados automaticamente";

// True when `id` is one of the ids of a ConcCrear list.
bool listed(const std::string& conc_crear, const std::string& id) {
  const Log ids = settings::SplitChar(conc_crear, ',');
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// The demo program folder and company, staged from its database-file form
// (format 1) by a controller that stays open for the test.
struct StagedDemo : kel_test::DemoFolders {
  kel_test::RecordingUi ui;
  transfer::Importer importer;
  preview::StagedPreview preview;
  mapping::MappingPanel mapping;
  std::unique_ptr<session::MainWindowController> c;

  StagedDemo() {
    c = std::make_unique<session::MainWindowController>(prog, ui, importer, preview, mapping);
    c->Form_Load(company.string() + "*" + (demo / "Origen_BD").string() + "*1");
    c->Form_Activate();
    EXPECT_EQ(c->last_load_stats.statements_failed, 0);
    ui.log.clear();
  }
  // The CodigoOS column of the concept grid, top to bottom.
  Log concept_ids() const {
    Log ids;
    for (const auto& r : mapping.GridRelacConc.rows()) ids.push_back(r.CodigoOS);
    return ids;
  }
  // The concept grid's row for source concept `id` ("" when not shown).
  std::string concept_row(const std::string& id) const {
    for (const auto& r : mapping.GridRelacConc.rows())
      if (r.CodigoOS == id) return mapping::RowText(r.values());
    return "";
  }
  int concept_index(const std::string& id) const {
    const auto& rows = mapping.GridRelacConc.rows();
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (rows[i].CodigoOS == id) return static_cast<int>(i);
    return -1;
  }
  // The source concepts with no relation row, in the order `order_by`.
  std::string unmapped(const std::string& order_by) const {
    Log ids = native_rows(staging, "SELECT id_Concepto FROM Conceptos WHERE id_Concepto NOT IN "
                                   "(SELECT CodOS FROM RelacConc) ORDER BY " + order_by);
    std::string joined;
    for (const std::string& id : ids) joined += (joined.empty() ? "" : ",") + id;
    return joined;
  }
};

TEST(GridsOnTheDemo, ConceptGridAfterTheLoad) {
  StagedDemo d;
  // Every staged concept, by DescOS (code->name); the automatic links show
  // their KEL concept, the rest are to be created, in grid order.
  const Log expected = native_rows(
      d.staging,
      "SELECT '''' || OS.id_Concepto || '''|''' || OS.Codigo || '->' || trim(OS.Nombre) || '''|''' || "
      "ifnull(K.id_Concepto, '') || '''|''' || ifnull(K.Nombre, '') || '''|''' || "
      "CASE WHEN K.id_Concepto IS NULL AND R.CodKEL = -1 THEN 'No Importar' ELSE 'Importar' END "
      "FROM Conceptos AS OS LEFT JOIN RelacConc AS R ON R.CodOS = OS.id_Concepto "
      "LEFT JOIN kel.Conceptos AS K ON K.id_Concepto = R.CodKEL "
      "ORDER BY OS.Codigo || '->' || trim(OS.Nombre) COLLATE NOCASE",
      d.company);
  ASSERT_EQ(expected.size(), 52u);
  EXPECT_EQ(d.mapping.GridRelacConc.row_texts(), expected);
  EXPECT_EQ(d.c->state.ConcCrear, d.unmapped("Codigo || '->' || trim(Nombre) COLLATE NOCASE"));
  EXPECT_EQ(d.concept_row("11"), "'11'|'011->Sueldo anual complementario'|'13'|'Aguinaldo'|'Importar");

  // Three clicks on a heading: ascending, descending, ascending again; the
  // list to create follows the grid's order.
  Log ascending;
  for (int i = 1; i <= 52; ++i) ascending.push_back(std::to_string(i));
  const Log descending(ascending.rbegin(), ascending.rend());
  const std::vector<std::pair<std::string, Log>> clicks = {
      {"CodigoOS", ascending}, {"CodigoOS Desc", descending}, {"CodigoOS", ascending}};
  for (const auto& [sort, ids] : clicks) {
    d.c->ActuGridConc(0);
    EXPECT_EQ(d.mapping.GridRelacConc.sort_text(), sort);
    EXPECT_EQ(d.concept_ids(), ids) << sort;
    EXPECT_EQ(d.c->state.ConcCrear,
              d.unmapped(sort == "CodigoOS" ? "id_Concepto" : "id_Concepto DESC")) << sort;
  }
  EXPECT_TRUE(d.ui.log.empty());
}

TEST(GridsOnTheDemo, MapReplaceUnmapAndNoImportar) {
  StagedDemo d;
  mapping::MappingPanel& m = d.mapping;
  d.c->ActuGridConc(0);  // by id, so that rows are easy to name

  // Refused: no source concept; then no KEL concept with "Importar".
  d.c->cbAgrQuit_Click(0);
  m.objCodOS.codigo_entered("001");
  d.c->cbAgrQuit_Click(0);
  const std::string refused =
      "AVISO: Debe seleccionar la relación con los codigos de KEL y del sistema A Importar";
  EXPECT_EQ(d.ui.log, (Log{refused, refused}));
  EXPECT_EQ(d.staged("SELECT count(*) FROM RelacConc WHERE CodOS=1"), "0");

  // Concept 1 onto KEL concept 1, by code in both lookups.
  m.ObjCodKel.codigo_entered("1");
  ASSERT_EQ(m.objCodOS.Dato1(), "1");
  ASSERT_EQ(m.ObjCodKel.Dato1(), "1");
  d.c->cbAgrQuit_Click(0);
  EXPECT_EQ(d.concept_row("1"), "'1'|'001->Sueldo básico'|'1'|'Sueldo mensual'|'Importar");
  EXPECT_EQ(m.objCodOS.indSel(), -1);
  EXPECT_EQ(m.ObjCodKel.indSel(), -1);
  EXPECT_EQ(m.focus, PanelFocus::kObjCodOS);
  EXPECT_EQ(d.c->state.ConcCrear, d.unmapped("id_Concepto"));
  EXPECT_FALSE(listed(d.c->state.ConcCrear, "1"));

  // Mapped again: the earlier relation is replaced.
  m.objCodOS.codigo_entered("001");
  m.ObjCodKel.codigo_entered("10");
  d.c->cbAgrQuit_Click(0);
  EXPECT_EQ(d.staged("SELECT group_concat(CodKEL) FROM RelacConc WHERE CodOS=1"), "10");

  // "No Importar" stores -1 whatever KEL concept is selected.
  m.objCodOS.codigo_entered("002");
  m.ObjCodKel.codigo_entered("1");
  m.cmbImportar = 1;
  d.c->cbAgrQuit_Click(0);
  EXPECT_EQ(d.staged("SELECT group_concat(CodKEL) FROM RelacConc WHERE CodOS=2"), "-1");
  EXPECT_EQ(d.concept_row("2"), "'2'|'002->Jornales trabajados'|''|''|'No Importar");
  EXPECT_EQ(m.cmbImportar, 0);
  EXPECT_EQ(d.c->state.ConcCrear, d.unmapped("id_Concepto"));

  // Removing: the current row's relation goes and the concept is to be
  // created again; a "No Importar" row is not removed by the button.
  d.ui.log.clear();
  m.GridRelacConc.cursor.current_row = d.concept_index("1");
  d.c->cbAgrQuit_Click(1);
  EXPECT_EQ(d.staged("SELECT count(*) FROM RelacConc WHERE CodOS=1"), "0");
  EXPECT_EQ(d.concept_row("1"), "'1'|'001->Sueldo básico'|''|''|'Importar");
  EXPECT_TRUE(listed(d.c->state.ConcCrear, "1"));

  m.GridRelacConc.cursor.current_row = d.concept_index("2");
  d.c->cbAgrQuit_Click(1);  // no KEL code and no selected row
  m.GridRelacConc.cursor.current_row = d.concept_index("2");
  m.GridRelacConc.cursor.selected_rows = {d.concept_index("2")};
  d.c->cbAgrQuit_Click(1);  // runs, asking for CodKEL=0
  EXPECT_EQ(d.ui.log, Log{"AVISO: Debe seleccionar una relación para quitar"});
  EXPECT_EQ(d.concept_row("2"), "'2'|'002->Jornales trabajados'|''|''|'No Importar");
}

TEST(GridsOnTheDemo, AutomaticLinks) {
  StagedDemo d;
  const std::string before = d.staged("SELECT count(*) FROM RelacConc");
  ASSERT_NE(before, "0");
  d.mapping.objCodOS.codigo_entered("001");
  d.mapping.ObjCodKel.codigo_entered("1");
  d.c->cbAgrQuit_Click(0);

  d.ui.answers = {false, true};
  d.c->btBorraTodosVinc_Click();
  EXPECT_EQ(d.staged("SELECT count(*) FROM RelacConc"), std::to_string(std::stoi(before) + 1));
  d.c->btBorraTodosVinc_Click();
  // Only the user's own link is left.
  EXPECT_EQ(d.staged("SELECT group_concat(CodOS || '>' || CodKEL) FROM RelacConc"), "1>1");
  EXPECT_EQ(d.concept_row("11"), "'11'|'011->Sueldo anual complementario'|''|''|'Importar");
  EXPECT_EQ(d.c->state.ConcCrear, d.unmapped("Codigo || '->' || trim(Nombre) COLLATE NOCASE"));

  d.c->btCargaAutomat_Click();
  EXPECT_EQ(d.c->state.ConcCrear, "");
  EXPECT_EQ(d.ui.log, (Log{kAskLinks + " -> No", kAskLinks + " -> Sí",
                           "INFO: Debe Actualizar la carga inicial para que se vulevan a cargar los vinculos "
                           "iniciales"}));
}

TEST(GridsOnTheDemo, TypeMapping) {
  StagedDemo d;
  mapping::MappingPanel& m = d.mapping;
  const Log unmapped = {"'1'|'Mensual'|''|'", "'2'|'Aguinaldo'|''|'", "'3'|'Adelanto quincenal'|''|'",
                        "'4'|'Licencia'|''|'", "'5'|'Egreso'|''|'", "'6'|'Salario vacacional'|''|'",
                        "'7'|'Complementaria'|''|'", "'8'|'Retroactivo convenio'|''|'"};
  EXPECT_EQ(m.GridRelacTL.row_texts(), unmapped);

  d.c->cbAgrQuit_Click(2);
  // Type 2 onto KEL types 3 and 1: no earlier row is deleted; a relation onto
  // a type KEL does not have (99) does not show.
  for (const char* kel : {"3", "1"}) {
    m.objCodOSTL.codigo_entered("2");
    m.objCodKELTL.codigo_entered(kel);
    d.c->cbAgrQuit_Click(2);
  }
  kel_test::run_sqlite(d.staging, "INSERT INTO RelacTLiq (CodKEL, CodOS) VALUES (99, 4);");
  d.c->ActuGridTliq();
  Log rows = m.GridRelacTL.row_texts();
  ASSERT_EQ(rows.size(), 9u);
  EXPECT_EQ(Log(rows.begin() + 1, rows.begin() + 3),
            (Log{"'2'|'Aguinaldo'|'1'|'Mensual", "'2'|'Aguinaldo'|'3'|'Aguinaldo"}));
  EXPECT_EQ(rows[4], "'4'|'Licencia'|''|'");
  EXPECT_EQ(m.objCodOSTL.indSel(), -1);

  // Removing the row onto KEL type 3 keeps the one onto 1; a row with no KEL
  // code and nothing selected is refused; selected, it removes every
  // relation of its type.
  m.GridRelacTL.cursor.current_row = rows[2].find("'3'|'Aguinaldo") != std::string::npos ? 2 : 1;
  d.c->cbAgrQuit_Click(3);
  EXPECT_EQ(d.staged("SELECT group_concat(CodKEL) FROM RelacTLiq WHERE CodOS=2"), "1");
  m.GridRelacTL.cursor.current_row = 3;  // type 4, shown unmapped
  d.c->cbAgrQuit_Click(3);
  m.GridRelacTL.cursor.current_row = 3;
  m.GridRelacTL.cursor.selected_rows = {3};
  d.c->cbAgrQuit_Click(3);
  EXPECT_EQ(d.staged("SELECT count(*) FROM RelacTLiq WHERE CodOS=4"), "0");
  EXPECT_EQ(d.ui.log, (Log{"AVISO: Debe seleccionar la relación con los codigos de KEL y del sistema a Importar",
                           "AVISO: Debe seleccionar una relación para quitar"}));
}

TEST(GridsOnTheDemo, PreviewAndLookups) {
  StagedDemo d;
  const preview::StagedPreview& p = d.preview;
  const mapping::MappingPanel& m = d.mapping;
  const std::string empresa = d.staged("SELECT Nombre || '|' || RazonSocial || '|' || ifnull(RUC,'') FROM Empresa");
  EXPECT_EQ(p.txtDatEmp[0] + "|" + p.txtDatEmp[1] + "|" + p.txtDatEmp[2], empresa);
  // Every grid shows every staged row of its table (a refused query shows none).
  const std::pair<const preview::GridModel*, const char*> grids[] = {
      {&p.GCargos, "Cargos"}, {&p.GSectores, "Sectores"}, {&p.GSucur, "Sucursales"},
      {&p.GHorario, "TRegHorario"}, {&p.GContra, "Contrato"}};
  for (const auto& [grid, table] : grids) {
    const std::string rows = d.staged(std::string("SELECT count(*) FROM ") + table);
    EXPECT_NE(rows, "0") << table;
    EXPECT_EQ(grid->row_count(), std::stoul(rows)) << table;
  }
  EXPECT_EQ(p.GContra.columns().front().field, "NUMERO_ALTERNATIVO");
  EXPECT_FALSE(p.lblDatosCP_visible);  // staged in this run

  // Lookups: KEL concepts by code, KEL and staged types by id, staged
  // concepts by name.
  EXPECT_EQ(m.ObjCodKel.lista().size(), 34u);
  EXPECT_EQ(m.ObjCodKel.Datos()[1], (lookup::Row{"10", "10", "Presentismo"}));
  EXPECT_EQ(m.objCodKELTL.Datos()[2], (lookup::Row{"3", "3", "Aguinaldo"}));
  EXPECT_EQ(m.objCodOSTL.lista().size(), 8u);
  EXPECT_EQ(m.objCodOS.lista(), native_rows(d.staging, "SELECT Nombre FROM Conceptos ORDER BY Nombre COLLATE jet_es"));

  // The browser: a first page, the rest on demand, in person order.
  const auto& b = p.browser;
  const std::size_t headers = std::stoul(d.staged("SELECT count(*) FROM Encabezados"));
  ASSERT_GT(headers, preview::LiquidationBrowser::kPageRows);
  EXPECT_EQ(b.GridLiq().row_count(), preview::LiquidationBrowser::kPageRows);
  EXPECT_TRUE(b.can_fetch_more());
  const Log first_ids = native_rows(d.staging,
                                    "SELECT id_Encabezado FROM CHistLiq ORDER BY id_Persona, MesDeLiq, id_TipoLiq, "
                                    "id_Contrato LIMIT 3");
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(b.GridLiq().value(i, "id_Encabezado"), first_ids[i]);

  // The lines of the current header: additions first, rounded, styled.
  const Log lines = native_rows(
      d.staging,
      "SELECT ifnull(Codigo,'') || '|' || ifnull(Nombre,'') || '|' || "
      "CASE WHEN TipoOperacion = 'S' THEN 'Suma' ELSE 'Resta' END FROM cLisLiquida WHERE id_Encabezado = " +
          first_ids[0] + " ORDER BY TipoOperacion DESC, id_Concepto");
  Log shown;
  for (std::size_t i = 0; i < b.GridDatosLiq().row_count(); ++i)
    shown.push_back(b.GridDatosLiq().row(i)[0] + "|" + b.GridDatosLiq().row(i)[1] + "|" + b.GridDatosLiq().style(i));
  EXPECT_EQ(shown, lines);
  ASSERT_FALSE(lines.empty());
  // Another header; a row not fetched empties the lines.
  d.c->GridLiq_RowColChange(2);
  EXPECT_EQ(b.current_row(), 2);
  EXPECT_EQ(b.GridDatosLiq().row_count(),
            std::stoul(d.staged("SELECT count(*) FROM Datos_Liquidacion WHERE id_Encabezado=" + first_ids[2])));
  d.c->GridLiq_RowColChange(static_cast<int>(headers));
  EXPECT_EQ(b.GridDatosLiq().row_count(), 0u);

  d.preview.browser.fetch_more(headers);
  EXPECT_EQ(b.GridLiq().row_count(), headers);
  EXPECT_FALSE(b.can_fetch_more());

  // Started again on the company alone: the data shown were staged earlier.
  d.c.reset();
  preview::StagedPreview again;
  mapping::MappingPanel again_mapping;
  session::MainWindowController later(d.prog, d.ui, d.importer, again, again_mapping);
  later.Form_Load(d.company.string());
  EXPECT_TRUE(again.lblDatosCP_visible);
  EXPECT_EQ(again.browser.GridLiq().row_count(), preview::LiquidationBrowser::kPageRows);
}

// The view puts the names together once per contract and the month sort is
// said as MesDeLiq: every page, in every sort, still holds the headers in the
// order of the names and months worked out header by header on the tables,
// including headers without contract or person and a namesake's headers.
TEST(GridsOnTheDemo, BrowserSortsEveryPageLikeTheTables) {
  StagedDemo d;
  kel_test::run_sqlite(d.staging,
                       "INSERT INTO Personas (id_Persona, Apellido_1, Nombre_1) SELECT 900001, Apellido_1, Nombre_1 "
                       "FROM Personas WHERE id_Persona = (SELECT min(id_Persona) FROM Personas);"
                       "INSERT INTO Contrato (Id_Contrato, Id_Persona) VALUES (900001, 900001), (900002, 999999);"
                       "INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, MesDeLiq, id_Contrato) VALUES"
                       " (900001, 1, '2016-03-01', 900001), (900002, 1, '2016-03-15', 900002),"
                       " (900003, 1, NULL, 999999), (900004, 1, '2016-03-01', NULL);");
  const std::string names =
      "TRIM(TRIM(COALESCE(P.Apellido_1, '') || ' ' || COALESCE(P.Apellido_2, '')) || ', ' || "
      "TRIM(COALESCE(P.Nombre_1, '') || ' ' || COALESCE(P.Nombre_2, '')), ', ')";
  const std::string tables =
      " FROM Encabezados AS E LEFT JOIN Contrato AS C ON C.Id_Contrato = E.id_Contrato"
      " LEFT JOIN Personas AS P ON P.id_Persona = C.Id_Persona ORDER BY ";
  const std::string rest = ", E.MesDeLiq, E.Id_TipoLiq, E.id_Contrato";
  // Column 4 (Nombres) toggles ascending / descending; column 5 (the month)
  // sorts by the month text as the statement writes it, clicked again too.
  struct Click { int column; std::string sort_text, order; };
  const std::string month = "date(E.MesDeLiq, 'start of month')";
  const std::string kJetOrder = " COLLATE jet_es";  // names sort in Jet's order (accented capitals with their letter)
  const std::vector<Click> clicks = {{4, "Nombres", names + kJetOrder}, {4, "Nombres Desc", names + kJetOrder + " DESC"},
                                     {4, "Nombres", names + kJetOrder},         {5, "cdate(strMesDeLiq)", month},
                                     {5, "cdate(strMesDeLiq)", month}, {1, "", "C.Id_Persona"}};
  const std::size_t headers = std::stoul(d.staged("SELECT count(*) FROM Encabezados"));
  const auto& b = d.preview.browser;
  for (const auto& [column, sort_text, order] : clicks) {
    d.c->ActuGridLiquida(column);
    if (!sort_text.empty()) {
      EXPECT_EQ(b.sort_text(), sort_text);
    }
    while (b.can_fetch_more()) d.preview.browser.fetch_more(1000);
    ASSERT_EQ(b.GridLiq().row_count(), headers) << order;
    const Log expected = native_rows(d.staging, "SELECT E.id_Encabezado || '|' || " + names + tables + order + rest);
    Log shown;
    for (std::size_t i = 0; i < headers; ++i)
      shown.push_back(b.GridLiq().value(i, "id_Encabezado") + "|" + b.GridLiq().value(i, "Nombres"));
    EXPECT_EQ(shown, expected) << order;
  }
  // The sort text names its column whatever the case it is written in.
  EXPECT_EQ(preview::sql::liquidation_sort_text("NOMBRES", "Nombres", 4), "Nombres Desc");
}

TEST(GridsOnTheDemo, RefreshTidiesNumbersAndDropsUnusedConcepts) {
  StagedDemo d;
  kel_test::run_sqlite(d.staging,
                       "INSERT INTO Personas (id_Persona, NUMERO) VALUES (900001, ' 1234567-8 ');"
                       "INSERT INTO Contrato (Id_Contrato, Id_Persona, NUMERO_ALTERNATIVO) VALUES (900001, 900001, '15_1');"
                       "INSERT INTO Conceptos (id_Concepto, Codigo, Nombre) VALUES (900, '900', 'Sin uso');"
                       "INSERT INTO RelacConc (CodKEL, CodOS) VALUES (1, 900);");
  d.c->ActuGrillas();
  EXPECT_EQ(d.staged("SELECT NUMERO FROM Personas WHERE id_Persona=900001"), "12345678");
  // The demo has single contracts numbered without "_n": Left(..., -1) is
  // refused for them, and the whole statement with it.
  EXPECT_EQ(d.staged("SELECT NUMERO_ALTERNATIVO FROM Contrato WHERE Id_Contrato=900001"), "15_1");
  kel_test::run_sqlite(d.staging, "UPDATE Contrato SET NUMERO_ALTERNATIVO = NUMERO_ALTERNATIVO || '_1' "
                                  "WHERE instr(NUMERO_ALTERNATIVO, '_') = 0;");
  d.c->ActuGrillas();
  EXPECT_EQ(d.staged("SELECT NUMERO_ALTERNATIVO FROM Contrato WHERE Id_Contrato=900001"), "15");
  EXPECT_EQ(d.staged("SELECT group_concat(NUMERO_ALTERNATIVO) FROM Contrato WHERE Id_Persona IN (5, 9)"),
            "5,9_1,9_2");
  EXPECT_NE(d.concept_row("900"), "");  // kept while the box is unticked

  d.preview.chkImpSoloConUtil = true;
  d.c->ActuGrillas();
  const std::string used = d.staged("SELECT count(DISTINCT id_Concepto) FROM Datos_Liquidacion");
  EXPECT_EQ(d.staged("SELECT count(*) FROM Conceptos"), used);
  EXPECT_EQ(std::to_string(d.mapping.GridRelacConc.rows().size()), used);
  EXPECT_EQ(d.staged("SELECT count(*) FROM RelacConc WHERE CodOS NOT IN (SELECT id_Concepto FROM Conceptos)"), "0");
  EXPECT_EQ(d.concept_row("900"), "");
  EXPECT_EQ(d.mapping.objCodOS.lista().size(), std::stoul(used));
}

}  // namespace
