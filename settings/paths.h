// settings/paths.h — names of the files beside the program, folder creation and
// folder listing.
//
// Format and statement files name other files relative to the program folder.
// They are often written on Windows, so a name may use "\" or "/" between its
// parts; both are accepted. On a case-sensitive file system a name whose case
// differs from the file on disk is still found (format files written on Windows
// rarely match the case of the files they name).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

// A relative name with "\" and "/" both taken as separators, written with "/":
// repeated separators collapse and "./" parts are dropped ("Sql\\\\emp.sql" ->
// "Sql/emp.sql"). ".." parts are kept.
std::string NormaliseRelativeName(std::string_view name);

// The program folder joined with a file name read from a settings file. An
// absolute name (starting with "/" or "\", or a drive such as "C:") is returned
// normalised but not joined. When the joined path does not exist, a file or
// folder that differs only in letter case is looked for part by part and its
// path is returned; otherwise the plain joined path.
std::filesystem::path ProgramPath(const std::filesystem::path& program_folder, std::string_view name);

// Creates a folder and every missing parent. True when the folder exists
// afterwards.
bool CreateFolders(const std::filesystem::path& folder);

// The regular files of a folder (not its subfolders), sorted by name without
// regard to case, then by exact name, so that matching offers files in a
// stable order. A missing folder gives none.
std::vector<std::filesystem::path> ListFilesSorted(const std::filesystem::path& folder);

}  // namespace settings
