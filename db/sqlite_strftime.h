// db/sqlite_strftime.h — a quicker strftime(format, date) for our SQLite
// connections.
//
// The staging schema's view of liquidation headers shows each month through
// strftime('%m/%Y', MesDeLiq), and the liquidation browser sorts by it over
// every staged header: SQLite's own strftime (a general date parser and a
// printf) is most of that sort's cost. The two-argument form is therefore
// registered on each connection with a direct path for a stored ISO date
// and a format of plain fields; every other call is answered by SQLite's own
// strftime, so results are the same for any argument.
#pragma once

struct sqlite3;

namespace db {

// Registers strftime with two arguments on `db`. Calls with another number
// of arguments keep SQLite's own function. Throws db::Error when SQLite
// refuses the registration.
void register_quick_strftime(sqlite3* db);

}  // namespace db
