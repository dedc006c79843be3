// db/jet/lexer.h — splits a Jet statement into tokens.
//
// Jet's lexical rules: names are letters, digits and "_" (or anything between
// [brackets]); texts are between single or double quotes, a doubled quote
// standing for one; dates are between # signs in month/day/year order;
// keywords are names that the parser recognises, in any letter case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace db::jet {

enum class TokenKind {
  kName,    // identifier or keyword; `bracketed` for [names]
  kNumber,  // text: as written
  kString,  // text: the decoded value
  kDate,    // text: ISO 'yyyy-MM-dd' or 'yyyy-MM-dd hh:nn:ss'
  kSymbol,  // text: = <> < > <= >= + - * / \ ^ & ( ) , . ;
  kEnd,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;
  bool bracketed = false;
  std::size_t pos = 0;  // byte offset of the token's first character
};

// The tokens of `source`, ending with one kEnd token. Throws TranslateError
// for an unterminated text, name or date, an invalid date or a stray character.
std::vector<Token> Tokenize(std::string_view source);

// The ISO text of the contents of a Jet date literal (between the # signs),
// read month first as Jet reads it ("MM/dd/yyyy", "M/d/yy", "yyyy-MM-dd",
// with an optional time; a date impossible month first is read day first).
// Empty when the text is not a date. The same reading as db/jet/date.h's
// jet_date_literal_to_iso, so that literals and CDate agree.
std::string JetDateToIso(std::string_view text);

}  // namespace db::jet
