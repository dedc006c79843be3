// ui/window_panels.cpp — the main window's controls and layout.
#include "ui/window_panels.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <iterator>

#include "ui/lookup_widget.h"

namespace ui {
namespace {

QString indexed(const char* name, int index) { return QString("%1(%2)").arg(name).arg(index); }

QPushButton* button(const QString& caption, const QString& name, QWidget* parent) {
  auto* b = new QPushButton(caption, parent);
  b->setObjectName(name);
  return b;
}

// A read-only grid: whole rows selected, alternating colours, no editing,
// headings not clickable unless the window binds a sort to them.
QTableView* grid(const char* name, QWidget* parent) {
  auto* t = new QTableView(parent);
  t->setObjectName(name);
  t->setSelectionBehavior(QAbstractItemView::SelectRows);
  t->setEditTriggers(QAbstractItemView::NoEditTriggers);
  t->setAlternatingRowColors(true);
  t->setWordWrap(false);
  t->verticalHeader()->setDefaultSectionSize(22);
  t->verticalHeader()->setVisible(false);
  t->horizontalHeader()->setStretchLastSection(true);
  t->horizontalHeader()->setSectionsClickable(false);
  t->horizontalHeader()->setHighlightSections(false);
  return t;
}

QWidget* titled(const QString& title, QWidget* content, QWidget* parent) {
  auto* box = new QGroupBox(title, parent);
  auto* l = new QVBoxLayout(box);
  l->setContentsMargins(6, 6, 6, 6);
  content->setParent(box);
  l->addWidget(content);
  return box;
}

QGroupBox* source_bar(WindowControls& w, QWidget* parent) {
  auto* box = new QGroupBox("Origen de los datos y empresa de KEL", parent);
  auto* g = new QGridLayout(box);

  auto* formato = new QLabel("&Formato:", box);
  w.cmbFormato = new QComboBox(box);
  w.cmbFormato->setObjectName("cmbFormato");
  w.cmbFormato->setMinimumContentsLength(28);
  w.cmbFormato->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  formato->setBuddy(w.cmbFormato);

  auto* kinds = new QButtonGroup(box);
  const char* kind_captions[2] = {"Base de datos", "Archivos de intercambio"};
  auto* kind_row = new QHBoxLayout;
  kind_row->setSpacing(0);
  for (int i = 0; i < 2; ++i) {
    w.TipoImp[i] = new QToolButton(box);
    w.TipoImp[i]->setObjectName(indexed("TipoImp", i));
    w.TipoImp[i]->setText(kind_captions[i]);
    w.TipoImp[i]->setCheckable(true);
    w.TipoImp[i]->setAutoRaise(false);
    w.TipoImp[i]->setToolButtonStyle(Qt::ToolButtonTextOnly);
    kinds->addButton(w.TipoImp[i], i);
    kind_row->addWidget(w.TipoImp[i]);
  }
  kinds->setExclusive(true);

  auto* origen = new QLabel("&Origen:", box);
  w.txtRuta = new QLineEdit(box);
  w.txtRuta->setObjectName("txtRuta");
  w.txtRuta->setPlaceholderText("Carpeta de los archivos de intercambio, carpeta de la base o fuente ODBC");
  origen->setBuddy(w.txtRuta);
  w.cbBuscar[0] = button("&Buscar origen…", indexed("cbBuscar", 0), box);
  w.cbBuscar[0]->setToolTip("Elegir la carpeta o la fuente de datos y cargarla");
  w.cbActualizar = button("Ac&tualizar", "cbActualizar", box);
  w.cbActualizar->setToolTip("Volver a cargar los datos del origen en la base auxiliar (F5)");

  auto* empresa = new QLabel("Empresa KEL:", box);
  w.LblEmpresa = new QLabel(box);
  w.LblEmpresa->setObjectName("LblEmpresa");
  w.LblEmpresa->setTextInteractionFlags(Qt::TextSelectableByMouse);
  w.LblEmpresa->setFrameShape(QFrame::StyledPanel);
  w.LblEmpresa->setMinimumWidth(200);
  w.cbBuscar[1] = button("Elegir &empresa…", indexed("cbBuscar", 1), box);
  w.cbBuscar[1]->setToolTip("Elegir la base de la empresa de KEL");

  g->addWidget(formato, 0, 0);
  g->addWidget(w.cmbFormato, 0, 1);
  g->addLayout(kind_row, 0, 2, 1, 2, Qt::AlignLeft);
  g->addWidget(origen, 1, 0);
  g->addWidget(w.txtRuta, 1, 1, 1, 2);
  g->addWidget(w.cbBuscar[0], 1, 3);
  g->addWidget(w.cbActualizar, 1, 4);
  g->addWidget(empresa, 2, 0);
  g->addWidget(w.LblEmpresa, 2, 1, 1, 2);
  g->addWidget(w.cbBuscar[1], 2, 3, 1, 2);
  g->setColumnStretch(2, 1);
  return box;
}

QWidget* company_tab(WindowControls& w, QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* v = new QVBoxLayout(page);
  auto* form = new QFormLayout;
  const char* captions[8] = {"Nombre:", "Razón social:", "RUC:", "Nº BPS:", "Teléfono - Fax:", "Dirección:", "Ramo:",
                             "E-mail:"};
  for (int i = 0; i < 8; ++i) {
    w.txtDatEmp[i] = new QLineEdit(page);
    w.txtDatEmp[i]->setObjectName(indexed("txtDatEmp", i));
    w.txtDatEmp[i]->setReadOnly(true);
    form->addRow(captions[i], w.txtDatEmp[i]);
  }
  v->addLayout(form);
  w.lblDatosCP = new QLabel("Datos Cargados Previamente", page);
  w.lblDatosCP->setObjectName("lblDatosCP");
  w.lblDatosCP->setStyleSheet("color: #8a5a00; font-weight: bold;");
  w.lblDatosCP->setToolTip("Lo que se ve se cargó en una sesión anterior; Actualizar lo vuelve a cargar del origen");
  v->addWidget(w.lblDatosCP);
  v->addStretch(1);
  return page;
}

QWidget* catalogues_tab(WindowControls& w, QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* g = new QGridLayout(page);
  w.GCargos = grid("GCargos", page);
  w.GSectores = grid("GSectores", page);
  w.GSucur = grid("GSucur", page);
  w.GHorario = grid("GHorario", page);
  g->addWidget(titled("Cargos", w.GCargos, page), 0, 0);
  g->addWidget(titled("Sectores", w.GSectores, page), 0, 1);
  g->addWidget(titled("Sucursales", w.GSucur, page), 1, 0);
  g->addWidget(titled("Regímenes horarios", w.GHorario, page), 1, 1);
  return page;
}

QWidget* liquidations_tab(WindowControls& w, QWidget* parent) {
  auto* split = new QSplitter(Qt::Vertical, parent);
  w.GridLiq = grid("GridLiq", split);
  w.GridLiq->setSelectionMode(QAbstractItemView::SingleSelection);
  w.GridLiq->horizontalHeader()->setSectionsClickable(true);
  w.GridLiq->horizontalHeader()->setSortIndicatorShown(false);
  w.GridDatosLiq = grid("GridDatosLiq", split);
  split->addWidget(titled("Liquidaciones", w.GridLiq, split));
  split->addWidget(titled("Líneas de la liquidación", w.GridDatosLiq, split));
  split->setStretchFactor(0, 3);
  split->setStretchFactor(1, 2);
  return split;
}

QTabWidget* data_tabs(WindowControls& w, QWidget* parent) {
  w.datos = new QTabWidget(parent);
  w.datos->setObjectName("datos");
  w.datos->addTab(company_tab(w, w.datos), "Em&presa");
  w.datos->addTab(catalogues_tab(w, w.datos), "Catá&logos");
  w.GContra = grid("GContra", w.datos);
  w.datos->addTab(w.GContra, "Co&ntratos");
  w.GridDeduc = grid("GridDeduc", w.datos);
  w.datos->addTab(w.GridDeduc, "&Deducciones");
  w.datos->addTab(liquidations_tab(w, w.datos), "Li&quidaciones");
  return w.datos;
}

// A lookup widget over `model`, found by `name`.
LookupWidget* lookup_widget(lookup::LookupModel& model, const char* name, QWidget* page) {
  auto* widget = new LookupWidget(model, page);
  widget->setObjectName(name);
  return widget;
}

// The form of a relation panel: the source's lookup above KEL's, and the add
// and remove buttons under them; column 1 of the last row is left for the
// panel's own control.
QGridLayout* relation_form(LookupWidget* source, const char* source_caption, LookupWidget* kel,
                           const char* kel_caption, QPushButton* add, QPushButton* remove, QWidget* page) {
  auto* form = new QGridLayout;
  form->addWidget(new QLabel(source_caption, page), 0, 0);
  form->addWidget(source, 0, 1, 1, 3);
  form->addWidget(new QLabel(kel_caption, page), 1, 0);
  form->addWidget(kel, 1, 1, 1, 3);
  form->addWidget(add, 2, 2);
  form->addWidget(remove, 2, 3);
  form->setColumnStretch(1, 1);
  return form;
}

QWidget* concept_mapping(WindowControls& w, mapping::MappingPanel& m, QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* v = new QVBoxLayout(page);
  w.objCodOS = lookup_widget(m.objCodOS, "objCodOS", page);
  w.ObjCodKel = lookup_widget(m.ObjCodKel, "ObjCodKel", page);
  w.cmbImportar = new QComboBox(page);
  w.cmbImportar->setObjectName("cmbImportar");
  for (const char* item : mapping::MappingPanel::kImportarItems) w.cmbImportar->addItem(item);
  w.cbAgrQuit[0] = button("&Agregar", indexed("cbAgrQuit", 0), page);
  w.cbAgrQuit[1] = button("&Quitar", indexed("cbAgrQuit", 1), page);
  w.cbAgrQuit[0]->setToolTip("Relacionar el concepto a importar con el de KEL (o marcarlo No Importar)");
  w.cbAgrQuit[1]->setToolTip("Quitar la relación de la fila elegida en la grilla");
  QGridLayout* form = relation_form(w.objCodOS, "Concepto a importar:", w.ObjCodKel, "Concepto de KEL:",
                                    w.cbAgrQuit[0], w.cbAgrQuit[1], page);
  w.cmbImportar->setMinimumContentsLength(12);
  form->addWidget(w.cmbImportar, 2, 1, Qt::AlignRight);
  v->addLayout(form);

  w.GridRelacConc = grid("GridRelacConc", page);
  w.GridRelacConc->horizontalHeader()->setSectionsClickable(true);
  w.GridRelacConc->horizontalHeader()->setSortIndicatorShown(true);
  v->addWidget(w.GridRelacConc, 1);

  auto* row = new QHBoxLayout;
  w.btBorraTodosVinc = button("Borrar vínculos automáticos", "btBorraTodosVinc", page);
  w.btCargaAutomat = button("Recargar vínculos automáticos", "btCargaAutomat", page);
  w.chkImpSoloConUtil = new QCheckBox("Importar Solo Conceptos Utilizados", page);
  w.chkImpSoloConUtil->setObjectName("chkImpSoloConUtil");
  row->addWidget(w.btBorraTodosVinc);
  row->addWidget(w.btCargaAutomat);
  row->addStretch(1);
  row->addWidget(w.chkImpSoloConUtil);
  v->addLayout(row);
  return page;
}

QWidget* type_mapping(WindowControls& w, mapping::MappingPanel& m, QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* v = new QVBoxLayout(page);
  w.objCodOSTL = lookup_widget(m.objCodOSTL, "objCodOSTL", page);
  w.objCodKELTL = lookup_widget(m.objCodKELTL, "objCodKELTL", page);
  w.cbAgrQuit[2] = button("A&gregar", indexed("cbAgrQuit", 2), page);
  w.cbAgrQuit[3] = button("Q&uitar", indexed("cbAgrQuit", 3), page);
  v->addLayout(relation_form(w.objCodOSTL, "Tipo a importar:", w.objCodKELTL, "Tipo de KEL:", w.cbAgrQuit[2],
                             w.cbAgrQuit[3], page));
  w.GridRelacTL = grid("GridRelacTL", page);
  v->addWidget(w.GridRelacTL, 1);
  return page;
}

QGroupBox* configuration_panel(WindowControls& w, QWidget* parent) {
  w.AreConf = new QGroupBox("Conceptos Generales para totalizar", parent);
  w.AreConf->setObjectName("AreConf");
  auto* h = new QHBoxLayout(w.AreConf);
  w.lstRelaciones = new QListWidget(w.AreConf);
  w.lstRelaciones->setObjectName("lstRelaciones");
  w.lstRelaciones->setMaximumHeight(120);
  h->addWidget(w.lstRelaciones, 1);
  auto* form = new QFormLayout;
  w.cmbCodBPS = new QComboBox(w.AreConf);
  w.cmbCodBPS->setObjectName("cmbCodBPS");
  w.txtCodKEL = new QLineEdit(w.AreConf);
  w.txtCodKEL->setObjectName("txtCodKEL");
  w.txtCodKEL->setMaximumWidth(90);
  form->addRow("Código BPS:", w.cmbCodBPS);
  form->addRow("Concepto KEL:", w.txtCodKEL);
  auto* buttons = new QHBoxLayout;
  w.cmbMasMenos[0] = button("+", indexed("cmbMasMenos", 0), w.AreConf);
  w.cmbMasMenos[1] = button("−", indexed("cmbMasMenos", 1), w.AreConf);
  w.cmbMasMenos[0]->setToolTip("Agregar o cambiar la relación");
  w.cmbMasMenos[1]->setToolTip("Quitar la relación elegida de la lista");
  buttons->addWidget(w.cmbMasMenos[0]);
  buttons->addWidget(w.cmbMasMenos[1]);
  form->addRow(buttons);
  h->addLayout(form);
  return w.AreConf;
}

QWidget* mapping_area(WindowControls& w, mapping::MappingPanel& m, QWidget* parent) {
  auto* area = new QWidget(parent);
  w.mapping_area = area;
  auto* v = new QVBoxLayout(area);
  v->setContentsMargins(0, 0, 0, 0);
  auto* tabs = new QTabWidget(area);
  tabs->setObjectName("relaciones");
  tabs->addTab(concept_mapping(w, m, tabs), "Relación de &conceptos");
  tabs->addTab(type_mapping(w, m, tabs), "Relación de tipos de liquidación");
  v->addWidget(tabs, 1);
  v->addWidget(configuration_panel(w, area));
  return area;
}

QWidget* run_bar(WindowControls& w, QWidget* parent) {
  auto* bar = new QWidget(parent);
  auto* h = new QHBoxLayout(bar);
  h->setContentsMargins(0, 0, 0, 0);

  w.options = new QGroupBox("Datos a importar", bar);
  auto* og = new QGridLayout(w.options);
  for (int i = 0; i < 5; ++i) {
    w.ChkOP[i] = new QCheckBox(GroupCaption(i), w.options);
    w.ChkOP[i]->setObjectName(indexed("ChkOP", i));
    og->addWidget(w.ChkOP[i], i % 3, i / 3);
  }
  h->addWidget(w.options, 3);

  w.period = new QGroupBox("Período de las liquidaciones", bar);
  auto* pg = new QGridLayout(w.period);
  w.chkConFechDesde = new QCheckBox("Desde", w.period);
  w.chkConFechDesde->setObjectName("chkConFechDesde");
  w.ChkConFechHasta = new QCheckBox("Hasta", w.period);
  w.ChkConFechHasta->setObjectName("ChkConFechHasta");
  QCheckBox* boxes[2] = {w.chkConFechDesde, w.ChkConFechHasta};
  for (int i = 0; i < 2; ++i) {
    w.cbMesAnt[i] = new QToolButton(w.period);
    w.cbMesAnt[i]->setObjectName(indexed("cbMesAnt", i));
    w.cbMesAnt[i]->setArrowType(Qt::LeftArrow);
    w.cbMesAnt[i]->setToolTip("Un mes antes");
    w.txtMes[i] = new QLineEdit(w.period);
    w.txtMes[i]->setObjectName(indexed("txtMes", i));
    w.txtMes[i]->setReadOnly(true);
    w.txtMes[i]->setAlignment(Qt::AlignCenter);
    w.txtMes[i]->setFixedWidth(90);
    w.cbMesSig[i] = new QToolButton(w.period);
    w.cbMesSig[i]->setObjectName(indexed("cbMesSig", i));
    w.cbMesSig[i]->setArrowType(Qt::RightArrow);
    w.cbMesSig[i]->setToolTip("Un mes después");
    pg->addWidget(boxes[i], i, 0);
    pg->addWidget(w.cbMesAnt[i], i, 1);
    pg->addWidget(w.txtMes[i], i, 2);
    pg->addWidget(w.cbMesSig[i], i, 3);
  }
  h->addWidget(w.period, 0);

  auto* buttons = new QGridLayout;
  w.cbImportar = button("&Importar", "cbImportar", bar);
  w.cbImportar->setDefault(false);
  w.cbImportar->setMinimumHeight(48);
  w.cbImportar->setMinimumWidth(150);
  QFont bold = w.cbImportar->font();
  bold.setBold(true);
  if (bold.pointSizeF() > 0) bold.setPointSizeF(bold.pointSizeF() * 1.15);
  w.cbImportar->setFont(bold);
  w.cbImportar->setToolTip("Transferir a la empresa de KEL los datos marcados (Ctrl+I)");
  w.cbConfig = button("Configu&ración", "cbConfig", bar);
  w.cbConfig->setCheckable(true);
  w.cbConfig->setToolTip("Mostrar u ocultar los conceptos generales para totalizar");
  w.cbSalir = button("&Salir", "cbSalir", bar);
  buttons->addWidget(w.cbImportar, 0, 0, 1, 2);
  buttons->addWidget(w.cbConfig, 1, 0);
  buttons->addWidget(w.cbSalir, 1, 1);
  h->addLayout(buttons, 0);
  return bar;
}

QWidget* progress_row(WindowControls& w, QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* h = new QHBoxLayout(row);
  h->setContentsMargins(0, 0, 0, 0);
  w.Barra = new QProgressBar(row);
  w.Barra->setObjectName("Barra");
  w.Barra->setRange(0, 1000);
  w.Barra->setTextVisible(false);
  w.Barra->setMaximumHeight(16);
  w.lblPorc = new QLabel("0%", row);
  w.lblPorc->setObjectName("lblPorc");
  w.lblPorc->setMinimumWidth(40);
  w.lblPorc->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  h->addWidget(w.Barra, 1);
  h->addWidget(w.lblPorc);
  return row;
}

void set_tab_order(WindowControls& w) {
  // Top to bottom, left to right; a lookup is its code box then its
  // description box.
  QWidget* chain[] = {w.cmbFormato,
                      w.TipoImp[0],
                      w.TipoImp[1],
                      w.txtRuta,
                      w.cbBuscar[0],
                      w.cbActualizar,
                      w.cbBuscar[1],
                      w.datos,
                      w.objCodOS->code_box(),
                      w.objCodOS->description_box(),
                      w.ObjCodKel->code_box(),
                      w.ObjCodKel->description_box(),
                      w.cmbImportar,
                      w.cbAgrQuit[0],
                      w.cbAgrQuit[1],
                      w.GridRelacConc,
                      w.btBorraTodosVinc,
                      w.btCargaAutomat,
                      w.chkImpSoloConUtil,
                      w.ChkOP[0],
                      w.ChkOP[1],
                      w.ChkOP[2],
                      w.ChkOP[3],
                      w.ChkOP[4],
                      w.chkConFechDesde,
                      w.cbMesAnt[0],
                      w.cbMesSig[0],
                      w.ChkConFechHasta,
                      w.cbMesAnt[1],
                      w.cbMesSig[1],
                      w.cbImportar,
                      w.cbConfig,
                      w.cbSalir};
  for (std::size_t i = 1; i < std::size(chain); ++i) QWidget::setTabOrder(chain[i - 1], chain[i]);
}

}  // namespace

const char* GroupCaption(int index) {
  static const char* const kCaptions[5] = {"Datos de la Empresa", "Cargos, Sectores, Regimenes Horarios y Sucursales",
                                           "Empleados, Contratos y Deducciones", "Conceptos y Tipos de Liquidaciones",
                                           "Liquidaciones"};
  return index >= 0 && index < 5 ? kCaptions[index] : "";
}

QWidget* BuildCentralWidget(WindowControls& w, mapping::MappingPanel& mapping, QWidget* parent) {
  auto* central = new QWidget(parent);
  auto* v = new QVBoxLayout(central);
  v->setContentsMargins(8, 6, 8, 6);
  v->addWidget(source_bar(w, central));
  auto* split = new QSplitter(Qt::Horizontal, central);
  split->setObjectName("areas");
  split->addWidget(data_tabs(w, split));
  split->addWidget(mapping_area(w, mapping, split));
  split->setStretchFactor(0, 1);
  split->setStretchFactor(1, 1);
  split->setChildrenCollapsible(false);
  v->addWidget(split, 1);
  v->addWidget(run_bar(w, central));
  v->addWidget(progress_row(w, central));
  set_tab_order(w);
  return central;
}

}  // namespace ui
