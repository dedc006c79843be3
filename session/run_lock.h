// session/run_lock.h — one import at a time per company and per staging
// database.
//
// Two runs on the same company (two windows, a window and a script) would
// empty and fill the same staging tables under each other. Each run holds an
// advisory lock (flock) on a lock file beside the company file and one beside
// the staging database for as long as it uses them; the lock goes with the
// process, so a run that crashed leaves nothing to clean up.
#pragma once

#include <filesystem>

namespace session {

// The message of a run that finds the lock taken.
inline constexpr const char* kRunInProgress = "Otra importación de esta empresa está en curso";

class RunLock {
 public:
  RunLock() = default;
  ~RunLock() { release(); }
  RunLock(const RunLock&) = delete;
  RunLock& operator=(const RunLock&) = delete;

  // Takes the lock on `file` (created when missing), releasing any lock held
  // before. Returns false only when another process (or another RunLock)
  // holds it; a lock file that cannot be created (a read-only folder) is not
  // a reason to stop, and true is returned without a lock.
  bool acquire(const std::filesystem::path& file);
  void release();
  bool held() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

}  // namespace session
