// demo/source_people.cpp — persons, contracts, declarations and contact data
// of the demo source company.
#include <algorithm>
#include <cmath>

#include "demo/names.h"
#include "demo/prng.h"
#include "demo/source_company.h"

namespace demo {

namespace {

constexpr std::uint64_t kPeopleRowsStream = 11;

// Kinds of contact datum.
constexpr int kTelefono = 1, kCelular = 2, kEmail = 3;

}  // namespace

void write_source_people(const DemoOptions& options, const Staff& staff, RowSink& sink) {
  RowBuilder row;
  Prng rng = Prng::stream(options.seed, kPeopleRowsStream);

  const int personas = sink.declare_table(
      "Personas", {"id_Persona", "NUMERO", "Apellido_1", "Nombre_1", "Apellido_2", "Nombre_2", "Direccion", "Id_Sexo",
                   "ID_EstadoCivil", "Fecha_Nacimiento", "Id_Localidad", "Id_dpto", "id_Nacionalidad", "id_Pais",
                   "ID_Doc_Exigidos", "FECHA_EMISION", "FECHA_VENCIMIENTO"});
  for (const PersonPlan& p : staff.persons) {
    const Date issued{options.last_year - rng.range(0, 9), rng.range(1, 12), rng.range(1, 28)};
    row.reset().i(p.id).t(p.numero).t(p.apellido_1).t(p.nombre_1).t(p.apellido_2).t(p.nombre_2).t(p.direccion)
        .i(p.sex).i(p.estado_civil).t(p.birth.iso()).i(p.id_localidad).i(p.id_dpto).i(1).i(1).i(1).t(issued.iso())
        .t(Date{issued.year + 10, issued.month, issued.day}.iso());
    sink.add_row(personas, row.values());
  }

  const int contrato = sink.declare_table(
      "Contrato", {"Id_Contrato", "NUMERO_ALTERNATIVO", "Id_Persona", "SUELDO", "HORAS", "FECHA_INICIO", "FECHA_FIN",
                   "vigente", "Tarjeta", "id_Memo", "Id_MotivoEgr", "id_Tipo_Contrato", "id_TipoRem", "FECHA_RECONO",
                   "DiasExtLicXC", "id_FormaDePago", "LugarDePago", "CuentaBanc", "id_Seguro_Sal", "id_Vinculo_Fun",
                   "id_Exoneracion", "id_CompEsp", "id_CausalEgr", "id_Sucursal", "id_Regimen", "id_AportaX", "id_Cat",
                   "id_TipoAJ", "AcuLab", "id_CobraPor", "Confidencial", "id_CuentaADeb", "id_Cargo", "id_Sector",
                   "id_Moneda", "CantDiasXMes", "TomaDTdeCont", "idCC", "idBancoEmp"});
  for (const ContractPlan& c : staff.contracts) {
    row.reset().i(c.id).t(c.numero_alternativo).i(c.person_id).r(c.salary);
    // Old records: a few without hours or contract type, which KEL fills in.
    if (c.id % 17 == 5) row.null(); else row.r(c.horas);
    row.t(c.start.iso());
    if (c.open) row.null(); else row.t(c.end.iso());
    row.yes_no(c.open).t(std::to_string(1000 + c.id)).null();
    if (c.open) row.null(); else row.i(c.motivo_egreso);
    if (c.id % 13 == 7) row.null(); else row.i(1);
    row.i(c.tipo_rem).t(c.start.iso()).i(0).i(c.id % 4 == 0 ? 1 : 2).t(c.sucursal == 2 ? "Las Piedras" : "Montevideo")
        .t(c.id % 4 == 0 ? "" : "BROU CA " + std::to_string(110000000 + c.id * 7919)).i(1).i(1).i(0).i(0);
    if (c.open) row.null(); else row.i(c.motivo_egreso);
    row.i(c.sucursal).i(c.regimen).i(1).i(c.cargo <= 7 ? 1 : 2).i(1).i(c.aculab);
    // Some daily workers were left "paid by month" by the old system.
    row.i(c.tipo_rem == 2 ? (c.id % 3 == 0 ? 8 : 4) : 8).yes_no(c.cargo == 7).null().i(c.cargo).i(c.sector).i(1)
        .i(30).yes_no(false).i(c.cost_centre).null();
    sink.add_row(contrato, row.values());
  }

  // Dependants: related persons who do not work in the company.
  const int rela = sink.declare_table(
      "PersonasRela", {"id_PersRelac", "NomRela_1", "NomRela_2", "ApeRela_1", "ApeRela_2", "Id_SexoRela", "id_NacRela",
                       "id_PaisRela", "NDocRela", "ID_Doc_ExigRela", "FecNacRela"});
  const int decl = sink.declare_table(
      "Declaraciones", {"idDeclaracion", "id_Persona", "idRubroDed", "idTipoDeduc", "idCausalDeduc", "idCodigoRegimen",
                        "idCauBajaRela", "id_PersRelac", "id_RelacFil", "Trabaja", "TieneMonto", "CantBPC", "Porc",
                        "Monto", "FechaDeclaracion", "Desde", "Hasta"});
  int next_rela = 1, next_decl = 1;
  const int first_year = options.last_year - options.years + 1;
  for (const PersonPlan& p : staff.persons) {
    for (int k = 0; k < p.children; ++k) {
      const int sex = rng.chance(50) ? 1 : 2;
      const Date born{options.last_year - rng.range(1, 20), rng.range(1, 12), rng.range(1, 28)};
      const std::int64_t base = rng.range(5000000, 6999999);
      const std::int64_t ci = base * 10 + cedula_check_digit(base);
      row.reset().i(next_rela).t(first_name(rng, sex)).t("").t(p.apellido_1).t(surname(rng)).i(sex).i(1).i(1)
          .t(write_cedula(ci, NumberForm::kDash)).i(1).t(born.iso());
      sink.add_row(rela, row.values());
      const Date from{std::max(first_year - 1, born.year), 1, 1};
      // A child comes off the declaration at 18.
      const bool ended = born.year + 18 <= options.last_year;
      row.reset().i(next_decl++).i(p.id).i(1).i(1).i(1).i(1);
      if (ended) row.i(1); else row.null();
      row.i(next_rela++).i(1).yes_no(false).yes_no(false).r(ended ? 0 : 0.5).r(100).null().t(from.iso()).t(from.iso());
      if (ended) row.t(Date{born.year + 18, born.month, 1}.iso()); else row.null();
      sink.add_row(decl, row.values());
    }
    if (p.spouse_id != 0) {
      // The spouse works in the company too: the declaration points at a person.
      const Date from{first_year, 1, 1};
      row.reset().i(next_decl++).i(p.id).i(3).i(2).i(1).i(1).null().i(p.spouse_id).i(2).yes_no(true).yes_no(false)
          .r(0).r(50).null().t(from.iso()).t(from.iso()).null();
      sink.add_row(decl, row.values());
    }
  }

  const int contacto = sink.declare_table("rPersonas_Dto_Comunicacion", {"ID_Dto_Comunicacion", "Id_Persona", "Dato"});
  for (const PersonPlan& p : staff.persons) {
    if (!p.phone.empty()) sink.add_row(contacto, row.reset().i(kTelefono).i(p.id).t(p.phone).values());
    sink.add_row(contacto, row.reset().i(kCelular).i(p.id).t(p.mobile).values());
    if (!p.email.empty()) sink.add_row(contacto, row.reset().i(kEmail).i(p.id).t(p.email).values());
  }
}

}  // namespace demo
