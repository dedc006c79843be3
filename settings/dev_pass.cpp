// settings/dev_pass.cpp — the password item of a condition tree (see cond_tree.h).
#include "settings/cond_tree.h"

#include "settings/strings.h"

namespace settings {

namespace {

// The password of one "PASS" item: from the sixth character, dropping the last.
// Items shorter than "PASS=" plus one character give "".
std::string PassOf(const std::string& item) {
  if (item.size() < 6) return {};
  return item.substr(5, item.size() - 6);
}

}  // namespace

std::string DevPass(const CondNode& list) {
  if (!list.is_list) return UpperAscii(list.text.substr(0, 4)) == "PASS" ? PassOf(list.text) : "";
  for (const CondNode& item : list.items) {
    if (item.is_list) {
      std::string found = DevPass(item);
      if (!found.empty()) return found;
    } else if (UpperAscii(item.text.substr(0, 4)) == "PASS") {
      return PassOf(item.text);
    }
  }
  return {};
}

}  // namespace settings
