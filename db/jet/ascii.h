// db/jet/ascii.h — ASCII case folding for the Jet functions' hot paths.
//
// Keywords, pattern letters and named formats are plain ASCII; comparing them
// without allocating matters because the functions run once per row.
#pragma once

#include <cstddef>
#include <string_view>

namespace db::jet {

// `c` in lower case when it is an ASCII capital letter, otherwise unchanged.
inline char lower_ascii(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

// True when `a` and `b` are equal ignoring the case of ASCII letters.
inline bool iequals(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lower_ascii(a[i]) != lower_ascii(b[i])) return false;
  return true;
}

}  // namespace db::jet
