// app/restore_command.h — `kelimport --restore COPY`: puts a safety copy of a
// KEL company file back by hand.
//
// The copy's own name says which company file it belongs to
// ("Datos.mdb.antes-de-importar-2026-11-22-1530" belongs to "Datos.mdb" in
// the same folder). The user is asked to confirm on the terminal unless --yes
// is given. The copy itself is kept.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace app {

// Runs the restore with the arguments that follow "--restore". Returns 0 when
// the company file was replaced, 1 when the user said no, 2 when the restore
// failed (the company file is as it was) and 3 for wrong arguments. Messages
// go to `out`, one per line (INFO:, PREGUNTA:, ERROR:); the answer is read
// from `in`.
// The staging database's copy taken with it (COPY.auxiliar) goes back to the
// company's staging database in `program_folder` as well.
int run_restore(const std::vector<std::string>& args, const std::filesystem::path& program_folder,
                std::istream& in, std::ostream& out);

}  // namespace app
