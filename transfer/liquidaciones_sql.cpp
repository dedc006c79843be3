// transfer/liquidaciones_sql.cpp — texts of the liquidations step.
#include "transfer/liquidaciones_sql.h"

#include "transfer/personas_sql.h"

namespace transfer::sql {
namespace {

std::string n(std::int64_t value) { return std::to_string(value); }

// The staging clause S.
std::string in_staging(std::string_view staging_path) { return " in '" + std::string(staging_path) + "'"; }

// The first piece of both leave link statements.
std::string leave_link_head() {
  return "Insert Into rLic_Enc Select Licencias.id_Lic, Encabezados.id_Encabezado,Datos_Liquidacion.id_Dato as "
         "id_DatoLiq From (Licencias inner join Encabezados on Encabezados.id_contrato=Licencias.id_contrato and "
         "Encabezados.MesDeLiq=cdate(Format(Licencias.desde,'MM/yyyy'))) ";
}

}  // namespace

std::string staged_numbers_drop_dash() {
  return "Update Personas Set NUMERO=Left(Numero,len(Numero)-2) & Right(Numero,1) Where instr(Numero,'-')<>0";
}

std::string staged_lines_before(std::string_view desde) {
  return "Delete DL.* From Datos_Liquidacion as DL inner join Encabezados as E on E.id_Encabezado=DL.id_Encabezado "
         "Where MesDeLiq<cdate('" +
         std::string(desde) + "')";
}

std::string staged_headers_before(std::string_view desde) {
  return "Delete E.* From Encabezados as E Where MesDeLiq<cdate('" + std::string(desde) + "')";
}

std::string staged_lines_after(std::string_view hasta) {
  return "Delete DL.* From Datos_Liquidacion as DL inner join Encabezados as E on E.id_Encabezado=DL.id_Encabezado "
         "Where MesDeLiq>cdate('" +
         std::string(hasta) + "')";
}

std::string staged_headers_after(std::string_view hasta) {
  return "Delete E.* From Encabezados as E Where MesDeLiq>cdate('" + std::string(hasta) + "')";
}

std::string header_base() { return "Select iif(isnull(Max(Id_Encabezado)),0,Max(Id_Encabezado)) +1 From Encabezados"; }

std::string line_base() { return "Select iif(isnull(Max(Id_Dato)),0,Max(Id_Dato)) +1 From Datos_Liquidacion"; }

std::string contract_match(bool persons_imported) {
  return persons_imported ? "C.id_Persona=B.id_Persona " : "C.Numero=P.Numero";
}

std::string headers_insert(std::int64_t header_base, std::string_view staging_path, bool persons_imported) {
  const std::string s = in_staging(staging_path);
  return "Insert into Encabezados Select " + n(header_base) +
         " + A.idEnc as id_Encabezado, A.CodKEL as Id_TipoLiq, A.FDL as FechaDeLiq, A.MesDeLiq, A.Impreso, "
         "A.Terminado, C.id_Contrato,A.id_Usuario, Null as FechaVisto, Null as idLote,0 as Cod1, 0 as Cod2, 0 as  "
         "Cod5, 0 as Cod7, 0 as Cod8, 0 as Cod41, 0 as OtrosH, 0 as Aporte, 0 as Liquido,0 as DTE, 0 as DTP, 0 as "
         "Cod1AD, 0 as Cod5AD, 0 as OtrosHAD " +
         " From (((Select CodKEL,  Max(EE.id_Encabezado) as idEnc,Max(EE.FechaDeLiq) as FDL, EE.MesDeLiq,EE.Impreso,"
         "EE.Terminado,EE.id_Usuario,EE.id_Contrato   From (Select * From Encabezados " +
         s + ") as EE Inner Join (Select * From RelacTLiq " + s +
         ") as RTL on RTL.CodOS=EE.id_TipoLiq Group by EE.MesDeLiq,EE.Impreso,EE.Terminado,EE.id_Usuario,"
         "EE.id_Contrato ,RTL.CodKEL) as A " +
         " inner Join (Select * From Contrato " + s + ")as B on B.id_Contrato=A.id_Contrato) inner join (Select * From Personas " +
         s + ") as P on P.id_Persona=B.id_Persona) " +
         " inner join (Select Contrato.* , Personas.Numero From Contrato inner join Personas on "
         "Personas.id_Persona=Contrato.id_Persona) as C on " +
         contract_match(persons_imported) +
         " and C.AcuLab=B.AcuLab and C.FECHA_INICIO=B.FECHA_INICIO and "
         "A.MesDeLiq>=cdate(format(C.FECHA_INICIO,'MM/yyyy')) and A.MesDeLiq<=iif(C.vigente,#03/25/2080#,C.FECHA_FIN) "
         "Where ((C.vigente=B.vigente and c.Vigente=True) or C.FECHA_Fin=B.FECHA_Fin) and Not Exists(Select "
         "id_Encabezado From Encabezados as XX Where C.id_Contrato=XX.id_Contrato and A.MesDeLiq=XX.MesDeLiq and "
         "A.CodKEL=XX.id_TipoLiq) ";
}

std::string lines_insert(std::int64_t line_base, std::int64_t header_base, std::string_view staging_path,
                         bool persons_imported) {
  const std::string s = in_staging(staging_path);
  return std::string("Insert into Datos_Liquidacion ") + " Select " + n(line_base) +
         " + DL.id_dato as id_Dato,iif(isnull(XX.id_Encabezado)," + n(header_base) +
         "+A.id_Encabezado,XX.id_Encabezado) as id_Encabezado,CC.CodKEL as id_Concepto," +
         " DL.Cantidad,DL.Coeficiente,DL.RedoEnLiq,DL.idAgrupa,DL.Monto,DL.Relacion,DL.DTE,DL.DTP " + " From ((" +
         " (Select EE.*, C.id_Contrato as IDCAct,B.id_Contrato as idContPasaje,RTL.CodKEL From " +
         " ((((Select * From Encabezados " + s + ") as EE  Inner Join " + "   (Select * From RelacTLiq " + s +
         ") as RTL on RTL.CodOS=EE.id_TipoLiq ) inner Join " + "   (Select * From Contrato " + s +
         ") as B on B.id_Contrato=EE.id_Contrato) inner join " + "   (Select * From Personas " + s +
         ") as P on P.id_Persona=B.id_Persona) inner join " +
         "   (Select Contrato.* , Personas.Numero From Contrato inner join Personas on "
         "Personas.id_Persona=Contrato.id_Persona) as C on " +
         contract_match(persons_imported) +
         " and C.FECHA_INICIO=B.FECHA_INICIO and C.AcuLab=B.AcuLab Where ((C.vigente=B.vigente and c.Vigente=True) or "
         "C.FECHA_Fin=B.FECHA_Fin))  as A " +
         "      inner join (Select * From Datos_Liquidacion " + s + ") as DL on DL.id_Encabezado=A.id_Encabezado) " +
         "      inner join (Select * From RelacConc " + s + " Where RelacConc.CodKEL<>-1)as CC on CC.CodOS=DL.id_Concepto) " +
         " inner join  Encabezados as XX on (A.IDCAct=XX.id_Contrato and A.MesDeLiq=XX.MesDeLiq and "
         "A.CodKEL=XX.id_TipoLiq)  ";
}

namespace {

// The tests that a staged line's concept, and its header's type, are mapped.
const char* const kConceptMapped =
    "Exists(Select CodOS From RelacConc as RC Where RC.CodOS=DL.id_Concepto and RC.CodKEL<>-1)";
const char* const kTypeMapped = "Exists(Select CodOS From RelacTLiq as RT Where RT.CodOS=E.id_TipoLiq)";

}  // namespace

std::string staged_lines_not_imported_concept() {
  return std::string("Select Count(*) From Datos_Liquidacion as DL Where Exists(Select CodOS From RelacConc as RC "
                     "Where RC.CodOS=DL.id_Concepto and RC.CodKEL=-1) and Not ") +
         kConceptMapped;
}

std::string staged_lines_unmapped_concept() {
  return "Select Count(*) From Datos_Liquidacion as DL Where Not Exists(Select CodOS From RelacConc as RC Where "
         "RC.CodOS=DL.id_Concepto)";
}

std::string staged_lines_unmapped_type() {
  return std::string("Select Count(*) From Datos_Liquidacion as DL inner join Encabezados as E on "
                     "E.id_Encabezado=DL.id_Encabezado Where ") +
         kConceptMapped + " and Not " + kTypeMapped;
}

std::string staged_candidate_lines_per_header() {
  return std::string("Select DL.id_Encabezado, Count(*) as Lineas From Datos_Liquidacion as DL inner join "
                     "Encabezados as E on E.id_Encabezado=DL.id_Encabezado Where ") +
         kConceptMapped + " and " + kTypeMapped + " Group by DL.id_Encabezado";
}

std::string staged_headers_found(std::string_view staging_path, bool persons_imported) {
  const std::string s = in_staging(staging_path);
  return "Select Distinct A.id_Encabezado From (Select EE.id_Encabezado, EE.MesDeLiq, C.id_Contrato as IDCAct, "
         "RTL.CodKEL From ((((Select * From Encabezados " +
         s + ") as EE Inner Join (Select * From RelacTLiq " + s +
         ") as RTL on RTL.CodOS=EE.id_TipoLiq) inner Join (Select * From Contrato " + s +
         ") as B on B.id_Contrato=EE.id_Contrato) inner join (Select * From Personas " + s +
         ") as P on P.id_Persona=B.id_Persona) inner join (Select Contrato.* , Personas.Numero From Contrato inner "
         "join Personas on Personas.id_Persona=Contrato.id_Persona) as C on " +
         contract_match(persons_imported) +
         " and C.FECHA_INICIO=B.FECHA_INICIO and C.AcuLab=B.AcuLab Where ((C.vigente=B.vigente and c.Vigente=True) "
         "or C.FECHA_Fin=B.FECHA_Fin)) as A inner join Encabezados as XX on (A.IDCAct=XX.id_Contrato and "
         "A.MesDeLiq=XX.MesDeLiq and A.CodKEL=XX.id_TipoLiq)";
}

std::string calendar_per_employee_select() {
  return "Select id_Encabezado,E.id_Contrato,E.id_TipoLiq,MesDeLiq From Encabezados as E inner join TiposLiquidacion "
         "as TL on TL.id_TipoLiq=E.id_TipoLiq Where TL.ParaEmp";
}

std::string calendar_per_employee_insert(std::int64_t id_tipo_liq, std::string_view month_mdy,
                                         std::int64_t id_contrato) {
  const std::string month(month_mdy);
  return "Insert Into Calendario_liq Select * From (Select iif(isnull(Max(Calendario_liq.id_Liquidacion)),0,"
         "Max(Calendario_liq.id_Liquidacion))+1 as id_Liquidacion," +
         n(id_tipo_liq) + " as id_TipoLiq,#" + month + "# as Fecha," + n(id_contrato) +
         " as id_contrato,'' as CondCalLiq From Calendario_liq) as CL " +
         " Where Not Exists(Select * From Calendario_liq as CC where Cdate(Format(Fecha,'MM/yyyy'))=#" + month +
         "# and id_TipoLiq=" + n(id_tipo_liq) + " and id_Contrato=" + n(id_contrato) + ")";
}

std::string calendar_group_select() {
  return "Select * From (Select Distinct TL.id_TipoLiq,MesDeLiq,C.id_TipoRem From (Encabezados as E inner join "
         "TiposLiquidacion as TL on TL.id_TipoLiq=E.id_TipoLiq) inner join Contrato as C on "
         "E.id_Contrato=C.id_contrato Where Not TL.ParaEmp and Not Salarial) AS A Order by "
         "A.id_TipoLiq,A.id_TipoRem,A.MesDeLiq";
}

std::string calendar_group_insert(std::int64_t id_tipo_liq, std::string_view month_mdy,
                                  std::string_view tipo_rem_list) {
  const std::string month(month_mdy);
  return "Insert Into Calendario_liq Select * From (Select iif(isnull(Max(Calendario_liq.id_Liquidacion)),0,"
         "Max(Calendario_liq.id_Liquidacion))+1 as id_Liquidacion," +
         n(id_tipo_liq) + " as id_TipoLiq,#" + month + "# as Fecha,Null as id_contrato, 'id_TipoRem in (" +
         std::string(tipo_rem_list) + ")'  as CondCalLiq From Calendario_liq) as CL " +
         " Where Not Exists(Select * From Calendario_liq as CC where Cdate(Format(Fecha,'MM/yyyy'))=#" + month +
         "# and id_TipoLiq=" + n(id_tipo_liq) + ")";
}

std::string leave_insert() {
  return "Insert into licencias Select distinct E.id_Encabezado as id_Lic, E.id_Contrato, MesDeLiq as Desde, "
         "MesDeLiq as Hasta,1 as CantDias, cbool(E.id_TipoLiq=6) as Anticipada From Encabezados as E  where "
         "E.id_TipoLiq in (5,6,1,2) and Exists(Select id_Dato From Datos_Liquidacion as DL Where "
         "DL.id_Encabezado=E.id_Encabezado and id_concepto in (20,22,14,66))";
}

std::string leave_link_new() {
  return leave_link_head() +
         " Inner join datos_Liquidacion on datos_Liquidacion.id_Encabezado=Encabezados.id_Encabezado Where "
         "id_concepto in (22,20,14,66) and Encabezados.id_TipoLiq in (6,5,1,2)" +
         " and (Not Exists (Select DISTINCT rLic_Enc.id_lic From rLic_Enc Where Licencias.id_lic=rLic_Enc.id_lic )) ";
}

std::string leave_link_more() {
  return leave_link_head() +
         " Inner join datos_Liquidacion on datos_Liquidacion.id_Encabezado=Encabezados.id_Encabezado Where "
         "id_concepto in (22,20,14,66) and Encabezados.id_TipoLiq in (6,5,1,2) " +
         " And (Exists (Select DISTINCT rLic_Enc.id_lic From rLic_Enc Where Licencias.id_lic=rLic_Enc.id_lic)) " +
         " And (Not Exists (Select DISTINCT rLic_Enc.id_lic From rLic_Enc where "
         "Datos_Liquidacion.id_Dato=rLic_Enc.id_DatoLiq))";
}

std::string worked_days_update() {
  return "UPDATE Datos_Liquidacion INNER JOIN CDetaLiq_DiasTrab AS PP ON PP.id_Dato=Datos_Liquidacion.id_Dato SET "
         "Datos_Liquidacion.DTE = PP.DTE, Datos_Liquidacion.DTP = PP.DTP";
}

std::string cotizacion_delete_foreign() { return "Delete * From Cotizacion Where id_Moneda<>1"; }

std::string cotizacion_copy(std::string_view staging_path) {
  return "Insert into Cotizacion Select * From Cotizacion " + in_staging(staging_path);
}

std::string totals_snapshot() { return "Select * into AuxXX From cLiqTotBPS"; }

std::string totals_update() {
  return "Update Encabezados as E inner join AuxXX as AA on AA.id_Encabezado=E.id_Encabezado set E.Cod1 = "
         "AA.TotCod1,E.Cod2=AA.TotCod2, E.Cod5=AA.TotCod5, E.Cod7=AA.TotCod7,E.Cod8=AA.TotCod8, E.Cod41=AA.TotCod41,"
         "E.OtrosH=AA.TotOtrosH, E.Aporte=AA.TotApo, E.Liquido=AA.TotLiq, E.DTE=AA.DTE, E.DTP=AA.DTP, "
         "E.Cod1AD=AA.TotCod1AD, E.Cod5AD=AA.TotCod5AD, E.OtrosHAD=AA.TotOtrosHAD";
}

std::string totals_drop() { return "Drop Table AuxXX"; }

std::vector<std::string> leave_and_totals(std::string_view staging_path) {
  return {leave_insert(),      leave_link_new(),   leave_link_more(),
          worked_days_update(), aux_clear(),        cotizacion_delete_foreign(),
          cotizacion_copy(staging_path), totals_snapshot(), totals_update(),
          totals_drop()};
}

}  // namespace transfer::sql
