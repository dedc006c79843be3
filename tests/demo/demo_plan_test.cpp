// tests/demo/demo_plan_test.cpp — the demo company's plan: sizes that follow
// the designed formula, document numbers in the old systems' forms, and the
// people KEL already holds.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "demo/demo.h"
#include "demo/kel_company.h"
#include "demo_test_util.h"

namespace {

using demo_test::CountingSink;

// Lines and headers of a demo of n employees over y years, without a database.
std::pair<std::int64_t, std::int64_t> liquidation_size(int n, int y) {
  demo::DemoOptions options;
  options.employees = n;
  options.years = y;
  const demo::Staff staff = demo::plan_staff(options);
  CountingSink sink;
  const demo::LiquidationCounts counts = demo::generate_source(options, staff, sink);
  EXPECT_EQ(sink.count("Datos_Liquidacion"), counts.lines);
  EXPECT_EQ(sink.count("Encabezados"), counts.headers);
  return {counts.headers, counts.lines};
}

TEST(DemoSize, AboutThirtyLinesPerEmployeeAndMonth) {
  // 1,000 employees x 10 years must give about 3.6 million lines; the same
  // density holds at every size because contract shapes come in blocks of ten.
  for (const auto& [n, y] : std::vector<std::pair<int, int>>{{20, 1}, {40, 2}, {200, 5}}) {
    const auto [headers, lines] = liquidation_size(n, y);
    const double per_employee_month = static_cast<double>(lines) / (n * 12.0 * y);
    EXPECT_NEAR(per_employee_month, 30.0, 2.5) << n << " x " << y;
    // At least one monthly header per employee and month, and several lines each.
    EXPECT_GT(headers, n * 12 * y * 8 / 10) << n << " x " << y;
    EXPECT_GT(lines, headers * 10) << n << " x " << y;
  }
  // Doubling employees or years doubles the data, give or take the draws.
  const double base = static_cast<double>(liquidation_size(100, 2).second);
  EXPECT_NEAR(liquidation_size(200, 2).second / base, 2.0, 0.15);
  EXPECT_NEAR(liquidation_size(100, 4).second / base, 2.0, 0.15);
}

TEST(DemoPlan, ContractShapesAndIds) {
  demo::DemoOptions options;
  options.employees = 30;
  options.years = 2;
  const demo::Staff staff = demo::plan_staff(options);
  ASSERT_EQ(staff.persons.size(), 30u);
  // Three blocks of ten: six single open contracts, one closed, one hired,
  // one rehired (two contracts) and one with two concurrent contracts each.
  EXPECT_EQ(staff.contracts.size(), 36u);
  std::set<int> ids;
  int closed = 0;
  for (const demo::ContractPlan& c : staff.contracts) {
    EXPECT_TRUE(ids.insert(c.id).second) << "duplicate contract id " << c.id;
    EXPECT_EQ(staff.persons[static_cast<std::size_t>(c.person_id - 1)].id, c.person_id);
    if (!c.open) {
      ++closed;
      EXPECT_LT(c.start, c.end) << c.id;
      EXPECT_GE(c.end.month_index(), staff.first_month) << c.id;
    }
    EXPECT_LE(c.first_month(staff.first_month), c.last_month(staff.last_month)) << "contract " << c.id << " has no month";
  }
  EXPECT_EQ(closed, 6);
  EXPECT_EQ(staff.first_month, 2023 * 12);
  EXPECT_EQ(staff.last_month, 2024 * 12 + 11);
}

TEST(DemoNumbers, CheckDigitsAndWrittenForms) {
  // Known cédula check digits.
  EXPECT_EQ(demo::cedula_check_digit(1234567), 2);
  EXPECT_EQ(demo::cedula_check_digit(3000000), 4);
  EXPECT_EQ(demo::write_cedula(12345672, demo::NumberForm::kDots), "1.234.567-2");
  EXPECT_EQ(demo::write_cedula(8123452, demo::NumberForm::kDots), "812.345-2");
  EXPECT_EQ(demo::write_cedula(12345672, demo::NumberForm::kUnderscore), "1234567_2");
  EXPECT_EQ(demo::write_cedula(12345672, demo::NumberForm::kBlanks), "  1234567-2 ");
  EXPECT_EQ(demo::write_cedula(8123452, demo::NumberForm::kLeadingZero), "00812345-2");
  EXPECT_EQ(demo::cedula_digits(" 01.234.567-2 "), "12345672");

  demo::DemoOptions options;
  options.employees = 20;
  const demo::Staff staff = demo::plan_staff(options);
  std::set<demo::NumberForm> forms;
  std::set<std::string> digits;
  for (const demo::PersonPlan& p : staff.persons) {
    forms.insert(p.form);
    EXPECT_EQ(demo::write_cedula(p.cedula, p.form), p.numero);
    EXPECT_EQ(demo::cedula_digits(p.numero), std::to_string(p.cedula));
    EXPECT_EQ(demo::cedula_check_digit(p.cedula / 10), p.cedula % 10) << p.numero;
    EXPECT_TRUE(digits.insert(std::to_string(p.cedula)).second) << "duplicate number " << p.numero;
  }
  EXPECT_EQ(forms.size(), 6u) << "every written form appears in a small demo";
}

TEST(DemoKel, SharedPeopleMatchByNumberUnderOtherIds) {
  demo::DemoOptions options;
  options.employees = 20;
  const demo::Staff staff = demo::plan_staff(options);
  CountingSink sink;
  demo::generate_kel(options, staff, sink);

  // That the transfer matches each shared person by number (and no other) is
  // checked by importing the bundled demo (SourceKinds in tests/session).
  std::set<int> kel_ids;
  int shared = 0;
  for (const demo::PersonPlan& p : staff.persons) {
    if (!p.in_kel) continue;
    ++shared;
    EXPECT_NE(p.kel_id, p.id) << "KEL must know the person under another id";
    EXPECT_TRUE(kel_ids.insert(p.kel_id).second);
    EXPECT_NE(p.kel_numero, p.numero) << "written differently";
    EXPECT_EQ(demo::cedula_digits(p.kel_numero), demo::cedula_digits(p.numero));
  }
  EXPECT_EQ(shared, 4);
  EXPECT_EQ(sink.count("Personas"), shared + demo::kel_only_person_count());
  EXPECT_EQ(sink.count("Contrato"), sink.count("Personas"));
  // KEL's own people take ids that the source also uses: reconciliation has to move them.
  EXPECT_LE(shared + demo::kel_only_person_count(), options.employees);
}

}  // namespace
