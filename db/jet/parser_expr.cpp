// db/jet/parser_expr.cpp — expressions, one function per precedence level.
//
// Jet binds, from lowest to highest: Imp, Eqv, Xor, Or, And, Not, the
// comparisons, &, + and -, Mod, \, * and /, unary minus, ^. So
// `1000000000+id & 'x'` is `(1000000000+id) & 'x'` and `Not x Is Null` is
// `Not (x Is Null)`. Binary operators associate to the left.
#include <algorithm>

#include "db/jet/parser.h"

namespace db::jet {
namespace {

ExprPtr MakeBinary(Op op, std::size_t pos, ExprPtr left, ExprPtr right) {
  auto e = std::make_unique<Expr>();
  e->kind = ExprKind::kBinary;
  e->op = op;
  e->pos = pos;
  e->args.push_back(std::move(left));
  e->args.push_back(std::move(right));
  return e;
}

ExprPtr MakeUnary(Op op, std::size_t pos, ExprPtr operand) {
  auto e = std::make_unique<Expr>();
  e->kind = ExprKind::kUnary;
  e->op = op;
  e->pos = pos;
  e->args.push_back(std::move(operand));
  return e;
}

}  // namespace

// Operator chains are parsed in loops, so their trees can grow without the
// parser recursing; the tree's height is limited here instead, because
// emitting and freeing a tree recurses once per level. Every node that nests
// counts: operators, calls, subqueries, Exists, In (Select ...), joins, so
// that a limit cannot restart inside a call or a subquery.
constexpr int kMaxHeight = 500;

void Parser::CheckHeight(int height, std::size_t pos) const {
  if (height > kMaxHeight) {
    FailAt(source_, pos, "La instrucción tiene demasiados niveles anidados");
  }
}

ExprPtr Parser::Checked(ExprPtr e) {
  for (const ExprPtr& arg : e->args) e->height = std::max(e->height, arg->height + 1);
  if (e->select) e->height = std::max(e->height, e->select->height + 1);
  CheckHeight(e->height, e->pos);
  return e;
}

void Parser::CheckedSelect(Select& select) const {
  auto take = [&select](int height) { select.height = std::max(select.height, height + 1); };
  for (const SelectItem& item : select.items) take(item.expr->height);
  for (const FromItemPtr& item : select.from) take(item->height);
  if (select.where) take(select.where->height);
  for (const ExprPtr& e : select.group_by) take(e->height);
  if (select.having) take(select.having->height);
  for (const UnionPart& part : select.unions) take(part.select->height);
  for (const OrderItem& item : select.order_by) take(item.expr->height);
  CheckHeight(select.height, select.pos);
}

FromItemPtr Parser::CheckedFrom(FromItemPtr item) const {
  auto take = [&item](int height) { item->height = std::max(item->height, height + 1); };
  if (item->subquery) take(item->subquery->height);
  if (item->left) take(item->left->height);
  if (item->right) take(item->right->height);
  if (item->on) take(item->on->height);
  CheckHeight(item->height, item->pos);
  return item;
}

ExprPtr Parser::ParseExpr() {
  DepthGuard guard(*this);
  return ParseImp();
}

std::vector<ExprPtr> Parser::ParseExprList() {
  std::vector<ExprPtr> list;
  do {
    list.push_back(ParseExpr());
  } while (AcceptSymbol(","));
  return list;
}

ExprPtr Parser::ParseImp() {
  ExprPtr left = ParseEqv();
  while (AtKeyword("IMP")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kImp, pos, std::move(left), ParseEqv()));
  }
  return left;
}

ExprPtr Parser::ParseEqv() {
  ExprPtr left = ParseXor();
  while (AtKeyword("EQV")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kEqv, pos, std::move(left), ParseXor()));
  }
  return left;
}

ExprPtr Parser::ParseXor() {
  ExprPtr left = ParseOr();
  while (AtKeyword("XOR")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kXor, pos, std::move(left), ParseOr()));
  }
  return left;
}

ExprPtr Parser::ParseOr() {
  ExprPtr left = ParseAnd();
  while (AtKeyword("OR")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kOr, pos, std::move(left), ParseAnd()));
  }
  return left;
}

ExprPtr Parser::ParseAnd() {
  ExprPtr left = ParseNot();
  while (AtKeyword("AND")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kAnd, pos, std::move(left), ParseNot()));
  }
  return left;
}

ExprPtr Parser::ParseNot() {
  if (AtKeyword("NOT")) {
    DepthGuard guard(*this);
    std::size_t pos = Next().pos;
    return Checked(MakeUnary(Op::kNot, pos, ParseNot()));
  }
  return ParseComparison();
}

ExprPtr Parser::ParseComparison() {
  ExprPtr left = ParseConcat();
  while (true) {
    const Token& t = Peek();
    std::size_t pos = t.pos;
    if (t.kind == TokenKind::kSymbol) {
      static const struct { const char* text; Op op; } kOps[] = {
          {"=", Op::kEq}, {"<>", Op::kNe}, {"<", Op::kLt},
          {">", Op::kGt}, {"<=", Op::kLe}, {">=", Op::kGe}};
      bool found = false;
      for (const auto& entry : kOps) {
        if (t.text == entry.text) {
          Next();
          left = Checked(MakeBinary(entry.op, pos, std::move(left), ParseConcat()));
          found = true;
          break;
        }
      }
      if (found) continue;
      return left;
    }
    if (AtKeyword("IS")) {
      Next();
      auto e = std::make_unique<Expr>();
      e->kind = ExprKind::kIsNull;
      e->pos = pos;
      e->negated = AcceptKeyword("NOT");
      if (!AcceptKeyword("NULL")) Expected("NULL después de IS");
      e->args.push_back(std::move(left));
      left = Checked(std::move(e));
      continue;
    }
    bool negated = false;
    if (AtKeyword("NOT") && (AtKeyword("IN", 1) || AtKeyword("LIKE", 1) ||
                             AtKeyword("BETWEEN", 1))) {
      Next();
      negated = true;
    }
    if (AtKeyword("LIKE")) {
      Next();
      left = Checked(MakeBinary(Op::kLike, pos, std::move(left), ParseConcat()));
      left->negated = negated;
    } else if (AtKeyword("BETWEEN")) {
      Next();
      auto e = std::make_unique<Expr>();
      e->kind = ExprKind::kBetween;
      e->pos = pos;
      e->negated = negated;
      e->args.push_back(std::move(left));
      e->args.push_back(ParseConcat());
      ExpectKeyword("AND");
      e->args.push_back(ParseConcat());
      left = Checked(std::move(e));
    } else if (AtKeyword("IN")) {
      Next();
      auto e = std::make_unique<Expr>();
      e->pos = pos;
      e->negated = negated;
      e->args.push_back(std::move(left));
      ExpectSymbol("(");
      if (AtKeyword("SELECT")) {
        e->kind = ExprKind::kInSelect;
        e->select = ParseSelect();
      } else {
        e->kind = ExprKind::kInList;
        for (ExprPtr& item : ParseExprList()) e->args.push_back(std::move(item));
      }
      ExpectSymbol(")");
      left = Checked(std::move(e));
    } else {
      return left;
    }
  }
}

ExprPtr Parser::ParseConcat() {
  ExprPtr left = ParseAdditive();
  while (AtSymbol("&")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kConcat, pos, std::move(left), ParseAdditive()));
  }
  return left;
}

ExprPtr Parser::ParseAdditive() {
  ExprPtr left = ParseMod();
  while (AtSymbol("+") || AtSymbol("-")) {
    const Token& t = Next();
    Op op = t.text == "+" ? Op::kAdd : Op::kSub;
    left = Checked(MakeBinary(op, t.pos, std::move(left), ParseMod()));
  }
  return left;
}

ExprPtr Parser::ParseMod() {
  ExprPtr left = ParseIntDiv();
  while (AtKeyword("MOD")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kMod, pos, std::move(left), ParseIntDiv()));
  }
  return left;
}

ExprPtr Parser::ParseIntDiv() {
  ExprPtr left = ParseMultiplicative();
  while (AtSymbol("\\")) {
    std::size_t pos = Next().pos;
    left = Checked(MakeBinary(Op::kIntDiv, pos, std::move(left), ParseMultiplicative()));
  }
  return left;
}

ExprPtr Parser::ParseMultiplicative() {
  ExprPtr left = ParseUnary();
  while (AtSymbol("*") || AtSymbol("/")) {
    const Token& t = Next();
    Op op = t.text == "*" ? Op::kMul : Op::kDiv;
    left = Checked(MakeBinary(op, t.pos, std::move(left), ParseUnary()));
  }
  return left;
}

ExprPtr Parser::ParseUnary() {
  if (AtSymbol("-") || AtSymbol("+")) {
    DepthGuard guard(*this);
    const Token& sign = Next();
    if (sign.text == "+") return ParseUnary();
    return Checked(MakeUnary(Op::kNeg, sign.pos, ParseUnary()));
  }
  return ParsePower();
}

ExprPtr Parser::ParsePower() {
  ExprPtr left = ParsePrimary();
  while (AtSymbol("^")) {
    std::size_t pos = Next().pos;
    // The exponent may carry its own sign: 2^-1.
    ExprPtr right;
    if (AtSymbol("-")) {
      std::size_t neg_pos = Next().pos;
      right = Checked(MakeUnary(Op::kNeg, neg_pos, ParsePrimary()));
    } else {
      right = ParsePrimary();
    }
    left = Checked(MakeBinary(Op::kPow, pos, std::move(left), std::move(right)));
  }
  return left;
}

ExprPtr Parser::ParsePrimary() {
  const Token& t = Peek();
  auto e = std::make_unique<Expr>();
  e->pos = t.pos;
  switch (t.kind) {
    case TokenKind::kNumber:
      e->kind = ExprKind::kNumber;
      e->text = Next().text;
      return e;
    case TokenKind::kString:
      e->kind = ExprKind::kString;
      e->text = Next().text;
      return e;
    case TokenKind::kDate:
      e->kind = ExprKind::kDate;
      e->text = Next().text;
      return e;
    case TokenKind::kEnd:
      Expected("una expresión");
    case TokenKind::kSymbol:
      if (t.text != "(") Expected("una expresión");
      Next();
      if (AtKeyword("SELECT")) {
        e->kind = ExprKind::kSubquery;
        e->select = ParseSelect();
        ExpectSymbol(")");
        return Checked(std::move(e));
      }
      e = ParseExpr();
      ExpectSymbol(")");
      return e;
    case TokenKind::kName:
      break;
  }
  if (IsKeyword(t, "NULL")) {
    Next();
    e->kind = ExprKind::kNull;
    return e;
  }
  if (IsKeyword(t, "TRUE") || IsKeyword(t, "FALSE")) {
    e->kind = ExprKind::kBool;
    e->boolean_value = IsKeyword(t, "TRUE");
    Next();
    return e;
  }
  if (IsKeyword(t, "EXISTS")) {
    Next();
    e->kind = ExprKind::kExists;
    ExpectSymbol("(");
    if (!AtKeyword("SELECT")) Expected("SELECT después de EXISTS (");
    e->select = ParseSelect();
    ExpectSymbol(")");
    return Checked(std::move(e));
  }
  if (IsKeyword(t, "SELECT")) FailSyntax(source_, t.pos, "'(' antes de SELECT", t.text);
  return ParseNameOrCall();
}

ExprPtr Parser::ParseNameOrCall() {
  const Token& t = Peek();
  auto e = std::make_unique<Expr>();
  e->pos = t.pos;
  if (!t.bracketed && AtSymbol("(", 1)) {
    e->kind = ExprKind::kCall;
    e->text = Next().text;
    Next();  // "("
    if (AtSymbol("*")) {
      auto star = std::make_unique<Expr>();
      star->kind = ExprKind::kStar;
      star->pos = Next().pos;
      e->args.push_back(std::move(star));
    } else if (!AtSymbol(")")) {
      if (AtKeyword("DISTINCT")) FailUnsupported(source_, Peek().pos, "DISTINCT dentro de una función");
      e->args = ParseExprList();
    }
    ExpectSymbol(")");
    return Checked(std::move(e));
  }
  Name first = ExpectName("una expresión");
  if (AtSymbol(".")) {
    Next();
    if (AtSymbol("*")) {
      e->kind = ExprKind::kStar;
      e->qualifier = first;
      Next();
      return e;
    }
    e->kind = ExprKind::kColumn;
    e->qualifier = first;
    e->name = ExpectName("un nombre de columna después de '.'");
    return e;
  }
  e->kind = ExprKind::kColumn;
  e->name = first;
  return e;
}

}  // namespace db::jet
