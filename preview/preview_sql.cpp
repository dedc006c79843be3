// preview/preview_sql.cpp — texts of the staged data preview and liquidation browser.
#include "preview/preview_sql.h"

#include <algorithm>
#include <cctype>

namespace preview::sql {
namespace {

bool same_text_ignoring_case(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

}  // namespace

std::vector<std::string> staging_tidy() {
  return {
      "Update Personas Set Numero=Trim(Numero)",
      "Update Personas Set Numero=left(Numero,len(Numero)-2) & Right(Numero,1) where instr(Numero,'-')<>0",
      "Update Contrato as C Set C.Numero_Alternativo=left(C.Numero_Alternativo,instr(C.Numero_Alternativo,'_')-1)  "
      "Where (Select Count(id_contrato) as Cant From Contrato as B where B.id_Persona=C.id_persona Group by id_Persona "
      ")<=1",
  };
}

std::string company_select() {
  return "Select Nombre,RazonSocial,Direccion,Telefono1,Fax,Seccion_Policial,Ramo,P.Numero as NBPS,RUC,Email From "
         "Empresa as A Left Join (Select 1 as ID, * From Planillas Where id_TPlanilla=3) as P on A.idEmpresa=P.id";
}

std::string cargos_grid() { return "Select * From (Select ID_Cargo as ID, CARGO as Nombre From Cargos)"; }

std::string sectores_grid() { return "Select * From (Select Id_Sector as id,Descripcion as Nombre From Sectores)"; }

std::string sucursales_grid() { return "Select * From (Select id_Sucursal as id,Nombre as Nombre From Sucursales)"; }

std::string horarios_grid() { return "Select * From (Select id_Regimen as id,Descripcion as Nombre From TRegHorario)"; }

std::string contracts_grid() { return "Select * From cLstCont order by id_Persona"; }

std::string declarations_select(std::string_view hasta, std::string_view desde) {
  return std::string(
             "Select idDeclaracion,id_Persona,idRubroDed,idTipoDeduc,idCausalDeduc,idCodigoRegimen,idCauBajaRela,"
             "DescripRubro,DescTipoDeduccion,") +
         "DescRegimen,id_PersRelac,NomRela_1,NomRela_2,ApeRela_1,ApeRela_2,Id_SexoRela,id_NacRela,NDoc, " +
         "id_PaisRela,NDocRela,NumeroRela,ID_Doc_ExigRela,Trabaja,TieneMonto,CantBPC,DescCausaDeduc,id_RelacFil,"
         "DescRelaFil,FecNacRela,Porc,Monto,Desde" +
         ",FechaDeclaracion,Hasta,DescCausalBaja, Format(Desde,'MM/yy') as strDesde, Format(Hasta,'MM/yy') as "
         "strHasta, format(FecNacRela,'dd/MM/yy') as strFecNacRela, format(FechaDeclaracion,'dd/MM/yy') as "
         "strFechaDeclaracion, " +
         " NomRela_1 & iif(NomRela_2<>'' and not isnull(NomRela_2), ', ' & NomRela_2,',-')  AS NombresRela "
         ",left(ApeRela_1 & iif(ApeRela_2<>'' and not isnull(ApeRela_2), ', ' & ApeRela_2,',-') ,45) AS "
         "ApellidosRela , " +
         " Nombre_1 & iif(Nombre_2<>'' and not isnull(Nombre_2), ', ' & Nombre_2,',-')  AS Nombres "
         ",Left(Apellido_1 & iif(Apellido_2<>'' and not isnull(Apellido_2), ', ' & Apellido_2,',-') ,45) AS "
         "Apellidos " +
         " From cDeclaraciones where Desde<=cdate('" + std::string(hasta) + "') and (Hasta>=cdate('" +
         std::string(desde) + "') or isnull(Hasta))";
}

std::string kel_concepts_lookup() { return "Select id_Concepto,Codigo,Nombre From Conceptos order by Codigo"; }

std::string kel_types_lookup() { return "Select id_TipoLiq,Nombre From TiposLiquidacion order by id_TipoLiq"; }

std::string staged_types_lookup() { return "SELECT id_TipoLiq,Nombre FROM TiposLiquidacion order by id_TipoLiq"; }

std::string staged_concepts_lookup() { return "SELECT id_concepto,Codigo,Nombre FROM Conceptos order by Nombre"; }

std::string unused_concepts_delete() {
  return "Delete * From Conceptos as C Where Not Exists(Select id_Datos From Datos_Liquidacion as DL Where "
         "DL.id_Concepto=C.id_Concepto)";
}

std::string unused_relations_delete() {
  return "Delete * From RelacConc as C Where Not Exists(Select id_Concepto From Conceptos as DL Where "
         "DL.id_Concepto=C.CodOS)";
}

std::string liquidation_sort_text(std::string_view old_sort, std::string_view column_name, int column_index) {
  const std::string name(column_name);
  std::string key = column_index == kMonthColumn ? "cdate(" + name + ")" : name;
  if (same_text_ignoring_case(old_sort, name)) key += " Desc";
  return key;
}

std::string liquidation_headers_select(std::string_view sort) {
  const std::string order = sort.empty() ? std::string("id_Persona") : std::string(sort);
  return "Select * From CHistLiq order by " + order + ",MesDeLiq,id_TipoLiq,id_Contrato";
}

std::string liquidation_lines_select(std::int64_t id_encabezado) {
  return "Select *,cstr(Round(Cantidad,3)) & iif(TipoDato=1,' %','') as Cant,cstr(Round(Coeficiente,2)) as Coef, "
         "CStr(Round(Monto,2)) as strMonto From cLisLiquida Where id_Encabezado=" +
         std::to_string(id_encabezado) + " Order by TipoOperacion Desc, id_Concepto";
}

}  // namespace preview::sql
