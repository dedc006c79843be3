// session/month.h — a month of the calendar (the first day of it), and the
// session's month range Desde..Hasta with its check boxes and display texts.
//
// Index convention of the month buttons and texts, as in txtMes: index 0 is
// the Desde bound, index 1 the Hasta bound.
#pragma once

#include <array>
#include <string>

#include "base/month.h"

namespace session {

class Month {
 public:
  Month() = default;
  // The month of a year and month number; a month number outside 1..12 is
  // carried into the year (month 13 of 2023 is January 2024).
  Month(int year, int month);

  // The current month of the local clock.
  static Month Current();

  int year() const { return year_; }
  int month() const { return month_; }

  // The month `n` months later (earlier for negative `n`).
  Month AddMonths(int n) const;

  // "MM / yyyy", e.g. "02 / 2024".
  std::string Display() const;
  // "yyyy-MM-01", the first day as the databases keep dates.
  std::string IsoFirstDay() const;

  auto operator<=>(const Month&) const = default;

 private:
  int year_ = 1900;
  int month_ = 1;
};

// The month range of the session.
struct Period {
  Month desde;
  Month hasta;
  bool desde_checked = false;  // chkConFechDesde
  bool hasta_checked = false;  // ChkConFechHasta
  std::array<std::string, 2> txtMes;  // 0: Desde, 1: Hasta

  // The bounds as the template expansion takes them.
  base::MonthBound desde_bound() const { return {desde.year(), desde.month(), desde_checked}; }
  base::MonthBound hasta_bound() const { return {hasta.year(), hasta.month(), hasta_checked}; }
};

// The default range: Hasta = `today`'s month, Desde = twelve months earlier;
// boxes unticked and the texts shown.
Period DefaultPeriod(Month today);

// CargarMes: if Hasta is earlier than Desde, Hasta becomes Desde; then
// txtMes(1) shows Hasta as "MM / yyyy" when ChkConFechHasta is ticked, else "",
// and txtMes(0) Desde the same way with chkConFechDesde.
void CargarMes(Period& p);

// cbMesAnt(index), one month back. Index 1 (Hasta): when Desde is later than
// Hasta minus one month, Desde first moves one month back; then Hasta moves
// back. Index 0 (Desde): Desde moves back. Then CargarMes. Other indexes change
// nothing.
void cbMesAnt(Period& p, int index);

// cbMesSig(index), one month forward. Index 0 (Desde): when Desde plus one
// month is later than Hasta, Hasta first moves one month forward; then Desde
// moves forward. Index 1 (Hasta): Hasta moves forward. Then CargarMes.
void cbMesSig(Period& p, int index);

// The month texts handed to the transfer of liquidations: the first day of the
// month as "yyyy-MM-01", or "" when its box is unticked.
std::string DesdeText(const Period& p);
std::string HastaText(const Period& p);

}  // namespace session
