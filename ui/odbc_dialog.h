// ui/odbc_dialog.h — FrmODBC: choosing one of the machine's ODBC data sources.
//
// The combo cmbDSN lists the system data sources and then the file data
// sources (the ".dsn" files of the file-DSN folder) as db::odbc_data_sources
// gives them; "Aceptar" takes the chosen one, "Cancelar" or Esc none. With no
// data source at all the dialog says so and only "Cancelar" works.
//
// When the dialog is not shown: the controller skips it when the machine has
// exactly one data source and txtRuta already names it
// (db::odbc_picker_can_be_skipped), since there is then nothing to choose.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;

namespace ui {

class OdbcDialog : public QDialog {
  Q_OBJECT

 public:
  // Lists `sources`; `current` (txtRuta) is preselected when it is one of
  // them (blanks and case ignored), else the first source.
  OdbcDialog(const std::vector<std::string>& sources, const std::string& current, QWidget* parent = nullptr);

  // The source chosen with "Aceptar"; "" while none was (cancelled, or not
  // answered yet).
  std::string chosen() const { return chosen_; }

  QComboBox* combo() { return combo_; }  // objectName "cmbDSN"
  QPushButton* ok_button() { return ok_; }  // objectName "cbAceptar"
  QPushButton* cancel_button() { return cancel_; }  // objectName "cbCancelar"

  // Shows the dialog modally and returns the choice ("" when cancelled).
  static std::string choose(const std::vector<std::string>& sources, const std::string& current,
                            QWidget* parent = nullptr);

 private:
  std::vector<std::string> sources_;
  std::string chosen_;
  QComboBox* combo_ = nullptr;
  QLabel* label_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace ui
