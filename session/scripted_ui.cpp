// session/scripted_ui.cpp — scripted answers and the message log.
#include "session/scripted_ui.h"

namespace session {

void ScriptedUserInterface::record(std::string line) {
  if (on_line) on_line(line);
  log.push_back(std::move(line));
}

void ScriptedUserInterface::warning(const std::string& text) { record("AVISO: " + text); }

void ScriptedUserInterface::warning_list(const std::string& /*title*/, const std::vector<std::string>& items) {
  for (const std::string& item : items) record("AVISO: " + item);
}

void ScriptedUserInterface::information(const std::string& text) { record("INFO: " + text); }

bool ScriptedUserInterface::ask_yes_no(const std::string& text, QuestionIcon /*icon*/) {
  bool answer;
  if (!answers.empty()) {
    answer = answers.front();
    answers.pop_front();
  } else if (default_answer) {
    answer = *default_answer;
  } else {
    record("PREGUNTA: " + text + " -> (sin respuesta)");
    throw UnansweredQuestion(text);
  }
  record("PREGUNTA: " + text + (answer ? " -> Sí" : " -> No"));
  return answer;
}

std::string ScriptedUserInterface::open_file(const std::string& /*title*/,
                                             const std::string& /*filter*/) {
  if (files.empty()) return {};
  std::string f = files.front();
  files.pop_front();
  return f;
}

std::optional<std::string> ScriptedUserInterface::browse_folder(const std::string& /*title*/,
                                                                const std::string& /*prompt*/,
                                                                const std::string& /*start*/) {
  if (folders.empty()) return std::nullopt;
  auto f = folders.front();
  folders.pop_front();
  return f;
}

std::string ScriptedUserInterface::pick_data_source(const std::string& /*current*/,
                                                    const std::vector<std::string>& /*sources*/) {
  if (data_sources.empty()) return {};
  std::string s = data_sources.front();
  data_sources.pop_front();
  return s;
}

}  // namespace session
