// db/jet/ast.cpp — the error helpers shared by the lexer, parser and emitter.
#include "db/jet/ast.h"

#include "db/jet/translator.h"

namespace db::jet {
namespace {

// 1-based character position of byte offset `pos`: UTF-8 continuation bytes
// do not count, so "Año" counts as three characters.
std::size_t CharacterPosition(std::string_view source, std::size_t pos) {
  std::size_t chars = 1;
  for (std::size_t i = 0; i < pos && i < source.size(); ++i) {
    if ((static_cast<unsigned char>(source[i]) & 0xC0) != 0x80) ++chars;
  }
  return chars;
}

}  // namespace

void FailSyntax(std::string_view source, std::size_t pos, std::string_view expected,
                std::string_view found) {
  std::string message = "Error de sintaxis en la posición " +
                        std::to_string(CharacterPosition(source, pos)) + ": se esperaba " +
                        std::string(expected);
  if (found.empty()) {
    message += ", pero terminó la instrucción";
  } else {
    message += ", pero se encontró '" + std::string(found) + "'";
  }
  throw TranslateError(message, pos);
}

void FailAt(std::string_view source, std::size_t pos, const std::string& message) {
  throw TranslateError(
      message + " (posición " + std::to_string(CharacterPosition(source, pos)) + ")", pos);
}

void FailUnsupported(std::string_view source, std::size_t pos, std::string_view construct) {
  FailAt(source, pos, "No se admite " + std::string(construct));
}

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 'a' + 'A');
    if (y >= 'a' && y <= 'z') y = static_cast<char>(y - 'a' + 'A');
    if (x != y) return false;
  }
  return true;
}

}  // namespace db::jet
