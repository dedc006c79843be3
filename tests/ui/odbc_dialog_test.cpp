// Tests of the data source picker and the listing behind it: system data
// sources and file data sources declared in a test-local driver manager
// configuration (ODBCSYSINI), with a file-DSN folder of its own.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <cstdlib>
#include <filesystem>

#include "db/db_fixture.h"
#include "support/odbc_driver.h"
#include "db/odbc_sources.h"
#include "ui/odbc_dialog.h"
#include "ui/qt_user_interface.h"
#include "ui_parts_support.h"

namespace {

using testing_db::TempFolder;

// The driver manager reads its system folder once per process: one folder
// for all tests, with two system data sources, a user one (not listed) and a
// file-DSN folder holding two ".dsn" files, a text file and a folder.
struct Machine {
  TempFolder folder;
  std::string database;
  std::string dsn_folder;
  Machine() {
    database = folder.database("origen.db", "CREATE TABLE Personas (id INTEGER); INSERT INTO Personas VALUES (7);");
    dsn_folder = folder.file("dsn");
    std::filesystem::create_directories(folder.path() / "dsn" / "carpeta.dsn");
    folder.write("odbcinst.ini", "[ODBC]\nFileDSNPath=" + dsn_folder + "\n\n[SQLite3]\nDescription=SQLite3\nDriver=" +
                                     test_support::odbc_driver_library("SQLite3") + "\n");
    folder.write("odbc.ini", "[kel_sistema_a]\nDriver=SQLite3\nDatabase=" + database +
                                 "\n\n[kel_sistema_b]\nDriver=SQLite3\nDatabase=" + database + "\n");
    folder.write("usuario.ini", "[kel_usuario]\nDriver=SQLite3\nDatabase=" + database + "\n");
    folder.write("dsn/Origen.dsn", "[ODBC]\nDriver=SQLite3\nDatabase=" + database + "\n");
    folder.write("dsn/otro.DSN", "[ODBC]\nDriver=SQLite3\nDatabase=" + database + "\n");
    folder.write("dsn/notas.txt", "no es un origen");
    setenv("ODBCSYSINI", folder.path().c_str(), 1);
    setenv("ODBCINI", folder.file("usuario.ini").c_str(), 1);
  }
};

Machine& machine() {
  static Machine m;
  return m;
}

const std::vector<std::string> kAll = {"kel_sistema_a", "kel_sistema_b", "Origen.dsn", "otro.DSN"};

class OdbcDialogTest : public ui_parts_test::WithApp, public testing::Test {
 protected:
  void SetUp() override {
    ui_parts_test::app();
    machine();
  }
};

TEST_F(OdbcDialogTest, ListsSystemThenFileDataSources) {
  EXPECT_EQ(db::odbc_file_dsn_folder(), machine().dsn_folder + "/");
  EXPECT_EQ(db::odbc_file_data_sources(), (std::vector<std::string>{"Origen.dsn", "otro.DSN"}));
  EXPECT_EQ(db::odbc_data_sources(), kAll);
}

TEST_F(OdbcDialogTest, ConnectionTextsOfEachKindOfName) {
  const std::string folder = machine().dsn_folder + "/";
  const std::pair<std::string, std::string> cases[] = {
      {"kel_sistema_a", "DSN=kel_sistema_a;"},
      {" Origen.dsn ", "FILEDSN=" + folder + "Origen.dsn;"},
      {"otro.DSN", "FILEDSN=" + folder + "otro.DSN;"},
      {"/srv/fuentes/x.dsn", "FILEDSN=/srv/fuentes/x.dsn;"},
      {".dsn", "DSN=.dsn;"},
  };
  for (const auto& [name, text] : cases) EXPECT_EQ(db::odbc_connection_text(name), text) << name;

  if (test_support::odbc_driver_library("SQLite3").empty()) GTEST_SKIP() << "SQLite ODBC driver not installed";
  // A file data source of the folder opens by its name alone.
  std::unique_ptr<db::Connection> conn;
  db::open_odbc(db::odbc_connection_text("Origen.dsn"), conn);
  ASSERT_TRUE(conn);
  ASSERT_EQ(conn->state(), 1) << conn->last_error();
  EXPECT_EQ(conn->open_recordset("SELECT id FROM Personas").row_count(), 1u);
}

TEST_F(OdbcDialogTest, PickerIsSkippedOnlyForTheOnlySourceAlreadyChosen) {
  struct Case {
    std::string current;
    std::vector<std::string> sources;
    bool skipped;
  };
  const Case cases[] = {
      {" KEL_SISTEMA_A ", {"kel_sistema_a"}, true},
      {"Origen.dsn", {"Origen.dsn"}, true},
      {"otro", {"kel_sistema_a"}, false},
      {"", {"kel_sistema_a"}, false},
      {"kel_sistema_a", {"kel_sistema_a", "kel_sistema_b"}, false},
      {"kel_sistema_a", {}, false},
  };
  for (const Case& c : cases) EXPECT_EQ(db::odbc_picker_can_be_skipped(c.current, c.sources), c.skipped) << c.current;
}

TEST_F(OdbcDialogTest, DialogPreselectsTheCurrentSourceAndReturnsTheChoice) {
  ui::OdbcDialog dialog(kAll, " OTRO.dsn", nullptr);
  QComboBox* combo = dialog.combo();
  ASSERT_EQ(combo->count(), 4);
  EXPECT_EQ(combo->currentIndex(), 3);
  dialog.show();
  QTest::keyClick(combo, Qt::Key_Up);
  EXPECT_EQ(combo->currentText(), "Origen.dsn");
  QTest::mouseClick(dialog.ok_button(), Qt::LeftButton);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.chosen(), "Origen.dsn");

  // An unknown current source preselects the first; Cancelar chooses none.
  ui::OdbcDialog other(kAll, "borrado", nullptr);
  EXPECT_EQ(other.combo()->currentIndex(), 0);
  other.show();
  QTest::mouseClick(other.cancel_button(), Qt::LeftButton);
  EXPECT_EQ(other.result(), QDialog::Rejected);
  EXPECT_EQ(other.chosen(), "");
}

TEST_F(OdbcDialogTest, WithoutSourcesOnlyCancelWorks) {
  ui::OdbcDialog dialog({}, "kel", nullptr);
  EXPECT_EQ(dialog.combo()->count(), 0);
  EXPECT_FALSE(dialog.ok_button()->isEnabled());
  bool says_so = false;
  for (QLabel* label : dialog.findChildren<QLabel*>()) says_so |= label->text().startsWith("No hay");
  EXPECT_TRUE(says_so);
}

TEST_F(OdbcDialogTest, UserInterfaceShowsTheDialogModally) {
  QWidget window;
  window.show();
  ui::QtUserInterface ui(&window);
  auto answered = ui_parts_test::answer_modal([](QWidget* modal) {
    auto* dialog = qobject_cast<ui::OdbcDialog*>(modal);
    ASSERT_NE(dialog, nullptr);
    dialog->combo()->setCurrentIndex(1);
    dialog->ok_button()->click();
  });
  EXPECT_EQ(ui.pick_data_source("kel_sistema_a", kAll), "kel_sistema_b");
  EXPECT_TRUE(*answered);

  ui_parts_test::answer_modal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
  EXPECT_EQ(ui.pick_data_source("kel_sistema_a", kAll), "");
}

}  // namespace
