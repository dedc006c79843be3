// db/jet/translator.cpp — translate(): lex, parse, emit.
#include "db/jet/translator.h"

#include "db/jet/emitter.h"
#include "db/jet/parser.h"

namespace db::jet {

Translation translate(std::string_view jet_sql, TranslationContext& context) {
  Parser parser(jet_sql);
  Statement statement = parser.ParseStatement();
  Emitter emitter(jet_sql, context);
  return emitter.Emit(statement);
}

std::vector<std::string> database_paths(std::string_view jet_sql) {
  Parser parser(jet_sql);
  parser.ParseStatement();
  return parser.database_paths();
}

}  // namespace db::jet
