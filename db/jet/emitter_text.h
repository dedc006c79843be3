// db/jet/emitter_text.h — how names and literals are written in SQLite text.
#pragma once

#include <string>
#include <string_view>

namespace db::jet {

// `name` as an SQLite identifier: as written when it is a plain name that is
// not an SQLite keyword, otherwise between brackets ([Fecha de alta], [Key]).
std::string SqliteIdentifier(std::string_view name);

// `value` as an SQLite text literal between single quotes.
std::string SqliteString(std::string_view value);

// `text` without its outermost parentheses when one pair encloses all of it
// ("(a = 1)" -> "a = 1"; "(a) + (b)" and "(SELECT ...)" are left alone).
// Quotes are respected.
std::string StripOuterParens(const std::string& text);

}  // namespace db::jet
