// session/company_check.h — is this file a KEL company the import may write?
//
// Anything can be chosen as the destination: an empty file, another
// program's database, the staging template, a file on a read-only share.
// Each is refused before the file is opened for writing, with a message that
// names the file and says what it is, so that nothing is created or changed
// in a file that is not a KEL company.
#pragma once

#include <string>

namespace session {

// The Spanish message saying why `path` cannot be the destination, or "" when
// it is a SQLite database holding the KEL tables the transfer writes and both
// the file and its folder can be written. Reads the file without changing it
// (opened read-only; its journal mode is left as it is). Never throws.
std::string CheckCompanyFile(const std::string& path);

}  // namespace session
