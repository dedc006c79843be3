// demo/kel_company.h — the rows of the demo KEL company.
//
// A KEL company that has been in use for a while before the import: it holds
// about one person in five of the source company, entered by hand under KEL's
// own ids (never the source's) with the document number written KEL's way,
// one contract each (half of them with the same start and end as in the
// source, so the transfer recognises them; the rest with another start), two
// people the source does not know, their contact data, personnel file
// entries and registrations, two declarations (a child, a working spouse),
// and one monthly liquidation already made in KEL for the period's last month. The base data (concepts, types) come from the
// KEL base script, not from here.
#pragma once

#include "demo/demo_options.h"
#include "demo/row_sink.h"
#include "demo/staff.h"

namespace demo {

// Writes the KEL company's own rows. Deterministic in options and staff.
void write_kel_company(const DemoOptions& options, const Staff& staff, RowSink& sink);

// The people KEL holds that the source does not know: their ids follow the
// ids KEL gave to the shared people, so they collide with staged ids.
int kel_only_person_count();

}  // namespace demo
