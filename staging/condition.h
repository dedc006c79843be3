// staging/condition.h — the conditions that recognise a catalogue entry's
// source: parsing a condition text into a tree and testing a file against it.
//
// Grammar (formats/README.md explains it to format authors):
//   condition := term { "+" term }          "+" is OR
//   term      := factor { "*" factor }      "*" is AND and binds tighter
//   factor    := "(" condition ")" marks | leaf marks
//   marks     := any of "-" (negate) and "/" (compare letter case exactly)
// Operators inside parentheses belong to the inner part, so the "*" of
// NOM(emp*.txt) is a wildcard, not an operator. Leaves:
//   NOM(a.txt;b*.csv)   the file name matches one of the wildcard alternatives
//   FL(test)            the first line of the file passes the test
//   DINT(test)          the whole contents pass the test
//   =(text) IN(text) L<>(n) L>(n) L<(n) L(n)   tests of the file name
//   PASS=secreto;       the source password, not a condition (always holds)
//   emp*.txt            a leaf without "(" is a wildcard test of the name
// The test inside FL and DINT is one of the comparison words applied to that
// text (FL(=LEGAJO;NOMBRE), FL(L>(40)) ...) or plain text, which must occur in
// it (FL(Legajo) is FL(IN(Legajo))). Texts compare without regard to case
// unless the leaf carries "/". Lengths count characters.
// A password cannot hold "+", "*", "(" or ")", since they would be read as
// parts of the condition.
#pragma once

#include <string>
#include <string_view>

#include "settings/cond_tree.h"

namespace staging {

struct ConditionParse {
  settings::CondNode tree = settings::CondNode::List('*');  // always a collection
  std::string error;  // Spanish; empty when the text parsed
  bool ok() const { return error.empty(); }
};

// Parses a condition text. An empty text gives an empty collection (which
// every file satisfies). Unbalanced parentheses, an operator without a
// condition on one side, a leaf that does not end in ")" or an unknown keyword
// give an error and an empty tree.
ConditionParse ParseCondition(std::string_view text);

// Does a file with this name and contents satisfy the tree? A "*" collection
// holds when all its items hold (an empty one always), a "+" collection when
// any does (an empty one never).
bool CoincideConCond(const settings::CondNode& tree, std::string_view name, std::string_view contents);

// How much of a file the tree tests: nothing (names only), the first line
// (FL leaves only) or the whole contents (some DINT leaf).
enum class ContentNeed { None, FirstLine, Whole };
ContentNeed ContentsNeeded(const settings::CondNode& tree);

// True when some leaf of the tree tests the file's contents (FL or DINT), so
// the file must be read before it can be tested.
inline bool NeedsContents(const settings::CondNode& tree) { return ContentsNeeded(tree) != ContentNeed::None; }

}  // namespace staging
