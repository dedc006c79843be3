// ui/qt_user_interface.h — the session's UserInterface with real Qt message
// boxes and dialogs, in Spanish.
//
// Warnings carry the exclamation icon and an "Aceptar" button, questions "Sí"
// and "No", the end of a run an information box; every box is modal to the
// main window. The open-file and folder dialogs are Qt's own (not the
// desktop's), so they look the same everywhere and tests can answer them.
#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "session/user_interface.h"

class QWidget;

namespace ui {

// The open-file dialog's filter in Qt's form: the system's "name|patterns"
// pairs ("Bases de Access (*.mdb)|*.mdb|Todos (*.*)|*.*") become
// "Bases de Access (*.mdb);;Todos (*.*)"; patterns separated by ";" are
// joined by blanks. A filter without "|" is taken as Qt's form already.
QString qt_file_filter(const std::string& filter);

// A message text for a Qt box: the system's "\r\n" line ends become "\n".
QString box_text(const std::string& text);

// Installs Qt's own Spanish texts (qtbase_es: the file dialogs' columns and
// buttons, the standard buttons, the context menus of text boxes) in the
// application. False, and English texts, when the translation is not
// installed (Debian's qt6-translations-l10n). Call once, after the
// QApplication is made.
bool install_spanish_qt_texts();

class QtUserInterface : public session::UserInterface {
 public:
  // Boxes are modal to `window` (no parent when null).
  explicit QtUserInterface(QWidget* window = nullptr);
  void set_window(QWidget* window);

  // Where waiting() shows its text (the window's status line); unset, the
  // notice is dropped.
  std::function<void(const QString&)> on_waiting;

  // A box with the exclamation icon and "Aceptar".
  void warning(const std::string& text) override;
  // One warning box: `title` as its text, the items below it (the first
  // kListedItems; all of them under "Mostrar detalles..." when there are more).
  void warning_list(const std::string& title, const std::vector<std::string>& items) override;
  // Shows `text` through on_waiting and lets the window repaint.
  void waiting(const std::string& text) override;
  // "Sí"/"No" with the icon asked (exclamation or question); "Sí" is the
  // default button, Esc answers "No".
  bool ask_yes_no(const std::string& text, session::QuestionIcon icon) override;
  // A box with the information icon and "Aceptar".
  void information(const std::string& text) override;
  // Qt's open-file dialog for an existing file; "" when cancelled.
  std::string open_file(const std::string& title, const std::string& filter) override;
  // Qt's folder dialog (folders only) starting at `start` when it exists;
  // the prompt is the dialog's caption. nullopt when cancelled.
  std::optional<std::string> browse_folder(const std::string& title, const std::string& prompt,
                                           const std::string& start) override;
  // The OdbcDialog over `sources`; "" when cancelled.
  std::string pick_data_source(const std::string& current, const std::vector<std::string>& sources) override;
  // Lets the window repaint without accepting the user's input
  // (QEventLoop::ExcludeUserInputEvents), so nothing clicked during a run
  // starts a second one.
  void repaint() override;

  static constexpr int kListedItems = 20;

 private:
  QWidget* window_;
};

}  // namespace ui
