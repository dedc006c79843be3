// ui/window_controls.h — the controls of the main window, by the names the
// session's procedures use. Control arrays keep their index in the object
// name: ChkOP(2) is the QCheckBox named "ChkOP(2)", cbAgrQuit(0) the button
// named "cbAgrQuit(0)", so that tests and tools find each one by name.
#pragma once

#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QTableView;
class QTabWidget;
class QToolButton;
class QWidget;

namespace ui {

class LookupWidget;

struct WindowControls {
  // Source, format and destination.
  QComboBox* cmbFormato = nullptr;
  std::array<QToolButton*, 2> TipoImp{};  // 0 database, 1 interchange files
  QLineEdit* txtRuta = nullptr;
  std::array<QPushButton*, 2> cbBuscar{};  // 0 the source, 1 the KEL company
  QPushButton* cbActualizar = nullptr;
  QLabel* LblEmpresa = nullptr;

  // Staged data.
  QTabWidget* datos = nullptr;
  std::array<QLineEdit*, 8> txtDatEmp{};
  QLabel* lblDatosCP = nullptr;
  QTableView* GCargos = nullptr;
  QTableView* GSectores = nullptr;
  QTableView* GSucur = nullptr;
  QTableView* GHorario = nullptr;
  QTableView* GContra = nullptr;
  QTableView* GridDeduc = nullptr;
  QTableView* GridLiq = nullptr;
  QTableView* GridDatosLiq = nullptr;

  // Mapping.
  QWidget* mapping_area = nullptr;
  LookupWidget* objCodOS = nullptr;
  LookupWidget* ObjCodKel = nullptr;
  QComboBox* cmbImportar = nullptr;
  std::array<QPushButton*, 4> cbAgrQuit{};  // 0/1 add/remove a concept relation, 2/3 a type relation
  QTableView* GridRelacConc = nullptr;
  QPushButton* btBorraTodosVinc = nullptr;
  QPushButton* btCargaAutomat = nullptr;
  QCheckBox* chkImpSoloConUtil = nullptr;
  LookupWidget* objCodOSTL = nullptr;
  LookupWidget* objCodKELTL = nullptr;
  QTableView* GridRelacTL = nullptr;

  // Configuration panel (BPS totalisation relations).
  QGroupBox* AreConf = nullptr;
  QListWidget* lstRelaciones = nullptr;
  QComboBox* cmbCodBPS = nullptr;
  QLineEdit* txtCodKEL = nullptr;
  std::array<QPushButton*, 2> cmbMasMenos{};  // 0 add, 1 remove

  // The run.
  QGroupBox* options = nullptr;
  std::array<QCheckBox*, 5> ChkOP{};
  QGroupBox* period = nullptr;
  QCheckBox* chkConFechDesde = nullptr;
  QCheckBox* ChkConFechHasta = nullptr;
  std::array<QLineEdit*, 2> txtMes{};  // 0 Desde, 1 Hasta
  std::array<QToolButton*, 2> cbMesAnt{};
  std::array<QToolButton*, 2> cbMesSig{};
  QPushButton* cbImportar = nullptr;
  QPushButton* cbConfig = nullptr;
  QPushButton* cbSalir = nullptr;
  QProgressBar* Barra = nullptr;
  QLabel* lblPorc = nullptr;
};

}  // namespace ui
