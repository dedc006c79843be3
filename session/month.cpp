// session/month.cpp — months and the month range (see month.h).
#include "session/month.h"

#include <cstdio>
#include <ctime>

namespace session {

Month::Month(int year, int month) {
  int total = year * 12 + (month - 1);
  // Floor division so that negative month numbers carry backwards.
  int y = total >= 0 ? total / 12 : -((-total + 11) / 12);
  year_ = y;
  month_ = total - y * 12 + 1;
}

Month Month::Current() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return Month(local.tm_year + 1900, local.tm_mon + 1);
}

Month Month::AddMonths(int n) const { return Month(year_, month_ + n); }

std::string Month::Display() const {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%02d / %04d", month_, year_);
  return buf;
}

std::string Month::IsoFirstDay() const {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%04d-%02d-01", year_, month_);
  return buf;
}

Period DefaultPeriod(Month today) {
  Period p;
  p.hasta = today;
  p.desde = today.AddMonths(-12);
  CargarMes(p);
  return p;
}

void CargarMes(Period& p) {
  if (p.hasta < p.desde) p.hasta = p.desde;
  p.txtMes[1] = p.hasta_checked ? p.hasta.Display() : std::string();
  p.txtMes[0] = p.desde_checked ? p.desde.Display() : std::string();
}

void cbMesAnt(Period& p, int index) {
  if (index == 1) {
    if (p.desde > p.hasta.AddMonths(-1)) p.desde = p.desde.AddMonths(-1);
    p.hasta = p.hasta.AddMonths(-1);
  } else if (index == 0) {
    p.desde = p.desde.AddMonths(-1);
  }
  CargarMes(p);
}

void cbMesSig(Period& p, int index) {
  if (index == 0) {
    if (p.desde.AddMonths(1) > p.hasta) p.hasta = p.hasta.AddMonths(1);
    p.desde = p.desde.AddMonths(1);
  } else if (index == 1) {
    p.hasta = p.hasta.AddMonths(1);
  }
  CargarMes(p);
}

std::string DesdeText(const Period& p) { return p.desde_checked ? p.desde.IsoFirstDay() : std::string(); }
std::string HastaText(const Period& p) { return p.hasta_checked ? p.hasta.IsoFirstDay() : std::string(); }

}  // namespace session
