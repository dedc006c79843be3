// session/valido_sql.cpp — texts of the company check.
#include "session/valido_sql.h"

namespace session::sql {

std::string destination_company_name() { return "Select ucase(trim(Nombre)) From Empresa"; }

std::string source_company_name() { return "Select upper(Em_Nombre) From Empresa"; }

std::string destination_legal_name() { return "Select ucase(trim(RazonSocial)) From Empresa"; }

std::string source_legal_name() { return "Select upper(Em_RSocial) From Empresa"; }

std::string staged_company_name() { return "Select ucase(trim(Nombre)) From Empresa"; }

std::string staged_legal_name() { return "Select ucase(trim(RazonSocial)) From Empresa"; }

}  // namespace session::sql
