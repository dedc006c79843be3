// session/scripted_ui.h — a UserInterface with scripted answers.
//
// Tests and batch runs drive the session with it: questions are answered from
// a queue (or a default answer), dialogs return queued paths, and every
// message is recorded in order as one line ("AVISO: ...", "PREGUNTA: ... -> Sí",
// "INFO: ...", "ESPERA: ..."), the form batch mode prints.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "session/user_interface.h"

namespace session {

// Thrown by ScriptedUserInterface when a question comes and there is neither a
// queued nor a default answer (a batch run without --yes/--no).
class UnansweredQuestion : public std::runtime_error {
 public:
  explicit UnansweredQuestion(const std::string& text)
      : std::runtime_error("Pregunta sin respuesta: " + text) {}
};

class ScriptedUserInterface : public UserInterface {
 public:
  // Answers, consumed in order; when a queue is empty the defaults apply.
  std::deque<bool> answers;
  std::optional<bool> default_answer;
  std::deque<std::string> files;                     // open_file results ("" = cancel)
  std::deque<std::optional<std::string>> folders;    // browse_folder results
  std::deque<std::string> data_sources;              // pick_data_source results

  // Every message shown, in order, in the batch form ("AVISO: texto").
  std::vector<std::string> log;
  int repaints = 0;

  // Called with each line as it is logged (batch mode prints it at once).
  std::function<void(const std::string&)> on_line;

  void warning(const std::string& text) override;
  // Each item is its own line "AVISO: item" (the title is the window's only).
  void warning_list(const std::string& title, const std::vector<std::string>& items) override;
  // Logged as "ESPERA: text".
  void waiting(const std::string& text) override { record("ESPERA: " + text); }
  bool ask_yes_no(const std::string& text, QuestionIcon icon) override;
  void information(const std::string& text) override;
  std::string open_file(const std::string& title, const std::string& filter) override;
  std::optional<std::string> browse_folder(const std::string& title, const std::string& prompt,
                                           const std::string& start) override;
  std::string pick_data_source(const std::string& current,
                               const std::vector<std::string>& sources) override;
  void repaint() override { ++repaints; }

 private:
  void record(std::string line);
};

}  // namespace session
