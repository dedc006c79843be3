// session/controller_valido.cpp — the company check before a transfer
// (Valido): the company open in KEL against the company of the source, or
// against the staged company when the source has no connection.
#include <exception>

#include "base/value.h"
#include "session/main_controller.h"
#include "session/valido_sql.h"
#include "settings/strings.h"

namespace session {

namespace {

// The first field of the first row, trimmed; "" when the connection is absent
// or closed, the query is refused, or it gives no row or a Null. The check
// must never stop the user: an unreadable name takes part as an empty text.
std::string first_value(db::Connection* conn, const std::string& sql) {
  if (conn == nullptr || !conn->is_open()) return {};
  try {
    db::Recordset rs = conn->open_recordset(sql);
    if (rs.eof() || rs.field_count() == 0) return {};
    return settings::Trim(db::as_text(rs.field(std::size_t{0})));
  } catch (const std::exception&) {
    return {};
  }
}

std::string difference_question(const char* what, const std::string& kel, const std::string& imported) {
  return std::string("La empresa de KEL tiene ") + what + ": '" + kel + "'" + "\r\n" +
         "y la empresa a importar tiene " + what + ": '" + imported + "'" + "\r\n" +
         "¿Desea continuar de todas formas?";
}

}  // namespace

bool MainWindowController::Valido(bool mostrar) {
  if (!mostrar) return true;
  bool result = true;
  // A folder or file source has no connection of its own: its company is the
  // one just staged, so the right company is not questioned on every import.
  const bool source_open = source != nullptr && source->is_open();
  db::Connection* company_conn = source_open ? source.get() : staging.get();
  const std::string kel_name = first_value(destination.get(), sql::destination_company_name());
  const std::string source_name = first_value(
      company_conn, source_open ? sql::source_company_name() : sql::staged_company_name());
  if (!settings::IEquals(kel_name, source_name)) {
    result = ui_.ask_yes_no(difference_question("Nombre", kel_name, source_name), QuestionIcon::kWarning);
  } else {
    const std::string kel_rs = first_value(destination.get(), sql::destination_legal_name());
    const std::string source_rs = first_value(
        company_conn, source_open ? sql::source_legal_name() : sql::staged_legal_name());
    if (!settings::IEquals(kel_rs, source_rs))
      result = ui_.ask_yes_no(difference_question("RS", kel_rs, source_rs), QuestionIcon::kWarning);
  }
  if (result) result = ui_.ask_yes_no("Confirma importar los datos de la empresa", QuestionIcon::kQuestion);
  return result;
}

}  // namespace session
