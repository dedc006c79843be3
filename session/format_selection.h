// session/format_selection.h — reading the list of import formats at start-up,
// choosing a format, the source-kind buttons, and saving the format's keys
// when the window closes.
#pragma once

#include "session/session_state.h"

namespace session {

// Start-up: reads <program folder>/ConfIMP.ini, makes a new formats table and
// fills cmbFormato with one item per format line (an empty or missing file
// leaves the list empty; no message). A ConfIMP.ini that is not readable text,
// and a line that names no format file, add a warning. The selection is left at -1.
void LoadFormatList(SessionState& s);

// cmbFormato_Click, the format chosen in cmbFormato_index:
//   1. empties the catalogue;
//   2. with no item selected, stops there;
//   3. keeps the row's file as the current format and reads its text;
//   4. resets the BPS relations, loads the Relaciones key and adds the list
//      entries (below those of earlier choices);
//   5. Archivos: when present, selects source kind 1 and adds one catalogue
//      entry per line; when absent, kind 1 is deselected (so that a choice
//      made for an earlier format does not linger);
//   6. keeps TablaNoBorrar, ConcCrear and TipoBD;
//   7. BD: when absent deselects kind 0, otherwise selects it and adds its
//      entries;
//   8. with neither kind selected switches cbBuscar off; otherwise switches it
//      on and runs TipoImp_Click for kind 1 when selected, else for kind 0.
// Lines that cannot be used and unreadable files add Spanish warnings.
void cmbFormato_Click(SessionState& s);

// TipoImp_Click(index): the previous kind's button shows released, the pressed
// one pressed, and the source kind becomes `index` (0 or 1; others are
// ignored).
void TipoImp_Click(SessionState& s, int index);

// Form_Unload: stores the relations (Relaciones) and ConcCrear in the current
// format's file, changing only those two keys. Nothing is written when no
// format was chosen or its file no longer exists. Returns false and adds a warning when the file could not
// be written.
bool SaveFormatKeys(SessionState& s);

}  // namespace session
