// transfer/step_context.h — what every transfer step receives, and what it
// gives back.
//
// The five steps (company, catalogues, persons, concepts, liquidations) run
// their statements on the destination connection and read the staging
// database by its path, through the `in '<path>'` clause. Nothing a step
// needs is taken from the session: the caller hands over the two
// connections, the questions it may ask and the progress callback.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"
#include "db/recordset.h"

namespace transfer {

// The questions a step may ask the user (the concept and liquidation-type
// replacement questions); true on Yes. The window shows a Yes/No box, batch
// runs answer from the command line, tests script the answers.
class Questions {
 public:
  virtual ~Questions() = default;
  virtual bool ask_yes_no(const std::string& text) = 0;
};

// The progress bar, in its own terms: a value greater than -1 becomes the step
// increment and advances by it; -1 advances by the current increment; -2
// resets. The window repaints after each call.
using Progress = std::function<void(float)>;

// One line of what a step did to a table, counted from the engine's changes.
struct TableChange {
  std::string table;   // the table written, as the statement names it
  std::string action;  // "insertadas", "actualizadas" or "borradas"
  std::int64_t rows = 0;
};

// What a step did, for the run's result and report.
struct StepReport {
  std::string step;                   // the step's caption
  int statements_run = 0;             // statements the engine accepted
  int statements_ignored = 0;         // refused where the step ignores errors
  std::vector<TableChange> changes;   // in the order they happened
  std::vector<std::string> notes;     // Spanish lines worth telling the user

  // Adds `rows` to the entry for (table, action), creating it when missing.
  void add(std::string_view table, std::string_view action, std::int64_t rows);
  // Rows of all entries, or of one action when `action` is given.
  std::int64_t total(std::string_view action = {}) const;
};

struct StepContext {
  db::Connection& destination;  // the KEL company database
  db::Connection& staging;      // the staging database
  std::string staging_path;     // the staging file as the `in` clauses name it
  Questions& questions;
  Progress progress;
};

// Runs `sql` on `connection` and adds the rows it changed to `report` under
// (`table`, `action`) when `table` is given. A refused statement raises
// db::Error, which stops the step: the statements already run stay applied.
std::int64_t run_statement(StepReport& report, db::Connection& connection, std::string_view sql,
                           std::string_view table = {}, std::string_view action = {});

// The same, for the statements whose errors the step ignores: a refused
// statement changes nothing (SQLite undoes the whole statement, as Jet does
// with no partial bulk operations), is counted in statements_ignored and
// gives -1; otherwise the rows changed.
std::int64_t run_ignoring_errors(StepReport& report, db::Connection& connection, std::string_view sql,
                                 std::string_view table = {}, std::string_view action = {});

// Opens a result set on `connection`, counted as a statement run. A refused
// query raises db::Error, which stops the step.
db::Recordset run_query(StepReport& report, db::Connection& connection, std::string_view sql);

// The first field of the first row of `sql`, read where the step ignores the
// query's errors: `fallback` when there is no row or the query is refused
// (then counted in statements_ignored).
std::int64_t first_value_ignoring_errors(StepReport& report, db::Connection& connection, std::string_view sql,
                                         std::int64_t fallback);

// Lets the window repaint; the bar moves by its current step.
void repaint(StepContext& ctx);

}  // namespace transfer
