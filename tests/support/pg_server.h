// tests/support/pg_server.h — a throw-away PostgreSQL server for the tests
// that read a source through its ODBC driver: scripts/pg_test_server.sh starts
// it on a loopback port with its own data folder, and it is stopped when the
// object goes. Where it cannot be started, `reason()` says why, for the
// tests to skip with.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "support/odbc_driver.h"
#include "support/temp_dir.h"

class PgTestServer {
 public:
  PgTestServer() : port_(free_port()) {
    const std::string data = (folder_ / "datos").string();
    started_ = std::system((script() + " start " + data + " " + std::to_string(port_) + " >/dev/null 2>&1").c_str()) == 0;
  }
  ~PgTestServer() {
    if (started_) [[maybe_unused]] int rc = std::system((script() + " stop " + (folder_ / "datos").string()).c_str());
  }
  PgTestServer(const PgTestServer&) = delete;
  PgTestServer& operator=(const PgTestServer&) = delete;

  bool started() const { return started_; }
  static const char* reason() {
    return "no se pudo iniciar un servidor PostgreSQL local (paquetes postgresql y odbc-postgresql)";
  }
  int port() const { return port_; }

  // An ODBC connection text for the server's "postgres" database. The driver
  // is named by its library, so that a test-local odbcinst.ini (another test
  // of the same program may have set ODBCSYSINI) does not hide it.
  std::string connection_text() const {
    return "Driver=" + driver() + ";Server=127.0.0.1;Port=" + std::to_string(port_) + ";Database=postgres;Uid=kel;";
  }

 private:
  // The library of the driver manager's "PostgreSQL Unicode" driver, or its
  // name when the driver manager does not say.
  static std::string driver() {
    static const std::string library = test_support::odbc_driver_library("PostgreSQL Unicode");
    return library.empty() ? "PostgreSQL Unicode" : library;
  }

  // A loopback port nobody listens on now (several test programs may each
  // start a server at the same time).
  static int free_port() {
    int port = 55400 + static_cast<int>(getpid() % 500);
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
      port = ntohs(address.sin_port);
    if (fd >= 0) ::close(fd);
    return port;
  }
  static std::string script() { return std::string(KEL_SOURCE_DIR) + "/scripts/pg_test_server.sh"; }

  TempDir folder_;
  int port_;
  bool started_ = false;
};
