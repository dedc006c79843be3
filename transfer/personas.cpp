// transfer/personas.cpp — the persons and contracts step, statement by
// statement in its fixed order. The texts live in personas_sql.cpp; this file
// only decides which run, on which connection, with which computed numbers,
// and which ones are grouped in transactions or have their errors ignored.
#include "transfer/personas.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "db/error.h"
#include "base/value.h"
#include "transfer/personas_sql.h"

namespace transfer {

namespace {

// The first field of the first row of `select`, read as a number the way the
// step reads its maxima: an empty result set or a Null is an error, which is
// what ends the step when there is nothing to take the maximum of.
std::int64_t read_number(StepReport& report, db::Connection& connection, const std::string& select) {
  db::Recordset rs = run_query(report, connection, select);
  if (rs.eof() || rs.field_count() == 0 || db::is_null(rs.field(0)))
    throw db::Error("Uso no válido de Null: la consulta no dio ningún valor", select);
  return db::as_int(rs.field(0));
}

// True when `select` on `connection` yields at least one row.
bool has_rows(StepReport& report, db::Connection& connection, const std::string& select) {
  return !run_query(report, connection, select).eof();
}

// One destination person's id before and after a map is applied.
using IdMove = std::pair<std::int64_t, std::int64_t>;

// The map in AuxOtrosRep as (old id, new id) pairs in the table's order, the
// parked ids brought back below the offset so that they read as the user
// knew them.
std::vector<IdMove> read_person_map(StepReport& report, db::Connection& kel) {
  std::vector<IdMove> moves;
  for (db::Recordset rs = run_query(report, kel, sql::aux_person_map()); !rs.eof(); rs.move_next())
    moves.emplace_back(db::as_int(rs.field(0)) - sql::kParkingOffset, db::as_int(rs.field(1)));
  return moves;
}

// How many person moves the report lists one by one; a big company's
// renumbering would otherwise bury the rest of the report.
constexpr std::size_t kListedMoves = 50;

// Adds `title` (after the count) and then one "old -> new" line per move, up
// to kListedMoves, to the report's notes. Nothing when there are no moves.
void note_moves(StepReport& report, const std::vector<IdMove>& moves, const std::string& title) {
  if (moves.empty()) return;
  report.notes.push_back(std::to_string(moves.size()) + title);
  for (std::size_t i = 0; i < moves.size() && i < kListedMoves; ++i)
    report.notes.push_back("  " + std::to_string(moves[i].first) + " -> " + std::to_string(moves[i].second));
  if (moves.size() > kListedMoves)
    report.notes.push_back("  ... y " + std::to_string(moves.size() - kListedMoves) + " más");
}

void run_all(StepReport& report, db::Connection& connection, const std::vector<std::string>& statements,
             std::string_view table = {}, std::string_view action = {}) {
  for (const std::string& statement : statements) run_statement(report, connection, statement, table, action);
}

// A. The staged document numbers lose blanks and the separator in front of
// their check digit, so that they compare with the destination's.
void tidy_staged_numbers(StepContext& ctx, StepReport& report) {
  run_all(report, ctx.staging, sql::staged_document_numbers_tidy());
}

// B. Every destination person id (and what refers to it) is parked above the
// offset, so that the staged ids can be taken.
void park_destination_persons(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;
  run_statement(report, kel, sql::park_personas());
  run_statement(report, kel, sql::park_contratos());
  // Contact rows are shifted without a condition; a refusal (a key clash
  // with rows already parked by an earlier, interrupted run) is passed over.
  run_ignoring_errors(report, kel, sql::park_contact_data());
  run_statement(report, kel, sql::park_declaraciones());
}

// C. Destination persons with a staged person of the same document number
// take the staged id.
void match_by_document(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;
  run_statement(report, kel, sql::aux_clear());
  run_statement(report, kel, sql::aux_match_by_document(ctx.staging_path));
  // Read before the map is applied: C1 is the parked id, C2 the staged one.
  note_moves(report, read_person_map(report, kel),
             " persona(s) de KEL identificada(s) por documento con una persona importada (número anterior -> nuevo):");
  run_all(report, kel, sql::apply_match_map());
}

// D. Persons, related persons, declarations and contact data.
void copy_persons(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;
  const std::string& path = ctx.staging_path;
  run_statement(report, kel, sql::refresh_personas(path), "Personas", "actualizadas");
  run_statement(report, kel, sql::insert_new_personas(path), "Personas", "insertadas");
  // Related persons and declarations are replaced whole, but only when the
  // staging database has some: an empty staged table keeps the destination's.
  if (has_rows(report, ctx.staging, sql::staged_personas_rela_probe())) {
    run_statement(report, kel, sql::personas_rela_delete(), "PersonasRela", "borradas");
    run_statement(report, kel, sql::personas_rela_copy(path), "PersonasRela", "insertadas");
  }
  if (has_rows(report, ctx.staging, sql::staged_declaraciones_probe())) {
    run_statement(report, kel, sql::declaraciones_delete(), "Declaraciones", "borradas");
    run_statement(report, kel, sql::declaraciones_copy(path), "Declaraciones", "insertadas");
  }
  run_statement(report, kel, sql::contact_data_copy(path), "rPersonas_Dto_Comunicacion", "insertadas");
}

// E. Contracts: appended above the destination's highest id, refreshed by
// number and agreement, attached to registrations, given defaults.
void copy_contracts(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;
  const std::string& path = ctx.staging_path;
  const std::int64_t contract_base = read_number(report, kel, sql::contract_max_id());
  run_statement(report, kel, sql::contract_insert(contract_base, path), "Contrato", "insertadas");
  run_statement(report, kel, sql::contract_update(path), "Contrato", "actualizadas");
  // Registrations: any error in this block is passed over, so a missing
  // registration type or view leaves the contracts without that registration.
  for (int type = 1; type <= 3; ++type) {
    std::int64_t planilla = -1;
    try {
      db::Recordset first = kel.open_recordset(sql::registration_first(type));
      ++report.statements_run;
      if (!first.eof()) planilla = db::as_int(first.field(0));
    } catch (const db::Error&) {
      ++report.statements_ignored;
    }
    if (planilla != -1)
      run_ignoring_errors(report, kel, sql::registration_attach(type, planilla), "rPlanillas", "insertadas");
  }
  run_all(report, kel, sql::contract_defaults());
}

// F. Parked persons come back: to their old id when it is free, otherwise to
// new ids above the highest staged one. Four transactions, as the map is
// built and applied.
void return_parked_persons(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;

  kel.begin_transaction();
  run_statement(report, kel, sql::aux_clear());
  // After the matching and the copy, the unparked ids are the staged ones.
  const std::int64_t max_p = read_number(report, kel, sql::max_unparked_person());
  kel.commit_transaction();

  kel.begin_transaction();
  run_statement(report, kel, sql::aux_return_to_free_ids());
  kel.commit_transaction();

  run_statement(report, kel, sql::aux_move_above(max_p));
  const std::int64_t max_id = read_number(report, kel, sql::aux_max_new_id());
  if (max_p + 1 < max_id) run_statement(report, kel, sql::aux_lift(max_id, max_p));
  const std::int64_t min_id = read_number(report, kel, sql::aux_min_row());

  kel.begin_transaction();
  run_statement(report, kel, sql::aux_spread(min_id, max_p));
  kel.commit_transaction();

  // The map is complete: a row whose new id is its parked id less the
  // offset gives the person its old number back, any other one renumbers it
  // above MaxP.
  std::vector<IdMove> returned;
  std::vector<IdMove> renumbered;
  for (const IdMove& move : read_person_map(report, kel))
    (move.first == move.second ? returned : renumbered).push_back(move);

  kel.begin_transaction();
  run_all(report, kel, sql::apply_return_map());
  kel.commit_transaction();
  note_moves(report, returned, " persona(s) de KEL sin pareja en la importación conservan su número:");
  note_moves(report, renumbered,
             " persona(s) de KEL sin pareja en la importación reciben un número nuevo, porque el suyo lo "
             "ocupa una persona importada (número anterior -> nuevo):");
}

// G. One duplicate per group of equal contracts goes, with its liquidation
// headers; every contract gets its start-of-employment file entry.
void remove_duplicates_and_file(StepContext& ctx, StepReport& report) {
  db::Connection& kel = ctx.destination;
  run_statement(report, kel, sql::aux_clear());
  run_statement(report, kel, sql::aux_duplicate_contracts());
  const std::int64_t duplicates = read_number(report, kel, sql::aux_row_count());
  if (duplicates > 0)
    report.notes.push_back(std::to_string(duplicates) + " contrato(s) duplicado(s) eliminado(s) con sus liquidaciones");
  run_statement(report, kel, sql::delete_duplicate_headers(), "Encabezados", "borradas");
  run_statement(report, kel, sql::delete_duplicate_contracts(), "Contrato", "borradas");
  run_statement(report, kel, sql::legajo_start_entries(), "Legajo", "insertadas");
}

}  // namespace

StepReport import_persons(StepContext& ctx) {
  StepReport report;
  report.step = "Empleados, Contratos y Deducciones";
  tidy_staged_numbers(ctx, report);
  park_destination_persons(ctx, report);
  match_by_document(ctx, report);
  copy_persons(ctx, report);
  copy_contracts(ctx, report);
  return_parked_persons(ctx, report);
  remove_duplicates_and_file(ctx, report);
  return report;
}

}  // namespace transfer
