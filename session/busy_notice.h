// session/busy_notice.h — telling the user that the program is waiting for a
// database file another program holds.
//
// SQLite waits up to 15 seconds for a locked file before it gives up, and
// meanwhile the window looks hung. A BusyNotice replaces the connection's
// plain timeout by a busy handler that waits the same time and, the moment a
// wait begins, calls `notice` once with a Spanish text naming the file that
// is held: the connection's own, or a database it attached for an
// `in '<path>'` clause.
#pragma once

#include <functional>
#include <string>

#include "db/connection.h"

namespace session {

class BusyNotice {
 public:
  // How long a wait lasts before the statement is refused as busy.
  static constexpr int kWaitMs = 15000;

  BusyNotice() = default;
  BusyNotice(const BusyNotice&) = delete;
  BusyNotice& operator=(const BusyNotice&) = delete;

  // Installs the handler on `connection` when it is open and its engine has
  // one (anything else is left alone). `notice` gets the text to show; this
  // object must outlive the connection's use.
  void install(db::Connection* connection, std::function<void(const std::string&)> notice);

  // The busy handler: waits a little and says whether to try again; tells
  // the user on the first try (`attempt` 0) of each wait.
  bool OnBusy(int attempt);

 private:
  db::Connection* connection_ = nullptr;
  std::function<void(const std::string&)> notice_;
};

}  // namespace session
