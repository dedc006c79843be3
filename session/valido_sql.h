// session/valido_sql.h — statements of the company check before a transfer.
//
// The check compares the company open in KEL with the company of the source
// system, first by name and, when the names agree, by legal name. The
// destination statements are Jet SQL (translated); the source statements run
// untouched on the source's ODBC data source, in the source's dialect.
#pragma once

#include <string>

namespace session::sql {

// Destination: the company's name, trimmed and upper-cased.
std::string destination_company_name();
// Source: the company's name, upper-cased.
std::string source_company_name();
// Destination: the company's legal name, trimmed and upper-cased.
std::string destination_legal_name();
// Source: the company's legal name, upper-cased.
std::string source_legal_name();
// The company just staged (the staging database's Empresa), read when no
// source connection is open: a folder source is checked through what it loaded.
std::string staged_company_name();
std::string staged_legal_name();

}  // namespace session::sql
