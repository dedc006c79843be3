// ui/odbc_dialog.cpp — the data source picker's controls and answers.
#include "ui/odbc_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ui {
namespace {

// `a` and `b` name the same source: blanks around and case do not count.
bool same_source(const std::string& a, const std::string& b) {
  return QString::fromStdString(a).trimmed().compare(QString::fromStdString(b).trimmed(), Qt::CaseInsensitive) == 0;
}

}  // namespace

OdbcDialog::OdbcDialog(const std::vector<std::string>& sources, const std::string& current, QWidget* parent)
    : QDialog(parent), sources_(sources) {
  setObjectName("FrmODBC");
  setWindowTitle(QStringLiteral("Origen de datos ODBC"));
  setModal(true);

  label_ = new QLabel(this);
  combo_ = new QComboBox(this);
  combo_->setObjectName("cmbDSN");
  combo_->setMinimumContentsLength(30);
  label_->setBuddy(combo_);
  int preselected = sources_.empty() ? -1 : 0;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    combo_->addItem(QString::fromStdString(sources_[i]));
    if (preselected == 0 && i > 0 && same_source(sources_[i], current)) preselected = static_cast<int>(i);
  }
  combo_->setCurrentIndex(preselected);
  if (sources_.empty()) {
    label_->setText(QStringLiteral("No hay orígenes de datos ODBC del sistema ni de archivo en este equipo."));
    combo_->setEnabled(false);
  } else {
    label_->setText(QStringLiteral("&Origen de datos (del sistema o de archivo):"));
  }

  auto* buttons = new QDialogButtonBox(this);
  ok_ = buttons->addButton(QStringLiteral("Aceptar"), QDialogButtonBox::AcceptRole);
  ok_->setObjectName("cbAceptar");
  ok_->setEnabled(!sources_.empty());
  ok_->setDefault(true);
  cancel_ = buttons->addButton(QStringLiteral("Cancelar"), QDialogButtonBox::RejectRole);
  cancel_->setObjectName("cbCancelar");
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    const int index = combo_->currentIndex();
    if (index < 0 || index >= static_cast<int>(sources_.size())) return;
    chosen_ = sources_[static_cast<std::size_t>(index)];
    accept();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, [this] {
    chosen_.clear();
    reject();
  });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label_);
  layout->addWidget(combo_);
  layout->addWidget(buttons);
}

std::string OdbcDialog::choose(const std::vector<std::string>& sources, const std::string& current,
                               QWidget* parent) {
  OdbcDialog dialog(sources, current, parent);
  return dialog.exec() == QDialog::Accepted ? dialog.chosen() : std::string();
}

}  // namespace ui
