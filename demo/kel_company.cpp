// demo/kel_company.cpp — the demo KEL company's own rows.
#include "demo/kel_company.h"

#include <cmath>
#include <vector>

#include "demo/names.h"
#include "demo/prng.h"

namespace demo {

namespace {

constexpr std::uint64_t kKelStream = 21;
constexpr int kKelOnly = 2;

struct KelPerson {
  int id;
  std::string numero, apellido_1, nombre_1, apellido_2, nombre_2;
  int sex;
  Date birth;
  std::string mobile;
  // Its contract in KEL.
  Date start;
  bool open;
  Date end;
  double salary;
  int cargo;
};

}  // namespace

int kel_only_person_count() { return kKelOnly; }

void write_kel_company(const DemoOptions& options, const Staff& staff, RowSink& sink) {
  Prng rng = Prng::stream(options.seed, kKelStream);
  RowBuilder row;

  // The same company, as KEL has it: the names match the source's.
  const int empresa = sink.declare_table(
      "Empresa", {"IdEmpresa", "Nombre", "RazonSocial", "Direccion", "RUC", "Email", "Telefono1", "DiasXMesEnContrato",
                  "DiasDeLicAnuales"});
  sink.add_row(empresa, row.reset().i(1).t("Demo S.A.").t("Demostraciones Comerciales Sociedad Anónima")
                            .t("18 de Julio 1456 / 701").t("214567890018").t("info@demo.com.uy").t("2901 4567")
                            .i(30).i(20).values());
  const int planillas = sink.declare_table(
      "Planillas", {"id_planilla", "SubNombre", "Numero", "id_Tplanilla", "Dato", "idSG", "idGrupoV", "idSGrupoV"});
  sink.add_row(planillas, row.reset().i(0).t("").t("-").i(2).null().i(0).i(0).i(0).values());
  sink.add_row(planillas, row.reset().i(1).t("BPS").t("5123456").i(3).null().i(0).i(0).i(0).values());
  const int cargos = sink.declare_table("Cargos", {"id_Cargo", "Cargo", "Laudo", "id_CobraPor", "Id_Cat"});
  sink.add_row(cargos, row.reset().i(1).t("CADETE").r(35000).i(8).i(1).values());
  sink.add_row(cargos, row.reset().i(2).t("ADMINISTRATIVO").r(42000).i(8).i(1).values());
  const int sectores = sink.declare_table("Sectores", {"id_Sector", "Descripcion"});
  sink.add_row(sectores, row.reset().i(1).t("ADMINISTRACION").values());

  // The shared people, then the ones only KEL knows.
  std::vector<KelPerson> people;
  for (const PersonPlan& p : staff.persons) {
    if (!p.in_kel) continue;
    const ContractPlan& c = staff.contracts[static_cast<std::size_t>(p.contracts.front())];
    KelPerson k{p.kel_id, p.kel_numero, p.apellido_1, p.nombre_1, p.apellido_2, p.nombre_2, p.sex, p.birth,
                p.mobile, c.start, c.open, c.end, c.salary, c.cargo};
    // Every other one was entered with the first of the month as its start.
    if (people.size() % 2 == 1) k.start.day = k.start.day == 1 ? 2 : 1;
    people.push_back(std::move(k));
  }
  const int shared = static_cast<int>(people.size());
  for (int j = 0; j < kKelOnly; ++j) {
    const int sex = j == 0 ? 2 : 1;
    const std::int64_t base = 7000001 + rng.range(0, 900000);
    const Date start = day_of_month(staff.first_month - rng.range(1, 60), rng.range(1, 28));
    people.push_back(KelPerson{shared + j + 1, std::to_string(base * 10 + cedula_check_digit(base)), surname(rng),
                               first_name(rng, sex), surname(rng), "", sex,
                               Date{options.last_year - rng.range(20, 60), rng.range(1, 12), rng.range(1, 28)},
                               mobile(rng), start, true, Date{}, 50000.0 + 1000 * rng.range(0, 30), 2});
  }

  const int personas = sink.declare_table(
      "Personas", {"id_Persona", "NUMERO", "Apellido_1", "Nombre_1", "Apellido_2", "Nombre_2", "Id_Sexo",
                   "Fecha_Nacimiento", "id_Nacionalidad", "id_Pais", "ID_Doc_Exigidos"});
  const int contrato = sink.declare_table(
      "Contrato", {"Id_Contrato", "NUMERO_ALTERNATIVO", "Id_Persona", "SUELDO", "HORAS", "FECHA_INICIO", "FECHA_FIN",
                   "vigente", "id_Tipo_Contrato", "id_TipoRem", "id_Sucursal", "id_Regimen", "AcuLab", "id_CobraPor",
                   "id_Cargo", "id_Sector", "id_Moneda", "CantDiasXMes", "idCC"});
  const int contacto = sink.declare_table("rPersonas_Dto_Comunicacion", {"ID_Dto_Comunicacion", "Id_Persona", "Dato"});
  const int legajo = sink.declare_table(
      "Legajo", {"id_Legajo", "id_TMLegajo", "id_Contrato", "id_DatoAnt", "id_Usuario", "aId", "strAValor", "Fecha",
                 "id_Memo"});
  const int rplanillas = sink.declare_table("rPlanillas", {"idContrato", "idPlanilla"});
  int next_contract = 1;
  for (const KelPerson& k : people) {
    sink.add_row(personas, row.reset().i(k.id).t(k.numero).t(k.apellido_1).t(k.nombre_1).t(k.apellido_2)
                               .t(k.nombre_2).i(k.sex).t(k.birth.iso()).i(1).i(1).i(1).values());
    const int id = next_contract++;
    row.reset().i(id).t(std::to_string(k.id)).i(k.id).r(k.salary).r(8).t(k.start.iso());
    if (k.open) row.null(); else row.t(k.end.iso());
    row.yes_no(k.open).i(1).i(k.cargo >= 8 && k.cargo <= 10 ? 2 : 1).i(0).i(0).i(1).i(8).i(k.cargo).i(1).i(1)
        .i(30).i(1);
    sink.add_row(contrato, row.values());
    sink.add_row(contacto, row.reset().i(2).i(k.id).t(k.mobile).values());
    sink.add_row(legajo, row.reset().i(id).i(1).i(id).null().i(1).i(0).t(k.start.iso()).t(k.start.iso()).null()
                             .values());
    sink.add_row(rplanillas, row.reset().i(id).i(1).values());
  }

  // Declarations KEL already had: a child of the first shared person, and the
  // second shared person declared as that person's working spouse. The
  // transfer moves them with their people and then replaces them whole.
  if (shared >= 2) {
    const KelPerson& a = people[0];
    const KelPerson& b = people[1];
    const int rela = sink.declare_table(
        "PersonasRela", {"id_PersRelac", "NomRela_1", "ApeRela_1", "ApeRela_2", "Id_SexoRela", "NDocRela", "FecNacRela"});
    sink.add_row(rela, row.reset().i(1).t("Tomás").t(a.apellido_1).t(b.apellido_1).i(1).t("5987654-2")
                           .t(Date{options.last_year - 6, 9, 14}.iso()).values());
    const int decl = sink.declare_table(
        "Declaraciones", {"idDeclaracion", "id_Persona", "idRubroDed", "idTipoDeduc", "idCausalDeduc",
                          "idCodigoRegimen", "id_PersRelac", "id_RelacFil", "Trabaja", "TieneMonto", "Porc",
                          "FechaDeclaracion", "Desde"});
    const std::string desde = first_of_month(staff.first_month).iso();
    sink.add_row(decl, row.reset().i(1).i(a.id).i(1).i(1).i(1).i(1).i(1).i(1).yes_no(false).yes_no(false).r(100)
                           .t(desde).t(desde).values());
    sink.add_row(decl, row.reset().i(2).i(a.id).i(3).i(2).i(1).i(1).i(b.id).i(2).yes_no(true).yes_no(false).r(50)
                           .t(desde).t(desde).values());
  }

  // A few dollar rates KEL had (the import replaces the foreign ones).
  const int cotizacion = sink.declare_table("Cotizacion", {"id_Moneda", "Fecha", "Valor"});
  for (int m = staff.last_month - 2; m <= staff.last_month; ++m) {
    sink.add_row(cotizacion, row.reset().i(2).t(first_of_month(m).iso()).r(40.0 + (m % 3) * 0.25).values());
  }

  // The last month was already liquidated in KEL for the first shared person
  // (KEL concepts 1 sueldo, 5/6/7 contributions, 53 haberes, 4 descuentos,
  // 100 net pay): the import must not add a second header for it.
  if (shared > 0 && people.front().open) {
    const KelPerson& k = people.front();
    const double sal = k.salary;
    const double c5 = std::round(sal * 15.0) / 100.0, c6 = std::round(sal * 4.5) / 100.0,
                 c7 = std::round(sal * 0.1) / 100.0;
    const int encabezados = sink.declare_table(
        "Encabezados", {"id_Encabezado", "Id_TipoLiq", "FechaDeLiq", "MesDeLiq", "Impreso", "Terminado", "id_Contrato",
                        "id_Usuario", "Cod1", "Aporte", "Liquido", "DTE", "DTP"});
    const double desc = c5 + c6 + c7;
    sink.add_row(encabezados, row.reset().i(1).i(1).t(day_of_month(staff.last_month, 28).iso())
                                  .t(first_of_month(staff.last_month).iso()).yes_no(false).yes_no(false).i(1).i(1)
                                  .r(sal).r(desc).r(sal - desc).r(30).r(30).values());
    const int datos = sink.declare_table(
        "Datos_Liquidacion", {"id_Dato", "id_Encabezado", "id_Concepto", "Cantidad", "Coeficiente", "Monto"});
    const struct { int c; double q, u, m; } kLines[] = {
        {1, 30, sal / 30, sal}, {3, 30, 0, 0}, {5, 15, sal, c5}, {6, 4.5, sal, c6}, {7, 0.1, sal, c7},
        {53, 1, sal, sal}, {4, 1, desc, desc}, {100, 1, sal - desc, sal - desc}};
    int line = 1;
    for (const auto& l : kLines) {
      sink.add_row(datos, row.reset().i(line++).i(1).i(l.c).r(l.q).r(std::round(l.u * 100) / 100).r(l.m).values());
    }
  }
}

}  // namespace demo
