// session/company_check.h — is this file a KEL company the import may write?
//
// Anything can be chosen as the destination: an empty file, another
// program's database, the staging template, a file on a read-only share.
// Each is refused before the file is opened for writing, with a message that
// names the file and says what it is, so that nothing is created or changed
// in a file that is not a KEL company.
#pragma once

#include <filesystem>
#include <string>

namespace session {

// The Spanish message saying why `path` cannot be the destination, or "" when
// it is a SQLite database holding the KEL tables the transfer writes and both
// the file and its folder can be written. Reads the file without changing it
// (opened read-only; its journal mode is left as it is). Never throws.
std::string CheckCompanyFile(const std::string& path);

// The Spanish message saying why the staging database `file` in `folder`
// cannot be loaded, or "" when it can: an existing file must be writable, and
// a missing one needs a folder where it can be made. Never throws.
std::string CheckStagingFile(const std::filesystem::path& folder, const std::filesystem::path& file);

}  // namespace session
