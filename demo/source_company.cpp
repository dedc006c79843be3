// demo/source_company.cpp — company, registrations and catalogues of the demo source.
#include "demo/source_company.h"

namespace demo {

void write_source_company(const DemoOptions& options, RowSink& sink) {
  RowBuilder row;
  const int empresa = sink.declare_table(
      "Empresa", {"IdEmpresa", "Nombre", "RazonSocial", "Direccion", "RUC", "Email", "Telefono1", "Fax",
                  "Contacto1", "Notas", "id_Tipo_Aport_Emp", "id_Tipo_Contrib", "NombreGest", "DirecGest",
                  "TelefonoGest", "FaxGest", "ContactoGest", "EMailGest", "id_TipoVenc", "id_Exonera",
                  "InicioDeAct", "id_Dpto", "id_Localidad", "id_NatJur", "Ramo", "Seccion_Policial",
                  "CentralizaSucursales", "id_TConvenio", "VencConv", "FechaInsBPS", "DiasExtraXConvenio",
                  "DiasXMesEnContrato", "TomaDTdeCont", "LicEnUnSoloMes", "PrimDiaExtraDeLicaPartir",
                  "MaxDiasExtraDeLic", "DiasDeLicAnuales", "CodPost", "TomaHLDRsiTDTC", "TomaDLicEnProm",
                  "CodigoEmp", "PieDeImpresion"});
  // Id 1: the preview joins the company to its BPS registration on it.
  row.reset().i(1).t("Demo S.A.").t("Demostraciones Comerciales Sociedad Anónima").t("Av. 18 de Julio 1456 of. 701")
      .t("214567890018").t("administracion@demo.com.uy").t("2901 4567").t("2901 4568").t("Cra. Laura Méndez")
      .t("Empresa de demostración").i(1).i(2).t("Estudio Contable Pereira & Asoc.").t("Colonia 1020 esc. 3")
      .t("2902 1133").t("").t("Cr. Álvaro Pereira").t("estudio@pereira.com.uy").i(1).i(0)
      .t(Date{options.last_year - 22, 3, 1}.iso()).i(1).i(1).i(3).t("Comercio minorista").t("2da")
      .yes_no(false).i(1).t(Date{options.last_year + 1, 6, 30}.iso()).t(Date{options.last_year - 22, 3, 15}.iso())
      .i(0).i(30).yes_no(false).yes_no(false).i(0).i(0).i(20).t("11100").yes_no(false).yes_no(true).t("E-0457")
      .t("Demo S.A. - RUT 214567890018");
  sink.add_row(empresa, row.values());

  const int planillas = sink.declare_table(
      "Planillas", {"id_planilla", "SubNombre", "Numero", "id_Tplanilla", "Dato", "idSG", "idGrupoV", "idSGrupoV"});
  // BSE (insurer), MTSS (labour ministry, two: head office and a branch), BPS.
  const struct { int id; const char* sub; const char* numero; int tipo; const char* dato; } kPlanillas[] = {
      {1, "Póliza accidentes", "1234567", 1, "Póliza 99/123456"},
      {2, "Casa central", "45.678", 2, "Grupo 10"},
      {3, "Sucursal Las Piedras", "45.679", 2, "Grupo 10"},
      {4, "Aportación industria y comercio", "5123456", 3, "Contribuyente 214567890018"},
  };
  for (const auto& p : kPlanillas) {
    row.reset().i(p.id).t(p.sub).t(p.numero).i(p.tipo).t(p.dato).i(p.tipo == 2 ? 10 : 0).i(p.tipo == 2 ? 10 : 0)
        .i(p.tipo == 2 ? 1 : 0);
    sink.add_row(planillas, row.values());
  }

  const int cargos = sink.declare_table("Cargos", {"id_Cargo", "Cargo", "Laudo", "id_CobraPor", "Id_Cat"});
  const struct { int id; const char* name; double laudo; int cobra; } kCargos[] = {
      {1, "Cadete", 38000, 8},        {2, "Auxiliar administrativo", 45000, 8}, {3, "Vendedor", 52000, 8},
      {4, "Cajero", 61000, 8},        {5, "Encargado de sección", 74000, 8},    {6, "Contador", 95000, 8},
      {7, "Gerente", 130000, 8},      {8, "Peón", 1320, 4},                      {9, "Operario", 1440, 4},
      {10, "Chofer", 1640, 4},        {11, "Repositor", 47000, 8},               {12, "Administrativo", 58000, 8}};
  for (const auto& c : kCargos) {
    row.reset().i(c.id).t(c.name).r(c.laudo).i(c.cobra).i(c.id <= 7 ? 1 : 2);
    sink.add_row(cargos, row.values());
  }

  const int sectores = sink.declare_table("Sectores", {"id_Sector", "Descripcion"});
  const char* const kSectores[] = {"Administración", "Ventas", "Depósito", "Logística", "Caja", "Gerencia"};
  for (int i = 0; i < 6; ++i) {
    row.reset().i(i + 1).t(kSectores[i]);
    sink.add_row(sectores, row.values());
  }

  // Branch 0 exists in KEL already; the transfer keeps KEL's.
  const int sucursales = sink.declare_table(
      "Sucursales", {"id_Sucursal", "Nombre", "Direccion", "Telefono", "Email", "Contacto", "InicioAct", "id_Dpto"});
  const struct { int id; const char* name; const char* dir; const char* tel; int dpto; int year; } kSucursales[] = {
      {0, "Casa central", "Av. 18 de Julio 1456", "2901 4567", 1, 22},
      {1, "Centro", "Av. 18 de Julio 1456", "2901 4567", 1, 22},
      {2, "Las Piedras", "Av. Artigas 612", "2364 1020", 2, 12},
      {3, "Maldonado", "Sarandí 845", "4222 3344", 10, 6}};
  for (const auto& s : kSucursales) {
    row.reset().i(s.id).t(s.name).t(s.dir).t(s.tel).t("sucursales@demo.com.uy").t("Encargado")
        .t(Date{options.last_year - s.year, 4, 1}.iso()).i(s.dpto);
    sink.add_row(sucursales, row.values());
  }

  const int horarios = sink.declare_table("TRegHorario", {"id_Regimen", "Descripcion", "CantHxDia", "HorasXSem"});
  const struct { int id; const char* name; double dia; double semana; } kHorarios[] = {
      {0, "Régimen general", 8, 44}, {1, "Comercio 44 horas", 8, 44}, {2, "Industria 48 horas", 8, 48},
      {3, "Medio horario", 4, 24}};
  for (const auto& h : kHorarios) {
    row.reset().i(h.id).t(h.name).r(h.dia).r(h.semana);
    sink.add_row(horarios, row.values());
  }

  const int obras = sink.declare_table(
      "Obras", {"idObr", "Nombre", "NroObra", "id_EstadoObr", "DireccionObr", "NroEmpresaTit", "NroContribTit",
                "RazonSocialTit", "idTipoContTit", "idTipoApoTit", "idDepTit", "idCajAct", "DirecTit", "Telefono",
                "EmailTit", "Fax", "ContactoTit", "idTipoAct", "id_FormaDeReal", "NumAutoriza", "FecIni", "FecFin",
                "id_TipoAPObra"});
  row.reset().i(1).t("Reforma local Maldonado").t("OB-2231").i(2).t("Sarandí 845, Maldonado").t("5123456")
      .t("214567890018").t("Demo S.A.").i(1).i(1).i(10).i(1).t("Av. 18 de Julio 1456").t("4222 3344")
      .t("obras@demo.com.uy").t("").t("Arq. Sofía Núñez").i(1).i(1).t("A-77812")
      .t(Date{options.last_year - 1, 2, 1}.iso()).t(Date{options.last_year - 1, 11, 30}.iso()).i(1);
  sink.add_row(obras, row.values());

  const int centros = sink.declare_table("CentroCosto", {"idCC", "NombreCC", "FecIni", "FecFin"});
  const char* const kCentros[] = {"Administración central", "Comercial", "Operaciones", "Sucursales"};
  for (int i = 0; i < 4; ++i) {
    row.reset().i(i + 1).t(kCentros[i]).t(Date{options.last_year - 10, 1, 1}.iso()).null();
    sink.add_row(centros, row.values());
  }

  // Deduction catalogues named by the declarations.
  const struct { const char* table; const char* id; const char* desc; std::vector<const char*> rows; } kCats[] = {
      {"RubrosDeduccion", "idRubroDed", "DescripRubro", {"Hijos menores", "Hijos con discapacidad", "Cónyuge"}},
      {"TiposDeduccion", "idTipoDeduc", "DescTipoDeduccion", {"Deducción IRPF", "Beneficio FONASA"}},
      {"RegimenesDeduccion", "idCodigoRegimen", "DescRegimen", {"General", "Tenencia compartida"}},
      {"CausalesDeduccion", "idCausalDeduc", "DescCausaDeduc", {"Hijo a cargo", "Tutela", "Curatela"}},
      {"RelacionesFiliares", "id_RelacFil", "DescRelaFil", {"Hijo/a", "Cónyuge", "Concubino/a", "Menor a cargo"}},
      {"CausalesBajaRela", "idCauBajaRela", "DescCausalBaja", {"Mayoría de edad", "Fallecimiento", "Otro"}},
  };
  for (const auto& cat : kCats) {
    const int t = sink.declare_table(cat.table, {cat.id, cat.desc});
    for (std::size_t i = 0; i < cat.rows.size(); ++i) {
      row.reset().i(static_cast<std::int64_t>(i) + 1).t(cat.rows[i]);
      sink.add_row(t, row.values());
    }
  }
}

}  // namespace demo
