// db/jet/emitter_expr.cpp — expressions in value and boolean context.
//
// Value context yields what Jet yields: a comparison is -1, 0 or Null, so it
// is written -(a = b). Boolean context yields an SQLite truth value: native
// comparisons and AND/OR/NOT, and any other value v as (v <> 0). Jet's & and
// its bitwise logic on numbers go through the jet_* functions.
#include <string>

#include "db/jet/collation.h"
#include "db/jet/emitter.h"
#include "db/jet/emitter_functions.h"
#include "db/jet/emitter_text.h"

namespace db::jet {
namespace {

bool IsComparison(Op op) {
  return op == Op::kEq || op == Op::kNe || op == Op::kLt || op == Op::kGt || op == Op::kLe ||
         op == Op::kGe;
}

const char* ComparisonText(Op op) {
  switch (op) {
    case Op::kEq: return "=";
    case Op::kNe: return "<>";
    case Op::kLt: return "<";
    case Op::kGt: return ">";
    case Op::kLe: return "<=";
    default: return ">=";
  }
}

const char* LogicFunction(Op op) {
  switch (op) {
    case Op::kAnd: return "jet_and";
    case Op::kOr: return "jet_or";
    case Op::kXor: return "jet_xor";
    case Op::kEqv: return "jet_eqv";
    default: return "jet_imp";
  }
}

std::string Call2(const char* function, const std::string& a, const std::string& b) {
  return std::string(function) + "(" + a + ", " + b + ")";
}

bool IsAggregate(std::string_view name) {
  for (const char* aggregate : {"Max", "Min", "Sum", "Count", "Avg"}) {
    if (SameName(name, aggregate)) return true;
  }
  return false;
}

bool IsNumberLiteral(const Expr& e) {
  if (e.kind == ExprKind::kNumber) return true;
  return e.kind == ExprKind::kUnary && e.op == Op::kNeg && e.args[0]->kind == ExprKind::kNumber;
}

// Whether function `name` reads its arguments as texts, so that a date passed
// to it is its implicit text (InStr's start and Mid's lengths are numbers,
// never dates).
bool ReadsText(std::string_view name) {
  for (const char* function : {"Left", "Right", "Mid", "Len", "Trim", "LTrim", "RTrim", "UCase",
                               "LCase", "Upper", "Lower", "InStr", "InStrRev", "Replace",
                               "StrReverse", "Asc"}) {
    if (SameName(name, function)) return true;
  }
  return false;
}

// Whether `e` is known to be a date while translating: a #...# literal or a
// function that returns a date. Dates are ISO texts, so comparing one with a
// number must compare its serial instead.
bool IsKnownDate(const Expr& e) {
  static const char* const kDateFunctions[] = {"Date", "Now", "CDate", "DateSerial",
                                               "DateAdd", "DateValue", "TimeValue"};
  if (e.kind == ExprKind::kDate) return true;
  if (e.kind != ExprKind::kCall) return false;
  for (const char* name : kDateFunctions) {
    if (SameName(e.text, name)) return true;
  }
  return false;
}

}  // namespace

bool Emitter::IsBoolean(const Expr& e) const {
  switch (e.kind) {
    case ExprKind::kIsNull:
    case ExprKind::kInList:
    case ExprKind::kInSelect:
    case ExprKind::kBetween:
    case ExprKind::kExists:
      return true;
    case ExprKind::kBinary:
      if (IsComparison(e.op) || e.op == Op::kLike) return true;
      if (e.op == Op::kAnd || e.op == Op::kOr) return IsBoolean(*e.args[0]) && IsBoolean(*e.args[1]);
      return false;
    case ExprKind::kUnary:
      return e.op == Op::kNot && IsBoolean(*e.args[0]);
    case ExprKind::kCall:
      return SameName(e.text, "IsNull");
    default:
      return false;
  }
}

std::string Emitter::Value(const Expr& e) {
  switch (e.kind) {
    case ExprKind::kNumber: return e.text;
    case ExprKind::kString: return SqliteString(e.text);
    case ExprKind::kDate: return SqliteString(e.text);
    case ExprKind::kBool: return e.boolean_value ? "-1" : "0";
    case ExprKind::kNull: return "NULL";
    case ExprKind::kColumn:
      if (e.qualifier) return EmitQualifier(*e.qualifier) + "." + SqliteIdentifier(e.name.text);
      return SqliteIdentifier(e.name.text);
    case ExprKind::kStar:
      FailUnsupported(source_, e.pos, "'*' dentro de una expresión");
    case ExprKind::kSubquery: {
      // Jet stops when a subquery used as a value gives several rows; SQLite
      // would take the first. jet_one, an aggregate, fails on a second row;
      // the CTE names the single column whatever the select calls it.
      // A select without FROM, with Top 1, or of one aggregate without Group
      // By gives one row at most and is left as it is.
      const Select& sub = *e.select;
      bool checkable = sub.unions.empty() && sub.items.size() == 1 &&
                       sub.items[0].expr->kind != ExprKind::kStar;
      const Expr& item = *sub.items[0].expr;
      bool one_row = sub.from.empty() || (sub.top && *sub.top == "1") ||
                     (sub.group_by.empty() && item.kind == ExprKind::kCall &&
                      IsAggregate(item.text));
      if (!checkable || one_row) return "(" + EmitSelect(sub) + ")";
      // Doubled parentheses: callers strip one pair from an operand.
      return "((WITH jet_sub(v) AS (" + EmitSelect(sub) + ") SELECT jet_one(v) FROM jet_sub))";
    }
    case ExprKind::kCall:
      return Call(e, false);
    case ExprKind::kUnary:
      if (e.op == Op::kNeg) {
        const Expr& operand = *e.args[0];
        if (operand.kind == ExprKind::kNumber) return "-" + operand.text;
        return "jet_neg(" + StripOuterParens(Value(operand)) + ")";
      }
      if (IsBoolean(e)) return "-" + Bool(e);
      return "jet_not(" + Value(*e.args[0]) + ")";
    case ExprKind::kBinary:
      break;
    default:  // Is Null, In, Between, Exists
      return "-" + Bool(e);
  }
  if (IsBoolean(e) && !(e.op == Op::kLike && !e.negated)) return "-" + Bool(e);
  // Operands are emitted left to right (databases attach in reading order).
  std::string a = Value(*e.args[0]);
  std::string b = Value(*e.args[1]);
  // Jet's implicit text of a date is the one CStr gives ("29/02/2024").
  if (e.op == Op::kConcat) {
    a = ImplicitText(*e.args[0], std::move(a));
    b = ImplicitText(*e.args[1], std::move(b));
  }
  if (e.op == Op::kLike) a = ImplicitText(*e.args[0], std::move(a));
  // Two number literals cannot hold a text or a date: SQLite's arithmetic is Jet's.
  bool literals = IsNumberLiteral(*e.args[0]) && IsNumberLiteral(*e.args[1]);
  switch (e.op) {
    case Op::kAdd: return literals ? "(" + a + " + " + b + ")" : Call2("jet_add", a, b);
    case Op::kSub: return literals ? "(" + a + " - " + b + ")" : Call2("jet_sub", a, b);
    case Op::kMul: return literals ? "(" + a + " * " + b + ")" : Call2("jet_mul", a, b);
    case Op::kDiv: return Call2("jet_div", a, b);
    case Op::kIntDiv: return Call2("jet_intdiv", a, b);
    case Op::kMod: return Call2("jet_mod", a, b);
    case Op::kPow: return Call2("jet_pow", a, b);
    case Op::kConcat: return Call2("jet_concat", a, b);
    case Op::kLike: return Call2("jet_like", a, b);
    default:  // And, Or on values; Xor, Eqv, Imp
      return Call2(LogicFunction(e.op), a, b);
  }
}

std::string Emitter::Comparison(const Expr& e) {
  const Expr& a = *e.args[0];
  const Expr& b = *e.args[1];
  // x = True is "x is true" (any nonzero), not x = -1: Yes/No columns written
  // by other programs may hold 1.
  if ((e.op == Op::kEq || e.op == Op::kNe) &&
      (a.kind == ExprKind::kBool || b.kind == ExprKind::kBool)) {
    const Expr& literal = a.kind == ExprKind::kBool ? a : b;
    const Expr& other = a.kind == ExprKind::kBool ? b : a;
    bool is_true = literal.boolean_value == (e.op == Op::kEq);
    return "(" + Value(other) + (is_true ? " <> 0)" : " = 0)");
  }
  std::string left = Value(a);
  std::string right = Value(b);
  if (IsKnownDate(a) && IsNumberLiteral(b)) left = "jet_cdbl(" + StripOuterParens(left) + ")";
  if (IsKnownDate(b) && IsNumberLiteral(a)) right = "jet_cdbl(" + StripOuterParens(right) + ")";
  // A column's kind asks the database for its table's declaration; when the
  // other side already rules out a text comparison (a number or a date), the
  // column's kind changes nothing and is not asked for.
  auto excludes_text = [](Kind kind) { return kind == Kind::kNumber || kind == Kind::kDate; };
  Kind left_kind;
  Kind right_kind;
  if (a.kind == ExprKind::kColumn && b.kind != ExprKind::kColumn) {
    right_kind = KindOf(b);
    left_kind = excludes_text(right_kind) ? right_kind : KindOf(a);
  } else if (b.kind == ExprKind::kColumn && a.kind != ExprKind::kColumn) {
    left_kind = KindOf(a);
    right_kind = excludes_text(left_kind) ? left_kind : KindOf(b);
  } else {
    left_kind = KindOf(a);
    right_kind = KindOf(b);
  }
  // A date compared with a text expression (not a column: stored dates are
  // texts too) is compared as the text CStr shows.
  if (IsKnownDate(a) && right_kind == Kind::kText && b.kind != ExprKind::kColumn) {
    left = ImplicitText(a, std::move(left));
    left_kind = Kind::kText;
  }
  if (IsKnownDate(b) && left_kind == Kind::kText && a.kind != ExprKind::kColumn) {
    right = ImplicitText(b, std::move(right));
    right_kind = Kind::kText;
  }
  if (IsTextual(left_kind, right_kind) &&
      !NativeComparisonSuffices(a, b, e.op == Op::kEq || e.op == Op::kNe)) {
    right += std::string(" COLLATE ") + kCollationName;
  }
  return "(" + left + " " + ComparisonText(e.op) + " " + right + ")";
}

std::string Emitter::Bool(const Expr& e) {
  switch (e.kind) {
    case ExprKind::kBool: return e.boolean_value ? "1" : "0";
    case ExprKind::kNull: return "NULL";
    case ExprKind::kIsNull:
      return "(" + Value(*e.args[0]) + (e.negated ? " IS NOT NULL)" : " IS NULL)");
    case ExprKind::kInList: {
      std::string left = Value(*e.args[0]);
      std::string list;
      bool textual = false;
      Kind left_kind = KindOf(*e.args[0]);
      for (std::size_t i = 1; i < e.args.size(); ++i) {
        if (i > 1) list += ", ";
        list += Value(*e.args[i]);
        textual = textual || (IsTextual(left_kind, KindOf(*e.args[i])) &&
                              !NativeComparisonSuffices(*e.args[0], *e.args[i], true));
      }
      if (textual) left += std::string(" COLLATE ") + kCollationName;
      return "(" + left + (e.negated ? " NOT IN (" : " IN (") + list + "))";
    }
    case ExprKind::kInSelect: {
      std::string left = Value(*e.args[0]);
      if (IsTextual(KindOf(*e.args[0]), FirstItemKind(*e.select))) {
        left += std::string(" COLLATE ") + kCollationName;
      }
      return "(" + left + (e.negated ? " NOT IN (" : " IN (") + EmitSelect(*e.select) + "))";
    }
    case ExprKind::kBetween: {
      std::string value = Value(*e.args[0]);
      std::string low = Value(*e.args[1]);
      std::string high = Value(*e.args[2]);
      Kind kind = KindOf(*e.args[0]);
      if (IsTextual(kind, KindOf(*e.args[1])) || IsTextual(kind, KindOf(*e.args[2]))) {
        value += std::string(" COLLATE ") + kCollationName;
      }
      return "(" + value + (e.negated ? " NOT BETWEEN " : " BETWEEN ") + low + " AND " + high +
             ")";
    }
    case ExprKind::kExists:
      return "(EXISTS (" + EmitSelect(*e.select) + "))";
    case ExprKind::kCall:
      if (SameName(e.text, "IsNull")) return Call(e, true);
      break;
    case ExprKind::kUnary:
      if (e.op == Op::kNot) return "(NOT " + Bool(*e.args[0]) + ")";
      break;
    case ExprKind::kBinary:
      if (IsComparison(e.op)) return Comparison(e);
      if (e.op == Op::kLike) {
        std::string text = Value(*e.args[0]);
        std::string pattern = Value(*e.args[1]);
        std::string like = "(" + Call2("jet_like", text, pattern) + " <> 0)";
        return e.negated ? "(NOT " + like + ")" : like;
      }
      if (e.op == Op::kAnd || e.op == Op::kOr) {
        std::string left = Bool(*e.args[0]);
        std::string right = Bool(*e.args[1]);
        return "(" + left + (e.op == Op::kAnd ? " AND " : " OR ") + right + ")";
      }
      break;
    default:
      break;
  }
  return "(" + Value(e) + " <> 0)";
}

std::string Emitter::Call(const Expr& e, bool boolean) {
  const FunctionInfo* info = FindFunction(e.text);
  if (info == nullptr) FailAt(source_, e.pos, "Función desconocida '" + e.text + "'");
  if (info->kind == FunctionKind::kUnsupported) {
    FailUnsupported(source_, e.pos, "la función " + std::string(info->jet_name));
  }
  int count = static_cast<int>(e.args.size());
  if (count < info->min_args || count > info->max_args) {
    std::string expected = std::to_string(info->min_args);
    if (info->max_args != info->min_args) expected += " a " + std::to_string(info->max_args);
    FailAt(source_, e.pos,
           "La función " + std::string(info->jet_name) + " espera " + expected +
               (info->max_args == 1 ? " argumento" : " argumentos") + " y recibió " +
               std::to_string(count));
  }
  bool star = count == 1 && e.args[0]->kind == ExprKind::kStar;
  if (star && !(SameName(info->jet_name, "Count") && !e.args[0]->qualifier)) {
    FailUnsupported(source_, e.args[0]->pos, "'*' como argumento de " + std::string(info->jet_name));
  }

  if (info->kind == FunctionKind::kInline) {
    if (SameName(info->jet_name, "IsNull")) {
      std::string test = "(" + Value(*e.args[0]) + " IS NULL)";
      return boolean ? test : "-" + test;
    }
    // IIf: a Null condition takes the else branch, as CASE does.
    std::string condition = StripOuterParens(Bool(*e.args[0]));
    std::string then_value = StripOuterParens(Value(*e.args[1]));
    std::string else_value = StripOuterParens(Value(*e.args[2]));
    return "CASE WHEN " + condition + " THEN " + then_value + " ELSE " + else_value + " END";
  }
  std::string text = std::string(info->sqlite_name) + "(";
  if (star) {
    text += "*";
  } else {
    // Max and Min of texts take Jet's order; the text functions read a date
    // as the text CStr shows.
    bool ordered = SameName(info->jet_name, "Max") || SameName(info->jet_name, "Min");
    bool reads_text = ReadsText(info->jet_name);
    for (std::size_t i = 0; i < e.args.size(); ++i) {
      if (i > 0) text += ", ";
      std::string arg = StripOuterParens(Value(*e.args[i]));
      if (ordered) arg = Collated(*e.args[i], std::move(arg));
      if (reads_text) arg = ImplicitText(*e.args[i], std::move(arg));
      text += arg;
    }
  }
  return text + ")";
}

}  // namespace db::jet
