// transfer/liquidaciones.cpp — the liquidations step, in its four parts:
// staging preparation, headers and lines, calendar, and leave to totals.
#include "transfer/liquidaciones.h"

#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include "db/error.h"
#include "db/jet/date.h"
#include "db/recordset.h"
#include "base/value.h"
#include "transfer/liquidaciones_sql.h"
#include "transfer/personas_sql.h"

namespace transfer {
namespace {

// How many times a loop lets the window repaint over its whole length.
constexpr std::size_t kRepaintsPerLoop = 50;

// A month as the calendar statements write it between #...#: "MM/dd/yyyy".
// A value that is no date gives "", which the statement then refuses.
std::string month_mdy(const db::Value& value) {
  std::optional<db::jet::DateTime> date;
  if (const auto* text = std::get_if<std::string>(&value)) {
    date = db::jet::parse_iso(*text);
  } else if (!db::is_null(value)) {
    date = db::jet::from_serial(db::as_double(value));
  }
  if (!date) return {};
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d", date->month, date->day, date->year);
  return buffer;
}

// Runs `body` inside one transaction on `connection`. When `body` throws, the
// work it did is kept (committed) or undone (rolled back) as `keep_on_error`
// says, and the error goes on.
template <typename Body>
void in_transaction(db::Connection& connection, bool keep_on_error, Body&& body) {
  connection.begin_transaction();
  try {
    body();
  } catch (...) {
    // A refused statement undoes only itself, so the transaction is still
    // open; if the engine did give it up, there is nothing left to end.
    try {
      if (keep_on_error) connection.commit_transaction();
      else connection.rollback_transaction();
    } catch (const db::Error&) {
    }
    throw;
  }
  connection.commit_transaction();
}

// Advances the bar evenly over a loop of `rows` rows.
class LoopProgress {
 public:
  LoopProgress(StepContext& ctx, std::size_t rows) : ctx_(ctx), every_(rows / kRepaintsPerLoop + 1) {}
  void row() {
    if (++count_ % every_ == 0) repaint(ctx_);
  }

 private:
  StepContext& ctx_;
  std::size_t every_;
  std::size_t count_ = 0;
};

// A. The staging database: document numbers without their dash, and the
// liquidations outside the month range deleted for good.
void prepare_staging(StepContext& ctx, StepReport& report, const std::string& desde, const std::string& hasta) {
  in_transaction(ctx.staging, /*keep_on_error=*/false, [&] {
    run_statement(report, ctx.staging, sql::staged_numbers_drop_dash());
    repaint(ctx);
    run_statement(report, ctx.staging, sql::staged_numbers_drop_dash());
  });
  std::int64_t headers_deleted = 0;
  std::int64_t lines_deleted = 0;
  if (!desde.empty()) {
    lines_deleted += run_statement(report, ctx.staging, sql::staged_lines_before(desde));
    headers_deleted += run_statement(report, ctx.staging, sql::staged_headers_before(desde));
  }
  if (!hasta.empty()) {
    lines_deleted += run_statement(report, ctx.staging, sql::staged_lines_after(hasta));
    headers_deleted += run_statement(report, ctx.staging, sql::staged_headers_after(hasta));
  }
  if (headers_deleted > 0) {
    report.notes.push_back("Se borraron de la base auxiliar " + std::to_string(headers_deleted) +
                           " liquidaciones fuera del rango de meses");
  }
  if (lines_deleted > 0) {
    report.notes.push_back("Líneas de liquidación no importadas: " + std::to_string(lines_deleted) +
                           " fuera del rango de meses");
  }
}

// The count of a read-only query; a count has always one row.
std::int64_t count_of(StepReport& report, db::Connection& connection, const std::string& select) {
  db::Recordset rs = run_query(report, connection, select);
  return rs.eof() ? 0 : db::as_int(rs.field(0));
}

// Tells, before the lines are inserted, how many staged lines will be left
// out and why; each line counts under the first reason that holds. The
// headers must be in already: a staged header finds a contract only when the
// destination has a header of that contract, month and type.
void note_left_out_lines(StepContext& ctx, StepReport& report, bool persons_imported) {
  const std::int64_t not_imported = count_of(report, ctx.staging, sql::staged_lines_not_imported_concept());
  const std::int64_t unmapped_concept = count_of(report, ctx.staging, sql::staged_lines_unmapped_concept());
  const std::int64_t unmapped_type = count_of(report, ctx.staging, sql::staged_lines_unmapped_type());

  std::set<std::int64_t> found;
  for (db::Recordset rs = run_query(report, ctx.destination,
                                    sql::staged_headers_found(ctx.staging_path, persons_imported));
       !rs.eof(); rs.move_next())
    found.insert(db::as_int(rs.field(0)));
  std::int64_t no_contract = 0;
  for (db::Recordset rs = run_query(report, ctx.staging, sql::staged_candidate_lines_per_header()); !rs.eof();
       rs.move_next()) {
    if (!found.count(db::as_int(rs.field(0)))) no_contract += db::as_int(rs.field(1));
  }

  const auto note = [&](std::int64_t lines, const char* reason) {
    if (lines > 0) report.notes.push_back("Líneas de liquidación no importadas: " + std::to_string(lines) + reason);
  };
  note(not_imported, " con concepto asociado a \"No Importar\"");
  note(unmapped_concept, " con concepto sin asociar");
  note(unmapped_type, " con tipo de liquidación sin asociar");
  note(no_contract, " sin contrato que coincida en KEL (o con el mes fuera del contrato)");
}

// B. Headers, then their lines, under ids above the destination's highest.
void copy_headers_and_lines(StepContext& ctx, StepReport& report, bool persons_imported) {
  // A refused read gives 0: the base then adds nothing to the staged ids.
  const std::int64_t header_base = first_value_ignoring_errors(report, ctx.destination, sql::header_base(), 0);
  const std::int64_t line_base = first_value_ignoring_errors(report, ctx.destination, sql::line_base(), 0);
  run_statement(report, ctx.destination, sql::headers_insert(header_base, ctx.staging_path, persons_imported),
                "Encabezados", "insertadas");
  repaint(ctx);
  note_left_out_lines(ctx, report, persons_imported);
  run_statement(report, ctx.destination,
                sql::lines_insert(line_base, header_base, ctx.staging_path, persons_imported), "Datos_Liquidacion",
                "insertadas");
  repaint(ctx);
}

// C.6. One calendar entry per contract, type and month of the types
// liquidated employee by employee.
void calendar_per_employee(StepContext& ctx, StepReport& report) {
  db::Recordset rows = run_query(report, ctx.destination, sql::calendar_per_employee_select());
  LoopProgress progress(ctx, rows.row_count());
  const int type = rows.field_index("id_TipoLiq");
  const int month = rows.field_index("MesDeLiq");
  const int contract = rows.field_index("id_Contrato");
  for (; !rows.eof(); rows.move_next()) {
    run_statement(report, ctx.destination,
                  sql::calendar_per_employee_insert(db::as_int(rows.field(static_cast<std::size_t>(type))),
                                                    month_mdy(rows.field(static_cast<std::size_t>(month))),
                                                    db::as_int(rows.field(static_cast<std::size_t>(contract)))),
                  "Calendario_liq", "insertadas");
    progress.row();
  }
}

// C.7. The other types (neither per employee nor salary): one entry per type
// and month for the remuneration types of the group. A group is inserted when
// the walk reaches a row of another type or month; the group in hand when the
// rows end is deliberately left out.
void calendar_by_groups(StepContext& ctx, StepReport& report) {
  db::Recordset rows = run_query(report, ctx.destination, sql::calendar_group_select());
  if (rows.eof()) return;
  LoopProgress progress(ctx, rows.row_count());
  const auto type_at = static_cast<std::size_t>(rows.field_index("id_TipoLiq"));
  const auto month_at = static_cast<std::size_t>(rows.field_index("MesDeLiq"));
  const auto rem_at = static_cast<std::size_t>(rows.field_index("id_TipoRem"));
  std::int64_t held_type = db::as_int(rows.field(type_at));
  db::Value held_month = rows.field(month_at);
  std::string list;
  for (; !rows.eof(); rows.move_next()) {
    const std::int64_t type = db::as_int(rows.field(type_at));
    const db::Value& month = rows.field(month_at);
    if (type != held_type || month != held_month) {
      run_statement(report, ctx.destination, sql::calendar_group_insert(held_type, month_mdy(held_month), list),
                    "Calendario_liq", "insertadas");
      list.clear();
    }
    if (!list.empty()) list += ",";
    list += db::as_text(rows.field(rem_at));
    held_type = type;
    held_month = month;
    progress.row();
  }
}

// D. Leave and its links, worked days, exchange rates and totals; every
// refused statement is skipped.
void leave_to_totals(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;
  run_ignoring_errors(report, kel, sql::leave_insert(), "licencias", "insertadas");
  run_ignoring_errors(report, kel, sql::leave_link_new(), "rLic_Enc", "insertadas");
  run_ignoring_errors(report, kel, sql::leave_link_more(), "rLic_Enc", "insertadas");
  repaint(ctx);
  run_ignoring_errors(report, kel, sql::worked_days_update(), "Datos_Liquidacion", "actualizadas");
  run_ignoring_errors(report, kel, sql::aux_clear());
  run_ignoring_errors(report, kel, sql::cotizacion_delete_foreign(), "Cotizacion", "borradas");
  run_ignoring_errors(report, kel, sql::cotizacion_copy(ctx.staging_path), "Cotizacion", "insertadas");
  repaint(ctx);
  // A table left over from an interrupted run makes the snapshot fail; the
  // totals then come from the old table, as designed.
  run_ignoring_errors(report, kel, sql::totals_snapshot());
  run_ignoring_errors(report, kel, sql::totals_update(), "Encabezados", "actualizadas");
  run_ignoring_errors(report, kel, sql::totals_drop());
}

}  // namespace

StepReport import_liquidations(StepContext& ctx, const std::string& desde, const std::string& hasta,
                               bool persons_imported) {
  StepReport report;
  report.step = kLiquidacionesStepName;
  prepare_staging(ctx, report, desde, hasta);
  copy_headers_and_lines(ctx, report, persons_imported);
  // Each calendar loop is one transaction: a refused insert ends the step
  // with the entries before it kept, exactly as when each ran on its own,
  // and tens of thousands of inserts do not each wait for their own commit.
  // Every insert stays cheap as the calendar grows: its Max(id_Liquidacion)
  // is read off the key, and its existence test only looks at the rows of
  // one type (and contract) through ix_Calendario_liq, so the month
  // expression is computed for a handful of rows, not for the whole table.
  in_transaction(ctx.destination, /*keep_on_error=*/true, [&] { calendar_per_employee(ctx, report); });
  in_transaction(ctx.destination, /*keep_on_error=*/true, [&] { calendar_by_groups(ctx, report); });
  leave_to_totals(ctx, report);
  return report;
}

}  // namespace transfer
