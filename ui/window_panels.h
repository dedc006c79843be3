// ui/window_panels.h — builds the main window's controls and their layout:
// the source bar at the top, the staged data in tabs on the left, the mapping
// area on the right (with the configuration panel under it), and the run bar
// at the bottom (the five groups, the month range, the buttons, and the
// progress bar with its percentage, always visible). Captions, object names,
// tab order and mnemonics are set here; nothing is bound to the session.
#pragma once

#include "mapping/mapping_panel.h"
#include "ui/window_controls.h"

class QWidget;

namespace ui {

// The window's central widget, with every control recorded in `w`. The
// lookups are drawn over the mapping panel's lookup models.
QWidget* BuildCentralWidget(WindowControls& w, mapping::MappingPanel& mapping, QWidget* parent);

// The captions of the five transfer groups, ChkOP(0) to ChkOP(4).
const char* GroupCaption(int index);

}  // namespace ui
