// db/jet/collation.h — how Jet orders and compares texts: without regard to
// case, in the Spanish order.
//
// Jet compares texts case-insensitively everywhere (=, <, Group By, Distinct,
// Order By, joins), with accented capitals folded like plain ones
// ('ÑANDÚ' = 'ñandú'), ñ a letter of its own between n and o, and accented
// vowels sorting with their letter (a < á < b). Accents still tell texts apart
// ('a' <> 'á'): they decide only between texts that are otherwise equal.
// db/ registers compare_text as the SQLite collation kCollationName on every
// connection and the translator names it wherever an operand is text.
#pragma once

#include <string_view>

namespace db::jet {

// The name of the collation in SQLite text ("COLLATE jet_es").
inline constexpr const char* kCollationName = "jet_es";

// Negative, zero or positive as `a` sorts before, equal to or after `b`.
// UTF-8 texts; a byte that is not valid UTF-8 counts as the character of the
// same number (Windows-1252 texts still order consistently).
int compare_text(std::string_view a, std::string_view b);

}  // namespace db::jet
