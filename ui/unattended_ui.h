// ui/unattended_ui.h — the window's interface when nobody sits at it (the
// screenshot mode): no box is shown, every message goes to the error output
// in batch mode's form, every question is answered No and every dialog is
// cancelled; the window still repaints as with real boxes.
#pragma once

#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "ui/qt_user_interface.h"

namespace ui {

class UnattendedUi : public QtUserInterface {
 public:
  void warning(const std::string& text) override { std::cerr << "AVISO: " << text << "\n"; }
  void warning_list(const std::string& title, const std::vector<std::string>& items) override {
    std::cerr << "AVISO: " << title << "\n";
    for (const std::string& item : items) std::cerr << "AVISO: - " << item << "\n";
  }
  void waiting(const std::string& text) override { std::cerr << "ESPERA: " << text << "\n"; }
  bool ask_yes_no(const std::string& text, session::QuestionIcon) override {
    std::cerr << "PREGUNTA: " << text << " -> No\n";
    return false;
  }
  void information(const std::string& text) override { std::cerr << "INFO: " << text << "\n"; }
  std::string open_file(const std::string&, const std::string&) override { return ""; }
  std::optional<std::string> browse_folder(const std::string&, const std::string&, const std::string&) override {
    return std::nullopt;
  }
  std::string pick_data_source(const std::string&, const std::vector<std::string>&) override { return ""; }
};

}  // namespace ui
