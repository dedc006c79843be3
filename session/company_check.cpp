// session/company_check.cpp — the checks on a destination file before use.
#include "session/company_check.h"

#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

#include "db/file_kind.h"
#include "settings/strings.h"

namespace session {

namespace {

// The tables the five transfer steps write or read in the company; a database
// without any of them is not a KEL company.
const std::vector<std::string> kCompanyTables = {
    "Empresa",  "Cargos",           "Sectores",    "Sucursales",  "Personas",
    "Contrato", "Conceptos",        "TiposLiquidacion", "Encabezados", "Datos_Liquidacion",
};

// Tables that only a staging database has.
const std::vector<std::string> kStagingOnlyTables = {"RelacConc", "RelacTLiq"};

// The names of the file's tables (case folded), or false when SQLite cannot
// read its schema.
bool ReadTables(const std::string& path, std::set<std::string>* tables, std::string* error) {
  sqlite3* db = nullptr;
  int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  if (rc == SQLITE_OK) {
    sqlite3_stmt* stmt = nullptr;
    rc = sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type = 'table'", -1, &stmt, nullptr);
    if (rc == SQLITE_OK) {
      while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        const unsigned char* name = sqlite3_column_text(stmt, 0);
        if (name) tables->insert(settings::FoldCase(reinterpret_cast<const char*>(name)));
      }
      if (rc == SQLITE_DONE) rc = SQLITE_OK;
    }
    sqlite3_finalize(stmt);
  }
  if (rc != SQLITE_OK) *error = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  sqlite3_close_v2(db);
  return rc == SQLITE_OK;
}

}  // namespace

std::string CheckCompanyFile(const std::string& path) {
  const db::FileKind kind = db::file_kind(path);
  if (kind != db::FileKind::kSqlite) return db::file_kind_message(kind, path);
  std::error_code ec;
  if (std::filesystem::file_size(path, ec) == 0 && !ec)
    return "El archivo " + path + " está vacío (0 bytes): no es una base de empresa de KEL";

  std::set<std::string> tables;
  std::string error;
  if (!ReadTables(path, &tables, &error))
    return "No se pudo leer la base " + path + ": no es una base de empresa de KEL válida (" + error + ")";
  bool staging = true;
  for (const auto& t : kStagingOnlyTables) staging = staging && tables.count(settings::FoldCase(t));
  if (staging)
    return "La base " + path +
           " es una base auxiliar de pasaje (como Generica/Pasaje.mdb), no una base de empresa de KEL";
  std::string missing;
  for (const auto& t : kCompanyTables)
    if (!tables.count(settings::FoldCase(t))) missing += (missing.empty() ? "" : ", ") + t;
  if (!missing.empty())
    return "La base " + path + " no es una base de empresa de KEL: le faltan las tablas " + missing;

  if (::access(path.c_str(), W_OK) != 0)
    return "La base de KEL " + path + " es de solo lectura: no se puede importar en ella";
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (::access((folder.empty() ? std::filesystem::path(".") : folder).c_str(), W_OK) != 0)
    return "La carpeta " + folder.string() + " de la base de KEL es de solo lectura: no se puede importar en ella";
  return {};
}

std::string CheckStagingFile(const std::filesystem::path& folder, const std::filesystem::path& file) {
  std::error_code ec;
  if (std::filesystem::exists(file, ec)) {
    if (::access(file.c_str(), W_OK) != 0)
      return "La base auxiliar " + file.string() + " es de solo lectura: no se puede cargar en ella";
    return {};
  }
  if (!std::filesystem::is_directory(folder, ec) || ::access(folder.c_str(), W_OK) != 0)
    return "No se puede crear la base auxiliar " + file.string() + ": la carpeta " + folder.string() +
           " no existe o es de solo lectura";
  return {};
}

}  // namespace session
