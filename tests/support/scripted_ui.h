// tests/support/scripted_ui.h — a UserInterface with scripted answers for
// the tests: questions are answered from a queue (or a default answer),
// dialogs return queued paths, and every message is recorded in order as one
// line in batch mode's form ("AVISO: ...", "PREGUNTA: ... -> Sí", "INFO: ...",
// "ESPERA: ...").
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "session/user_interface.h"

class ScriptedUserInterface : public session::UserInterface {
 public:
  // Answers, consumed in order; when a queue is empty the defaults apply.
  std::deque<bool> answers;
  std::optional<bool> default_answer;
  std::deque<std::string> files;                   // open_file results ("" = cancel)
  std::deque<std::optional<std::string>> folders;  // browse_folder results
  std::deque<std::string> data_sources;            // pick_data_source results

  // Every message shown, in order.
  std::vector<std::string> log;
  int repaints = 0;

  void warning(const std::string& text) override { log.push_back("AVISO: " + text); }
  void warning_list(const std::string&, const std::vector<std::string>& items) override {
    for (const std::string& item : items) log.push_back("AVISO: " + item);
  }
  void waiting(const std::string& text) override { log.push_back("ESPERA: " + text); }
  void information(const std::string& text) override { log.push_back("INFO: " + text); }
  // Throws session::UnansweredQuestion when there is no answer at all.
  bool ask_yes_no(const std::string& text, session::QuestionIcon) override {
    std::optional<bool> answer = default_answer;
    if (!answers.empty()) {
      answer = answers.front();
      answers.pop_front();
    }
    log.push_back("PREGUNTA: " + text + (!answer ? " -> (sin respuesta)" : *answer ? " -> Sí" : " -> No"));
    if (!answer) throw session::UnansweredQuestion(text);
    return *answer;
  }
  std::string open_file(const std::string&, const std::string&) override { return Next(files, std::string()); }
  std::optional<std::string> browse_folder(const std::string&, const std::string&, const std::string&) override {
    return Next(folders, std::optional<std::string>());
  }
  std::string pick_data_source(const std::string&, const std::vector<std::string>&) override {
    return Next(data_sources, std::string());
  }
  void repaint() override { ++repaints; }

 private:
  template <typename T>
  static T Next(std::deque<T>& queue, T cancelled) {
    if (queue.empty()) return cancelled;
    T next = std::move(queue.front());
    queue.pop_front();
    return next;
  }
};
