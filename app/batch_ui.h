// app/batch_ui.h — the user interface of batch mode: every message becomes
// one printed line ("AVISO: ...", "PREGUNTA: ... -> Sí", "INFO: ...",
// "ESPERA: ..."), questions take the command line's answer (--yes/--no), and
// dialogs are cancelled, since batch mode names its paths on the command line.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "session/user_interface.h"

namespace app {

class BatchUserInterface : public session::UserInterface {
 public:
  // `print` gets each line as it is said; `answer` answers every question
  // (nullopt: a question throws session::UnansweredQuestion).
  BatchUserInterface(std::function<void(const std::string&)> print, std::optional<bool> answer)
      : print_(std::move(print)), answer_(answer) {}

  void warning(const std::string& text) override { print_("AVISO: " + text); }
  // Each item is its own line "AVISO: item" (the title is the window's only).
  void warning_list(const std::string& title, const std::vector<std::string>& items) override;
  void waiting(const std::string& text) override { print_("ESPERA: " + text); }
  bool ask_yes_no(const std::string& text, session::QuestionIcon icon) override;
  void information(const std::string& text) override { print_("INFO: " + text); }
  std::string open_file(const std::string&, const std::string&) override { return {}; }
  std::optional<std::string> browse_folder(const std::string&, const std::string&, const std::string&) override {
    return std::nullopt;
  }
  std::string pick_data_source(const std::string&, const std::vector<std::string>&) override { return {}; }
  void repaint() override {}

 private:
  std::function<void(const std::string&)> print_;
  std::optional<bool> answer_;
};

}  // namespace app
