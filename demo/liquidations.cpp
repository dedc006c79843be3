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
  void month(const ContractPlan& c, int m) {
    Prng rng = Prng::stream(options_.seed, kLiquidationStream + static_cast<std::uint64_t>(c.id),
                            static_cast<std::uint64_t>(m));
    const PersonPlan& person = staff_.persons[static_cast<std::size_t>(c.person_id - 1)];
    const double sal = std::round(c.salary * factor_[static_cast<std::size_t>(m - staff_.first_month)]);
    const double monthly = c.tipo_rem == 1 ? sal : sal * 25;
    const double daily = c.tipo_rem == 1 ? sal / 30 : sal;
    const double hourly = monthly / (c.horas * 25.0);
    const double fonasa = person.children > 0 ? 6 : 4.5;
    const double b = bpc(m / 12);
    const bool first = m == c.start.month_index();
    const bool last = !c.open && m == c.end.month_index();
    int days = 30;
    if (first) days = 30 - std::min(c.start.day, 30) + 1;
    if (last) days = std::min(c.end.day, 30) - (first ? std::min(c.start.day, 30) - 1 : 0);
    days = std::max(days, 1);
    const double advance = c.advance ? std::round(monthly * 0.4 / 100.0) * 100.0 : 0;

    if (c.advance && !last && days >= 15) {
      Slip s(kAdelantoQuincenal);
      s.earn(kAdelanto, 1, advance, false);
      s.net();
      write(c, m, s, day_of_month(m, 15), rng);
    }

    {
      Slip s(kMensual);
      double basic;
      if (c.tipo_rem == 1) {
        basic = s.earn(kSueldo, days, sal / 30);
      } else {
        const int worked = std::max(1, days * 26 / 30 - rng.range(0, 3));
        basic = s.earn(kJornales, worked, sal);
      }
      const int years = (m - c.start.month_index()) / 12;
      if (years >= 1) s.earn_percent(kAntiguedad, std::min(years, 20), basic);
      if (rng.chance(85)) s.earn_percent(kPresentismo, 5, basic);
      if (rng.chance(40)) s.earn(kHorasExtra, rng.range(2, 24), hourly * 2);
      if (rng.chance(10)) s.earn(kHorasExtraFeriado, rng.range(4, 16), hourly * 2.5);
      if (rng.chance(20)) s.earn(kNocturnidad, rng.range(10, 80), hourly * 0.2);
      if (rng.chance(10)) s.earn(kFeriadoPago, 1, daily * 2);
      if (rng.chance(15)) s.earn(kProductividad, 1, std::round(basic * rng.range(5, 15) / 100.0));
      if (c.sector == 5 && rng.chance(60)) s.earn(kQuebrantoCaja, 1, 1500);
      if (rng.chance(5)) s.earn(kEnfermedad, rng.range(1, 5), daily * 0.3);
      if (rng.chance(30)) s.earn(kTicketAlimentacion, 1, 2000 + 500 * rng.range(0, 4), false);
      if (rng.chance(10)) s.earn(kViaticos, 1, 500 * rng.range(2, 10), false);

      s.info(kDiasTrabajados, days, 0, 0);
      s.info(kHorasTrabajadas, days * c.horas, 0, 0);
      s.info(kSueldoNominal, 1, round2(monthly), round2(monthly));
      s.info(kValorHora, 1, round2(hourly), round2(hourly));
      const double gravado = s.gravado();
      s.info(kMontoImponible, 1, round2(gravado), round2(gravado));
      s.contributions(fonasa);
      const double base_irpf = round2(gravado * 1.06);
      if (base_irpf > 7 * b) {
        const double deducciones = round2(s.aportes() + person.children * 13.0 * b / 12.0);
        s.info(kBaseIrpf, 1, base_irpf, base_irpf);
        s.info(kDeduccionesIrpf, 1, deducciones, deducciones);
        s.deduct(kIrpf, 1, irpf(base_irpf, s.aportes(), person.children, b));
      }
      if (c.advance && !last && days >= 15) s.deduct(kDescAdelanto, 1, advance);
      if (c.union_dues) s.deduct_percent(kCuotaSindical, 1, basic);
      if (c.court_order) s.deduct_percent(kRetencionJudicial, 20, round2(gravado - s.aportes()));
      if (c.loan_from >= 0 && m >= c.loan_from && m < c.loan_from + 12) {
        s.deduct(kPrestamo, 1, std::round(c.salary * (c.tipo_rem == 1 ? 0.08 : 2.0)));
      }
      if (c.life_insurance) s.deduct(kSeguroVida, 1, 350);
      if (rng.chance(8)) s.deduct(kFaltas, rng.range(1, 2), daily);
      if (rng.chance(5)) s.deduct(kLlegadasTarde, rng.range(1, 3), hourly);
      s.totals(true);
      s.employer();
      s.days = days;
      write(c, m, s, day_of_month(m + 1, 3), rng);
    }

    const int month_of_year = m % 12 + 1;
    if (month_of_year == c.leave_month && !first && !last) {
      const int leave_days = 20 + std::min((m - c.start.month_index()) / 48, 10);
      Slip s(kLicenciaTipo);
      s.earn(kLicencia, leave_days, daily);
      s.contributions(fonasa);
      s.totals(true);
      write(c, m, s, day_of_month(m, rng.range(1, 5)), rng);

      Slip v(kVacacional);
      v.earn(kSalarioVacacional, leave_days, daily, false);
      v.totals(false);
      write(c, m, v, day_of_month(m, rng.range(1, 5)), rng);
    }

    if ((month_of_year == 6 || month_of_year == 12) && !last) {
      // Half a month's pay for a full semester, in proportion otherwise.
      const int semester_start = m - 5;
      const int months = m - std::max(semester_start, c.start.month_index()) + 1;
      Slip s(kAguinaldoTipo);
      s.earn(kAguinaldo, std::min(months, 6), monthly / 12);
      s.contributions(fonasa);
      s.totals(true);
      s.employer();
      write(c, m, s, day_of_month(m, month_of_year == 6 ? 20 : 18), rng);
    }

    if (rng.chance(3)) {
      Slip s(kComplementaria);
      s.earn(kDiferenciaSalarial, 1, std::round(monthly * rng.range(2, 5) / 100.0));
      s.contributions(fonasa);
      s.totals(false);
      write(c, m, s, day_of_month(m, 25), rng);
    }

    if (last) {
      const int service_months = m - c.start.month_index();
      const int pending = 1 + (m % 12) * 20 / 12;
      Slip s(kEgreso);
      if (c.motivo_egreso == 1) s.earn(kIndemnizacion, std::min(6, service_months / 12 + 1), monthly, false);
      s.earn(kLicenciaNoGozada, pending, daily);
      s.earn(kSalarioVacacional, pending, daily, false);
      s.earn(kAguinaldo, 1, monthly * (m % 6 + 1) / 12.0);
      s.contributions(fonasa);
      s.totals(true);
      write(c, m, s, c.end, rng);
    }
  }

  void write(const ContractPlan& c, int m, const Slip& s, const Date& fecha, Prng& rng) {
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
