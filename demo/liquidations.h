// demo/liquidations.h — the past liquidations of the demo source company.
//
// One header per contract, month and liquidation type, with its lines, the
// way the source system kept them: every month a monthly liquidation for every
// active contract (about 26 lines: earnings, contributions, IRPF, deductions,
// informative lines, totals and employer contributions), a mid-month advance
// for the contracts that take one, the half-yearly aguinaldo in June and
// December, the annual leave and holiday pay, now and then a complementary
// liquidation, and the final settlement when a contract ends.
//
// Quantities, unit values and amounts are consistent: a quantity line's amount
// is quantity x unit value, a percentage line's is base x percent / 100
// (TipoDato 1), both rounded to cents; totals add up the lines.
//
// Size: about 30 lines per employee and month, so 1,000 employees over 10
// years give about 3.6 million lines.
#pragma once

#include <cstdint>

#include "demo/demo_options.h"
#include "demo/row_sink.h"
#include "demo/staff.h"

namespace demo {

struct LiquidationCounts {
  std::int64_t headers = 0;
  std::int64_t lines = 0;
};

// Writes Encabezados and Datos_Liquidacion. Deterministic in options and staff.
LiquidationCounts write_source_liquidations(const DemoOptions& options, const Staff& staff, RowSink& sink);

}  // namespace demo
