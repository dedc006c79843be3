// db/sql_text.cpp — pieces of Jet SQL text (see sql_text.h).
#include "db/sql_text.h"

namespace db {

std::string jet_path_literal(const std::string& path) {
  std::string text;
  text.reserve(path.size() + 2);
  for (char c : path) {
    text += c;
    if (c == '\'') text += '\'';
  }
  return text;
}

}  // namespace db
