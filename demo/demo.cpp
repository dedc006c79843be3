// demo/demo.cpp — builds the two demo databases.
#include "demo/demo.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>

#include "demo/kel_company.h"
#include "demo/source_company.h"
#include "demo/sqlite_writer.h"

namespace demo {

std::string validate(const DemoOptions& options) {
  if (options.employees < 1 || options.employees > 100000) {
    return "La cantidad de empleados debe estar entre 1 y 100000";
  }
  if (options.years < 1 || options.years > 40) return "La cantidad de años debe estar entre 1 y 40";
  if (options.last_year < 1990 || options.last_year > 2100) return "El último año debe estar entre 1990 y 2100";
  return {};
}

LiquidationCounts generate_source(const DemoOptions& options, const Staff& staff, RowSink& sink, SourceForm form) {
  write_source_company(options, sink);
  write_source_people(options, staff, sink);
  write_source_codes(options, staff, sink, form);
  return write_source_liquidations(options, staff, sink);
}

void generate_kel(const DemoOptions& options, const Staff& staff, RowSink& sink) {
  write_kel_company(options, staff, sink);
}

namespace {

void make_parent(const std::string& path) {
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  std::error_code ec;
  if (!parent.empty()) std::filesystem::create_directories(parent, ec);
  if (ec) throw std::runtime_error("No se puede crear la carpeta '" + parent.string() + "': " + ec.message());
}

void collect_missing(const SqliteWriter& writer, std::set<std::string>& out) {
  out.insert(writer.missing_columns().begin(), writer.missing_columns().end());
  out.insert(writer.missing_tables().begin(), writer.missing_tables().end());
}

}  // namespace

DemoReport build_demo(const DemoOptions& options, const DemoPaths& paths) {
  const auto started = std::chrono::steady_clock::now();
  if (const std::string problem = validate(options); !problem.empty()) throw std::runtime_error(problem);
  if (paths.source == paths.kel) throw std::runtime_error("El origen y la empresa KEL deben ser archivos distintos");
  if (!paths.interchange.empty() && (paths.interchange == paths.source || paths.interchange == paths.kel)) {
    throw std::runtime_error("La base de intercambio debe ser un archivo distinto del origen y de la empresa KEL");
  }
  const std::filesystem::path dir(paths.schema_dir);

  DemoReport report;
  const Staff staff = plan_staff(options);
  report.persons = static_cast<std::int64_t>(staff.persons.size());
  report.contracts = static_cast<std::int64_t>(staff.contracts.size());

  make_parent(paths.source);
  {
    SqliteWriter source(paths.source, {(dir / "pasaje.sql").string()});
    report.liquidations = generate_source(options, staff, source);
    source.finish();
    report.source_rows = source.row_counts();
    collect_missing(source, report.missing);
  }
  if (!paths.interchange.empty()) {
    // Generated again rather than copied: the rows are the same (same
    // options, same seed) and the Conceptos rows get their TotalBPS marks.
    make_parent(paths.interchange);
    SqliteWriter interchange(paths.interchange, {(dir / "pasaje.sql").string()}, {kInterchangeSchemaSql});
    generate_source(options, staff, interchange, SourceForm::Interchange);
    interchange.finish();
    collect_missing(interchange, report.missing);
  }
  make_parent(paths.kel);
  {
    SqliteWriter kel(paths.kel, {(dir / "kel.sql").string(), (dir / "kel_base.sql").string()});
    generate_kel(options, staff, kel);
    kel.finish();
    report.kel_rows = kel.row_counts();
    collect_missing(kel, report.missing);
  }
  report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  return report;
}

}  // namespace demo
