// db/sqlite_messages.cpp — the Spanish sentences for SQLite's error texts.
#include "db/sqlite_messages.h"

#include <sqlite3.h>

namespace db {
namespace {

// The name SQLite's message gives after `prefix` ("no such table: X" -> "X").
std::string after(std::string_view text, std::string_view prefix) {
  std::size_t at = text.find(prefix);
  if (at == std::string_view::npos) return {};
  std::string_view rest = text.substr(at + prefix.size());
  std::size_t end = rest.find_first_of(" \n");
  return std::string(rest.substr(0, end));
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// The Spanish sentence for an error, empty when there is none.
std::string spanish(int code, std::string_view original) {
  // Messages first: "no such column" and its kin all come as plain SQLITE_ERROR.
  if (contains(original, "no such table: ")) {
    return "No existe la tabla '" + after(original, "no such table: ") + "'";
  }
  if (contains(original, "no such column: ")) {
    return "No existe el campo '" + after(original, "no such column: ") + "'";
  }
  if (contains(original, "ambiguous column name: ")) {
    return "El nombre de campo '" + after(original, "ambiguous column name: ") +
           "' puede referirse a más de una tabla";
  }
  if (original.rfind("table ", 0) == 0 && contains(original, " already exists")) {
    std::string_view name = original.substr(6, original.find(" already exists") - 6);
    return "La tabla '" + std::string(name) + "' ya existe";
  }
  if (contains(original, "has no column named ")) {
    return "La tabla no tiene el campo '" + after(original, "has no column named ") + "'";
  }
  switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return "Los cambios no se realizaron porque crearían valores duplicados en un índice o "
             "clave principal";
    case SQLITE_CONSTRAINT_NOTNULL:
      return "Un campo obligatorio no puede contener un valor Null";
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return "Los cambios no se realizaron porque romperían una relación entre tablas";
    case SQLITE_CONSTRAINT_CHECK:
      return "Un valor no cumple la regla de validación del campo";
    default:
      break;
  }
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "La base de datos está bloqueada: otro programa o conexión la está usando";
    case SQLITE_READONLY:
      return "La base de datos es de solo lectura: no se puede modificar";
    case SQLITE_FULL:
      return "No hay espacio en el disco para escribir en la base de datos";
    case SQLITE_CORRUPT:
      return "La base de datos está dañada";
    case SQLITE_NOTADB:
      return "El archivo no es una base de datos o está dañado";
    case SQLITE_IOERR:
      return "Error de lectura o escritura en el archivo de la base de datos";
    case SQLITE_CANTOPEN:
      return "No se puede abrir el archivo de la base de datos";
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return "No hay permiso para usar la base de datos";
    case SQLITE_NOMEM:
      return "No hay memoria suficiente";
    case SQLITE_CONSTRAINT:
      return "Los cambios no se realizaron porque no cumplen una restricción de la tabla";
    case SQLITE_TOOBIG:
      return "Un valor es demasiado grande";
    default:
      return {};
  }
}

}  // namespace

std::string sqlite_message_in_spanish(int code, std::string_view original) {
  std::string sentence = spanish(code, original);
  if (sentence.empty()) return std::string(original);
  return sentence + " (" + std::string(original) + ")";
}

std::string sqlite_error_in_spanish(sqlite3* db, int code) {
  if (db == nullptr) return sqlite_message_in_spanish(code, sqlite3_errstr(code));
  return sqlite_message_in_spanish(sqlite3_extended_errcode(db), sqlite3_errmsg(db));
}

}  // namespace db
