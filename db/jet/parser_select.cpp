// db/jet/parser_select.cpp — Select statements and FROM clauses.
#include <algorithm>
#include <string>
#include <utility>

#include "db/jet/parser.h"

namespace db::jet {

SelectPtr Parser::ParseSelect() {
  DepthGuard guard(*this);
  SelectPtr select = ParseSelectCore();
  while (AtKeyword("UNION")) {
    std::size_t pos = Next().pos;
    UnionPart part;
    part.all = AcceptKeyword("ALL");
    part.select = ParseSelectCore();
    if (select->into || part.select->into) FailUnsupported(source_, pos, "INTO con UNION");
    select->unions.push_back(std::move(part));
  }
  if (AtKeyword("ORDER")) {
    Next();
    ExpectKeyword("BY");
    do {
      OrderItem item;
      item.expr = ParseExpr();
      if (AcceptKeyword("DESC")) {
        item.descending = true;
      } else {
        AcceptKeyword("ASC");
      }
      select->order_by.push_back(std::move(item));
    } while (AcceptSymbol(","));
  }
  CheckedSelect(*select);
  return select;
}

SelectPtr Parser::ParseSelectCore() {
  auto select = std::make_unique<Select>();
  select->pos = Peek().pos;
  ExpectKeyword("SELECT");
  if (AtKeyword("DISTINCTROW")) FailUnsupported(source_, Peek().pos, "DISTINCTROW");
  if (AcceptKeyword("DISTINCT")) select->distinct = true;
  if (AtKeyword("ALL")) Next();
  if (AtKeyword("TOP")) {
    Next();
    if (Peek().kind != TokenKind::kNumber || Peek().text.find_first_not_of("0123456789") !=
                                                 std::string::npos) {
      Expected("un número entero después de TOP");
    }
    select->top = Next().text;
    if (AtKeyword("PERCENT")) FailUnsupported(source_, Peek().pos, "TOP ... PERCENT");
  }

  do {
    SelectItem item;
    if (AtSymbol("*")) {
      item.expr = std::make_unique<Expr>();
      item.expr->kind = ExprKind::kStar;
      item.expr->pos = Next().pos;
    } else {
      item.expr = ParseExpr();
      if (AcceptKeyword("AS")) item.alias = ExpectName("un alias después de AS");
    }
    select->items.push_back(std::move(item));
  } while (AcceptSymbol(","));

  if (AcceptKeyword("INTO")) select->into = ParseTableRef();
  if (AcceptKeyword("FROM")) {
    // A subquery's FROM is counted apart from the enclosing one, as SQLite counts it.
    int enclosing_tables = std::exchange(from_tables_, 0);
    do {
      select->from.push_back(ParseFromItem());
    } while (AcceptSymbol(","));
    from_tables_ = enclosing_tables;
  }
  if (AcceptKeyword("WHERE")) select->where = ParseExpr();
  if (AtKeyword("GROUP")) {
    Next();
    ExpectKeyword("BY");
    select->group_by = ParseExprList();
  }
  if (AcceptKeyword("HAVING")) select->having = ParseExpr();
  CheckedSelect(*select);
  return select;
}

TableRef Parser::ParseTableRef() {
  TableRef ref;
  ref.name = ExpectName("un nombre de tabla");
  if (AtSymbol(".") && Peek(1).kind == TokenKind::kName) {
    FailUnsupported(source_, Peek().pos, "un nombre de tabla con prefijo de base de datos");
  }
  ParseInClause(ref);
  return ref;
}

namespace {

// The value of `key` ("DATABASE") in a connect string "MS Access;PWD=x;DATABASE=p".
std::optional<std::string> ConnectValue(const std::string& connect, std::string_view key) {
  std::size_t start = 0;
  while (start <= connect.size()) {
    std::size_t end = connect.find(';', start);
    if (end == std::string::npos) end = connect.size();
    std::string part = connect.substr(start, end - start);
    std::size_t equals = part.find('=');
    if (equals != std::string::npos) {
      std::string name = part.substr(0, equals);
      while (!name.empty() && name.back() == ' ') name.pop_back();
      while (!name.empty() && name.front() == ' ') name.erase(0, 1);
      if (SameName(name, key)) return part.substr(equals + 1);
    }
    start = end + 1;
  }
  return std::nullopt;
}

bool IsAccessType(const std::string& connect) {
  std::string type = connect.substr(0, connect.find(';'));
  return type.empty() || SameName(type, "MS Access");
}

}  // namespace

// Jet's three spellings of the cross-database clause:
//   T in 'path'                       the usual one
//   T in 'path' 'MS Access;PWD=x'     with the database type and password
//   T in '' [MS Access;PWD=x;DATABASE=path]
// The databases are SQLite files here, which have no password to give.
void Parser::ParseInClause(TableRef& ref) {
  if (!AtKeyword("IN") || Peek(1).kind != TokenKind::kString) return;
  Next();
  ref.database_pos = Peek().pos;
  ref.database = Next().text;
  if (Peek().kind == TokenKind::kString) {
    const Token& type = Next();
    if (!IsAccessType(type.text)) {
      FailUnsupported(source_, type.pos, "el tipo de base de datos '" + type.text + "'");
    }
  } else if (Peek().kind == TokenKind::kName && Peek().bracketed) {
    const Token& connect = Next();
    if (!IsAccessType(connect.text)) {
      FailUnsupported(source_, connect.pos, "la conexión externa [" + connect.text + "]");
    }
    std::optional<std::string> path = ConnectValue(connect.text, "DATABASE");
    if (!ref.database->empty() || !path || path->empty()) {
      FailAt(source_, connect.pos, "Falta DATABASE=<ruta> en la conexión externa");
    }
    ref.database = *path;
    ref.database_pos = connect.pos;
  }
  if (ref.database->empty()) FailAt(source_, ref.database_pos, "Falta la ruta de la base de datos en IN");
  if (std::find(database_paths_.begin(), database_paths_.end(), *ref.database) == database_paths_.end())
    database_paths_.push_back(*ref.database);
}

std::optional<Name> Parser::ParseOptionalAlias() {
  if (AcceptKeyword("AS")) return ExpectName("un alias después de AS");
  const Token& t = Peek();
  if (t.kind == TokenKind::kName && !IsReserved(t)) {
    Next();
    return Name{t.text, t.bracketed, t.pos};
  }
  return std::nullopt;
}

FromItemPtr Parser::ParseFromItem() {
  DepthGuard guard(*this);
  FromItemPtr left = ParseFromPrimary();
  while (true) {
    std::size_t pos = Peek().pos;
    JoinType type;
    if (AtKeyword("INNER")) {
      type = JoinType::kInner;
    } else if (AtKeyword("LEFT")) {
      type = JoinType::kLeft;
    } else if (AtKeyword("RIGHT")) {
      type = JoinType::kRight;
    } else if (AtKeyword("JOIN")) {
      Expected("INNER, LEFT o RIGHT antes de JOIN");
    } else {
      return left;
    }
    Next();
    if (type != JoinType::kInner) AcceptKeyword("OUTER");
    ExpectKeyword("JOIN");
    auto join = std::make_unique<FromItem>();
    join->kind = FromItem::Kind::kJoin;
    join->pos = pos;
    join->join = type;
    join->left = std::move(left);
    join->right = ParseFromPrimary();
    ExpectKeyword("ON");
    join->on = ParseExpr();
    left = CheckedFrom(std::move(join));
  }
}

// SQLite's own limit on the tables of one join.
constexpr int kMaxFromTables = 64;

FromItemPtr Parser::ParseFromPrimary() {
  auto item = std::make_unique<FromItem>();
  item->pos = Peek().pos;
  if (!AtSymbol("(") || AtKeyword("SELECT", 1)) {
    if (++from_tables_ > kMaxFromTables) {
      FailAt(source_, item->pos,
             "La cláusula FROM une más de " + std::to_string(kMaxFromTables) + " tablas");
    }
  }
  if (AcceptSymbol("(")) {
    if (AtKeyword("SELECT")) {
      item->kind = FromItem::Kind::kSubquery;
      item->subquery = ParseSelect();
      ExpectSymbol(")");
      item->alias = ParseOptionalAlias();
      return CheckedFrom(std::move(item));
    }
    // A parenthesised join: "(A inner join B on ...) inner join C on ...".
    FromItemPtr inner = ParseFromItem();
    ExpectSymbol(")");
    if (inner->kind != FromItem::Kind::kJoin && !inner->alias) inner->alias = ParseOptionalAlias();
    return inner;
  }
  item->kind = FromItem::Kind::kTable;
  item->table = ParseTableRef();
  item->alias = ParseOptionalAlias();
  // Jet also accepts the IN clause after the alias: "T as A in 'path'".
  if (!item->table.database) ParseInClause(item->table);
  return item;
}

}  // namespace db::jet
