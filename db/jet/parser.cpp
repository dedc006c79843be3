// db/jet/parser.cpp — token access and the statement dispatch of the parser.
#include "db/jet/parser.h"

#include <array>

namespace db::jet {
namespace {

// Words that cannot be used as unbracketed names (aliases, columns, tables).
constexpr std::array<std::string_view, 44> kReserved = {
    "SELECT", "DISTINCT", "DISTINCTROW", "TOP", "INTO", "FROM", "WHERE", "GROUP",
    "BY", "HAVING", "ORDER", "ASC", "DESC", "AS", "INNER", "LEFT", "RIGHT", "OUTER",
    "JOIN", "ON", "IN", "AND", "OR", "NOT", "XOR", "EQV", "IMP", "MOD", "LIKE", "IS",
    "NULL", "BETWEEN", "EXISTS", "TRUE", "FALSE", "INSERT", "VALUES", "UPDATE", "SET",
    "DELETE", "DROP", "TABLE", "UNION", "PERCENT"};

}  // namespace

// Deep enough for any real statement (the largest of the system nests about
// ten levels), shallow enough for the recursion to stay far from the stack's end.
constexpr int kMaxDepth = 200;

Parser::DepthGuard::DepthGuard(Parser& parser) : parser_(parser) {
  if (++parser_.depth_ > kMaxDepth) {
    --parser_.depth_;
    FailAt(parser_.source_, parser_.Peek().pos, "La instrucción tiene demasiados niveles anidados");
  }
}

Parser::Parser(std::string_view source) : source_(source), tokens_(Tokenize(source)) {}

const Token& Parser::Peek(std::size_t ahead) const {
  std::size_t i = index_ + ahead;
  return i < tokens_.size() ? tokens_[i] : tokens_.back();
}

const Token& Parser::Next() {
  const Token& t = Peek();
  if (index_ + 1 < tokens_.size()) ++index_;
  return t;
}

bool Parser::IsKeyword(const Token& t, std::string_view word) const {
  return t.kind == TokenKind::kName && !t.bracketed && SameName(t.text, word);
}

bool Parser::AtKeyword(std::string_view word, std::size_t ahead) const {
  return IsKeyword(Peek(ahead), word);
}

bool Parser::AtSymbol(std::string_view symbol, std::size_t ahead) const {
  const Token& t = Peek(ahead);
  return t.kind == TokenKind::kSymbol && t.text == symbol;
}

bool Parser::AcceptKeyword(std::string_view word) {
  if (!AtKeyword(word)) return false;
  Next();
  return true;
}

bool Parser::AcceptSymbol(std::string_view symbol) {
  if (!AtSymbol(symbol)) return false;
  Next();
  return true;
}

void Parser::ExpectKeyword(std::string_view word) {
  if (!AcceptKeyword(word)) Expected(word);
}

void Parser::ExpectSymbol(std::string_view symbol) {
  if (!AcceptSymbol(symbol)) Expected("'" + std::string(symbol) + "'");
}

void Parser::Expected(std::string_view what) const {
  const Token& t = Peek();
  std::string found;
  switch (t.kind) {
    case TokenKind::kEnd: break;
    case TokenKind::kString: found = "'" + t.text + "'"; break;
    case TokenKind::kName: found = t.bracketed ? "[" + t.text + "]" : t.text; break;
    default: found = t.text; break;
  }
  FailSyntax(source_, t.pos, what, found);
}

bool Parser::IsReserved(const Token& t) const {
  if (t.kind != TokenKind::kName || t.bracketed) return false;
  for (std::string_view word : kReserved) {
    if (SameName(t.text, word)) return true;
  }
  return false;
}

Name Parser::ExpectName(std::string_view what) {
  const Token& t = Peek();
  if (t.kind != TokenKind::kName || IsReserved(t)) Expected(what);
  Next();
  return Name{t.text, t.bracketed, t.pos};
}

Statement Parser::ParseStatement() {
  Statement statement;
  if (AtKeyword("SELECT")) {
    statement = SelectStatement{ParseSelect()};
  } else if (AtKeyword("INSERT")) {
    statement = ParseInsert();
  } else if (AtKeyword("UPDATE")) {
    statement = ParseUpdate();
  } else if (AtKeyword("DELETE")) {
    statement = ParseDelete();
  } else if (AtKeyword("DROP")) {
    statement = ParseDrop();
  } else if (AtKeyword("CREATE") || AtKeyword("ALTER") || AtKeyword("TRANSFORM") ||
             AtKeyword("PARAMETERS")) {
    FailUnsupported(source_, Peek().pos, "la instrucción " + Peek().text);
  } else {
    Expected("SELECT, INSERT, UPDATE, DELETE o DROP");
  }
  AcceptSymbol(";");
  if (Peek().kind != TokenKind::kEnd) {
    if (AtKeyword("PERCENT")) FailUnsupported(source_, Peek().pos, "TOP ... PERCENT");
    Expected("el final de la instrucción");
  }
  return statement;
}

}  // namespace db::jet
