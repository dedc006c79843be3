// db/jet/emitter.h — writes the SQLite text of a parsed Jet statement.
//
// Two things make this more than printing the tree back:
// - Jet is loosely typed where SQLite is not: comparisons and logic yield
//   -1/0 in Jet, so every expression is emitted either in boolean context
//   (WHERE, ON, HAVING, IIf conditions, operands of And/Or/Not) or in value
//   context (everything else), see Bool() and Value().
// - Some Jet statement forms have no SQLite twin (Update with joins, Delete
//   through a join, Insert ... Select matched by column names, `in 'path'`);
//   they are rewritten using what the TranslationContext says about the
//   databases.
#pragma once

#include <map>
#include <utility>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "db/jet/ast.h"
#include "db/jet/translator.h"

namespace db::jet {

class Emitter {
 public:
  // `source` is the Jet text (for error positions); both must outlive the emitter.
  Emitter(std::string_view source, TranslationContext& context);

  // What an operand holds, as far as the statement and the declared column
  // types tell (emitter_kinds.cpp).
  enum class Kind { kText, kNumber, kDate, kUnknown };

  // The SQLite statement for `statement`. Throws TranslateError for what
  // cannot be translated; lets db::Error from the context pass through.
  Translation Emit(const Statement& statement);

 private:
  // The names visible in one Select (its FROM items), linked to the enclosing one.
  struct ScopeEntry {
    std::string name;              // alias, or the table's name
    const Select* derived = nullptr;  // the subquery of a derived table
    const TableRef* table = nullptr;  // the table, for a table
  };
  struct Scope {
    std::vector<ScopeEntry> entries;
    // The entries' names folded to upper case, so that finding a qualifier
    // costs the same with one table as with many.
    std::unordered_set<std::string> folded_names;
    Scope* parent = nullptr;
  };
  // Makes `scope` the current one for the lifetime of the guard.
  class ScopeGuard {
   public:
    ScopeGuard(Emitter& emitter, Scope& scope) : emitter_(emitter), saved_(emitter.scope_) {
      scope.parent = saved_;
      emitter_.scope_ = &scope;
    }
    ~ScopeGuard() { emitter_.scope_ = saved_; }
    ScopeGuard(const ScopeGuard&) = delete;
    ScopeGuard& operator=(const ScopeGuard&) = delete;

   private:
    Emitter& emitter_;
    Scope* saved_;
  };

  // Statements (emitter_statement.cpp).
  std::string EmitInsert(const InsertStatement& insert);
  std::string EmitInsertColumns(const InsertStatement& insert, const std::string& select_text);
  std::string EmitUpdate(const UpdateStatement& update);
  std::string EmitDelete(const DeleteStatement& del);

  // Selects and FROM items (emitter_select.cpp).
  std::string EmitSelect(const Select& select);
  std::string EmitSelectCore(const Select& select, bool with_limit);
  std::string EmitUnionMember(const Select& member);
  // `first_member`: the first select of a Union, whose outputs the names name.
  std::string EmitOrderBy(const std::vector<OrderItem>& order_by,
                          const Select* first_member = nullptr);
  std::string EmitFromItem(const FromItem& item, bool right_operand);
  std::string EmitTableRef(const TableRef& table);
  std::string SchemaOf(const TableRef& table);
  std::string EmitQualifier(const Name& qualifier) const;
  static void AddScopeEntries(const FromItem& item, Scope& scope);
  static bool DefinesName(const Select& select, std::string_view name);
  static bool DefinesName(const FromItem& item, std::string_view name);

  // Expressions (emitter_expr.cpp). Value(): what Jet yields, a condition
  // becoming -1/0/Null. Bool(): an SQLite condition, any other value v
  // meaning v <> 0. Both return text that can be embedded as an operand.
  std::string Value(const Expr& e);
  std::string Bool(const Expr& e);
  std::string Comparison(const Expr& e);
  std::string Call(const Expr& e, bool boolean);
  bool IsBoolean(const Expr& e) const;

  // Operand kinds (emitter_kinds.cpp). KindOf: what `e` holds. IsTextual:
  // whether two operands compare as texts (neither is a number or a date), so
  // the comparison needs Jet's collation. Collated: `text` (the SQLite text
  // of `e`) with "COLLATE jet_es" when `e` may be text. ImplicitText: `text`
  // as CStr shows it when `e` is a date (Jet's implicit text of a date).
  Kind KindOf(const Expr& e);
  static bool IsTextual(Kind a, Kind b);
  std::string Collated(const Expr& e, std::string text);
  std::string ImplicitText(const Expr& e, std::string text);
  Kind ColumnKind(const Expr& column);
  Kind ScopeColumnKind(const Expr& column, bool& found, std::string* declared = nullptr);
  Kind EntryColumnKind(const ScopeEntry& entry, std::string_view column, bool& found,
                       std::string* declared = nullptr);
  // The declared collation ("NOCASE", "BINARY") of `e` when it is a text
  // column of a table, else empty.
  std::string ColumnCollation(const Expr& e);
  // The declaration (upper case) of `e` when it is a text column of a table.
  std::string DeclaredType(const Expr& e);
  // Whether comparing two text operands natively gives Jet's answer and keeps
  // the tables' indexes usable: two columns declared with the same collation
  // (the schema's own comparison: its text columns are all NOCASE, its dates
  // plain TEXT), or, for = and <>, a NOCASE column and a text of ASCII
  // characters only (under which NOCASE and jet_es agree exactly).
  bool NativeComparisonSuffices(const Expr& a, const Expr& b, bool equality);
  Kind OutputKind(const Select& select, std::string_view name, bool& found,
                  std::string* declared = nullptr);
  Kind FirstItemKind(const Select& select);

  std::string_view source_;
  TranslationContext& context_;
  Scope* scope_ = nullptr;
  std::map<std::string, std::string> schemas_;  // attach() results by path
  // Declared column types by "SCHEMA.TABLE" (upper case), asked once per statement.
  std::map<std::string, std::vector<std::pair<std::string, std::string>>> column_types_;
};

}  // namespace db::jet
