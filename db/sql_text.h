// db/sql_text.h — pieces of Jet SQL text that the program assembles.
#pragma once

#include <string>

namespace db {

// `path` as it goes between the quotes of an `in '...'` clause: every single
// quote doubled, so that a folder such as O'Brien does not end the text.
std::string jet_path_literal(const std::string& path);

}  // namespace db
