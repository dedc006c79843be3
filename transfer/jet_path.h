// transfer/jet_path.h — a file path as a Jet text names it in `in '<path>'`.
//
// The steps read the other database by path between single quotes; a folder
// such as "O'Brien" must not end the text early, so its quotes are doubled
// (the translator reads 'O''Brien' back as O'Brien).
#pragma once

#include <string>
#include <string_view>

namespace transfer {

// `path` with every single quote doubled, ready to go between the quotes.
inline std::string jet_quoted_path(std::string_view path) {
  std::string text;
  text.reserve(path.size() + 2);
  for (char c : path) {
    text += c;
    if (c == '\'') text += '\'';
  }
  return text;
}

}  // namespace transfer
