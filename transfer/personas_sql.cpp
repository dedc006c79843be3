// transfer/personas_sql.cpp — texts of the persons and contracts step.
#include "transfer/personas_sql.h"

#include <stdexcept>

namespace transfer::sql {
namespace {

std::string n(std::int64_t value) { return std::to_string(value); }

const std::string& offset() {
  static const std::string text = n(kParkingOffset);
  return text;
}

// The contract update shared by the matching and the return of parked persons.
std::string map_contracts() {
  return "Update Contrato as C inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=C.id_Persona Set C.id_Persona=Val(AOR.C2),"
         "Numero_Alternativo=AOR.C2 & iif(instr(Numero_Alternativo,'_'),'_' & Right(Numero_Alternativo,1),'') ";
}

// The two declaration updates shared by the matching and the return.
std::string map_declarations_related() {
  return "Update Declaraciones as D inner Join AuxOtrosRep as AOR  on (Val(AOR.C1)=D.id_Persona and "
         "id_PersRelac=Val(AOR.C1)) Set id_PersRelac=Val(AOR.C2) Where Trabaja";
}
std::string map_declarations_person() {
  return "Update Declaraciones as D inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=D.id_Persona Set id_Persona=Val(AOR.C2)";
}

}  // namespace

std::vector<std::string> staged_document_numbers_tidy() {
  const std::string dash =
      "Update Personas Set NUMERO=iif(instr(Numero,'-')=0,Numero,Left(Numero,len(Numero)-2) & Right(Numero,1)) "
      "Where instr(Numero,'-')<>0";
  return {
      "Update Personas Set NUMERO=Trim(Numero)",
      dash,
      "Update Personas Set NUMERO=iif(instr(Numero,'_')=0,Numero,Left(Numero,len(Numero)-2) & Right(Numero,1)) "
      "Where instr(Numero,'_')<>0",
      dash,
      "Update Personas Set NUMERO=iif(instr(Numero,'.')=0,Numero,Left(Numero,len(Numero)-2) & Right(Numero,1)) "
      "Where instr(Numero,'.')<>0",
  };
}

std::string park_personas() {
  return "Update Personas as P set id_Persona=" + offset() + "+id_Persona where id_Persona<" + offset();
}

std::string park_contratos() {
  return "Update Contrato as C set id_Persona=" + offset() + "+id_Persona, Numero_Alternativo=" + offset() +
         "+id_Persona & iif(instr(Numero_Alternativo,'_'),'_' & Right(Numero_Alternativo,1),'') Where id_Persona<" +
         offset();
}

std::string park_contact_data() {
  return "Update rPersonas_Dto_Comunicacion as PDC set Id_Persona=" + offset() + "+Id_Persona";
}

std::string park_declaraciones() {
  return "Update Declaraciones set id_Persona=" + offset() + "+id_Persona, id_PersRelac=iif(Trabaja," + offset() +
         ",0) + id_PersRelac where id_Persona<" + offset();
}

std::string aux_clear() { return "Delete * From AuxOtrosRep"; }

std::string aux_match_by_document(std::string_view staging_path) {
  return "Insert into AuxOtrosRep Select P.id_Persona as C1, A.id_Persona as C2 From Personas as P inner Join "
         "(Select * From Personas in '" +
         std::string(staging_path) + "') as A  on Val(P.NUMERO)=Val(A.NUMERO) and P.id_Persona<>A.id_Persona";
}

std::vector<std::string> apply_match_map() {
  return {
      "Update Personas as P inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=P.id_Persona Set P.id_Persona=Val(AOR.C2)",
      map_contracts(),
      "Update rPersonas_Dto_Comunicacion as PDC inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=PDC.id_Persona "
      "Set id_Persona=Val(AOR.C2)",
      map_declarations_related(),
      map_declarations_person(),
  };
}

std::string refresh_personas(std::string_view staging_path) {
  return "Update Personas as P inner Join (Select * From Personas in '" + std::string(staging_path) +
         "') as A  on P.id_Persona=A.id_Persona and P.NUMERO=A.NUMERO Set " +
         "P.Apellido_1=A.Apellido_1,  P.Nombre_1=A.Nombre_1, P.Apellido_2=A.Apellido_2, P.Nombre_2=A.Nombre_2, "
         "P.Direccion=A.Direccion, P.Id_Sexo=A.Id_Sexo, " +
         "P.ID_EstadoCivil=A.ID_EstadoCivil,P.Fecha_Nacimiento=A.Fecha_Nacimiento, P.Id_Localidad=A.id_Localidad, "
         "P.Id_dpto=A.Id_dpto, P.id_Nacionalidad=A.id_Nacionalidad," +
         "P.id_Pais=A.id_Pais, P.ID_Doc_Exigidos=A.ID_Doc_Exigidos, P.FECHA_EMISION=A.FECHA_EMISION, "
         "P.FECHA_VENCIMIENTO=A.FECHA_VENCIMIENTO";
}

std::string insert_new_personas(std::string_view staging_path) {
  return "Insert into Personas Select * From (Select * From Personas in '" + std::string(staging_path) +
         "') as A where Not Exists(Select id_Persona From Personas as P where A.id_Persona=P.id_Persona)";
}

std::string staged_personas_rela_probe() { return "Select * From PersonasRela"; }

std::string personas_rela_delete() { return "Delete A.* From PersonasRela as A"; }

std::string personas_rela_copy(std::string_view staging_path) {
  return "Insert into PersonasRela Select * From (Select * From PersonasRela in '" + std::string(staging_path) +
         "') as A ";
}

std::string staged_declaraciones_probe() { return "Select * From Declaraciones"; }

std::string declaraciones_delete() { return "Delete * From Declaraciones"; }

std::string declaraciones_copy(std::string_view staging_path) {
  return "Insert into Declaraciones Select * From (Select * From Declaraciones in '" + std::string(staging_path) +
         "') as A ";
}

std::string contact_data_copy(std::string_view staging_path) {
  return "Insert into rPersonas_Dto_Comunicacion Select A.ID_Dto_Comunicacion,A.Id_Persona, A.Dato From "
         "(Select * From rPersonas_Dto_Comunicacion in '" +
         std::string(staging_path) + "') as A " +
         " Where not exists(Select Id_Persona From rPersonas_Dto_Comunicacion as P where A.Id_Persona=P.Id_Persona "
         "and P.ID_Dto_Comunicacion=A.ID_Dto_Comunicacion)";
}

std::string contract_max_id() { return "Select iif(isnull(Max(id_Contrato)),0,Max(id_Contrato)) From Contrato"; }

std::string contract_insert(std::int64_t contract_base, std::string_view staging_path) {
  return "Insert into Contrato Select * From (Select " + n(contract_base) +
         " + Contrato.Id_Contrato as Id_Contrato,NUMERO_ALTERNATIVO,Id_Persona,SUELDO,HORAS,FECHA_INICIO,FECHA_FIN,"
         "vigente,Tarjeta,id_Memo,Id_MotivoEgr,id_Tipo_Contrato,id_TipoRem,FECHA_RECONO,DiasExtLicXC,id_FormaDePago,"
         "LugarDePago,CuentaBanc,id_Seguro_Sal,id_Vinculo_Fun,id_Exoneracion,id_CompEsp,id_CausalEgr,id_Sucursal,"
         "id_Regimen,id_AportaX,id_Cat,id_TipoAJ,AcuLab,id_CobraPor,Confidencial,id_CuentaADeb,id_Cargo,id_Sector,"
         "id_Moneda,CantDiasXMes,TomaDTdeCont,idCC,idBancoEmp From Contrato in '" +
         std::string(staging_path) + "') as A " +
         " Where Not Exists(Select * From Contrato as PP where PP.id_Persona=A.id_Persona and "
         "A.FECHA_INICIO=PP.FECHA_INICIO and iif(isnull(A.Fecha_Fin),1,A.Fecha_Fin)=iif(isnull(PP.Fecha_Fin),1,"
         "PP.Fecha_Fin))  ";
}

std::string contract_update(std::string_view staging_path) {
  return "Update Contrato as PP inner join (Select * From Contrato in '" + std::string(staging_path) +
         "') as A  on (PP.NUMERO_ALTERNATIVO=A.NUMERO_ALTERNATIVO and A.AcuLab=PP.AcuLab)  Set " +
         " PP.SUELDO=A.SUELDO, PP.HORAS=A.Horas, PP.FECHA_INICIO=A.FECHA_INICIO,PP.FECHA_FIN=A.FECHA_FIN, "
         "PP.vigente=A.Vigente,PP.Tarjeta=A.Tarjeta,PP.id_Tipo_Contrato=A.id_Tipo_Contrato ,PP.id_TipoRem=A.id_TipoRem,"
         "PP.FECHA_RECONO=A.FECHA_RECONO, " +
         " PP.DiasExtLicXC=A.DiasExtLicXC,PP.id_FormaDePago=A.id_FormaDePago, PP.LugarDePago=A.LugarDePago,"
         "PP.CuentaBanc=A.CuentaBanc,PP.id_Seguro_Sal=A.id_Seguro_Sal,PP.id_Vinculo_Fun=A.id_Vinculo_Fun,"
         "PP.id_Exoneracion=A.id_Exoneracion," +
         " PP.id_CompEsp=A.id_CompEsp,PP.id_CausalEgr=A.id_CausalEgr,PP.id_Sucursal=A.id_Sucursal,"
         "PP.id_Regimen=A.id_Regimen, PP.AcuLab=A.AcuLab,PP.id_CobraPor=A.id_CobraPor, PP.Confidencial=A.Confidencial,"
         "PP.id_Cargo=A.id_Cargo," +
         " PP.id_Sector=A.id_Sector,PP.CantDiasXMes=A.CantDiasXMes,PP.TomaDTdeCont=A.TomaDTdeCont,"
         "PP.id_AportaX=A.id_AportaX";
}

std::string registration_first(int registration_type) {
  return "Select Top 1 id_Planilla From Planillas Where Id_TPlanilla=" + n(registration_type) +
         " and id_Planilla<>0";
}

std::string registration_attach(int registration_type, std::int64_t planilla_id) {
  const char* view = nullptr;
  switch (registration_type) {
    case 1: view = "Con_Planilla_BSE"; break;
    case 2: view = "Con_Planilla_MTSS"; break;
    case 3: view = "Con_Planilla_BPS"; break;
    default: throw std::invalid_argument("tipo de planilla desconocido: " + n(registration_type));
  }
  return "Insert Into rPlanillas Select C.Id_Contrato as idContrato, " + n(planilla_id) +
         " as idPlanilla From Contrato as C Where Not Exists(Select idContrato From " + view +
         " as CPM Where CPM.idContrato=C.id_Contrato)";
}

std::vector<std::string> contract_defaults() {
  return {
      "Update contrato set id_Tipo_Contrato=1 Where isnull(id_Tipo_Contrato)",
      "Update contrato set id_CobraPor=4 Where id_TipoRem=2 and id_CobraPor=8",
      "Update contrato set Horas=8 Where HORAS=0 or isnull(HORAS)",
  };
}

std::string max_unparked_person() { return "Select Max(Id_Persona) From Personas where id_Persona<" + offset(); }

std::string aux_return_to_free_ids() {
  return "Insert into AuxOtrosRep Select P.id_Persona as C1, P.id_Persona-" + offset() +
         " as C2 From Personas as P where id_Persona>" + offset() +
         " and not Exists(Select id_Persona From Personas as KK Where KK.id_Persona=P.id_Persona-" + offset() + ")";
}

std::string aux_move_above(std::int64_t max_p) {
  return "Insert into AuxOtrosRep Select P.id_Persona as C1, " + n(max_p) +
         " +1 as C2 From Personas as P Where id_Persona>" + offset() +
         " and Exists(Select id_Persona From Personas as KK Where KK.id_Persona=P.id_Persona-" + offset() + ")";
}

std::string aux_max_new_id() {
  return "Select iif(isnull(Max(Val(C2))),0,Max(Val(C2))) as MaxID From AuxOtrosRep";
}

std::string aux_lift(std::int64_t max_id, std::int64_t max_p) {
  return "Update AuxOtrosRep Set C2=" + n(max_id) + " Where Val(C2)>" + n(max_p);
}

std::string aux_min_row() { return "Select iif(isnull(Min(id)),0,Min(id)) as MinID From AuxOtrosRep"; }

std::string aux_spread(std::int64_t min_id, std::int64_t max_p) {
  return "Update AuxOtrosRep as AOR Set C2=Val(C2)-" + n(min_id) + "+ID where Val(C2)>" + n(max_p);
}

std::vector<std::string> apply_return_map() {
  return {
      "Update Personas as P inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=P.id_Persona Set P.id_Persona=Val(AOR.C2) ",
      map_contracts(),
      "Update rPersonas_Dto_Comunicacion as PDC inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=PDC.Id_Persona "
      "Set Id_Persona=Val(AOR.C2) Where not exists(Select ID_Dto_Comunicacion From rPersonas_Dto_Comunicacion as JJ "
      "Where JJ.Id_Persona=Val(AOR.C2) and JJ.ID_Dto_Comunicacion=PDC.ID_Dto_Comunicacion)",
      map_declarations_related(),
      map_declarations_person(),
  };
}

std::string aux_duplicate_contracts() {
  return "Insert into AuxOtrosRep Select Max(P.id_Contrato) as C1, P.id_Persona as C2,AcuLab as C3 From Contrato as P "
         "Group by P.id_Persona,Fecha_Inicio,Fecha_Fin,AcuLab having count(*)>1";
}

std::string delete_duplicate_headers() {
  return "Delete E.* From Encabezados as E inner join AuxOtrosRep as AOR on E.id_contrato=Val(AOR.C1)";
}

std::string delete_duplicate_contracts() {
  return "Delete C.* From Contrato as C inner join AuxOtrosRep as AOR on C.id_contrato=Val(AOR.C1)";
}

std::string legajo_start_entries() {
  return "Insert into Legajo Select D.UltLeg+id_Contrato as id_Legajo, 1 as id_TMLegajo,C.id_Contrato,Null as "
         "id_DatoAnt,1 as id_Usuario,0 as aId,cstr(C.FECHA_INICIO) as strAValor,Date() as Fecha,Null as id_Memo From "
         "(Select iif(isnull(Max(id_Legajo)),0,Max(id_Legajo)) as UltLeg From Legajo) as D, Contrato as C where not "
         "Exists(Select id_Legajo From Legajo as L where L.id_Contrato=C.id_Contrato and L.id_TMLegajo=1)";
}

std::string aux_person_map() { return "Select C1, C2 From AuxOtrosRep Order by id"; }

std::string aux_row_count() { return "Select Count(*) From AuxOtrosRep"; }

}  // namespace transfer::sql
