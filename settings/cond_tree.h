// settings/cond_tree.h — the tree a catalogue entry's condition text becomes.
//
// A node is either a leaf (one condition text such as "NOM(*.txt)" or the
// password item "PASS=secreto;") or a collection of nodes joined by one
// operator: "*" (every item must hold) or "+" (one item is enough). The
// condition parser (staging/condition.h) builds it; DevPass searches it for the
// password and the catalogue matching evaluates it.
#pragma once

#include <string>
#include <vector>

namespace settings {

struct CondNode {
  bool is_list = false;
  // Leaf: the condition text without its trailing "-" and "/" marks (the
  // password item is kept exactly as written).
  std::string text;
  // Collection: the operator joining the items and the items in order.
  char op = '*';
  std::vector<CondNode> items;
  // Trailing marks of a leaf or of a parenthesised part: "-" negates the
  // result, "/" makes text comparisons respect letter case.
  bool negate = false;
  bool case_sensitive = false;

  static CondNode Leaf(std::string t) {
    CondNode n;
    n.text = std::move(t);
    return n;
  }
  static CondNode List(char op) {
    CondNode n;
    n.is_list = true;
    n.op = op;
    return n;
  }
};

// The source password in a condition tree, searched over the items in order:
// an item that is a collection is searched first, and a non-empty password
// found in it ends the search; a leaf whose first four characters are "PASS"
// (any case) gives its text from the sixth character, without the last one
// (the item is written "PASS=" + password + one closing character; the fifth
// character is not checked). "" when no item gives a password. A leaf node
// given as the root is treated as a one-item list.
std::string DevPass(const CondNode& list);

}  // namespace settings
