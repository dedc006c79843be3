// session/busy_notice.cpp — the busy handler that says it is waiting.
#include "session/busy_notice.h"

#include <chrono>
#include <thread>

namespace session {

namespace {

// Each pause of the wait; short, so that a file released early is used early.
constexpr int kPauseMs = 50;

}  // namespace

void BusyNotice::install(db::Connection* connection, std::function<void(const std::string&)> notice) {
  if (!connection || !connection->is_open()) return;
  connection_ = connection;
  notice_ = std::move(notice);
  connection->set_busy_handler([this](int attempt) { return OnBusy(attempt); });
}

bool BusyNotice::OnBusy(int attempt) {
  if (attempt * kPauseMs >= kWaitMs) return false;
  if (attempt == 0 && notice_) {
    // The statement may read several files: the one named is the one held.
    notice_("Esperando a que otro programa libere la base " + connection_->locked_file() + "; se espera hasta " +
            std::to_string(kWaitMs / 1000) + " segundos");
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(kPauseMs));
  return true;
}

}  // namespace session
