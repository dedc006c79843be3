// demo/source_csv.cpp — the demo source company written as CSV files.
#include "demo/source_csv.h"

#include <stdexcept>

#include "demo/csv_writer.h"
#include "demo/demo.h"

namespace demo {

std::map<std::string, std::int64_t> write_source_csv(const DemoOptions& options, const std::filesystem::path& folder) {
  if (const std::string problem = validate(options); !problem.empty()) throw std::runtime_error(problem);
  const Staff staff = plan_staff(options);
  CsvWriter writer(folder);
  generate_source(options, staff, writer, SourceForm::Interchange);
  writer.finish();
  return writer.row_counts();
}

}  // namespace demo
