// staging/template.cpp — placeholder expansion (see template.h).
#include "staging/template.h"

#include <cstdio>
#include <stdexcept>

#include "base/month.h"
#include "settings/strings.h"

namespace staging {

namespace {

int DaysInMonth(int year, int month) {
  const int days = base::days_in_month(year, month);
  if (days == 0) throw std::out_of_range("Mes fuera de rango: " + std::to_string(month));
  return days;
}

std::string DateLiteral(int year, int month, int day) {
  char buf[48];
  std::snprintf(buf, sizeof buf, "#%02d/%02d/%04d#", month, day, year);
  return buf;
}

}  // namespace

std::string LowerBoundLiteral(const MonthBound& desde) {
  return desde.checked ? DateLiteral(desde.year, desde.month, 1) : DateLiteral(1900, 1, 1);
}

std::string UpperBoundLiteral(const MonthBound& hasta) {
  // Month end: the first day of the next month, less one day.
  return hasta.checked ? DateLiteral(hasta.year, hasta.month, DaysInMonth(hasta.year, hasta.month))
                       : DateLiteral(2080, 3, 25);
}

std::string ExpandTemplate(std::string_view text, const std::vector<settings::ReplacementPair>& pairs,
                           const TemplateValues& v) {
  if (v.relation_ids.size() < 7)
    throw std::out_of_range("La tabla de relaciones BPS tiene " + std::to_string(v.relation_ids.size()) +
                            " filas y se necesitan siete");
  std::string out(text);
  for (const settings::ReplacementPair& p : pairs)
    if (!out.empty()) out = settings::IReplaceAll(out, settings::Trim(p.Campo), p.Valor);
  const std::pair<const char*, std::string> fixed[] = {
      {"[PASS]", v.password},
      {"[BDOrigen]", v.ruta},
      {"[AROrigen]", v.ruta},
      {"[BDDestino]", v.destination},
      {"[BPS1]", std::to_string(v.relation_ids[0])},
      {"[BPS2]", std::to_string(v.relation_ids[1])},
      {"[BPS5]", std::to_string(v.relation_ids[2])},
      {"[BPS7]", std::to_string(v.relation_ids[3])},
      {"[BPS8]", std::to_string(v.relation_ids[4])},
      {"[Habe]", std::to_string(v.relation_ids[5])},
      {"[Desc]", std::to_string(v.relation_ids[6])},
      {"[ConcCrear]", v.conc_crear.empty() ? std::string("-1") : v.conc_crear},
      {"[Desde]", LowerBoundLiteral(v.desde)},
      {"[Hasta]", UpperBoundLiteral(v.hasta)},
  };
  for (const auto& [placeholder, value] : fixed) out = settings::IReplaceAll(out, placeholder, value);
  return out;
}

}  // namespace staging
