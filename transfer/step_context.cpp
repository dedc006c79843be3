// transfer/step_context.cpp — the counting helpers of a step's report.
#include "transfer/step_context.h"

#include "db/error.h"
#include "base/value.h"

namespace transfer {

void StepReport::add(std::string_view table, std::string_view action, std::int64_t rows) {
  for (auto& change : changes) {
    if (change.table == table && change.action == action) {
      change.rows += rows;
      return;
    }
  }
  changes.push_back({std::string(table), std::string(action), rows});
}

std::int64_t StepReport::total(std::string_view action) const {
  std::int64_t sum = 0;
  for (const auto& change : changes)
    if (action.empty() || change.action == action) sum += change.rows;
  return sum;
}

std::int64_t run_statement(StepReport& report, db::Connection& connection, std::string_view sql,
                           std::string_view table, std::string_view action) {
  const std::int64_t rows = connection.execute(sql);
  ++report.statements_run;
  if (!table.empty()) report.add(table, action, rows);
  return rows;
}

std::int64_t run_ignoring_errors(StepReport& report, db::Connection& connection, std::string_view sql,
                                 std::string_view table, std::string_view action) {
  try {
    return run_statement(report, connection, sql, table, action);
  } catch (const db::Error&) {
    ++report.statements_ignored;
    return -1;
  }
}

db::Recordset run_query(StepReport& report, db::Connection& connection, std::string_view sql) {
  db::Recordset rs = connection.open_recordset(sql);
  ++report.statements_run;
  return rs;
}

std::int64_t first_value_ignoring_errors(StepReport& report, db::Connection& connection, std::string_view sql,
                                         std::int64_t fallback) {
  try {
    db::Recordset rs = run_query(report, connection, sql);
    if (rs.eof() || rs.field_count() == 0) return fallback;
    return db::as_int(rs.field(0));
  } catch (const db::Error&) {
    ++report.statements_ignored;
    return fallback;
  }
}

void repaint(StepContext& ctx) {
  if (ctx.progress) ctx.progress(-1);
}

}  // namespace transfer
