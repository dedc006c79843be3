// demo/staff.cpp — plans the demo company's people and contracts.
#include "demo/staff.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include "demo/names.h"
#include "demo/prng.h"

namespace demo {

namespace {

// Streams of the plan; other modules use their own.
constexpr std::uint64_t kPersonStream = 1;
constexpr std::uint64_t kContractStream = 2;

// Ten shapes per block of ten persons: six open, one of each other kind.
ContractShape shape_of(int index) {
  static const ContractShape kShapes[10] = {
      ContractShape::kOpen,   ContractShape::kOpen,   ContractShape::kOpen,  ContractShape::kOpen,
      ContractShape::kOpen,   ContractShape::kOpen,   ContractShape::kClosed, ContractShape::kHired,
      ContractShape::kRehired, ContractShape::kConcurrent};
  return kShapes[(index + index / 10) % 10];
}

// The written forms cycle too, so that even a small demo shows all of them.
NumberForm form_of(int index) {
  static const NumberForm kForms[10] = {
      NumberForm::kDash,  NumberForm::kPlain,  NumberForm::kDots,       NumberForm::kUnderscore,
      NumberForm::kDash,  NumberForm::kBlanks, NumberForm::kLeadingZero, NumberForm::kPlain,
      NumberForm::kDots,  NumberForm::kUnderscore};
  return kForms[(index + 3 * (index / 10)) % 10];
}

// One person in five is already in KEL.
bool overlaps(int index) { return index % 5 == 1; }

// Positions: id, monthly base of the agreement, whether paid by the day.
struct CargoPlan {
  int id;
  double laudo;
  bool daily;
};
const CargoPlan kCargos[] = {{1, 38000, false}, {2, 45000, false}, {3, 52000, false}, {4, 61000, false},
                             {5, 74000, false}, {6, 95000, false}, {7, 130000, false}, {8, 33000, true},
                             {9, 36000, true},  {10, 41000, true}, {11, 47000, false}, {12, 58000, false}};

Date random_date(Prng& rng, int from_month, int to_month) {
  return day_of_month(rng.range(from_month, to_month), rng.range(1, 28));
}

ContractPlan base_contract(Prng& rng, int id, const PersonPlan& p, Date start) {
  ContractPlan c;
  c.id = id;
  c.person_id = p.id;
  c.numero_alternativo = std::to_string(p.id);
  c.start = start;
  const CargoPlan& cargo = rng.pick(kCargos);
  c.cargo = cargo.id;
  c.tipo_rem = cargo.daily ? 2 : 1;
  const double monthly = std::round(cargo.laudo * (1.0 + 0.6 * rng.unit()) / 10.0) * 10.0;
  c.salary = cargo.daily ? std::round(monthly / 25.0) : monthly;
  c.horas = 8;
  c.sector = rng.range(1, 6);
  c.sucursal = rng.range(0, 3);
  c.regimen = rng.range(1, 3);
  c.cost_centre = rng.range(1, 4);
  c.advance = !cargo.daily && rng.chance(50);
  c.union_dues = rng.chance(30);
  c.life_insurance = rng.chance(25);
  c.court_order = rng.chance(8);
  c.leave_month = rng.range(1, 12);
  return c;
}

}  // namespace

int ContractPlan::first_month(int period_first) const { return std::max(period_first, start.month_index()); }

int ContractPlan::last_month(int period_last) const {
  return open ? period_last : std::min(period_last, end.month_index());
}

int cedula_check_digit(std::int64_t base) {
  static const int kWeights[7] = {2, 9, 8, 7, 6, 3, 4};
  int sum = 0;
  std::int64_t rest = base;
  for (int i = 6; i >= 0; --i) {
    sum += static_cast<int>(rest % 10) * kWeights[i];
    rest /= 10;
  }
  return (10 - sum % 10) % 10;
}

std::string write_cedula(std::int64_t cedula, NumberForm form) {
  const std::string base = std::to_string(cedula / 10);
  const std::string check = std::to_string(cedula % 10);
  switch (form) {
    case NumberForm::kDots: {
      std::string dotted;
      const int n = static_cast<int>(base.size());
      for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) dotted += '.';
        dotted += base[static_cast<std::size_t>(i)];
      }
      return dotted + "-" + check;
    }
    case NumberForm::kDash: return base + "-" + check;
    case NumberForm::kUnderscore: return base + "_" + check;
    case NumberForm::kPlain: return base + check;
    case NumberForm::kBlanks: return "  " + base + "-" + check + " ";
    case NumberForm::kLeadingZero: return std::string(8 - std::min<std::size_t>(base.size(), 7), '0') + base + "-" + check;
  }
  return base + check;
}

std::string cedula_digits(const std::string& written) {
  std::string digits;
  for (char c : written) {
    if (c >= '0' && c <= '9' && !(digits.empty() && c == '0')) digits += c;
  }
  return digits;
}

Staff plan_staff(const DemoOptions& options) {
  Staff staff;
  staff.first_month = (options.last_year - options.years + 1) * 12;
  staff.last_month = options.last_year * 12 + 11;
  const int first = staff.first_month, last = staff.last_month;
  const int span = last - first + 1;

  Prng people = Prng::stream(options.seed, kPersonStream);
  std::set<std::int64_t> used_numbers;
  staff.persons.reserve(static_cast<std::size_t>(options.employees));
  for (int i = 0; i < options.employees; ++i) {
    PersonPlan p;
    p.id = i + 1;
    p.sex = people.chance(55) ? 1 : 2;
    p.nombre_1 = first_name(people, p.sex);
    p.nombre_2 = people.chance(60) ? first_name(people, p.sex) : "";
    if (p.nombre_2 == p.nombre_1) p.nombre_2.clear();
    p.apellido_1 = surname(people);
    p.apellido_2 = people.chance(90) ? surname(people) : "";
    p.birth = Date{options.last_year - people.range(19, 64), people.range(1, 12), people.range(1, 28)};
    // Older people carry lower numbers, some with six digits before the check digit.
    std::int64_t base;
    do {
      base = p.birth.year < 1965 && people.chance(50) ? people.range(500000, 999999)
                                                       : people.range(1000000, 6499999);
    } while (!used_numbers.insert(base).second);
    p.cedula = base * 10 + cedula_check_digit(base);
    p.form = form_of(i);
    const PlaceName& where = place(people);
    p.direccion = street_address(people);
    p.localidad = where.locality;
    p.id_localidad = where.id_localidad;
    p.id_dpto = where.id_dpto;
    p.estado_civil = people.range(1, 4);
    p.phone = people.chance(60) ? landline(people) : "";
    p.mobile = mobile(people);
    p.email = people.chance(70) ? email(people, p.nombre_1, p.apellido_1) : "";
    p.children = people.chance(35) ? people.range(1, 3) : 0;
    if (overlaps(i)) {
      p.in_kel = true;
      // Dotted numbers lose digits in the source's clean-up; a person KEL
      // must recognise is written in one of the forms that survive it.
      if (p.form == NumberForm::kDots) p.form = NumberForm::kDash;
    }
    p.numero = write_cedula(p.cedula, p.form);
    staff.persons.push_back(std::move(p));
  }

  // Couples who both work in the company declare each other.
  for (int i = 3; i + 1 < options.employees; i += 20) {
    staff.persons[static_cast<std::size_t>(i)].spouse_id = i + 2;
    staff.persons[static_cast<std::size_t>(i + 1)].spouse_id = i + 1;
  }

  Prng jobs = Prng::stream(options.seed, kContractStream);
  int next_contract = 1;
  for (int i = 0; i < options.employees; ++i) {
    PersonPlan& p = staff.persons[static_cast<std::size_t>(i)];
    auto add = [&](ContractPlan c) {
      p.contracts.push_back(static_cast<int>(staff.contracts.size()));
      staff.contracts.push_back(std::move(c));
    };
    const Date before = random_date(jobs, first - 15 * 12, first - 1);
    switch (shape_of(i)) {
      case ContractShape::kOpen:
        add(base_contract(jobs, next_contract++, p, before));
        break;
      case ContractShape::kClosed: {
        ContractPlan c = base_contract(jobs, next_contract++, p, before);
        c.open = false;
        c.end = random_date(jobs, first, last - 1);
        c.motivo_egreso = jobs.range(1, 4);
        add(std::move(c));
        break;
      }
      case ContractShape::kHired:
        add(base_contract(jobs, next_contract++, p, random_date(jobs, first, first + span * 3 / 4)));
        break;
      case ContractShape::kRehired: {
        ContractPlan a = base_contract(jobs, next_contract++, p, before);
        a.open = false;
        a.end = random_date(jobs, first, first + span / 2);
        a.motivo_egreso = 1;
        a.numero_alternativo += "_1";
        ContractPlan b = base_contract(jobs, next_contract++, p,
                                       random_date(jobs, std::min(a.end.month_index() + 1, last),
                                                   std::min(a.end.month_index() + 6, last)));
        b.numero_alternativo += "_2";
        add(std::move(a));
        add(std::move(b));
        break;
      }
      case ContractShape::kConcurrent: {
        ContractPlan a = base_contract(jobs, next_contract++, p, before);
        a.numero_alternativo += "_1";
        ContractPlan b = base_contract(jobs, next_contract++, p, random_date(jobs, first - 24, first + span / 2));
        b.numero_alternativo += "_2";
        b.aculab = 2;
        b.horas = 4;
        b.salary = std::round(b.salary / 2.0);
        b.advance = false;
        add(std::move(a));
        add(std::move(b));
        break;
      }
    }
    // Some old systems numbered every contract with a suffix, even a
    // person's only one; the preview's clean-up drops it.
    if (p.contracts.size() == 1 && i % 20 == 4) {
      staff.contracts[static_cast<std::size_t>(p.contracts.front())].numero_alternativo += "_1";
    }
    // A loan is paid off in twelve instalments somewhere in the period.
    for (int ci : p.contracts) {
      ContractPlan& c = staff.contracts[static_cast<std::size_t>(ci)];
      if (jobs.chance(20)) c.loan_from = jobs.range(first, last);
    }
  }

  // KEL's own ids of the people it already holds: 1..K in reverse order,
  // never the same id as in the source.
  std::vector<PersonPlan*> known;
  for (PersonPlan& p : staff.persons) {
    if (p.in_kel) known.push_back(&p);
  }
  const int k = static_cast<int>(known.size());
  for (int j = 0; j < k; ++j) known[static_cast<std::size_t>(j)]->kel_id = k - j;
  for (int j = 0; j < k; ++j) {
    PersonPlan& p = *known[static_cast<std::size_t>(j)];
    if (p.kel_id == p.id) {
      PersonPlan& q = *known[static_cast<std::size_t>(j + 1 < k ? j + 1 : j - 1)];
      std::swap(p.kel_id, q.kel_id);
    }
  }
  // KEL wrote numbers its own way: digits only, sometimes with leading zeros
  // or a blank before the check digit (all read the same by Val).
  Prng kel = Prng::stream(options.seed, kPersonStream, 99);
  for (PersonPlan* p : known) {
    const std::string digits = std::to_string(p->cedula);
    switch (kel.below(3)) {
      case 0: p->kel_numero = digits; break;
      case 1: p->kel_numero = "0" + digits; break;
      default: p->kel_numero = digits.substr(0, digits.size() - 1) + " " + digits.substr(digits.size() - 1); break;
    }
  }
  return staff;
}

}  // namespace demo
