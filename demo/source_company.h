// demo/source_company.h — the rows of the demo source company.
//
// The source company is written as its data stand once staged: the company
// record, payroll registrations, catalogues, people with contracts,
// declarations and contact data, concepts, liquidation types, exchange rates,
// the mappings a format fills while staging, and (liquidations.h) the
// liquidations themselves.
#pragma once

#include "demo/demo_options.h"
#include "demo/row_sink.h"
#include "demo/staff.h"

namespace demo {

// Which form of the source the rows are for: the staging database (the
// staging schema, nothing more) or an interchange form (CSV files or an
// interchange database), which also carries Conceptos.TotalBPS, the column
// the shipped formats read to link the totals' concepts.
enum class SourceForm { Staging, Interchange };

// Company, registrations and catalogues.
void write_source_company(const DemoOptions& options, RowSink& sink);

// Persons, contracts, related persons, declarations and contact data.
void write_source_people(const DemoOptions& options, const Staff& staff, RowSink& sink);

// Concepts, liquidation types, their pre-filled mappings and exchange rates.
void write_source_codes(const DemoOptions& options, const Staff& staff, RowSink& sink,
                        SourceForm form = SourceForm::Staging);

}  // namespace demo
