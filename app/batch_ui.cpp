// app/batch_ui.cpp — batch mode's printed messages and fixed answers (see
// batch_ui.h).
#include "app/batch_ui.h"

namespace app {

void BatchUserInterface::warning_list(const std::string& /*title*/, const std::vector<std::string>& items) {
  for (const std::string& item : items) print_("AVISO: " + item);
}

bool BatchUserInterface::ask_yes_no(const std::string& text, session::QuestionIcon /*icon*/) {
  if (!answer_) {
    print_("PREGUNTA: " + text + " -> (sin respuesta)");
    throw session::UnansweredQuestion(text);
  }
  print_("PREGUNTA: " + text + (*answer_ ? " -> Sí" : " -> No"));
  return *answer_;
}

}  // namespace app
