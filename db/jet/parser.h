// db/jet/parser.h — recursive-descent parser from Jet tokens to the syntax tree.
//
// Grammar (Jet 4.0, the part the system uses):
//   statement := select | insert | update | delete | drop  [";"]
//   select    := core {UNION [ALL] core} [ORDER BY e [ASC|DESC] {, ...}]
//   core      := SELECT [DISTINCT] [TOP n] items [INTO table] [FROM from {, from}]
//                [WHERE e] [GROUP BY e {, e}] [HAVING e]
//   from      := primary {(INNER|LEFT [OUTER]|RIGHT [OUTER]) JOIN primary ON e}
//   primary   := table [[AS] alias] [in] | "(" select ")" [[AS] alias] | "(" from ")"
//   table     := name [in]
//   in        := IN 'path' ['type'] | IN '' [type;DATABASE=path]
//   insert    := INSERT INTO table [(cols)] (select | VALUES (e {, e}))
//   update    := UPDATE from SET [q.]col = e {, ...} [WHERE e]
//   delete    := DELETE [* | q.*] FROM from {, from} [WHERE e]
//   drop      := DROP TABLE table
// Expression precedence, lowest first: Imp, Eqv, Xor, Or, And, Not, comparisons
// (= <> < > <= >= Like Is In Between), &, + -, Mod, \, * /, unary -, ^.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/jet/ast.h"
#include "db/jet/lexer.h"

namespace db::jet {

class Parser {
 public:
  // `source` must outlive the parser (errors quote positions in it).
  explicit Parser(std::string_view source);

  // Parses the whole text as one statement; a trailing ";" is allowed, anything
  // after it is an error. Throws TranslateError with the offending position.
  Statement ParseStatement();

  // The paths the `in` clauses parsed so far name, in reading order (each
  // once), whichever of the clause's spellings gave them.
  const std::vector<std::string>& database_paths() const { return database_paths_; }

 private:
  // Token access.
  const Token& Peek(std::size_t ahead = 0) const;
  const Token& Next();
  bool IsKeyword(const Token& t, std::string_view word) const;
  bool AtKeyword(std::string_view word, std::size_t ahead = 0) const;
  bool AtSymbol(std::string_view symbol, std::size_t ahead = 0) const;
  bool AcceptKeyword(std::string_view word);
  bool AcceptSymbol(std::string_view symbol);
  void ExpectKeyword(std::string_view word);
  void ExpectSymbol(std::string_view symbol);
  [[noreturn]] void Expected(std::string_view what) const;
  Name ExpectName(std::string_view what);
  bool IsReserved(const Token& t) const;

  // Statements (parser_statement.cpp).
  InsertStatement ParseInsert();
  UpdateStatement ParseUpdate();
  DeleteStatement ParseDelete();
  DropTableStatement ParseDrop();

  // Select and FROM (parser_select.cpp).
  SelectPtr ParseSelect();
  SelectPtr ParseSelectCore();
  TableRef ParseTableRef();
  void ParseInClause(TableRef& ref);
  FromItemPtr ParseFromItem();
  FromItemPtr ParseFromPrimary();
  std::optional<Name> ParseOptionalAlias();

  // Expressions (parser_expr.cpp), one function per precedence level.
  ExprPtr ParseExpr();
  ExprPtr ParseImp();
  ExprPtr ParseEqv();
  ExprPtr ParseXor();
  ExprPtr ParseOr();
  ExprPtr ParseAnd();
  ExprPtr ParseNot();
  ExprPtr ParseComparison();
  ExprPtr ParseConcat();
  ExprPtr ParseAdditive();
  ExprPtr ParseMod();
  ExprPtr ParseIntDiv();
  ExprPtr ParseMultiplicative();
  ExprPtr ParseUnary();
  ExprPtr ParsePower();
  ExprPtr ParsePrimary();
  ExprPtr ParseNameOrCall();
  std::vector<ExprPtr> ParseExprList();
  ExprPtr Checked(ExprPtr e);
  void CheckHeight(int height, std::size_t pos) const;
  void CheckedSelect(Select& select) const;
  FromItemPtr CheckedFrom(FromItemPtr item) const;

  // Counts nesting (parentheses, subqueries, Not/minus chains) so that a
  // pathological statement is refused instead of exhausting the stack.
  class DepthGuard {
   public:
    explicit DepthGuard(Parser& parser);
    ~DepthGuard() { --parser_.depth_; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

   private:
    Parser& parser_;
  };

  std::string_view source_;
  std::vector<Token> tokens_;
  std::size_t index_ = 0;
  int depth_ = 0;
  // Tables and derived tables named so far in the FROM clause being parsed:
  // SQLite joins at most 64, and a longer chain would only fail later.
  int from_tables_ = 0;
  std::vector<std::string> database_paths_;
};

}  // namespace db::jet
