// demo/staff.h — the demo company's people and contracts, planned once.
//
// The source company and the KEL company are written from the same plan, so
// that the persons that KEL already holds are the same people (same document
// number, written another way, under another id). Everything here is drawn
// from the seed; the writers only format it.
//
// Contract shapes are spread evenly: in every block of ten persons there is
// one of each of the ten shapes (see ContractShape), so the amount of
// liquidation data grows linearly with the number of employees and the number
// of years, whatever the seed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "demo/calendar.h"
#include "demo/demo_options.h"

namespace demo {

// How an old system wrote a document number (cédula) with check digit.
enum class NumberForm {
  kDots,         // "1.234.567-8"
  kDash,         // "1234567-8"
  kUnderscore,   // "1234567_8"
  kPlain,        // "12345678"
  kBlanks,       // "  1234567-8 "
  kLeadingZero,  // "01234567-8"
};

enum class ContractShape {
  kOpen,        // hired before the period, still employed
  kClosed,      // hired before the period, left during it
  kHired,       // hired during the period, still employed
  kRehired,     // left during the period and was hired again ("n_1", "n_2")
  kConcurrent,  // two open contracts under two agreements at once ("n_1", "n_2")
};

struct ContractPlan {
  int id = 0;
  int person_id = 0;
  std::string numero_alternativo;  // person id, or person id + "_" + digit
  Date start;
  bool open = true;                // vigente; `end` only counts when closed
  Date end;
  int aculab = 1;                  // employment agreement
  int tipo_rem = 1;                // 1 monthly salary, 2 daily wage
  double salary = 0;               // monthly salary (or daily wage) at the first month of the period
  int horas = 8;
  int cargo = 1, sector = 1, sucursal = 1, regimen = 1, cost_centre = 1;
  bool advance = false;            // takes a mid-month advance every month
  bool union_dues = false, life_insurance = false, court_order = false;
  int loan_from = -1;              // month index of the first of 12 loan instalments, -1 none
  int leave_month = 1;             // month of the year in which annual leave is taken
  int motivo_egreso = 0;           // reason for leaving, closed contracts only

  // Month indexes of the first and last month liquidated for this contract
  // within [first, last] of the period; first_month > last_month when none.
  int first_month(int period_first) const;
  int last_month(int period_last) const;
};

struct PersonPlan {
  int id = 0;
  int sex = 1;  // 1 male, 2 female
  std::string nombre_1, nombre_2, apellido_1, apellido_2;
  Date birth;
  std::int64_t cedula = 0;     // digits with the check digit last: 12345678
  NumberForm form = NumberForm::kDash;
  std::string numero;          // as the source system wrote it
  std::string direccion, localidad;
  int id_localidad = 1, id_dpto = 1;
  int estado_civil = 1;
  std::string phone, mobile, email;
  int spouse_id = 0;           // a staged person who also works in the company
  int children = 0;            // related persons declared as dependants
  std::vector<int> contracts;  // indexes into Staff::contracts

  // KEL already holds this person: under kel_id, with the number as KEL wrote it.
  bool in_kel = false;
  int kel_id = 0;
  std::string kel_numero;
};

struct Staff {
  int first_month = 0;  // month index of January of the first year
  int last_month = 0;   // month index of December of last_year
  std::vector<PersonPlan> persons;  // persons[i].id == i + 1
  // Ids 1, 2, ... in person order; a person's contracts are consecutive.
  std::vector<ContractPlan> contracts;
};

// Plans the people of a demo company. Deterministic in `options`.
Staff plan_staff(const DemoOptions& options);

// The Uruguayan check digit of a cédula base number (up to 7 digits).
int cedula_check_digit(std::int64_t base);

// The document number in the given written form.
std::string write_cedula(std::int64_t cedula, NumberForm form);

// Only the digits of a written number ("1.234.567-8" -> "12345678"), leading
// zeros dropped: the comparable form of a document number.
std::string cedula_digits(const std::string& written);

}  // namespace demo
