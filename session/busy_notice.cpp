// session/busy_notice.cpp — the busy handler that says it is waiting.
#include "session/busy_notice.h"

#include <sqlite3.h>

#include "db/locked_file.h"
#include "db/sqlite_connection.h"

namespace session {

namespace {

// Each pause of the wait; short, so that a file released early is used early.
constexpr int kPauseMs = 50;

}  // namespace

void BusyNotice::install(db::Connection* connection, std::function<void(const std::string&)> notice) {
  auto* sqlite = dynamic_cast<db::SqliteConnection*>(connection);
  if (!sqlite || !sqlite->handle()) return;
  handle_ = sqlite->handle();
  notice_ = std::move(notice);
  sqlite3_busy_handler(sqlite->handle(), &BusyNotice::OnBusy, this);
}

int BusyNotice::OnBusy(void* self, int count) {
  auto* me = static_cast<BusyNotice*>(self);
  if (count * kPauseMs >= kWaitMs) return 0;
  if (count == 0 && me->notice_) {
    // The statement may read several files: the one named is the one held.
    me->notice_("Esperando a que otro programa libere la base " + db::locked_database_file(me->handle_) +
                "; se espera hasta " + std::to_string(kWaitMs / 1000) + " segundos");
  }
  sqlite3_sleep(kPauseMs);
  return 1;
}

}  // namespace session
