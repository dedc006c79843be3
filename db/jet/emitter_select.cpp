// db/jet/emitter_select.cpp — Select, FROM items, names and the statement dispatch.
#include <utility>

#include "db/jet/collation.h"
#include "db/jet/emitter.h"
#include "db/jet/emitter_text.h"

namespace db::jet {
namespace {

// A name as SameName compares it: ASCII letters in upper case.
std::string FoldName(std::string_view name) {
  std::string folded(name);
  for (char& c : folded) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return folded;
}

}  // namespace

Emitter::Emitter(std::string_view source, TranslationContext& context)
    : source_(source), context_(context) {}

Translation Emitter::Emit(const Statement& statement) {
  Translation translation;
  if (const auto* select = std::get_if<SelectStatement>(&statement)) {
    const Select& s = *select->select;
    std::string text = EmitSelect(s);
    if (s.into) {
      text = "CREATE TABLE " + EmitTableRef(*s.into) + " AS " + text;
      translation.changes_schema = true;
    } else {
      translation.kind = StatementKind::kQuery;
    }
    translation.statements.push_back(std::move(text));
  } else if (const auto* insert = std::get_if<InsertStatement>(&statement)) {
    translation.statements.push_back(EmitInsert(*insert));
  } else if (const auto* update = std::get_if<UpdateStatement>(&statement)) {
    translation.statements.push_back(EmitUpdate(*update));
  } else if (const auto* del = std::get_if<DeleteStatement>(&statement)) {
    translation.statements.push_back(EmitDelete(*del));
  } else {
    const auto& drop = std::get<DropTableStatement>(statement);
    translation.statements.push_back("DROP TABLE " + EmitTableRef(drop.table));
    translation.changes_schema = true;
  }
  return translation;
}

std::string Emitter::EmitSelect(const Select& select) {
  if (select.unions.empty()) return EmitSelectCore(select, true);
  // A UNION: Jet's ORDER BY after the last member orders the whole, as in SQLite.
  std::string text = EmitUnionMember(select);
  for (const UnionPart& part : select.unions) {
    text += part.all ? " UNION ALL " : " UNION ";
    text += EmitUnionMember(*part.select);
  }
  return text + EmitOrderBy(select.order_by, &select);
}

// SQLite allows LIMIT only at the end of a compound, so a member with Top
// becomes a subquery.
std::string Emitter::EmitUnionMember(const Select& member) {
  std::string core = EmitSelectCore(member, false);
  if (!member.top) return core;
  return "SELECT * FROM (" + core + " LIMIT " + *member.top + ")";
}

std::string Emitter::EmitOrderBy(const std::vector<OrderItem>& order_by, const Select* first_member) {
  std::string text;
  for (std::size_t i = 0; i < order_by.size(); ++i) {
    text += i == 0 ? " ORDER BY " : ", ";
    // Texts sort in Jet's order: case ignored, ñ after n, accents with their letter.
    const Expr& e = *order_by[i].expr;
    std::string value = StripOuterParens(Value(e));
    bool found = false;
    Kind kind = first_member != nullptr && e.kind == ExprKind::kColumn && !e.qualifier
                    ? OutputKind(*first_member, e.name.text, found)
                    : KindOf(e);
    if (kind == Kind::kText || kind == Kind::kUnknown) value += std::string(" COLLATE ") + kCollationName;
    text += value;
    if (order_by[i].descending) text += " DESC";
  }
  return text;
}

// One SELECT without UNION; `with_limit` adds ORDER BY and LIMIT.
std::string Emitter::EmitSelectCore(const Select& select, bool with_limit) {
  Scope scope;
  for (const FromItemPtr& item : select.from) AddScopeEntries(*item, scope);
  ScopeGuard guard(*this, scope);

  std::string from;
  for (std::size_t i = 0; i < select.from.size(); ++i) {
    if (i > 0) from += ", ";
    from += EmitFromItem(*select.from[i], false);
  }

  std::string items;
  int unnamed = 0;
  for (std::size_t i = 0; i < select.items.size(); ++i) {
    const SelectItem& item = select.items[i];
    if (i > 0) items += ", ";
    if (item.expr->kind == ExprKind::kStar) {
      items += item.expr->qualifier ? EmitQualifier(*item.expr->qualifier) + ".*" : "*";
      continue;
    }
    std::string value = StripOuterParens(Value(*item.expr));
    if (select.distinct) {
      // Distinct tells texts apart in Jet's order (case ignored); the column
      // keeps its name.
      std::string collated = Collated(*item.expr, value);
      if (collated.size() != value.size() && !item.alias && item.expr->kind == ExprKind::kColumn) {
        collated += " AS " + SqliteIdentifier(item.expr->name.text);
      }
      value = std::move(collated);
    }
    items += value;
    if (item.alias) {
      items += " AS " + SqliteIdentifier(item.alias->text);
    } else if (item.expr->kind != ExprKind::kColumn) {
      // Jet names an unnamed expression Expr1000, Expr1001, ...
      items += " AS Expr" + std::to_string(1000 + unnamed++);
    }
  }

  std::string text = "SELECT ";
  if (select.distinct) text += "DISTINCT ";
  text += items;
  if (!from.empty()) text += " FROM " + from;
  if (select.where) text += " WHERE " + StripOuterParens(Bool(*select.where));
  if (!select.group_by.empty()) {
    text += " GROUP BY ";
    for (std::size_t i = 0; i < select.group_by.size(); ++i) {
      if (i > 0) text += ", ";
      text += Collated(*select.group_by[i], StripOuterParens(Value(*select.group_by[i])));
    }
  }
  if (select.having) text += " HAVING " + StripOuterParens(Bool(*select.having));
  if (!with_limit) return text;
  text += EmitOrderBy(select.order_by);
  if (select.top) text += " LIMIT " + *select.top;
  return text;
}

std::string Emitter::EmitFromItem(const FromItem& item, bool right_operand) {
  switch (item.kind) {
    case FromItem::Kind::kTable: {
      std::string text = EmitTableRef(item.table);
      if (item.alias) text += " AS " + SqliteIdentifier(item.alias->text);
      return text;
    }
    case FromItem::Kind::kSubquery: {
      std::string text = "(" + EmitSelect(*item.subquery) + ")";
      if (item.alias) text += " AS " + SqliteIdentifier(item.alias->text);
      return text;
    }
    case FromItem::Kind::kJoin:
      break;
  }
  const char* join = item.join == JoinType::kInner  ? " INNER JOIN "
                     : item.join == JoinType::kLeft ? " LEFT JOIN "
                                                    : " RIGHT JOIN ";
  // Joins associate to the left, so a parenthesised join on the left needs no
  // parentheses; one on the right keeps them.
  // Left to right, so that databases are attached in the order they are named.
  std::string text = EmitFromItem(*item.left, false);
  text += join + EmitFromItem(*item.right, true);
  text += " ON " + StripOuterParens(Bool(*item.on));
  return right_operand ? "(" + text + ")" : text;
}

std::string Emitter::SchemaOf(const TableRef& table) {
  if (!table.database) return "main";
  auto found = schemas_.find(*table.database);
  if (found != schemas_.end()) return found->second;
  std::string schema = context_.attach(*table.database);
  schemas_.emplace(*table.database, schema);
  return schema;
}

std::string Emitter::EmitTableRef(const TableRef& table) {
  std::string name = SqliteIdentifier(table.name.text);
  if (!table.database) return name;
  return SqliteIdentifier(SchemaOf(table)) + "." + name;
}

void Emitter::AddScopeEntries(const FromItem& item, Scope& scope) {
  switch (item.kind) {
    case FromItem::Kind::kTable:
      scope.entries.push_back({item.alias ? item.alias->text : item.table.name.text, nullptr, &item.table});
      scope.folded_names.insert(FoldName(scope.entries.back().name));
      break;
    case FromItem::Kind::kSubquery:
      scope.entries.push_back({item.alias ? item.alias->text : std::string(), item.subquery.get(), nullptr});
      scope.folded_names.insert(FoldName(scope.entries.back().name));
      break;
    case FromItem::Kind::kJoin:
      AddScopeEntries(*item.left, scope);
      AddScopeEntries(*item.right, scope);
      break;
  }
}

bool Emitter::DefinesName(const FromItem& item, std::string_view name) {
  switch (item.kind) {
    case FromItem::Kind::kTable:
      return SameName(item.alias ? item.alias->text : item.table.name.text, name);
    case FromItem::Kind::kSubquery:
      return (item.alias && SameName(item.alias->text, name)) || DefinesName(*item.subquery, name);
    case FromItem::Kind::kJoin:
      return DefinesName(*item.left, name) || DefinesName(*item.right, name);
  }
  return false;
}

bool Emitter::DefinesName(const Select& select, std::string_view name) {
  for (const FromItemPtr& item : select.from) {
    if (DefinesName(*item, name)) return true;
  }
  return false;
}

// Jet lets a query name a table that sits inside one of its derived tables
// ("Select RR.CodKEL From (Select * From RelacConc as RR ...) as KEL"); SQLite
// only sees the derived table's own name, so such a qualifier becomes KEL.
std::string Emitter::EmitQualifier(const Name& qualifier) const {
  std::string folded = FoldName(qualifier.text);
  for (const Scope* s = scope_; s != nullptr; s = s->parent) {
    if (s->folded_names.count(folded) != 0) return SqliteIdentifier(qualifier.text);
  }
  for (const Scope* s = scope_; s != nullptr; s = s->parent) {
    for (const ScopeEntry& entry : s->entries) {
      if (entry.derived != nullptr && !entry.name.empty() &&
          DefinesName(*entry.derived, qualifier.text)) {
        return SqliteIdentifier(entry.name);
      }
    }
  }
  return SqliteIdentifier(qualifier.text);
}

}  // namespace db::jet
