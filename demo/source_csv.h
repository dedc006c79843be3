// demo/source_csv.h — the demo source company as a folder of interchange CSV
// files, the form a company would export from its old payroll system.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "demo/demo_options.h"

namespace demo {

// Writes every table of the demo source company with these options into
// `folder` as <Table>.csv (demo/csv_writer.h), the same rows build_demo puts
// in the source database, with Conceptos.TotalBPS as the interchange forms
// carry it. Returns the rows written per table. Throws
// std::runtime_error (Spanish) for invalid options or a file that cannot be
// written.
std::map<std::string, std::int64_t> write_source_csv(const DemoOptions& options, const std::filesystem::path& folder);

}  // namespace demo
