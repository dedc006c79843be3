// demo/liquidations.cpp — headers and lines of the demo source's liquidations.
#include "demo/liquidations.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "demo/concepts.h"
#include "demo/prng.h"

namespace demo {

namespace {

constexpr std::uint64_t kLiquidationStream = 1000;

double round2(double v) { return std::round(v * 100.0) / 100.0; }

struct Line {
  int concepto;
  double cantidad, coeficiente, monto;
};

// One liquidation being built: its lines and the running totals from which
// the totals lines and the header's totals are written.
class Slip {
 public:
  explicit Slip(int tipo) : tipo_(tipo) {}

  int tipo() const { return tipo_; }
  const std::vector<Line>& lines() const { return lines_; }

  // An earning: quantity x unit value. `taxed` adds it to the contribution base.
  // Unit values and bases are rounded to cents first, as printed, so that the
  // amount is exactly what the line shows.
  double earn(int concepto, double cantidad, double unit, bool taxed = true) {
    unit = round2(unit);
    const double monto = round2(cantidad * unit);
    add(concepto, cantidad, unit, monto);
    (taxed ? gravado_ : no_gravado_) += monto;
    if (concepto != kSueldo && concepto != kJornales && taxed) otros_ += monto;
    return monto;
  }
  // An earning as a percentage of a base.
  double earn_percent(int concepto, double percent, double base) {
    base = round2(base);
    const double monto = round2(base * percent / 100.0);
    add(concepto, percent, base, monto);
    gravado_ += monto;
    otros_ += monto;
    return monto;
  }
  double deduct(int concepto, double cantidad, double unit) {
    unit = round2(unit);
    const double monto = round2(cantidad * unit);
    add(concepto, cantidad, unit, monto);
    descuentos_ += monto;
    return monto;
  }
  double deduct_percent(int concepto, double percent, double base, bool contribution = false) {
    base = round2(base);
    const double monto = round2(base * percent / 100.0);
    add(concepto, percent, base, monto);
    descuentos_ += monto;
    if (contribution) aportes_ += monto;
    return monto;
  }
  void info(int concepto, double cantidad, double unit, double monto) { add(concepto, cantidad, unit, monto); }

  // The personal contributions on everything taxed so far.
  void contributions(double fonasa_percent) {
    const double base = gravado_;
    deduct_percent(kMontepio, 15, base, true);
    deduct_percent(kFonasa, fonasa_percent, base, true);
    deduct_percent(kFrl, 0.1, base, true);
  }

  // Total lines, rounding up to the whole peso, and net pay.
  void totals(bool with_aportes) {
    if (with_aportes) info(kTotalAportes, 1, aportes_, round2(aportes_));
    const double haberes = round2(gravado_ + no_gravado_);
    info(kTotalHaberes, 1, haberes, haberes);
    info(kTotalDescuentos, 1, round2(descuentos_), round2(descuentos_));
    double liquido = round2(haberes - descuentos_);
    const double redondeo = round2(std::ceil(liquido) - liquido);
    if (redondeo > 0) {
      info(kRedondeo, 1, redondeo, redondeo);
      liquido = round2(liquido + redondeo);
    }
    info(kLiquido, 1, liquido, liquido);
    liquido_ = liquido;
  }

  // Net pay alone, for the short liquidations that print no totals.
  void net() {
    liquido_ = round2(gravado_ + no_gravado_ - descuentos_);
    info(kLiquido, 1, liquido_, liquido_);
  }

  // The employer's contributions on the taxed earnings, and the cost.
  void employer() {
    const double base = round2(gravado_);
    double total = 0;
    const struct { int c; double p; } kRates[] = {{kAportePatronal, 7.5}, {kFonasaPatronal, 5},
                                                  {kFrlPatronal, 0.125}, {kFgcl, 0.025}};
    for (const auto& r : kRates) {
      const double m = round2(base * r.p / 100.0);
      add(r.c, r.p, base, m);
      total += m;
    }
    const double cost = round2(gravado_ + no_gravado_ + total);
    info(kCostoEmpresa, 1, cost, cost);
  }

  double gravado() const { return gravado_; }
  double aportes() const { return aportes_; }
  double liquido() const { return liquido_; }
  double otros() const { return otros_; }
  double days = 0;

 private:
  void add(int c, double q, double u, double m) { lines_.push_back(Line{c, q, u, m}); }

  int tipo_;
  std::vector<Line> lines_;
  double gravado_ = 0, no_gravado_ = 0, descuentos_ = 0, aportes_ = 0, liquido_ = 0, otros_ = 0;
};

// The BPC (the indexation unit) of a year: about 6,177 pesos in 2024,
// adjusted about 7% a year.
double bpc(int year) {
  double v = 6177;
  for (int y = 2024; y > year; --y) v /= 1.07;
  for (int y = 2024; y < year; ++y) v *= 1.07;
  return std::round(v);
}

// IRPF on a monthly base: progressive bands in BPC, minus 14% of the
// deductions (contributions and children).
double irpf(double base, double aportes, int children, double b) {
  const struct { double to; double rate; } kBands[] = {{7, 0},    {10, 0.10}, {15, 0.15}, {30, 0.24},
                                                      {50, 0.25}, {75, 0.27}, {115, 0.31}, {1e9, 0.36}};
  double tax = 0, from = 0;
  for (const auto& band : kBands) {
    const double top = band.to * b;
    if (base > from) tax += (std::min(base, top) - from) * band.rate;
    from = top;
  }
  const double deductions = aportes + children * 13.0 * b / 12.0;
  return std::max(0.0, round2(tax - deductions * 0.14));
}

class Generator {
 public:
  Generator(const DemoOptions& options, const Staff& staff, RowSink& sink)
      : options_(options), staff_(staff), sink_(sink) {
    encabezados_ = sink.declare_table(
        "Encabezados", {"id_Encabezado", "Id_TipoLiq", "FechaDeLiq", "MesDeLiq", "Impreso", "Terminado", "id_Contrato",
                        "id_Usuario", "FechaVisto", "idLote", "Cod1", "Cod2", "Cod5", "Cod7", "Cod8", "Cod41", "OtrosH",
                        "Aporte", "Liquido", "DTE", "DTP", "Cod1AD", "Cod5AD", "OtrosHAD"});
    datos_ = sink.declare_table("Datos_Liquidacion", {"id_Dato", "id_Encabezado", "id_Concepto", "Cantidad",
                                                      "Coeficiente", "RedoEnLiq", "idAgrupa", "Monto", "Relacion",
                                                      "DTE", "DTP"});
    // Salaries are adjusted by 3.5% every January and July.
    double f = 1.0;
    for (int m = staff.first_month; m <= staff.last_month; ++m) {
      if (m > staff.first_month && (m % 12 == 0 || m % 12 == 6)) f *= 1.035;
      factor_.push_back(f);
    }
  }

  LiquidationCounts run() {
    // Month by month, as the company liquidated them.
    for (int m = staff_.first_month; m <= staff_.last_month; ++m) {
      for (const ContractPlan& c : staff_.contracts) {
        if (c.first_month(staff_.first_month) <= m && m <= c.last_month(staff_.last_month)) month(c, m);
      }
    }
    return counts_;
  }

 private:
  // What every liquidation of one contract in one month starts from.
  struct Month {
    const ContractPlan& c;
    const PersonPlan& person;
    int m;
    Prng rng;
    double sal = 0, monthly = 0, daily = 0, hourly = 0, fonasa = 0, bpc = 0, advance = 0;
    bool first = false, last = false, takes_advance = false;
    int days = 30;
  };

  void month(const ContractPlan& c, int m) {
    Month x{c, staff_.persons[static_cast<std::size_t>(c.person_id - 1)], m,
            Prng::stream(options_.seed, kLiquidationStream + static_cast<std::uint64_t>(c.id),
                         static_cast<std::uint64_t>(m))};
    x.sal = std::round(c.salary * factor_[static_cast<std::size_t>(m - staff_.first_month)]);
    x.monthly = c.tipo_rem == 1 ? x.sal : x.sal * 25;
    x.daily = c.tipo_rem == 1 ? x.sal / 30 : x.sal;
    x.hourly = x.monthly / (c.horas * 25.0);
    x.fonasa = x.person.children > 0 ? 6 : 4.5;
    x.bpc = bpc(m / 12);
    x.first = m == c.start.month_index();
    x.last = !c.open && m == c.end.month_index();
    if (x.first) x.days = 30 - std::min(c.start.day, 30) + 1;
    if (x.last) x.days = std::min(c.end.day, 30) - (x.first ? std::min(c.start.day, 30) - 1 : 0);
    x.days = std::max(x.days, 1);
    x.takes_advance = c.advance && !x.last && x.days >= 15;
    x.advance = c.advance ? std::round(x.monthly * 0.4 / 100.0) * 100.0 : 0;

    if (x.takes_advance) adelanto(x);
    mensual(x);
    const int month_of_year = m % 12 + 1;
    if (month_of_year == c.leave_month && !x.first && !x.last) licencia(x);
    if ((month_of_year == 6 || month_of_year == 12) && !x.last) aguinaldo(x, month_of_year);
    if (x.rng.chance(3)) complementaria(x);
    if (x.last) egreso(x);
  }

  // The mid-month advance, discounted again in the monthly liquidation.
  void adelanto(Month& x) {
    Slip s(kAdelantoQuincenal);
    s.earn(kAdelanto, 1, x.advance, false);
    s.net();
    write(x, s, day_of_month(x.m, 15));
  }

  void mensual(Month& x) {
    const ContractPlan& c = x.c;
    Prng& rng = x.rng;
    Slip s(kMensual);
    double basic;
    if (c.tipo_rem == 1) {
      basic = s.earn(kSueldo, x.days, x.sal / 30);
    } else {
      const int worked = std::max(1, x.days * 26 / 30 - rng.range(0, 3));
      basic = s.earn(kJornales, worked, x.sal);
    }
    const int years = (x.m - c.start.month_index()) / 12;
    if (years >= 1) s.earn_percent(kAntiguedad, std::min(years, 20), basic);
    if (rng.chance(85)) s.earn_percent(kPresentismo, 5, basic);
    if (rng.chance(40)) s.earn(kHorasExtra, rng.range(2, 24), x.hourly * 2);
    if (rng.chance(10)) s.earn(kHorasExtraFeriado, rng.range(4, 16), x.hourly * 2.5);
    if (rng.chance(20)) s.earn(kNocturnidad, rng.range(10, 80), x.hourly * 0.2);
    if (rng.chance(10)) s.earn(kFeriadoPago, 1, x.daily * 2);
    if (rng.chance(15)) s.earn(kProductividad, 1, std::round(basic * rng.range(5, 15) / 100.0));
    if (c.sector == 5 && rng.chance(60)) s.earn(kQuebrantoCaja, 1, 1500);
    if (rng.chance(5)) s.earn(kEnfermedad, rng.range(1, 5), x.daily * 0.3);
    if (rng.chance(30)) s.earn(kTicketAlimentacion, 1, 2000 + 500 * rng.range(0, 4), false);
    if (rng.chance(10)) s.earn(kViaticos, 1, 500 * rng.range(2, 10), false);

    s.info(kDiasTrabajados, x.days, 0, 0);
    s.info(kHorasTrabajadas, x.days * c.horas, 0, 0);
    s.info(kSueldoNominal, 1, round2(x.monthly), round2(x.monthly));
    s.info(kValorHora, 1, round2(x.hourly), round2(x.hourly));
    const double gravado = s.gravado();
    s.info(kMontoImponible, 1, round2(gravado), round2(gravado));
    s.contributions(x.fonasa);
    const double base_irpf = round2(gravado * 1.06);
    if (base_irpf > 7 * x.bpc) {
      const double deducciones = round2(s.aportes() + x.person.children * 13.0 * x.bpc / 12.0);
      s.info(kBaseIrpf, 1, base_irpf, base_irpf);
      s.info(kDeduccionesIrpf, 1, deducciones, deducciones);
      s.deduct(kIrpf, 1, irpf(base_irpf, s.aportes(), x.person.children, x.bpc));
    }
    if (x.takes_advance) s.deduct(kDescAdelanto, 1, x.advance);
    if (c.union_dues) s.deduct_percent(kCuotaSindical, 1, basic);
    if (c.court_order) s.deduct_percent(kRetencionJudicial, 20, round2(gravado - s.aportes()));
    if (c.loan_from >= 0 && x.m >= c.loan_from && x.m < c.loan_from + 12) {
      s.deduct(kPrestamo, 1, std::round(c.salary * (c.tipo_rem == 1 ? 0.08 : 2.0)));
    }
    if (c.life_insurance) s.deduct(kSeguroVida, 1, 350);
    if (rng.chance(8)) s.deduct(kFaltas, rng.range(1, 2), x.daily);
    if (rng.chance(5)) s.deduct(kLlegadasTarde, rng.range(1, 3), x.hourly);
    s.totals(true);
    s.employer();
    s.days = x.days;
    write(x, s, day_of_month(x.m + 1, 3));
  }

  // Annual leave and its holiday pay, in the contract's leave month; a day
  // more every four years of service.
  void licencia(Month& x) {
    const int leave_days = 20 + std::min((x.m - x.c.start.month_index()) / 48, 10);
    Slip s(kLicenciaTipo);
    s.earn(kLicencia, leave_days, x.daily);
    s.contributions(x.fonasa);
    s.totals(true);
    write(x, s, day_of_month(x.m, x.rng.range(1, 5)));

    Slip v(kVacacional);
    v.earn(kSalarioVacacional, leave_days, x.daily, false);
    v.totals(false);
    write(x, v, day_of_month(x.m, x.rng.range(1, 5)));
  }

  // Half a month's pay for a full semester, in proportion otherwise.
  void aguinaldo(Month& x, int month_of_year) {
    const int months = x.m - std::max(x.m - 5, x.c.start.month_index()) + 1;
    Slip s(kAguinaldoTipo);
    s.earn(kAguinaldo, std::min(months, 6), x.monthly / 12);
    s.contributions(x.fonasa);
    s.totals(true);
    s.employer();
    write(x, s, day_of_month(x.m, month_of_year == 6 ? 20 : 18));
  }

  // Now and then a difference agreed later is paid apart.
  void complementaria(Month& x) {
    Slip s(kComplementaria);
    s.earn(kDiferenciaSalarial, 1, std::round(x.monthly * x.rng.range(2, 5) / 100.0));
    s.contributions(x.fonasa);
    s.totals(false);
    write(x, s, day_of_month(x.m, 25));
  }

  // The final settlement: severance on dismissal (reason 1), leave not
  // taken with its holiday pay, and the aguinaldo of the semester so far.
  void egreso(Month& x) {
    const int service_months = x.m - x.c.start.month_index();
    const int pending = 1 + (x.m % 12) * 20 / 12;
    Slip s(kEgreso);
    if (x.c.motivo_egreso == 1) s.earn(kIndemnizacion, std::min(6, service_months / 12 + 1), x.monthly, false);
    s.earn(kLicenciaNoGozada, pending, x.daily);
    s.earn(kSalarioVacacional, pending, x.daily, false);
    s.earn(kAguinaldo, 1, x.monthly * (x.m % 6 + 1) / 12.0);
    s.contributions(x.fonasa);
    s.totals(true);
    write(x, s, x.c.end);
  }

  // One header and its lines. The last month of the period is not yet
  // printed nor closed; now and then an older one was never printed either.
  void write(Month& x, const Slip& s, const Date& fecha) {
    const ContractPlan& c = x.c;
    const int m = x.m;
    Prng& rng = x.rng;
    const std::int64_t id = ++counts_.headers;
    const bool closed_month = m < staff_.last_month;
    const bool aguinaldo = s.tipo() == kAguinaldoTipo;
    row_.reset().i(id).i(s.tipo()).t(fecha.iso()).t(first_of_month(m).iso())
        .yes_no(closed_month && !rng.chance(1)).yes_no(closed_month).i(c.id).i(1 + (m * 7) % 3).null().null()
        .r(aguinaldo ? 0 : round2(s.gravado())).r(aguinaldo ? round2(s.gravado()) : 0).r(0).r(0).r(0).r(0)
        .r(round2(s.otros())).r(round2(s.aportes())).r(s.liquido()).r(s.days).r(s.days).r(0).r(0).r(0);
    sink_.add_row(encabezados_, row_.values());
    for (const Line& l : s.lines()) {
      const bool days_line = l.concepto == kDiasTrabajados;
      row_.reset().i(++counts_.lines).i(id).i(l.concepto).r(l.cantidad).r(l.coeficiente).i(2).i(0).r(l.monto).i(0)
          .r(days_line ? l.cantidad : 0).r(days_line ? l.cantidad : 0);
      sink_.add_row(datos_, row_.values());
    }
  }

  const DemoOptions& options_;
  const Staff& staff_;
  RowSink& sink_;
  int encabezados_ = 0, datos_ = 0;
  std::vector<double> factor_;
  RowBuilder row_;
  LiquidationCounts counts_;
};

}  // namespace

LiquidationCounts write_source_liquidations(const DemoOptions& options, const Staff& staff, RowSink& sink) {
  return Generator(options, staff, sink).run();
}

}  // namespace demo
