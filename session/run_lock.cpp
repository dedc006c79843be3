// session/run_lock.cpp — the flock held by a run (see run_lock.h).
#include "session/run_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace session {

bool RunLock::acquire(const std::filesystem::path& file) {
  release();
  const int fd = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) return true;  // nowhere to put a lock: the folder's own checks tell the user
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    const bool taken = errno == EWOULDBLOCK;
    ::close(fd);
    return !taken;
  }
  fd_ = fd;
  return true;
}

void RunLock::release() {
  if (fd_ < 0) return;
  ::flock(fd_, LOCK_UN);
  ::close(fd_);
  fd_ = -1;
}

}  // namespace session
