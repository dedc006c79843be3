// Tests of the Qt user interface: its real modal boxes and file dialogs,
// answered from a timer as a user would.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <filesystem>
#include <fstream>

#include "db/db_fixture.h"
#include "ui/qt_user_interface.h"
#include "ui_parts_support.h"

namespace {

using ui_parts_test::answer_modal;

// What the box showed, then it is answered with `press`.
struct Seen {
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  QString text;
  QString informative;
  QString details;
  QStringList buttons;
};

std::shared_ptr<Seen> answer_box(QMessageBox::StandardButton press) {
  auto seen = std::make_shared<Seen>();
  answer_modal([seen, press](QWidget* modal) {
    auto* box = qobject_cast<QMessageBox*>(modal);
    ASSERT_NE(box, nullptr);
    seen->icon = box->icon();
    seen->text = box->text();
    seen->informative = box->informativeText();
    seen->details = box->detailedText();
    for (QAbstractButton* button : box->buttons()) seen->buttons.push_back(button->text());
    seen->buttons.sort();
    box->button(press)->click();
  });
  return seen;
}

class QtUserInterfaceTest : public ui_parts_test::WithApp, public testing::Test {
 protected:
  void SetUp() override {
    ui_parts_test::app();
    window_.show();
  }
  QWidget window_;
  ui::QtUserInterface ui_{&window_};
};

TEST_F(QtUserInterfaceTest, BoxesShowTheirIconAndSpanishButtons) {
  auto seen = answer_box(QMessageBox::Ok);
  ui_.warning("La carpeta C:\\x No existe\r\nRevise la ruta");
  EXPECT_EQ(seen->icon, QMessageBox::Warning);
  EXPECT_EQ(seen->text, "La carpeta C:\\x No existe\nRevise la ruta");
  EXPECT_EQ(seen->buttons, QStringList{"Aceptar"});

  seen = answer_box(QMessageBox::Ok);
  ui_.information("Importación Satisfactoria!!");
  EXPECT_EQ(seen->icon, QMessageBox::Information);
  EXPECT_EQ(seen->text, QString::fromUtf8("Importación Satisfactoria!!"));
  EXPECT_EQ(seen->buttons, QStringList{"Aceptar"});
}

TEST_F(QtUserInterfaceTest, QuestionsAnswerYesOrNo) {
  struct Case {
    session::QuestionIcon icon;
    QMessageBox::StandardButton press;
    QMessageBox::Icon shown;
    bool answer;
  };
  const Case cases[] = {
      {session::QuestionIcon::kWarning, QMessageBox::Yes, QMessageBox::Warning, true},
      {session::QuestionIcon::kWarning, QMessageBox::No, QMessageBox::Warning, false},
      {session::QuestionIcon::kQuestion, QMessageBox::Yes, QMessageBox::Question, true},
      {session::QuestionIcon::kQuestion, QMessageBox::No, QMessageBox::Question, false},
  };
  for (const Case& c : cases) {
    auto seen = answer_box(c.press);
    EXPECT_EQ(ui_.ask_yes_no("¿Desea continuar?", c.icon), c.answer);
    EXPECT_EQ(seen->icon, c.shown);
    EXPECT_EQ(seen->text, QString::fromUtf8("¿Desea continuar?"));
    EXPECT_EQ(seen->buttons, (QStringList{"No", QString::fromUtf8("Sí")}));
  }
}

TEST_F(QtUserInterfaceTest, LongWarningListsKeepEveryItemInTheDetails) {
  std::vector<std::string> items;
  for (int i = 1; i <= 25; ++i) items.push_back("Tabla " + std::to_string(i));
  auto seen = answer_box(QMessageBox::Ok);
  ui_.warning_list("No se cargaron:", items);
  EXPECT_EQ(seen->icon, QMessageBox::Warning);
  EXPECT_EQ(seen->text, "No se cargaron:");
  EXPECT_TRUE(seen->informative.startsWith("- Tabla 1\n- Tabla 2\n"));
  EXPECT_TRUE(seen->informative.contains("- Tabla 20\n")) << seen->informative.toStdString();
  EXPECT_FALSE(seen->informative.contains("- Tabla 21"));
  EXPECT_TRUE(seen->informative.endsWith(QString::fromUtf8("... y 5 más")));
  EXPECT_TRUE(seen->details.endsWith("- Tabla 25"));

  seen = answer_box(QMessageBox::Ok);
  ui_.warning_list("Omitidos:", {"uno", "dos"});
  EXPECT_EQ(seen->informative, "- uno\n- dos");
  EXPECT_TRUE(seen->details.isEmpty());
}

TEST_F(QtUserInterfaceTest, WaitingGoesToTheStatusLine) {
  QString shown;
  ui_.on_waiting = [&shown](const QString& text) { shown = text; };
  ui_.waiting("Esperando a que otro programa libere el archivo");
  EXPECT_EQ(shown, "Esperando a que otro programa libere el archivo");
  ui_.on_waiting = nullptr;
  ui_.waiting("sin línea de estado");  // dropped, no box
}

TEST_F(QtUserInterfaceTest, QtsOwnTextsCanBeSpanish) {
  if (!ui::install_spanish_qt_texts()) GTEST_SKIP() << "qt6-translations-l10n not installed";
  EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Cancelar");
}

TEST(QtFileFilter, SystemPairsBecomeQtFilters) {
  const std::pair<const char*, const char*> cases[] = {
      {"Bases de Access (*.mdb)|*.mdb", "Bases de Access (*.mdb)"},
      {"Texto|*.txt;*.csv|Todos (*.*)|*.*", "Texto (*.txt *.csv);;Todos (*.*)"},
      {"Imágenes (*.png)", "Imágenes (*.png)"},
      {"", ""},
  };
  for (const auto& [system, qt] : cases) EXPECT_EQ(ui::qt_file_filter(system), QString::fromUtf8(qt)) << system;
}

TEST_F(QtUserInterfaceTest, OpenFileDialogReturnsTheChosenFileOrNothing) {
  testing_db::TempFolder folder;
  const std::string base = folder.write("Origen.mdb", "x");
  folder.write("notas.txt", "x");

  QStringList filters;
  QString title;
  answer_modal([&](QWidget* modal) {
    auto* dialog = qobject_cast<QFileDialog*>(modal);
    ASSERT_NE(dialog, nullptr);
    filters = dialog->nameFilters();
    title = dialog->windowTitle();
    dialog->setDirectory(QString::fromStdString(folder.path().string()));
    dialog->selectFile(QString::fromStdString(base));
    static_cast<QDialog*>(dialog)->accept();  // QFileDialog hides it, QDialog does not
  });
  EXPECT_EQ(ui_.open_file("Seleccionar la base a Importar Datos", "Bases de Access (*.mdb)|*.mdb"), base);
  EXPECT_EQ(filters, QStringList{"Bases de Access (*.mdb)"});
  EXPECT_EQ(title, "Seleccionar la base a Importar Datos");

  answer_modal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
  EXPECT_EQ(ui_.open_file("Seleccionar la base a Importar Datos", "Bases de Access (*.mdb)|*.mdb"), "");
}

TEST_F(QtUserInterfaceTest, FolderBrowserStartsAtTheFolderAndCancelGivesNothing) {
  testing_db::TempFolder folder;
  std::filesystem::create_directories(folder.path() / "Intercambio");
  const std::string start = folder.file("Intercambio");

  QString started_at;
  QString title;
  bool dirs_only = false;
  answer_modal([&](QWidget* modal) {
    auto* dialog = qobject_cast<QFileDialog*>(modal);
    ASSERT_NE(dialog, nullptr);
    started_at = dialog->directory().absolutePath();
    title = dialog->windowTitle();
    dirs_only = dialog->fileMode() == QFileDialog::Directory && dialog->testOption(QFileDialog::ShowDirsOnly);
    static_cast<QDialog*>(dialog)->accept();  // QFileDialog hides it, QDialog does not
  });
  std::optional<std::string> chosen =
      ui_.browse_folder("Seleccionar Carpeta", "Seleccione la carpeta de los Archivos de intercambio", start);
  ASSERT_TRUE(chosen.has_value());
  EXPECT_EQ(std::filesystem::path(*chosen), std::filesystem::path(start));
  EXPECT_EQ(started_at, QString::fromStdString(start));
  EXPECT_EQ(title, "Seleccione la carpeta de los Archivos de intercambio");
  EXPECT_TRUE(dirs_only);

  answer_modal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
  EXPECT_FALSE(ui_.browse_folder("Seleccionar Carpeta", "Seleccione", start).has_value());
}

}  // namespace
