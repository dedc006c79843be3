// db/jet/ast.h — the syntax tree of one Jet statement.
//
// The parser builds it and the emitter walks it; nothing else sees it. Every
// node keeps the byte offset in the Jet text where it starts so that errors
// found while emitting (an unknown function, a column that the target table
// lacks) can say where they are. The tree is deliberately small: only what the
// system's statements and the format authors' statement files use.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace db::jet {

struct Select;
struct Expr;
struct FromItem;
using ExprPtr = std::unique_ptr<Expr>;
using SelectPtr = std::unique_ptr<Select>;
using FromItemPtr = std::unique_ptr<FromItem>;

// A name as written: `Nombre` or `[Fecha de alta]` (bracketed keeps the inner text).
struct Name {
  std::string text;
  bool bracketed = false;
  std::size_t pos = 0;
};

enum class ExprKind {
  kNumber,    // text: digits as written
  kString,    // text: the decoded value
  kDate,      // text: ISO form of a #...# literal
  kBool,      // boolean_value
  kNull,
  kColumn,    // qualifier (optional) . name
  kStar,      // qualifier (optional) . *  (select lists and Count(*))
  kUnary,     // op kNeg or kNot; args[0]
  kBinary,    // op; args[0], args[1]
  kIsNull,    // args[0] Is [Not] Null
  kInList,    // args[0] [Not] In (args[1..])
  kInSelect,  // args[0] [Not] In (select)
  kBetween,   // args[0] [Not] Between args[1] And args[2]
  kExists,    // Exists (select)
  kSubquery,  // (select) used as a value
  kCall,      // name(args)
};

enum class Op {
  kImp, kEqv, kXor, kOr, kAnd, kNot,
  kEq, kNe, kLt, kGt, kLe, kGe, kLike,
  kConcat, kAdd, kSub, kMod, kIntDiv, kMul, kDiv, kPow, kNeg,
};

struct Expr {
  ExprKind kind = ExprKind::kNull;
  std::size_t pos = 0;
  Op op = Op::kEq;
  bool negated = false;         // Is Not Null, Not In, Not Between, Not Like
  bool boolean_value = false;   // kBool
  std::string text;             // literal text, function name
  std::optional<Name> qualifier;  // kColumn, kStar
  Name name;                      // kColumn
  std::vector<ExprPtr> args;
  SelectPtr select;  // kInSelect, kExists, kSubquery
  int height = 1;    // 1 + the tallest operand: bounds the emitter's recursion
};

// A table named in a statement, optionally in another database (`T in 'path'`).
struct TableRef {
  Name name;
  std::optional<std::string> database;  // the path between the quotes
  std::size_t database_pos = 0;
};

enum class JoinType { kInner, kLeft, kRight };

struct FromItem {
  enum class Kind { kTable, kSubquery, kJoin } kind = Kind::kTable;
  std::size_t pos = 0;
  TableRef table;              // kTable
  SelectPtr subquery;          // kSubquery
  std::optional<Name> alias;   // kTable, kSubquery
  JoinType join = JoinType::kInner;  // kJoin
  FromItemPtr left, right;           // kJoin
  ExprPtr on;                        // kJoin
  int height = 1;  // 1 + the tallest part: bounds the emitter's recursion
};

struct SelectItem {
  ExprPtr expr;
  std::optional<Name> alias;
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

struct UnionPart {
  bool all = false;  // UNION ALL keeps duplicate rows
  SelectPtr select;  // a member: no ORDER BY of its own
};

struct Select {
  std::size_t pos = 0;
  bool distinct = false;
  std::optional<std::string> top;  // Top n: the digits
  std::vector<SelectItem> items;
  std::optional<TableRef> into;    // Select ... Into T
  std::vector<FromItemPtr> from;   // comma-separated items
  ExprPtr where;
  std::vector<ExprPtr> group_by;
  ExprPtr having;
  std::vector<UnionPart> unions;      // further members of a UNION
  std::vector<OrderItem> order_by;    // with unions: the order of the whole
  int height = 1;  // 1 + the tallest expression, FROM item or member
};

struct SelectStatement {
  SelectPtr select;
};

struct InsertStatement {
  TableRef target;
  std::vector<Name> columns;            // Insert Into T (a, b) ...
  SelectPtr select;                     // ... Select
  std::vector<ExprPtr> values;          // ... Values (...)
  std::size_t values_pos = 0;
};

struct Assignment {
  std::optional<Name> qualifier;
  Name column;
  ExprPtr value;
};

struct UpdateStatement {
  FromItemPtr source;  // a table or a tree of joins
  std::vector<Assignment> assignments;
  ExprPtr where;
};

struct DeleteStatement {
  std::optional<Name> target;  // Delete A.* From ...
  std::size_t target_pos = 0;
  std::vector<FromItemPtr> from;
  ExprPtr where;
};

struct DropTableStatement {
  TableRef table;
};

using Statement = std::variant<SelectStatement, InsertStatement, UpdateStatement,
                               DeleteStatement, DropTableStatement>;

// Errors carry the byte offset; messages show the 1-based character position
// (UTF-8 aware), which is what a person counting in the statement sees.

// Throws TranslateError "Error de sintaxis en la posición N: se esperaba
// <expected>, pero se encontró '<found>'" (or "... el final de la instrucción").
[[noreturn]] void FailSyntax(std::string_view source, std::size_t pos, std::string_view expected,
                             std::string_view found);

// Throws TranslateError "<message> (posición N)".
[[noreturn]] void FailAt(std::string_view source, std::size_t pos, const std::string& message);

// Throws TranslateError "No se admite <construct> (posición N)".
[[noreturn]] void FailUnsupported(std::string_view source, std::size_t pos,
                                  std::string_view construct);

// Case-insensitive comparison of ASCII names (identifiers, keywords).
bool SameName(std::string_view a, std::string_view b);

}  // namespace db::jet
