// app/restore_command.cpp — `kelimport --restore` (see restore_command.h).
#include "app/restore_command.h"

#include <cctype>
#include <filesystem>
#include <iostream>

#include "db/error.h"
#include "session/safety_copy.h"
#include "settings/strings.h"

namespace app {

namespace {

const char* const kUsage =
    "Uso: kelimport --restore [--yes] COPIA\n"
    "\n"
    "Devuelve la base de KEL al estado en que estaba antes de una importación,\n"
    "desde la copia de seguridad COPIA que la importación dejó junto a ella\n"
    "(\"Datos.mdb.antes-de-importar-2026-11-22-1530\" devuelve \"Datos.mdb\").\n"
    "Pide confirmación salvo con --yes. La copia no se borra.\n";

// "s", "si", "sí", "y", "yes" in any case.
bool is_yes(std::string answer) {
  answer = settings::Trim(answer);
  for (char& c : answer) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return answer == "s" || answer == "si" || answer == "sí" || answer == "y" || answer == "yes";
}

}  // namespace

int run_restore(const std::vector<std::string>& args, const std::filesystem::path& program_folder,
                std::istream& in, std::ostream& out) {
  bool yes = false;
  std::string copy;
  for (const std::string& arg : args) {
    if (arg == "--yes") {
      yes = true;
    } else if (arg == "--help" || arg == "-h") {
      out << kUsage;
      return 0;
    } else if (arg.rfind("--", 0) == 0 || !copy.empty()) {
      out << "ERROR: Argumento incorrecto: " << arg << "\n" << kUsage;
      return 3;
    } else {
      copy = arg;
    }
  }
  if (copy.empty()) {
    out << "ERROR: Falta la copia de seguridad que se quiere devolver\n" << kUsage;
    return 3;
  }
  const std::filesystem::path company = session::CompanyFileOfCopy(copy);
  if (company.empty()) {
    out << "ERROR: " << copy << " no tiene el nombre de una copia de seguridad de kelimport (<base>"
        << session::kSafetyCopyMarker << "<fecha>)\n";
    return 3;
  }
  if (!yes) {
    out << "PREGUNTA: ¿Desea reemplazar " << company.string() << " por la copia " << copy
        << "? Se pierde todo lo hecho en la base desde entonces. (s/n) " << std::flush;
    std::string answer;
    if (!std::getline(in, answer) || !is_yes(answer)) {
      out << "INFO: No se cambió nada\n";
      return 1;
    }
  }
  try {
    session::RestoreSafetyCopy(copy, company);
  } catch (const db::Error& e) {
    out << "ERROR: " << e.message() << "\n";
    return 2;
  }
  out << "INFO: " << company.string() << " fue devuelta al estado de la copia " << copy
      << " (la copia se conserva)\n";
  const std::filesystem::path staging_copy = session::StagingCopyOf(copy);
  const std::filesystem::path staging = session::StagingFileOf(program_folder, company);
  std::error_code ec;
  if (std::filesystem::exists(staging_copy, ec) &&
      std::filesystem::exists(staging.parent_path(), ec)) {
    try {
      session::RestoreStagingMappings(copy, staging);
      out << "INFO: También las relaciones de conceptos y tipos de liquidación de la base auxiliar "
          << staging.string() << " volvieron al estado anterior a la importación\n";
    } catch (const db::Error& e) {
      out << "AVISO: La base de KEL se devolvió, pero la base auxiliar no: " << e.message() << "\n";
    }
  }
  return 0;
}

}  // namespace app
