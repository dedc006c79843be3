// session/safety_copy.h — the copy of the KEL company file taken before an
// import run changes it, its name, and the way back.
//
// Copies live beside the company file and carry its name, so a copy says by
// itself which file it belongs to:
//   Datos.mdb.antes-de-importar-2026-11-22-1530
// (seconds, then "-2", "-3" ... are added when a copy of that minute exists).
// Copies are never deleted by the program; the user removes old ones.
#pragma once

#include <ctime>
#include <filesystem>
#include <string>

namespace session {

// What sits between the company file's name and the date in a copy's name.
inline constexpr const char* kSafetyCopyMarker = ".antes-de-importar-";

// The question the error report asks when a run that made a copy stops.
inline constexpr const char* kRestoreQuestion = "¿Desea devolver la base de KEL al estado anterior a la importación?";

// A free name for a copy of `company` taken at local time `now`: the minute
// first, then with seconds, then with a counter.
std::filesystem::path SafetyCopyPath(const std::filesystem::path& company, std::time_t now);

// Makes the copy of `company` (online backup, verified, see db/backup.h) and
// returns its path. Throws db::Error with a Spanish reason when it cannot.
std::filesystem::path MakeSafetyCopy(const std::filesystem::path& company);

// The company file a copy belongs to (its name without the marker and the
// date); empty when `copy` is not named as a copy.
std::filesystem::path CompanyFileOfCopy(const std::filesystem::path& copy);

// Puts `copy` back in place of `company` (db::restore_database). No
// connection may have the company file open. Throws db::Error.
void RestoreSafetyCopy(const std::filesystem::path& copy, const std::filesystem::path& company);

// The staging tables the transfer writes that name ids of the KEL file: the
// mappings of the concepts and liquidation types it creates there. They must
// go back together with the KEL file, or the next run would map to ids the
// restore removed. (The other staging changes of a run trim staged data the
// next load brings back whole.)
inline constexpr const char* kStagingMappingTables[] = {"RelacConc", "RelacTLiq"};

// The copy of the staging mapping tables taken with the KEL copy `copy`.
std::filesystem::path StagingCopyOf(const std::filesystem::path& copy);

// Copies the mapping tables of `staging` to StagingCopyOf(copy) / puts them
// back. Throw db::Error.
void SaveStagingMappings(const std::filesystem::path& staging, const std::filesystem::path& copy);
void RestoreStagingMappings(const std::filesystem::path& copy, const std::filesystem::path& staging);

// The staging database of `company` in the program folder `program_folder`
// (<program folder>/<company's folder name>/Pasaje.mdb), as the session
// places it.
std::filesystem::path StagingFileOf(const std::filesystem::path& program_folder, const std::filesystem::path& company);

}  // namespace session
