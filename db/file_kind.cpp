// db/file_kind.cpp — recognises SQLite and Access files by their headers.
#include "db/file_kind.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace db {

FileKind file_kind(const std::string& path) {
  std::error_code ec;
  auto status = std::filesystem::status(path, ec);
  if (ec || status.type() == std::filesystem::file_type::not_found) return FileKind::kMissing;
  if (status.type() != std::filesystem::file_type::regular) return FileKind::kNotAFile;
  std::ifstream in(path, std::ios::binary);
  if (!in) return FileKind::kUnreadable;
  char header[32] = {};
  in.read(header, sizeof header);
  std::streamsize got = in.gcount();
  if (got == 0) return FileKind::kSqlite;  // SQLite treats an empty file as an empty database
  if (got >= 16 && std::memcmp(header, "SQLite format 3\0", 16) == 0) return FileKind::kSqlite;
  // Jet and ACE files carry their engine's name at offset 4.
  if (got >= 19 && (std::memcmp(header + 4, "Standard Jet DB", 15) == 0 ||
                    std::memcmp(header + 4, "Standard ACE DB", 15) == 0)) {
    return FileKind::kAccess;
  }
  return FileKind::kOther;
}

std::string file_kind_message(FileKind kind, const std::string& path) {
  switch (kind) {
    case FileKind::kSqlite:
      return {};
    case FileKind::kMissing:
      return "No se encuentra el archivo " + path;
    case FileKind::kNotAFile:
      return "La ruta " + path + " no es un archivo";
    case FileKind::kUnreadable:
      return "No se puede leer el archivo " + path;
    case FileKind::kAccess:
      return "El archivo " + path + " es una base de datos de Access (Jet/ACE), no una base SQLite";
    case FileKind::kOther:
      break;
  }
  return "El archivo " + path + " no es una base de datos SQLite";
}

}  // namespace db
