// db/jet/emitter_kinds.cpp — what the operands of an expression hold (text,
// number, date or unknown), as far as the statement and the tables' declared
// types tell.
//
// Two translations depend on it. Jet compares texts in its Spanish
// case-insensitive order, so wherever the operands are text the comparison,
// grouping or sorting names the collation jet_es; where an operand is a number
// or a date it does not, which keeps SQLite's indexes on numeric ids usable
// (an index serves a comparison only under the index's own collation). And a
// date used where Jet wants text is shown as CStr shows it.
#include <string>

#include "db/jet/collation.h"
#include "db/jet/emitter.h"
#include "db/jet/emitter_text.h"

namespace db::jet {
namespace {

bool IsOneOf(std::string_view name, std::initializer_list<const char*> names) {
  for (const char* candidate : names) {
    if (SameName(name, candidate)) return true;
  }
  return false;
}

// A declared column type read as SQLite reads its affinity, with dates apart.
Emitter::Kind KindOfDeclaredType(const std::string& declared) {
  std::string type;
  for (char c : declared) type += (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
  auto has = [&](const char* part) { return type.find(part) != std::string::npos; };
  if (has("INT")) return Emitter::Kind::kNumber;
  if (has("CHAR") || has("CLOB") || has("TEXT")) return Emitter::Kind::kText;
  if (type.empty() || has("BLOB")) return Emitter::Kind::kUnknown;
  if (has("DATE") || has("TIME")) return Emitter::Kind::kDate;
  return Emitter::Kind::kNumber;  // REAL, DOUBLE, NUMERIC, BOOLEAN, CURRENCY...
}

}  // namespace

bool Emitter::IsTextual(Kind a, Kind b) {
  if (a == Kind::kNumber || a == Kind::kDate || b == Kind::kNumber || b == Kind::kDate) return false;
  return true;
}

std::string Emitter::Collated(const Expr& e, std::string text) {
  Kind kind = KindOf(e);
  if (kind != Kind::kText && kind != Kind::kUnknown) return text;
  // A column declared plain TEXT is one of the schemas' dates (ISO texts,
  // whose binary order is their date order): sorted natively, the index on it
  // serves the sort.
  if (ColumnCollation(e) == "BINARY") return text;
  return text + " COLLATE " + kCollationName;
}

Emitter::Kind Emitter::KindOf(const Expr& e) {
  switch (e.kind) {
    case ExprKind::kString: return Kind::kText;
    case ExprKind::kNumber:
    case ExprKind::kBool: return Kind::kNumber;
    case ExprKind::kDate: return Kind::kDate;
    case ExprKind::kNull:
    case ExprKind::kStar: return Kind::kUnknown;
    case ExprKind::kColumn: return ColumnKind(e);
    case ExprKind::kSubquery: return e.select ? FirstItemKind(*e.select) : Kind::kUnknown;
    case ExprKind::kCall: {
      const std::string& name = e.text;
      if (IsOneOf(name, {"Trim", "LTrim", "RTrim", "Left", "Right", "Mid", "UCase", "LCase", "Upper",
                         "Lower", "Format", "CStr", "Space", "Replace", "Chr", "String",
                         "StrReverse", "MonthName", "Str"})) {
        return Kind::kText;
      }
      if (IsOneOf(name, {"Date", "Now", "CDate", "DateSerial", "DateAdd", "DateValue", "TimeValue"})) {
        return Kind::kDate;
      }
      if (IsOneOf(name, {"Nz", "Max", "Min"}) && !e.args.empty()) return KindOf(*e.args[0]);
      if (SameName(name, "IIf") && e.args.size() == 3) {
        Kind a = KindOf(*e.args[1]);
        Kind b = KindOf(*e.args[2]);
        if (e.args[1]->kind == ExprKind::kNull) return b;
        if (e.args[2]->kind == ExprKind::kNull) return a;
        return a == b ? a : Kind::kUnknown;
      }
      return Kind::kNumber;
    }
    case ExprKind::kBinary: {
      if (e.op == Op::kConcat) return Kind::kText;
      if (e.op == Op::kAdd || e.op == Op::kSub) {
        Kind a = KindOf(*e.args[0]);
        Kind b = KindOf(*e.args[1]);
        if (a == Kind::kDate && b != Kind::kDate) return Kind::kDate;
        if (e.op == Op::kAdd && b == Kind::kDate && a != Kind::kDate) return Kind::kDate;
      }
      return Kind::kNumber;
    }
    default:  // unary minus and Not, Is Null, In, Between, Exists
      return Kind::kNumber;
  }
}

// A scalar subquery may name the enclosing query's tables, so its scope keeps
// the enclosing one as parent.
Emitter::Kind Emitter::FirstItemKind(const Select& select) {
  if (select.items.empty()) return Kind::kUnknown;
  const SelectItem& item = select.items[0];
  if (item.expr->kind == ExprKind::kStar) return Kind::kUnknown;
  Scope scope;
  for (const FromItemPtr& from : select.from) AddScopeEntries(*from, scope);
  ScopeGuard guard(*this, scope);
  return KindOf(*item.expr);
}

// A derived table cannot name the tables around it, so its scope has no
// parent (which also keeps a name it lacks from being looked up in the
// derived table itself again).
Emitter::Kind Emitter::OutputKind(const Select& select, std::string_view name, bool& found,
                                  std::string* declared) {
  Scope scope;
  for (const FromItemPtr& from : select.from) AddScopeEntries(*from, scope);
  ScopeGuard guard(*this, scope);
  scope.parent = nullptr;
  for (const SelectItem& item : select.items) {
    const Expr& e = *item.expr;
    bool named = item.alias ? SameName(item.alias->text, name)
                            : e.kind == ExprKind::kColumn && SameName(e.name.text, name);
    if (named) {
      found = true;
      // A column passed through keeps its table's declaration.
      if (e.kind == ExprKind::kColumn) {
        bool inner_found = false;
        return ScopeColumnKind(e, inner_found, declared);
      }
      return KindOf(e);
    }
    if (!item.alias && e.kind == ExprKind::kStar) {
      Expr column;
      column.kind = ExprKind::kColumn;
      column.qualifier = e.qualifier;
      column.name.text = std::string(name);
      bool inner_found = false;
      Kind kind = ScopeColumnKind(column, inner_found, declared);
      if (inner_found) {
        found = true;
        return kind;
      }
    }
  }
  return Kind::kUnknown;
}

Emitter::Kind Emitter::EntryColumnKind(const ScopeEntry& entry, std::string_view column, bool& found,
                                       std::string* declared) {
  if (entry.derived != nullptr) return OutputKind(*entry.derived, column, found, declared);
  if (entry.table == nullptr) return Kind::kUnknown;
  const TableRef& table = *entry.table;
  std::string schema = "main";
  if (table.database) {
    // Never attach from here: databases attach in the order the statement names them.
    auto attached = schemas_.find(*table.database);
    if (attached == schemas_.end()) return Kind::kUnknown;
    schema = attached->second;
  }
  std::string key = schema + "." + table.name.text;
  for (char& c : key) c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
  auto cached = column_types_.find(key);
  if (cached == column_types_.end()) {
    cached = column_types_.emplace(key, context_.table_column_types(schema, table.name.text)).first;
  }
  for (const auto& [name, type] : cached->second) {
    if (SameName(name, column)) {
      found = true;
      if (declared != nullptr) *declared = type;
      return KindOfDeclaredType(type);
    }
  }
  return Kind::kUnknown;
}

Emitter::Kind Emitter::ScopeColumnKind(const Expr& column, bool& found, std::string* declared) {
  for (const Scope* s = scope_; s != nullptr; s = s->parent) {
    for (const ScopeEntry& entry : s->entries) {
      if (column.qualifier && !SameName(entry.name, column.qualifier->text)) continue;
      Kind kind = EntryColumnKind(entry, column.name.text, found, declared);
      if (found || column.qualifier) return kind;
    }
  }
  return Kind::kUnknown;
}

Emitter::Kind Emitter::ColumnKind(const Expr& column) {
  bool found = false;
  return ScopeColumnKind(column, found);
}

std::string Emitter::DeclaredType(const Expr& e) {
  if (e.kind != ExprKind::kColumn) return {};
  bool found = false;
  std::string declared;
  // A derived table's computed column has no declaration.
  if (ScopeColumnKind(e, found, &declared) != Kind::kText || !found) return {};
  for (char& c : declared) c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
  return declared;
}

std::string Emitter::ColumnCollation(const Expr& e) {
  std::string declared = DeclaredType(e);
  if (declared.empty()) return {};
  std::size_t at = declared.find("COLLATE ");
  if (at == std::string::npos) return "BINARY";
  std::size_t start = at + 8, end = start;
  while (end < declared.size() && declared[end] != ' ') ++end;
  return declared.substr(start, end - start);
}

bool Emitter::NativeComparisonSuffices(const Expr& a, const Expr& b, bool equality) {
  std::string left = ColumnCollation(a);
  std::string right = ColumnCollation(b);
  if (!left.empty() && left == right) return true;
  auto ascii_text = [](const Expr& e) {
    if (e.kind != ExprKind::kString) return false;
    for (char c : e.text) {
      if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return true;
  };
  return equality && ((left == "NOCASE" && ascii_text(b)) || (right == "NOCASE" && ascii_text(a)));
}

std::string Emitter::ImplicitText(const Expr& e, std::string text) {
  if (KindOf(e) != Kind::kDate) return text;
  return "jet_cstr(" + StripOuterParens(text) + ")";
}

}  // namespace db::jet
