// db/backup.h — whole-file copies of a SQLite database: the safety copy taken
// before a transfer, and putting such a copy back.
//
// The copy goes through SQLite's online backup API on a connection of its
// own, so it is consistent even while other connections (the session's) have
// the file open; putting a copy back is a plain file copy made atomic by a
// rename in the same folder. Both report failures as db::Error with a Spanish
// message that names the file and says why (disk full, folder read-only,
// file locked by another program ...).
#pragma once

#include <string>
#include <vector>

namespace db {

// How long a copy waits for a file another program holds locked.
inline constexpr int kBackupBusyTimeoutMs = 15000;

// Copies the SQLite database at `source_path` to `target_path`, which must not
// exist. The pages go to "<target>.parcial" first; that file is checked
// (PRAGMA quick_check), flushed to disk and only then renamed to the target,
// so a copy that carries the target's name is always whole. Throws db::Error
// (and leaves no file behind) when the copy cannot be made or fails the check.
void backup_database(const std::string& source_path, const std::string& target_path,
                     int busy_timeout_ms = kBackupBusyTimeoutMs);

// Copies the rows of the tables `tables` of the SQLite database at
// `source_path`, read in one snapshot, into a new file `target_path` (one
// table each, same names and columns), with the same partial-name, check,
// flush and rename discipline as backup_database. A table the source does not
// have is left out. For the few tables of a large database a run changes.
// Throws db::Error and leaves no file behind.
void backup_tables(const std::string& source_path, const std::vector<std::string>& tables,
                   const std::string& target_path, int busy_timeout_ms = kBackupBusyTimeoutMs);

// Puts back the tables saved by backup_tables: in one transaction on the
// database at `target_path`, each table the copy at `copy_path` holds loses its
// rows and receives the copy's. Throws db::Error (nothing changed).
void restore_tables(const std::string& copy_path, const std::string& target_path,
                    int busy_timeout_ms = kBackupBusyTimeoutMs);

// Waits, up to `busy_timeout_ms`, until the database at `path` can be written
// (another program may hold a write transaction on it), then lets go at once.
// Throws db::Error naming the file when it stays locked or cannot be opened.
void wait_until_writable(const std::string& path, int busy_timeout_ms = kBackupBusyTimeoutMs);

// The result of PRAGMA quick_check on the database at `path`: "" when it is
// sound, otherwise the engine's first complaint (or why it could not be read).
std::string quick_check(const std::string& path);

// Puts the copy at `copy_path` in place of the database at `target_path`: the
// copy is checked (quick_check), written to "<target>.restaurando" beside the
// target, flushed, the target's -wal, -shm and -journal files are removed (a
// journal left by an interrupted run belongs to the old file and would damage
// the restored one) and the temporary file is renamed over the target. No
// connection may have the target open. Throws db::Error; the target is
// untouched unless the rename happened.
void restore_database(const std::string& copy_path, const std::string& target_path);

}  // namespace db
