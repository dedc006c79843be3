// ui/qt_user_interface.cpp — the session's boxes and dialogs drawn by Qt.
#include "ui/qt_user_interface.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTranslator>

#include "ui/odbc_dialog.h"

namespace ui {
namespace {

// The boxes' caption: the program's name as the window set it.
QString caption() { return QApplication::applicationDisplayName(); }

// Runs a box with Spanish buttons; the button pressed.
QMessageBox::StandardButton run_box(QWidget* window, QMessageBox::Icon icon, const QString& text,
                                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton default_button,
                                    const QString& details_title = {}, const QStringList& details = {}) {
  QMessageBox box(icon, caption(), text, buttons, window);
  box.setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
  if (QAbstractButton* ok = box.button(QMessageBox::Ok)) ok->setText(QStringLiteral("Aceptar"));
  if (QAbstractButton* yes = box.button(QMessageBox::Yes)) yes->setText(QStringLiteral("Sí"));
  if (QAbstractButton* no = box.button(QMessageBox::No)) no->setText(QStringLiteral("No"));
  box.setDefaultButton(default_button);
  if (!details_title.isEmpty()) box.setInformativeText(details_title);
  if (!details.isEmpty()) box.setDetailedText(details.join('\n'));
  box.exec();
  return box.standardButton(box.clickedButton());
}

// A file dialog that is Qt's own, modal to `window`.
void prepare(QFileDialog& dialog) {
  dialog.setOption(QFileDialog::DontUseNativeDialog, true);
  dialog.setLabelText(QFileDialog::Accept, QStringLiteral("Aceptar"));
  dialog.setLabelText(QFileDialog::Reject, QStringLiteral("Cancelar"));
  dialog.setLabelText(QFileDialog::LookIn, QStringLiteral("Buscar en:"));
  dialog.setLabelText(QFileDialog::FileName, QStringLiteral("Nombre:"));
  dialog.setLabelText(QFileDialog::FileType, QStringLiteral("Tipo:"));
}

}  // namespace

QString box_text(const std::string& text) {
  QString out = QString::fromStdString(text);
  out.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  out.replace('\r', '\n');
  return out;
}

QString qt_file_filter(const std::string& filter) {
  const QString text = QString::fromStdString(filter);
  if (!text.contains('|')) return text;
  const QStringList parts = text.split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString name = parts[i].trimmed();
    // The patterns go between parentheses, where Qt reads them; a name that
    // already shows them in parentheses loses that copy.
    const qsizetype open = name.lastIndexOf('(');
    if (open > 0 && name.endsWith(')')) name = name.left(open).trimmed();
    QStringList patterns = parts[i + 1].split(';', Qt::SkipEmptyParts);
    for (QString& pattern : patterns) pattern = pattern.trimmed();
    filters.push_back(name + " (" + patterns.join(' ') + ")");
  }
  return filters.join(QStringLiteral(";;"));
}

bool install_spanish_qt_texts() {
  // Owned by the application, which keeps it for its whole life.
  auto* translator = new QTranslator(QCoreApplication::instance());
  if (!translator->load(QLocale(QLocale::Spanish), QStringLiteral("qtbase"), QStringLiteral("_"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    delete translator;
    return false;
  }
  return QCoreApplication::installTranslator(translator);
}

QtUserInterface::QtUserInterface(QWidget* window) : window_(window) {}

void QtUserInterface::set_window(QWidget* window) { window_ = window; }

void QtUserInterface::warning(const std::string& text) {
  run_box(window_, QMessageBox::Warning, box_text(text), QMessageBox::Ok, QMessageBox::Ok);
}

void QtUserInterface::warning_list(const std::string& title, const std::vector<std::string>& items) {
  QStringList shown;
  QStringList all;
  for (const std::string& item : items) {
    all.push_back("- " + box_text(item));
    if (shown.size() < kListedItems) shown.push_back(all.back());
  }
  if (all.size() > shown.size()) shown.push_back(QStringLiteral("... y %1 más").arg(all.size() - shown.size()));
  run_box(window_, QMessageBox::Warning, box_text(title), QMessageBox::Ok, QMessageBox::Ok, shown.join('\n'),
          all.size() > kListedItems ? all : QStringList());
}

void QtUserInterface::waiting(const std::string& text) {
  if (on_waiting) on_waiting(box_text(text));
  repaint();
}

bool QtUserInterface::ask_yes_no(const std::string& text, session::QuestionIcon icon) {
  const QMessageBox::Icon shown =
      icon == session::QuestionIcon::kWarning ? QMessageBox::Warning : QMessageBox::Question;
  return run_box(window_, shown, box_text(text), QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) ==
         QMessageBox::Yes;
}

void QtUserInterface::information(const std::string& text) {
  run_box(window_, QMessageBox::Information, box_text(text), QMessageBox::Ok, QMessageBox::Ok);
}

std::string QtUserInterface::open_file(const std::string& title, const std::string& filter) {
  QFileDialog dialog(window_, QString::fromStdString(title));
  prepare(dialog);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  const QString filters = qt_file_filter(filter);
  if (!filters.isEmpty()) dialog.setNameFilters(filters.split(QStringLiteral(";;")));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return QDir::toNativeSeparators(dialog.selectedFiles().front()).toStdString();
}

std::optional<std::string> QtUserInterface::browse_folder(const std::string& title, const std::string& prompt,
                                                          const std::string& start) {
  QFileDialog dialog(window_, QString::fromStdString(prompt.empty() ? title : prompt));
  prepare(dialog);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly, true);
  const QString from = QString::fromStdString(start).trimmed();
  if (!from.isEmpty() && QDir(from).exists()) dialog.setDirectory(from);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return QDir::toNativeSeparators(dialog.selectedFiles().front()).toStdString();
}

std::string QtUserInterface::pick_data_source(const std::string& current, const std::vector<std::string>& sources) {
  return OdbcDialog::choose(sources, current, window_);
}

void QtUserInterface::repaint() { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

}  // namespace ui
