// session/user_interface.h — everything the session tells or asks the user.
//
// The main window's logic runs without a display. Every message box, question
// and dialog goes through this interface: the Qt window implements it with
// real dialogs, batch mode with its command line's answers (app/batch_ui.h),
// the tests with scripted ones (tests/support/scripted_ui.h).
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace session {

enum class QuestionIcon { kWarning, kQuestion };

// Thrown by ask_yes_no when the interface has no answer to give (a batch run
// without --yes/--no). It is not an error of the run: the controller lets it
// through to the caller, who reports a bad command line.
class UnansweredQuestion : public std::runtime_error {
 public:
  explicit UnansweredQuestion(const std::string& text) : std::runtime_error("Pregunta sin respuesta: " + text) {}
};

class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // A warning box (exclamation icon, OK button).
  virtual void warning(const std::string& text) = 0;

  // One warning box listing `items` under `title` (what a run skipped or
  // refused, shown once at its end). By default the items are lines of one
  // warning text.
  virtual void warning_list(const std::string& title, const std::vector<std::string>& items) {
    std::string text = title;
    for (const std::string& item : items) text += "\r\n- " + item;
    warning(text);
  }

  // A passing notice that needs no answer (the window's status line): the
  // program is waiting for a file another program holds.
  virtual void waiting(const std::string& text) = 0;

  // A Yes/No box; true on Yes.
  virtual bool ask_yes_no(const std::string& text, QuestionIcon icon) = 0;

  // An information box (OK button).
  virtual void information(const std::string& text) = 0;

  // The open-file dialog; the chosen path, or "" when cancelled.
  virtual std::string open_file(const std::string& title, const std::string& filter) = 0;

  // The folder browser, starting at `start`; nullopt when cancelled.
  virtual std::optional<std::string> browse_folder(const std::string& title,
                                                   const std::string& prompt,
                                                   const std::string& start) = 0;

  // The data-source picker over `sources`, with `current` preselected when it
  // is one of them; the chosen name, or "" when cancelled.
  virtual std::string pick_data_source(const std::string& current,
                                       const std::vector<std::string>& sources) = 0;

  // Lets the window repaint (runs the event loop once). Long loops call it
  // after each progress step; nothing else runs meanwhile.
  virtual void repaint() = 0;
};

}  // namespace session
