// db/file_kind.h — what kind of database a file is, read from its first bytes.
//
// The program opens SQLite files where the original system opened Access
// files; a user who points it at a real Access file, or at anything else,
// must be told exactly that instead of getting the engine's "file is not a
// database".
#pragma once

#include <string>

namespace db {

enum class FileKind {
  kMissing,     // no such file
  kNotAFile,    // a folder or something else that is not a regular file
  kUnreadable,  // exists but cannot be read
  kSqlite,      // "SQLite format 3" header, or an empty file (an empty database)
  kAccess,      // a Jet (.mdb) or ACE (.accdb) database
  kOther,       // any other file
};

// Looks at the file's first bytes. Never throws.
FileKind file_kind(const std::string& path);

// The Spanish message for a file that cannot be opened as a SQLite database
// because of its kind ("" for kSqlite).
std::string file_kind_message(FileKind kind, const std::string& path);

}  // namespace db
