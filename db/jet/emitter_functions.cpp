// db/jet/emitter_functions.cpp — the table of known Jet functions.
#include "db/jet/emitter_functions.h"

#include "db/jet/ast.h"

namespace db::jet {
namespace {

constexpr FunctionInfo kFunctions[] = {
    // Emitted inline as CASE / IS NULL.
    {"IIf", FunctionKind::kInline, 3, 3, ""},
    {"IsNull", FunctionKind::kInline, 1, 1, ""},
    // Native aggregates.
    {"Max", FunctionKind::kAggregate, 1, 1, "MAX"},
    {"Min", FunctionKind::kAggregate, 1, 1, "MIN"},
    {"Sum", FunctionKind::kAggregate, 1, 1, "SUM"},
    {"Count", FunctionKind::kAggregate, 1, 1, "COUNT"},
    {"Avg", FunctionKind::kAggregate, 1, 1, "AVG"},
    // Jet aggregates SQLite has no equivalent for.
    {"First", FunctionKind::kUnsupported, 1, 1, ""},
    {"Last", FunctionKind::kUnsupported, 1, 1, ""},
    {"StDev", FunctionKind::kUnsupported, 1, 1, ""},
    {"StDevP", FunctionKind::kUnsupported, 1, 1, ""},
    {"Var", FunctionKind::kUnsupported, 1, 1, ""},
    {"VarP", FunctionKind::kUnsupported, 1, 1, ""},
    // Registered by db/ as SQLite functions.
    {"Nz", FunctionKind::kUdf, 1, 2, "jet_nz"},
    {"Val", FunctionKind::kUdf, 1, 1, "jet_val"},
    {"CDate", FunctionKind::kUdf, 1, 1, "jet_cdate"},
    {"CStr", FunctionKind::kUdf, 1, 1, "jet_cstr"},
    {"CBool", FunctionKind::kUdf, 1, 1, "jet_cbool"},
    {"CInt", FunctionKind::kUdf, 1, 1, "jet_cint"},
    {"CLng", FunctionKind::kUdf, 1, 1, "jet_clng"},
    {"CDbl", FunctionKind::kUdf, 1, 1, "jet_cdbl"},
    {"Format", FunctionKind::kUdf, 1, 2, "jet_format"},
    {"InStr", FunctionKind::kUdf, 2, 4, "jet_instr"},
    {"Left", FunctionKind::kUdf, 2, 2, "jet_left"},
    {"Right", FunctionKind::kUdf, 2, 2, "jet_right"},
    {"Mid", FunctionKind::kUdf, 2, 3, "jet_mid"},
    {"Len", FunctionKind::kUdf, 1, 1, "jet_len"},
    {"Trim", FunctionKind::kUdf, 1, 1, "jet_trim"},
    {"LTrim", FunctionKind::kUdf, 1, 1, "jet_ltrim"},
    {"RTrim", FunctionKind::kUdf, 1, 1, "jet_rtrim"},
    {"UCase", FunctionKind::kUdf, 1, 1, "jet_ucase"},
    {"LCase", FunctionKind::kUdf, 1, 1, "jet_lcase"},
    // Upper/Lower are the ODBC spellings; the system's company check writes
    // them, so they are accepted as UCase/LCase.
    {"Upper", FunctionKind::kUdf, 1, 1, "jet_ucase"},
    {"Lower", FunctionKind::kUdf, 1, 1, "jet_lcase"},
    {"Space", FunctionKind::kUdf, 1, 1, "jet_space"},
    {"Round", FunctionKind::kUdf, 1, 2, "jet_round"},
    {"Abs", FunctionKind::kUdf, 1, 1, "jet_abs"},
    {"Int", FunctionKind::kUdf, 1, 1, "jet_int"},
    {"Fix", FunctionKind::kUdf, 1, 1, "jet_fix"},
    {"Sgn", FunctionKind::kUdf, 1, 1, "jet_sgn"},
    {"Date", FunctionKind::kUdf, 0, 0, "jet_date"},
    {"Now", FunctionKind::kUdf, 0, 0, "jet_now"},
    {"Year", FunctionKind::kUdf, 1, 1, "jet_year"},
    {"Month", FunctionKind::kUdf, 1, 1, "jet_month"},
    {"Day", FunctionKind::kUdf, 1, 1, "jet_day"},
    {"Hour", FunctionKind::kUdf, 1, 1, "jet_hour"},
    {"Minute", FunctionKind::kUdf, 1, 1, "jet_minute"},
    {"Second", FunctionKind::kUdf, 1, 1, "jet_second"},
    {"Weekday", FunctionKind::kUdf, 1, 1, "jet_weekday"},
    {"DateSerial", FunctionKind::kUdf, 3, 3, "jet_dateserial"},
    {"DateAdd", FunctionKind::kUdf, 3, 3, "jet_dateadd"},
    {"DateDiff", FunctionKind::kUdf, 3, 3, "jet_datediff"},
    // The less common ones.
    {"Asc", FunctionKind::kUdf, 1, 1, "jet_asc"},
    {"Chr", FunctionKind::kUdf, 1, 1, "jet_chr"},
    {"CByte", FunctionKind::kUdf, 1, 1, "jet_cbyte"},
    {"CCur", FunctionKind::kUdf, 1, 1, "jet_ccur"},
    {"CSng", FunctionKind::kUdf, 1, 1, "jet_csng"},
    {"Str", FunctionKind::kUdf, 1, 1, "jet_str"},
    {"String", FunctionKind::kUdf, 2, 2, "jet_string"},
    {"Replace", FunctionKind::kUdf, 3, 3, "jet_replace"},
    {"InStrRev", FunctionKind::kUdf, 2, 3, "jet_instrrev"},
    {"StrReverse", FunctionKind::kUdf, 1, 1, "jet_strreverse"},
    {"IsNumeric", FunctionKind::kUdf, 1, 1, "jet_isnumeric"},
    {"IsDate", FunctionKind::kUdf, 1, 1, "jet_isdate"},
    {"Sqr", FunctionKind::kUdf, 1, 1, "jet_sqr"},
    {"Exp", FunctionKind::kUdf, 1, 1, "jet_exp"},
    {"Log", FunctionKind::kUdf, 1, 1, "jet_log"},
    {"MonthName", FunctionKind::kUdf, 1, 2, "jet_monthname"},
    {"DatePart", FunctionKind::kUdf, 2, 2, "jet_datepart"},
    {"DateValue", FunctionKind::kUdf, 1, 1, "jet_datevalue"},
    {"TimeValue", FunctionKind::kUdf, 1, 1, "jet_timevalue"},
};

}  // namespace

const FunctionInfo* FindFunction(std::string_view name) {
  for (const FunctionInfo& info : kFunctions) {
    if (SameName(info.jet_name, name)) return &info;
  }
  return nullptr;
}

std::span<const FunctionInfo> KnownFunctions() { return kFunctions; }

}  // namespace db::jet
