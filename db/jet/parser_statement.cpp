// db/jet/parser_statement.cpp — Insert, Update, Delete and Drop Table.
#include "db/jet/parser.h"

namespace db::jet {

InsertStatement Parser::ParseInsert() {
  InsertStatement insert;
  ExpectKeyword("INSERT");
  ExpectKeyword("INTO");
  insert.target = ParseTableRef();
  if (AcceptSymbol("(")) {
    do {
      insert.columns.push_back(ExpectName("un nombre de columna"));
    } while (AcceptSymbol(","));
    ExpectSymbol(")");
  }
  if (AtKeyword("SELECT")) {
    insert.select = ParseSelect();
    if (insert.select->into) FailUnsupported(source_, insert.select->pos, "INTO dentro de INSERT");
  } else if (AtKeyword("VALUES")) {
    insert.values_pos = Next().pos;
    ExpectSymbol("(");
    insert.values = ParseExprList();
    ExpectSymbol(")");
  } else {
    Expected("SELECT o VALUES");
  }
  return insert;
}

UpdateStatement Parser::ParseUpdate() {
  UpdateStatement update;
  ExpectKeyword("UPDATE");
  update.source = ParseFromItem();
  ExpectKeyword("SET");
  do {
    Assignment assignment;
    Name first = ExpectName("una columna a asignar");
    if (AcceptSymbol(".")) {
      assignment.qualifier = first;
      assignment.column = ExpectName("una columna después de '.'");
    } else {
      assignment.column = first;
    }
    ExpectSymbol("=");
    assignment.value = ParseExpr();
    update.assignments.push_back(std::move(assignment));
  } while (AcceptSymbol(","));
  if (AcceptKeyword("WHERE")) update.where = ParseExpr();
  return update;
}

DeleteStatement Parser::ParseDelete() {
  DeleteStatement del;
  ExpectKeyword("DELETE");
  del.target_pos = Peek().pos;
  if (AcceptSymbol("*")) {
    // Delete * From ...: the table of the FROM clause.
  } else if (!AtKeyword("FROM")) {
    Name target = ExpectName("*, una tabla o FROM");
    if (AcceptSymbol(".")) {
      ExpectSymbol("*");
    } else if (AtSymbol(",")) {
      FailUnsupported(source_, Peek().pos, "DELETE de varias tablas");
    }
    del.target = target;
  }
  ExpectKeyword("FROM");
  do {
    del.from.push_back(ParseFromItem());
  } while (AcceptSymbol(","));
  if (AcceptKeyword("WHERE")) del.where = ParseExpr();
  return del;
}

DropTableStatement Parser::ParseDrop() {
  DropTableStatement drop;
  ExpectKeyword("DROP");
  if (!AtKeyword("TABLE")) FailUnsupported(source_, Peek().pos, "DROP " + Peek().text);
  Next();
  drop.table = ParseTableRef();
  return drop;
}

}  // namespace db::jet
