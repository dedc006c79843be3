// demo/demo_options.h — the size and seed of a demo company.
#pragma once

#include <cstdint>
#include <string>

namespace demo {

struct DemoOptions {
  int employees = 50;       // persons of the source company
  int years = 2;            // calendar years of liquidations, ending with last_year
  std::uint64_t seed = 1;   // same options and seed give the same databases
  int last_year = 2024;     // fixed, so that the demo does not depend on today's date
};

// Empty when the options can be generated; otherwise the reason, in Spanish.
std::string validate(const DemoOptions& options);

}  // namespace demo
