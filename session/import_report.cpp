// session/import_report.cpp — the report's text and file (see import_report.h).
#include "session/import_report.h"

#include <cstdio>
#include <fstream>

namespace session {

namespace fs = std::filesystem;

namespace {

// "2023-03-01" -> "03/2023"; "" -> `none`.
std::string month_text(const std::string& bound, const char* none) {
  if (bound.size() < 7) return none;
  return bound.substr(5, 2) + "/" + bound.substr(0, 4);
}

std::string seconds_text(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f s", seconds);
  return text;
}

}  // namespace

std::vector<std::string> ImportReportLines(const ImportReportInput& in) {
  std::vector<std::string> lines;
  lines.push_back("Informe de importación");
  lines.push_back("Fecha: " + in.when);
  lines.push_back("Base de KEL: " + in.company);
  lines.push_back("Origen: " + (in.source.empty() ? std::string("(ninguno)") : in.source));
  lines.push_back("Formato: " + (in.format.empty() ? std::string("(ninguno)") : in.format));
  std::string groups;
  for (const std::string& g : in.groups) groups += (groups.empty() ? "" : "; ") + g;
  lines.push_back("Grupos: " + (groups.empty() ? std::string("(ninguno)") : groups));
  lines.push_back("Liquidaciones: desde " + month_text(in.desde, "el principio") + " hasta " +
                  month_text(in.hasta, "el final"));
  const bool has_copy = in.result && !in.result->safety_copy.empty();
  lines.push_back("Copia de seguridad: " + (has_copy ? in.result->safety_copy.string() : std::string("(ninguna)")));
  lines.push_back("Filas en la base auxiliar:");
  for (const auto& [table, rows] : in.staged)
    if (rows > 0) lines.push_back("  " + table + ": " + std::to_string(rows));
  if (in.result) {
    double total = 0;
    for (const StepRun& run : in.result->steps) {
      total += run.seconds;
      std::string head = "Paso " + std::to_string(run.group + 1) + ". " + run.report.step + ": " +
                         std::to_string(run.report.statements_run) + " instrucciones";
      if (run.report.statements_ignored > 0)
        head += ", " + std::to_string(run.report.statements_ignored) + " rechazadas sin efecto";
      lines.push_back(head + ", " + seconds_text(run.seconds));
      for (const transfer::TableChange& change : run.report.changes)
        lines.push_back("  " + change.table + ": " + std::to_string(change.rows) + " " + change.action);
      for (const std::string& note : run.report.notes) lines.push_back("  " + note);
    }
    lines.push_back("Tiempo de los pasos: " + seconds_text(total));
    if (in.result->restored) lines.push_back("La base de KEL fue devuelta desde la copia de seguridad");
  }
  lines.push_back("Resultado: " + in.outcome);
  return lines;
}

fs::path ImportReportPath(const fs::path& folder, std::time_t now) {
  std::tm local{};
  localtime_r(&now, &local);
  char stamp[80];
  std::snprintf(stamp, sizeof stamp, "%04d-%02d-%02d-%02d%02d%02d", local.tm_year + 1900, local.tm_mon + 1,
                local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
  const std::string base = std::string("kelimport-informe-") + stamp;
  std::error_code ec;
  fs::path file = folder / (base + ".txt");
  for (int n = 2; fs::exists(file, ec); ++n) file = folder / (base + "-" + std::to_string(n) + ".txt");
  return file;
}

bool WriteImportReport(const fs::path& file, const std::vector<std::string>& lines, std::string* error) {
  std::ofstream out(file, std::ios::binary);
  for (const std::string& line : lines) out << line << "\r\n";
  out.flush();
  if (!out) {
    if (error) *error = "No se pudo escribir el informe de importación " + file.string();
    return false;
  }
  return true;
}

}  // namespace session
