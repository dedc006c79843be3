// staging/condition.cpp — condition parser and evaluator (see condition.h).
#include "staging/condition.h"

#include <vector>

#include "base/number.h"
#include "settings/strings.h"

namespace staging {

using settings::CondNode;

namespace {

struct Leaf {
  std::string word;  // upper-cased keyword; "" for a leaf without "("
  std::string arg;
};

bool IsPassItem(std::string_view t) { return settings::UpperAscii(t.substr(0, 4)) == "PASS"; }

// Splits a leaf "WORD(arg)" into its keyword and argument; false when it has a
// "(" but does not end in ")".
bool SplitLeaf(std::string_view t, Leaf* leaf) {
  std::size_t open = t.find('(');
  if (open == std::string_view::npos) {
    leaf->word.clear();
    leaf->arg = std::string(t);
    return true;
  }
  if (t.back() != ')') return false;
  leaf->word = settings::UpperAscii(settings::Trim(t.substr(0, open)));
  leaf->arg = std::string(t.substr(open + 1, t.size() - open - 2));
  return true;
}

bool IsComparisonWord(const std::string& w) { return w == "=" || w == "IN" || (!w.empty() && w[0] == 'L'); }

bool IsKnownWord(const std::string& w) {
  return w == "NOM" || w == "FL" || w == "DINT" || IsComparisonWord(w);
}

// Splits at the operator `op` where it stands outside parentheses.
std::vector<std::string> SplitOutside(std::string_view s, char op) {
  std::vector<std::string> parts;
  int depth = 0;
  std::size_t start = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '(') ++depth;
    else if (s[i] == ')') --depth;
    else if (s[i] == op && depth == 0) {
      parts.emplace_back(s.substr(start, i - start));
      start = i + 1;
    }
  }
  parts.emplace_back(s.substr(start));
  return parts;
}

class Parser {
 public:
  std::string error;

  CondNode Expression(std::string_view text) {
    for (char op : {'+', '*'}) {
      std::vector<std::string> parts = SplitOutside(text, op);
      if (parts.size() == 1) continue;
      CondNode list = CondNode::List(op);
      for (const std::string& p : parts) {
        if (settings::Trim(p).empty()) {
          Fail("falta una condición junto a un '" + std::string(1, op) + "' en '" + std::string(text) + "'");
          return list;
        }
        list.items.push_back(Expression(p));
        if (!error.empty()) return list;
      }
      return list;
    }
    return Factor(settings::Trim(text));
  }

 private:
  void Fail(std::string why) {
    if (error.empty()) error = std::move(why);
  }

  CondNode Factor(std::string t) {
    if (IsPassItem(t)) return CondNode::Leaf(t);
    bool negate = false, exact = false;
    while (!t.empty() && (t.back() == '-' || t.back() == '/')) {
      (t.back() == '-' ? negate : exact) = true;
      t.pop_back();
      t = settings::Trim(t);
    }
    if (t.empty()) {
      Fail("falta la condición antes de '-' o '/'");
      return CondNode::Leaf("");
    }
    CondNode node;
    if (t.front() == '(' && t.back() == ')') {
      node = Expression(std::string_view(t).substr(1, t.size() - 2));
      if (!node.is_list) {
        // "(A)" is just A; its marks add to the inner ones.
        node.negate = node.negate != negate;
        node.case_sensitive = node.case_sensitive || exact;
        return node;
      }
    } else {
      Leaf leaf;
      if (!SplitLeaf(t, &leaf)) {
        Fail("la condición '" + t + "' debe terminar en ')'");
      } else if (!leaf.word.empty() && !IsKnownWord(leaf.word)) {
        Fail("palabra desconocida '" + leaf.word + "' en la condición '" + t +
             "' (se esperaba NOM, FL, DINT, =, IN o L...)");
      }
      node = CondNode::Leaf(t);
    }
    node.negate = negate;
    node.case_sensitive = exact;
    return node;
  }
};

bool CheckParentheses(std::string_view text, std::string* error) {
  int depth = 0;
  for (char c : text) {
    if (c == '(') ++depth;
    else if (c == ')' && --depth < 0) {
      *error = "La condición '" + std::string(text) + "' cierra un paréntesis que no se abrió";
      return false;
    }
  }
  if (depth != 0) {
    *error = "La condición '" + std::string(text) + "' deja " + std::to_string(depth) +
             " paréntesis sin cerrar";
    return false;
  }
  return true;
}

std::size_t CharCount(std::string_view s) {
  std::size_t n = 0;
  for (char c : s)
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++n;
  return n;
}

std::string_view FirstLine(std::string_view s) {
  std::size_t p = s.find_first_of("\r\n");
  return p == std::string_view::npos ? s : s.substr(0, p);
}

bool Contains(std::string_view hay, std::string_view needle, bool exact) {
  return exact ? hay.find(needle) != std::string_view::npos
               : settings::IFind(hay, needle) != std::string::npos;
}

// One comparison word applied to a text.
bool Compare(const std::string& word, const std::string& arg, std::string_view target, bool exact) {
  if (word == "=") {
    std::string a = settings::Trim(arg), b = settings::Trim(target);
    return exact ? a == b : settings::IEquals(a, b);
  }
  if (word == "IN") return Contains(target, arg, exact);
  // Length tests: L<>, L>, L< and any other L... word (equal length).
  double n = base::Val(arg);
  double len = static_cast<double>(CharCount(target));
  if (word == "L<>") return len != n;
  if (word == "L>") return len > n;
  if (word == "L<") return len < n;
  return len == n;
}

bool EvalLeaf(const CondNode& node, std::string_view name, std::string_view contents) {
  const std::string& t = node.text;
  if (IsPassItem(t)) return true;
  Leaf leaf;
  if (!SplitLeaf(t, &leaf)) return false;
  bool exact = node.case_sensitive;
  if (leaf.word.empty()) return settings::WildcardMatch(name, settings::Trim(leaf.arg), !exact);
  if (leaf.word == "NOM") {
    for (const std::string& alt : settings::SplitChar(leaf.arg, ';')) {
      std::string a = settings::Trim(alt);
      if (!a.empty() && settings::WildcardMatch(name, a, !exact)) return true;
    }
    return false;
  }
  if (leaf.word == "FL" || leaf.word == "DINT") {
    std::string_view target = leaf.word == "FL" ? FirstLine(contents) : contents;
    Leaf inner;
    std::string a = settings::Trim(leaf.arg);
    if (a.find('(') != std::string::npos && SplitLeaf(a, &inner) && IsComparisonWord(inner.word))
      return Compare(inner.word, inner.arg, target, exact);
    if (a.size() >= 1 && a[0] == '=')  // FL(=LEGAJO;NOMBRE): equality without parentheses
      return Compare("=", a.substr(1), target, exact);
    return Contains(target, leaf.arg, exact);
  }
  return Compare(leaf.word, leaf.arg, name, exact);
}

bool Eval(const CondNode& node, std::string_view name, std::string_view contents) {
  bool result;
  if (!node.is_list) {
    result = EvalLeaf(node, name, contents);
  } else if (node.op == '+') {
    result = false;
    for (const CondNode& item : node.items)
      if (Eval(item, name, contents)) { result = true; break; }
  } else {
    result = true;
    for (const CondNode& item : node.items)
      if (!Eval(item, name, contents)) { result = false; break; }
  }
  return node.negate ? !result : result;
}

}  // namespace

ConditionParse ParseCondition(std::string_view text) {
  ConditionParse out;
  std::string t = settings::Trim(text);
  if (t.empty()) return out;
  if (!CheckParentheses(t, &out.error)) return out;
  Parser parser;
  CondNode node = parser.Expression(t);
  if (!parser.error.empty()) {
    out.error = "Condición '" + t + "': " + parser.error;
    return out;
  }
  if (node.is_list && !node.negate) {
    out.tree = std::move(node);
  } else {
    out.tree.items.push_back(std::move(node));
  }
  return out;
}

bool CoincideConCond(const CondNode& tree, std::string_view name, std::string_view contents) {
  return Eval(tree, name, contents);
}

ContentNeed ContentsNeeded(const CondNode& tree) {
  if (tree.is_list) {
    ContentNeed most = ContentNeed::None;
    for (const CondNode& item : tree.items) {
      ContentNeed n = ContentsNeeded(item);
      if (n == ContentNeed::Whole) return n;
      if (n == ContentNeed::FirstLine) most = n;
    }
    return most;
  }
  if (IsPassItem(tree.text)) return ContentNeed::None;
  Leaf leaf;
  if (!SplitLeaf(tree.text, &leaf)) return ContentNeed::None;
  if (leaf.word == "DINT") return ContentNeed::Whole;
  if (leaf.word == "FL") return ContentNeed::FirstLine;
  return ContentNeed::None;
}

}  // namespace staging
