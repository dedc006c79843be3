// demo/demo.h — builds the demo source company and the demo KEL company.
//
// Entry point of the demo generator for the kel_demo tool, the build, tests
// and benchmarks. The source company is a database with the staging schema,
// filled as a source system's data stand once staged; the KEL company is a
// KEL company database (schema and base data) that already holds some of the
// same people. Same options, same bytes.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "demo/demo_options.h"
#include "demo/liquidations.h"
#include "demo/row_sink.h"
#include "demo/source_company.h"
#include "demo/staff.h"

namespace demo {

struct DemoPaths {
  std::string source;      // the source company database to write
  std::string kel;         // the KEL company database to write
  std::string schema_dir;  // folder with pasaje.sql, kel.sql and kel_base.sql
  // Optional: the source again as an interchange database (the staging
  // schema plus Conceptos.TotalBPS), the form format 1 reads. Empty: none.
  std::string interchange = {};
};

struct DemoReport {
  std::int64_t persons = 0;
  std::int64_t contracts = 0;
  LiquidationCounts liquidations;
  std::map<std::string, std::int64_t> source_rows;  // rows written per table
  std::map<std::string, std::int64_t> kel_rows;
  // "Table.Column" (or "Table") the generator gives and the schema lacks.
  std::set<std::string> missing;
  double seconds = 0;  // wall time of the whole build
};

// Writes every table of the source company into `sink`, with the columns of
// `form` (an interchange form adds Conceptos.TotalBPS).
LiquidationCounts generate_source(const DemoOptions& options, const Staff& staff, RowSink& sink,
                                  SourceForm form = SourceForm::Staging);

// The statement that turns a database made from the staging schema into the
// interchange schema: the one column the interchange forms add.
inline constexpr const char* kInterchangeSchemaSql = "ALTER TABLE Conceptos ADD COLUMN TotalBPS TEXT COLLATE NOCASE";

// Writes the KEL company's own rows into `sink` (the base data are the
// schema's).
void generate_kel(const DemoOptions& options, const Staff& staff, RowSink& sink);

// Creates both databases, and the interchange database when its path is
// given (replacing existing files; folders are created).
// Throws std::runtime_error with a Spanish message when the options are
// invalid, a schema script is missing or a database cannot be written.
DemoReport build_demo(const DemoOptions& options, const DemoPaths& paths);

}  // namespace demo
