// ui/window_app.h — the importer run as a window: what one window session
// owns (the transfer, the preview, the mapping panels and the controller over
// them) and the program's window mode.
#pragma once

#include <filesystem>
#include <string>

#include "mapping/mapping_panel.h"
#include "preview/staged_preview.h"
#include "session/main_controller.h"
#include "session/user_interface.h"
#include "transfer/importer.h"

namespace ui {

// The controller and its collaborators, for one window over `ui`.
struct WindowSession {
  WindowSession(const std::filesystem::path& program_folder, session::UserInterface& ui);

  transfer::Importer importer;
  preview::StagedPreview preview;
  mapping::MappingPanel mapping;
  session::MainWindowController controller;
};

struct WindowOptions {
  // The window's command line: "destination" or "destination*source*format".
  std::string command_line;
  // When not empty: answers every question No, draws the window once the
  // command line's source is staged, saves it to this PNG file and ends.
  std::string screenshot;
};

// Opens the main window (a QApplication over argc/argv) and runs it until it
// closes. Returns the program's exit status: 0, or 2 when an error report
// ended the session (or the screenshot could not be saved).
int RunWindow(int& argc, char** argv, const std::filesystem::path& program_folder, const WindowOptions& options);

}  // namespace ui
