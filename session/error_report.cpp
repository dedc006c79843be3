// session/error_report.cpp — writing the error report (see error_report.h).
#include "session/error_report.h"

#include <cstdio>
#include <ctime>
#include <fstream>
#include <system_error>

namespace session {

namespace {

void add_field(std::string& out, const char* label, const std::string& value) {
  out += label;
  out += value.empty() ? std::string("(no disponible)") : value;
  out += "\r\n";
}

// Multi-line texts (statements) are indented so that the report's own labels
// stand out.
void add_block(std::string& out, const char* label, const std::string& value) {
  out += label;
  out += "\r\n";
  if (value.empty()) {
    out += "    (no disponible)\r\n";
    return;
  }
  std::string line;
  for (char c : value) {
    if (c == '\n') {
      out += "    " + line + "\r\n";
      line.clear();
    } else if (c != '\r') {
      line += c;
    }
  }
  out += "    " + line + "\r\n";
}

}  // namespace

std::string NowText() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char buf[32];
  std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M:%S", &local);
  return buf;
}

std::string FormatErrorReport(const ErrorReport& r) {
  std::string out;
  out += "==== Error de importación ====\r\n";
  add_field(out, "Fecha y hora: ", r.when);
  add_field(out, "Procedimiento: ", r.procedure);
  add_field(out, "Paso: ", r.step);
  add_field(out, "Base de KEL: ", r.destination);
  add_field(out, "Base auxiliar: ", r.staging);
  add_field(out, "Mensaje: ", r.message);
  add_block(out, "Instrucción (Jet SQL):", r.jet_text);
  add_block(out, "Instrucción ejecutada (SQLite):", r.sqlite_text);
  out += "Ya aplicado (queda en la base de KEL):\r\n";
  if (r.applied.empty()) out += "    nada\r\n";
  for (const std::string& a : r.applied) out += "    " + a + "\r\n";
  out += "==============================\r\n\r\n";
  return out;
}

bool AppendErrorReport(const std::filesystem::path& file, const ErrorReport& report, std::string* error) {
  std::error_code ec;
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), ec);
  std::ofstream out(file, std::ios::binary | std::ios::app);
  if (out) out << FormatErrorReport(report);
  out.flush();
  if (!out) {
    if (error) *error = "No se pudo escribir el informe de errores " + file.string();
    return false;
  }
  return true;
}

std::string ErrorReportWarning(const ErrorReport& report, const std::filesystem::path& file, bool written) {
  std::string text = "La importación se detuvo por un error en " +
                     (report.step.empty() ? report.procedure : report.step) + ":\r\n" + report.message +
                     "\r\n";
  if (written) {
    text += "El detalle quedó en el archivo " + file.string() + "\r\n";
  } else {
    text += "No se pudo escribir el informe en " + file.string() + "; el detalle es:\r\n" +
            FormatErrorReport(report);
  }
  text += "Lo ya importado queda en la base de KEL. El programa se cerrará.";
  return text;
}

}  // namespace session
