// settings/strings.h — small text helpers shared by the settings component and
// the code above it: trimming, case-insensitive comparison and search in UTF-8
// text, wildcards. Numbers are read by Basic's Val in base/number.h.
//
// Letter case is folded for ASCII and for the accented letters of Latin-1
// (Á/á, Ñ/ñ ...), which is what Spanish names and texts need; other scripts are
// compared exactly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

// The text without leading and trailing blanks (space, tab, CR, LF).
std::string Trim(std::string_view s);

// ASCII upper case; other bytes unchanged.
std::string UpperAscii(std::string_view s);

// A copy of `s` with letter case folded (ASCII and Latin-1 letters in UTF-8);
// the result has the same length in bytes, so positions carry over.
std::string FoldCase(std::string_view s);

// Texts equal without regard to letter case.
bool IEquals(std::string_view a, std::string_view b);

// Text begins with `prefix`, without regard to letter case.
bool IStartsWith(std::string_view s, std::string_view prefix);

// Position of `needle` in `hay` from `from`, without regard to letter case;
// npos when absent. An empty needle is found at `from`.
std::size_t IFind(std::string_view hay, std::string_view needle, std::size_t from = 0);

// Every occurrence of `find` replaced by `with`, scanning left to right from the
// first character without regard to letter case; replaced text is not scanned
// again. An empty `find` leaves the text as it is.
std::string IReplaceAll(std::string_view text, std::string_view find, std::string_view with);

// Splits on every occurrence of a one-character separator; "" gives one
// empty field.
std::vector<std::string> SplitChar(std::string_view s, char sep);

// Matches a name against a wildcard pattern: "*" any run, "?" one character
// (one UTF-8 character), other characters literally, without regard to case
// unless `ignore_case` is false.
bool WildcardMatch(std::string_view name, std::string_view pattern, bool ignore_case = true);

}  // namespace settings
