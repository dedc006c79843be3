// db/jet/lexer.cpp — Jet tokens and date literals.
#include "db/jet/lexer.h"

#include <cctype>

#include "db/jet/ast.h"
#include "db/jet/date.h"

namespace db::jet {
namespace {

bool IsNameStart(unsigned char c) { return std::isalpha(c) || c == '_' || c >= 0x80; }
bool IsNameChar(unsigned char c) { return std::isalnum(c) || c == '_' || c >= 0x80; }

}  // namespace

std::string JetDateToIso(std::string_view text) {
  return jet_date_literal_to_iso(text).value_or(std::string());
}

std::vector<Token> Tokenize(std::string_view s) {
  std::vector<Token> tokens;
  std::size_t i = 0;
  while (true) {
    while (i < s.size() && std::isspace(static_cast<unsigned char>(s[i]))) ++i;
    Token tok;
    tok.pos = i;
    if (i >= s.size()) {
      tok.kind = TokenKind::kEnd;
      tokens.push_back(std::move(tok));
      return tokens;
    }
    unsigned char ch = static_cast<unsigned char>(s[i]);
    if (IsNameStart(ch)) {
      std::size_t start = i;
      while (i < s.size() && IsNameChar(static_cast<unsigned char>(s[i]))) ++i;
      tok.kind = TokenKind::kName;
      tok.text = std::string(s.substr(start, i - start));
    } else if (ch == '[') {
      std::size_t close = s.find(']', i + 1);
      if (close == std::string_view::npos) FailSyntax(s, i, "']' al final del nombre", "");
      if (close == i + 1) FailAt(s, i, "Nombre vacío entre corchetes");
      tok.kind = TokenKind::kName;
      tok.bracketed = true;
      tok.text = std::string(s.substr(i + 1, close - i - 1));
      i = close + 1;
    } else if (std::isdigit(ch) || (ch == '.' && i + 1 < s.size() &&
                                    std::isdigit(static_cast<unsigned char>(s[i + 1])))) {
      std::size_t start = i;
      while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i;
      if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i;
      }
      if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) ++j;
        if (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) {
          i = j;
          while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i;
        }
      }
      if (i < s.size() && IsNameStart(static_cast<unsigned char>(s[i]))) {
        FailSyntax(s, i, "un operador después del número", s.substr(start, i + 1 - start));
      }
      tok.kind = TokenKind::kNumber;
      tok.text = std::string(s.substr(start, i - start));
      if (tok.text[0] == '.') tok.text = "0" + tok.text;
    } else if (ch == '\'' || ch == '"') {
      char quote = static_cast<char>(ch);
      std::string value;
      std::size_t j = i + 1;
      while (true) {
        if (j >= s.size()) FailSyntax(s, i, "el cierre del texto", "");
        if (s[j] == quote) {
          if (j + 1 < s.size() && s[j + 1] == quote) {
            value += quote;
            j += 2;
            continue;
          }
          break;
        }
        value += s[j++];
      }
      tok.kind = TokenKind::kString;
      tok.text = std::move(value);
      i = j + 1;
    } else if (ch == '#') {
      std::size_t close = s.find('#', i + 1);
      if (close == std::string_view::npos) FailSyntax(s, i, "'#' al final de la fecha", "");
      std::string_view inner = s.substr(i + 1, close - i - 1);
      std::string iso = JetDateToIso(inner);
      if (iso.empty()) FailAt(s, i, "Fecha no válida: #" + std::string(inner) + "#");
      tok.kind = TokenKind::kDate;
      tok.text = std::move(iso);
      i = close + 1;
    } else {
      static const char* const kTwoChar[] = {"<>", "<=", ">=", "!="};
      tok.kind = TokenKind::kSymbol;
      std::string_view two = s.substr(i, 2);
      bool matched = false;
      for (const char* op : kTwoChar) {
        if (two == op) {
          tok.text = op;
          i += 2;
          matched = true;
          break;
        }
      }
      if (!matched) {
        if (std::string_view("=<>+-*/\\^&(),.;").find(static_cast<char>(ch)) ==
            std::string_view::npos) {
          FailAt(s, i, "Carácter no válido '" + std::string(1, static_cast<char>(ch)) + "'");
        }
        tok.text = std::string(1, static_cast<char>(ch));
        ++i;
      }
      if (tok.text == "!=") FailAt(s, tok.pos, "Operador no válido '!=' (en Jet se escribe <>)");
    }
    tokens.push_back(std::move(tok));
  }
}

}  // namespace db::jet
