// db/jet/emitter_statement.cpp — Insert, Update and Delete.
//
// Jet's Insert ... Select matches the select's output names to the target's
// columns; SQLite matches by position, so the column list is written out.
// Jet's Update and Delete may go through joins; SQLite's have no joins, so
// the other tables move to UPDATE ... FROM, or to a rowid subquery for DELETE.
#include <utility>

#include "db/jet/emitter.h"
#include "db/jet/emitter_text.h"

namespace db::jet {
namespace {

// The leaves (tables and derived tables) of a tree of joins, left to right,
// and their ON conditions.
void Flatten(const FromItem& item, std::vector<const FromItem*>& leaves,
             std::vector<const Expr*>& conditions) {
  if (item.kind != FromItem::Kind::kJoin) {
    leaves.push_back(&item);
    return;
  }
  Flatten(*item.left, leaves, conditions);
  Flatten(*item.right, leaves, conditions);
  conditions.push_back(item.on.get());
}

std::string LeafName(const FromItem& leaf) {
  if (leaf.alias) return leaf.alias->text;
  return leaf.kind == FromItem::Kind::kTable ? leaf.table.name.text : std::string();
}

// First outer join in a tree, or nullptr.
const FromItem* FindOuterJoin(const FromItem& item) {
  if (item.kind != FromItem::Kind::kJoin) return nullptr;
  if (item.join != JoinType::kInner) return &item;
  if (const FromItem* found = FindOuterJoin(*item.left)) return found;
  return FindOuterJoin(*item.right);
}

}  // namespace

std::string Emitter::EmitInsert(const InsertStatement& insert) {
  std::string head = "INSERT INTO " + EmitTableRef(insert.target);
  if (!insert.select) {
    std::string values;
    for (std::size_t i = 0; i < insert.values.size(); ++i) {
      if (i > 0) values += ", ";
      values += StripOuterParens(Value(*insert.values[i]));
    }
    std::string columns;
    for (std::size_t i = 0; i < insert.columns.size(); ++i) {
      columns += (i == 0 ? " (" : ", ") + SqliteIdentifier(insert.columns[i].text);
    }
    if (!columns.empty()) columns += ")";
    return head + columns + " VALUES (" + values + ")";
  }
  std::string select_text = EmitSelect(*insert.select);
  if (!insert.columns.empty()) {
    std::string columns;
    for (std::size_t i = 0; i < insert.columns.size(); ++i) {
      columns += (i == 0 ? " (" : ", ") + SqliteIdentifier(insert.columns[i].text);
    }
    return head + columns + ") " + select_text;
  }
  return head + " (" + EmitInsertColumns(insert, select_text) + ") " + select_text;
}

std::string Emitter::EmitInsertColumns(const InsertStatement& insert,
                                       const std::string& select_text) {
  const TableRef& target = insert.target;
  std::vector<std::string> target_columns = context_.table_columns(SchemaOf(target), target.name.text);
  if (target_columns.empty()) {
    FailAt(source_, target.name.pos, "No existe la tabla '" + target.name.text + "'");
  }

  // The select's output names, with where each comes from for messages.
  std::vector<std::pair<std::string, std::size_t>> names;
  bool has_star = false;
  for (const SelectItem& item : insert.select->items) {
    if (item.expr->kind == ExprKind::kStar) has_star = true;
  }
  if (has_star) {
    for (std::string& name : context_.select_columns(select_text)) {
      names.emplace_back(std::move(name), insert.select->pos);
    }
  } else {
    for (const SelectItem& item : insert.select->items) {
      if (item.alias) {
        names.emplace_back(item.alias->text, item.alias->pos);
      } else if (item.expr->kind == ExprKind::kColumn) {
        names.emplace_back(item.expr->name.text, item.expr->name.pos);
      } else {
        FailAt(source_, item.expr->pos,
               "La expresión no tiene nombre: INSERT INTO ... SELECT asigna las columnas por "
               "nombre, escriba AS y el nombre de la columna de destino");
      }
    }
  }

  std::string columns;
  std::vector<const std::string*> used;
  for (const auto& [name, pos] : names) {
    const std::string* match = nullptr;
    for (const std::string& column : target_columns) {
      if (SameName(column, name)) match = &column;
    }
    if (match == nullptr) {
      FailAt(source_, pos,
             "La instrucción INSERT INTO contiene el siguiente nombre de campo desconocido: '" +
                 name + "'");
    }
    for (const std::string* previous : used) {
      if (previous == match) FailAt(source_, pos, "Destino de resultados '" + name + "' duplicado");
    }
    used.push_back(match);
    if (!columns.empty()) columns += ", ";
    columns += SqliteIdentifier(*match);
  }
  return columns;
}

std::string Emitter::EmitUpdate(const UpdateStatement& update) {
  if (const FromItem* outer = FindOuterJoin(*update.source)) {
    FailUnsupported(source_, outer->pos,
                    outer->join == JoinType::kLeft ? "LEFT JOIN en UPDATE" : "RIGHT JOIN en UPDATE");
  }
  std::vector<const FromItem*> leaves;
  std::vector<const Expr*> conditions;
  Flatten(*update.source, leaves, conditions);

  // The table being updated is the one the Set targets name (the first one
  // when they name none).
  std::size_t target = 0;
  bool named = false;
  for (const Assignment& assignment : update.assignments) {
    if (!assignment.qualifier) continue;
    std::size_t found = leaves.size();
    for (std::size_t i = 0; i < leaves.size(); ++i) {
      if (SameName(LeafName(*leaves[i]), assignment.qualifier->text)) found = i;
    }
    if (found == leaves.size()) {
      FailAt(source_, assignment.qualifier->pos,
             "La tabla '" + assignment.qualifier->text + "' no está en la instrucción UPDATE");
    }
    if (named && found != target) {
      FailUnsupported(source_, assignment.qualifier->pos,
                      "actualizar dos tablas en la misma instrucción UPDATE");
    }
    target = found;
    named = true;
  }
  const FromItem& target_leaf = *leaves[target];
  if (target_leaf.kind != FromItem::Kind::kTable) {
    FailUnsupported(source_, target_leaf.pos, "actualizar una subconsulta");
  }

  Scope scope;
  AddScopeEntries(*update.source, scope);
  ScopeGuard guard(*this, scope);

  std::string text = "UPDATE " + EmitTableRef(target_leaf.table);
  if (target_leaf.alias) text += " AS " + SqliteIdentifier(target_leaf.alias->text);
  text += " SET ";
  for (std::size_t i = 0; i < update.assignments.size(); ++i) {
    const Assignment& assignment = update.assignments[i];
    if (i > 0) text += ", ";
    text += SqliteIdentifier(assignment.column.text) + " = " +
            StripOuterParens(Value(*assignment.value));
  }
  std::string from;
  for (std::size_t i = 0; i < leaves.size(); ++i) {
    if (i == target) continue;
    if (!from.empty()) from += ", ";
    from += EmitFromItem(*leaves[i], false);
  }
  if (!from.empty()) text += " FROM " + from;

  std::vector<std::string> where;
  for (const Expr* condition : conditions) where.push_back(Bool(*condition));
  if (update.where) where.push_back(Bool(*update.where));
  for (std::size_t i = 0; i < where.size(); ++i) {
    text += i == 0 ? " WHERE " : " AND ";
    text += where.size() == 1 ? StripOuterParens(where[i]) : where[i];
  }
  return text;
}

std::string Emitter::EmitDelete(const DeleteStatement& del) {
  std::vector<const FromItem*> leaves;
  std::vector<const Expr*> conditions;
  for (const FromItemPtr& item : del.from) Flatten(*item, leaves, conditions);

  const FromItem* target = nullptr;
  if (del.target) {
    for (const FromItem* leaf : leaves) {
      if (SameName(LeafName(*leaf), del.target->text)) target = leaf;
    }
    if (target == nullptr) {
      FailAt(source_, del.target->pos,
             "La tabla '" + del.target->text + "' no está en la instrucción DELETE");
    }
  } else if (leaves.size() == 1) {
    target = leaves[0];
  } else {
    FailAt(source_, del.target_pos,
           "Especifique la tabla que contiene los registros que desea eliminar (DELETE Tabla.*)");
  }
  if (target->kind != FromItem::Kind::kTable) {
    FailUnsupported(source_, target->pos, "eliminar registros de una subconsulta");
  }

  Scope scope;
  for (const FromItemPtr& item : del.from) AddScopeEntries(*item, scope);
  ScopeGuard guard(*this, scope);

  std::string text = "DELETE FROM " + EmitTableRef(target->table);
  if (leaves.size() == 1) {
    // One table: SQLite deletes directly (and empties a table at once when
    // there is no condition).
    if (target->alias) text += " AS " + SqliteIdentifier(target->alias->text);
    if (del.where) text += " WHERE " + StripOuterParens(Bool(*del.where));
    return text;
  }
  std::string from;
  for (std::size_t i = 0; i < del.from.size(); ++i) {
    if (i > 0) from += ", ";
    from += EmitFromItem(*del.from[i], false);
  }
  text += " WHERE rowid IN (SELECT " + SqliteIdentifier(LeafName(*target)) + ".rowid FROM " + from;
  if (del.where) text += " WHERE " + StripOuterParens(Bool(*del.where));
  return text + ")";
}

}  // namespace db::jet
