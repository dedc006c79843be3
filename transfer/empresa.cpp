// transfer/empresa.cpp — the company and registrations step: five statements
// in a fixed order, counted into the step's report.
#include "transfer/empresa.h"

#include "transfer/empresa_sql.h"

namespace transfer {

StepReport import_company(StepContext& ctx) {
  StepReport report;
  report.step = "Datos de la Empresa";
  db::Connection& kel = ctx.destination;
  run_statement(report, kel, sql::empresa_delete(), "Empresa", "borradas");
  run_statement(report, kel, sql::empresa_copy(ctx.staging_path), "Empresa", "insertadas");
  run_statement(report, kel, sql::planillas_delete(), "Planillas", "borradas");
  // The neutral registration reads the company just copied: with no staged
  // company there is no registration 0 either.
  run_statement(report, kel, sql::planillas_neutral_insert(), "Planillas", "insertadas");
  run_statement(report, kel, sql::planillas_copy(ctx.staging_path), "Planillas", "insertadas");
  return report;
}

}  // namespace transfer
