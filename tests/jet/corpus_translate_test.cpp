// tests/jet/corpus_translate_test.cpp — every statement the system runs translates.
//
// The statements of the staging load, the mapping grids, the five transfer
// steps and the preview, with representative values where the program
// concatenates numbers, months and paths. This test only translates them (a
// fake context supplies the column lists); running them on the real schemas
// is the business of the transfer tests.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "fake_context.h"

namespace {

const std::string kPasaje = "/data/E001/Pasaje.mdb";
const std::string kKel = "/data/Empresas/E001/Empresa.mdb";
const std::string S = " in '" + kPasaje + "'";

void DeclareTables(kel_test::FakeContext& c) {
  c.AddTable("Empresa", {"IdEmpresa", "Nombre", "RazonSocial", "Direccion", "RUC", "Email",
                         "Telefono1", "Fax", "Contacto1", "Notas", "id_Tipo_Aport_Emp",
                         "id_Tipo_Contrib", "NombreGest", "DirecGest", "TelefonoGest", "FaxGest",
                         "ContactoGest", "EMailGest", "id_TipoVenc", "id_Exonera", "InicioDeAct",
                         "id_Dpto", "id_Localidad", "id_NatJur", "Ramo", "Seccion_Policial",
                         "CentralizaSucursales", "id_TConvenio", "VencConv", "FechaInsBPS",
                         "DiasExtraXConvenio", "DiasXMesEnContrato", "TomaDTdeCont",
                         "LicEnUnSoloMes", "PrimDiaExtraDeLicaPartir", "MaxDiasExtraDeLic",
                         "DiasDeLicAnuales", "TomaHLDRsiTDTC", "TomaDLicEnProm", "CodPost",
                         "CodigoEmp", "PieDeImpresion"});
  c.AddTable("Planillas", {"id_planilla", "SubNombre", "Numero", "id_Tplanilla", "Dato", "idSG",
                           "idGrupoV", "idSGrupoV"});
  c.AddTable("Cargos", {"id_Cargo", "Cargo", "Laudo", "id_CobraPor", "Id_Cat"});
  c.AddTable("Sectores", {"id_Sector", "Descripcion"});
  c.AddTable("Sucursales", {"id_Sucursal", "Nombre", "Direccion", "Telefono", "Email", "Contacto",
                            "InicioAct", "id_Dpto"});
  c.AddTable("TRegHorario", {"id_Regimen", "Descripcion", "CantHxDia", "HorasXSem"});
  c.AddTable("Obras", {"idObr", "Nombre", "NroObra", "id_EstadoObr", "DireccionObr",
                       "NroEmpresaTit", "NroContribTit", "RazonSocialTit", "idTipoContTit",
                       "idTipoApoTit", "idDepTit", "idCajAct", "DirecTit", "Telefono", "EmailTit",
                       "Fax", "ContactoTit", "idTipoAct", "id_FormaDeReal", "NumAutoriza", "FecIni",
                       "FecFin", "id_TipoAPObra"});
  c.AddTable("CentroCosto", {"idCC", "NombreCC", "FecIni", "FecFin"});
  c.AddTable("AuxOtrosRep", {"id", "C1", "C2", "C3"});
  c.AddTable("Personas", {"id_Persona", "NUMERO", "Apellido_1", "Nombre_1", "Apellido_2",
                          "Nombre_2", "Direccion", "Id_Sexo", "ID_EstadoCivil",
                          "Fecha_Nacimiento", "Id_Localidad", "Id_dpto", "id_Nacionalidad",
                          "id_Pais", "ID_Doc_Exigidos", "FECHA_EMISION", "FECHA_VENCIMIENTO"});
  c.AddTable("PersonasRela", {"id_PersRelac", "NomRela_1", "ApeRela_1"});
  c.AddTable("Declaraciones", {"idDeclaracion", "id_Persona", "id_PersRelac", "Trabaja"});
  c.AddTable("rPersonas_Dto_Comunicacion", {"ID_Dto_Comunicacion", "Id_Persona", "Dato"});
  c.AddTable("Contrato",
             {"Id_Contrato", "NUMERO_ALTERNATIVO", "Id_Persona", "SUELDO", "HORAS", "FECHA_INICIO",
              "FECHA_FIN", "vigente", "Tarjeta", "id_Memo", "Id_MotivoEgr", "id_Tipo_Contrato",
              "id_TipoRem", "FECHA_RECONO", "DiasExtLicXC", "id_FormaDePago", "LugarDePago",
              "CuentaBanc", "id_Seguro_Sal", "id_Vinculo_Fun", "id_Exoneracion", "id_CompEsp",
              "id_CausalEgr", "id_Sucursal", "id_Regimen", "id_AportaX", "id_Cat", "id_TipoAJ",
              "AcuLab", "id_CobraPor", "Confidencial", "id_CuentaADeb", "id_Cargo", "id_Sector",
              "id_Moneda", "CantDiasXMes", "TomaDTdeCont", "idCC", "idBancoEmp"});
  c.AddTable("rPlanillas", {"idContrato", "idPlanilla"});
  c.AddTable("Legajo", {"id_Legajo", "id_TMLegajo", "id_Contrato", "id_DatoAnt", "id_Usuario",
                        "aId", "strAValor", "Fecha", "id_Memo"});
  c.AddTable("Conceptos", {"id_Concepto", "Codigo", "NombreReducido", "Nombre",
                           "id_ConsLiquidacion", "TipoDato", "TipoOperacion", "ModificaNominal",
                           "RedoCoef", "RedoCant", "id_Moneda", "FCant", "FCoef", "VisibleEnRec"});
  c.AddTable("TiposLiquidacion", {"id_TipoLiq", "Nombre", "Color", "Salarial", "Activa",
                                  "ParaEmp", "CodigoParaBPS"});
  c.AddTable("RelacConc", {"CodKEL", "CodOS"});
  c.AddTable("RelacTLiq", {"CodKEL", "CodOS"});
  c.AddTable("rAporPat_TipoLiq", {"id_Aporte", "Codigo", "id_TipoLiq"});
  c.AddTable("Encabezados", {"id_Encabezado", "Id_TipoLiq", "FechaDeLiq", "MesDeLiq", "Impreso",
                             "Terminado", "id_Contrato", "id_Usuario", "FechaVisto", "idLote",
                             "Cod1", "Cod2", "Cod5", "Cod7", "Cod8", "Cod41", "OtrosH", "Aporte",
                             "Liquido", "DTE", "DTP", "Cod1AD", "Cod5AD", "OtrosHAD"});
  c.AddTable("Datos_Liquidacion", {"id_Dato", "id_Encabezado", "id_Concepto", "Cantidad",
                                   "Coeficiente", "RedoEnLiq", "idAgrupa", "Monto", "Relacion",
                                   "DTE", "DTP"});
  c.AddTable("Calendario_liq", {"id_Liquidacion", "id_TipoLiq", "Fecha", "id_contrato",
                                "CondCalLiq"});
  c.AddTable("licencias", {"id_Lic", "id_Contrato", "Desde", "Hasta", "CantDias", "Anticipada"});
  c.AddTable("rLic_Enc", {"id_lic", "id_Encabezado", "id_DatoLiq"});
  c.AddTable("Cotizacion", {"id_Moneda", "Fecha", "Valor"});
}

std::vector<std::string> StagingAndMapping() {
  const std::string kel = " in '" + kKel + "'";
  return {
      // Company check and staging load.
      "Select ucase(trim(Nombre)) From Empresa",
      "Select upper(Em_Nombre) From Empresa",
      "Select ucase(trim(RazonSocial)) From Empresa",
      "Select upper(Em_RSocial) From Empresa",
      "Delete * From Conceptos",
      // Concept mapping grid and buttons.
      "Select * From  (SELECT OS.id_Concepto AS CodigoOS,OS.codigo & '->'& Trim(OS.Nombre) AS "
      "DescOS,  KEL.ID_Concepto AS CodigoKEL, KEL.Nombre AS DescKEL,  "
      "iif((isnull(KEL.id_Concepto) and RR.CodKEL=-1),'No Importar','Importar') as Totalizar, "
      "(isnull(KEL.id_Concepto) and isnull(RR.CodKEL)) as ConcCrear  FROM Conceptos AS OS LEFT "
      "JOIN  (Select * From RelacConc AS RR  Left JOIN (Select * From Conceptos" + kel +
          ") as PP  ON  RR.CodKEL = PP.ID_Concepto) AS KEL  ON OS.id_concepto=KEL.CodOS) order "
          "by DescOS",
      "Select * From  (SELECT OS.id_Concepto AS CodigoOS,OS.codigo & '->'& Trim(OS.Nombre) AS "
      "DescOS, KEL.ID_Concepto AS CodigoKEL, KEL.Nombre AS DescKEL, iif((isnull(KEL.id_Concepto) "
      "and RR.CodKEL=-1),'No Importar','Importar') as Totalizar, (isnull(KEL.id_Concepto) and "
      "isnull(RR.CodKEL)) as ConcCrear FROM Conceptos AS OS LEFT JOIN (Select * From RelacConc "
      "AS RR Left JOIN (Select * From Conceptos" + kel +
          ") as PP ON RR.CodKEL = PP.ID_Concepto) AS KEL ON OS.id_concepto=KEL.CodOS) order by "
          "CodigoKEL Desc",
      "Delete * From RelacConc Where CodOS=12",
      "Insert into RelacConc Select -1 as CodKEL,12 as  CodOS",
      "Insert into RelacConc Select Null as CodKEL,12 as  CodOS",
      "Insert into RelacConc Select 140 as CodKEL,12 as  CodOS",
      "Delete * From RelacConc Where  CodKEL=0 and CodOS=12",
      "Delete * From RelacConc where CodKEL in (101,102,103,104,105,106,107)",
      "Delete * From RelacConc as C Where Not Exists(Select id_Concepto From Conceptos as DL "
      "Where DL.id_Concepto=C.CodOS)",
      // Liquidation-type mapping.
      "SELECT * From (Select OS.id_TipoLiq AS CodigoOS, Trim(OS.Nombre) AS DescOS, "
      "KEL.ID_TipoLiq AS CodigoKEL, KEL.Nombre AS DescKEL  FROM  TiposLiquidacion AS OS LEFT "
      "JOIN (Select * From RelacTLiq AS RR  INNER JOIN (Select * From TiposLiquidacion" + kel +
          ") as PP ON  RR.CodKEL = PP.ID_TipoLiq) AS KEL  ON OS.id_TipoLiq=KEL.CodOS) order by "
          "Val(CodigoOS)",
      "insert into RelacTLiq Select 3 as CodKEL, 7 as  CodOS",
      "Delete * From RelacTLiq Where  trim(CodOS)='7' ",
      "Delete * From RelacTLiq Where  trim(CodOS)='7'  and CodKEL=3",
  };
}

std::vector<std::string> CompanyAndCatalogues() {
  return {
      "Delete From Empresa",
      "Insert into Empresa Select 1 as IdEmpresa, A.Nombre, A.RazonSocial,A.Direccion,A.RUC"
      ",A.Email,A.Telefono1,A.Fax,A.Contacto1,A.Notas, A.id_Tipo_Aport_Emp "
      ",A.id_Tipo_Contrib,A.NombreGest,A.DirecGest, A.TelefonoGest, A.FaxGest, "
      "A.ContactoGest,A.EMailGest "
      ",A.id_TipoVenc, A.id_Exonera, A.InicioDeAct,A.id_Dpto,A.id_Localidad,A.id_NatJur,A.Ramo,"
      "A.Seccion_Policial,"
      "A.CentralizaSucursales,A.id_TConvenio,A.VencConv,A.FechaInsBPS,A.DiasExtraXConvenio,"
      "A.DiasXMesEnContrato,A.TomaDTdeCont, "
      "A.LicEnUnSoloMes,A.PrimDiaExtraDeLicaPartir,A.MaxDiasExtraDeLic,A.DiasDeLicAnuales,"
      "A.CodPost,A.TomaHLDRsiTDTC,A.TomaDLicEnProm, "
      "A.CodigoEmp, A.PieDeImpresion From (Select * From Empresa in '" + kPasaje + "') as A",
      "Delete * From Planillas",
      "Insert into Planillas Select Top 1 0 as id_planilla, '' as SubNombre,'-' as Numero, 2 as "
      "id_Tplanilla,null as Dato, 0 as IDSG, 0 as idGrupoV, 0 as idSGrupoV From Empresa where "
      "Not Exists(Select id_planilla From Planillas Where id_planilla=0)",
      "Insert into Planillas Select A.id_planilla,A.SubNombre,A.Numero, "
      "A.id_Tplanilla,A.Dato,A.idSG,A.idGrupoV,A.idSGrupoV From (Select * From Planillas in '" +
          kPasaje + "')  as A",
      "Update Cargos as D Inner Join  (Select * From Cargos in '" + kPasaje +
          "') as A on D.id_Cargo=A.id_Cargo Set D.Cargo=A.Cargo,D.Laudo =A.Laudo,D.id_CobraPor = "
          "A.id_CobraPor, D.Id_Cat=A.Id_Cat ",
      "Insert Into Cargos Select A.id_Cargo, A.Cargo,A.Laudo, A.id_CobraPor, A.id_Cat From "
      "(Select * From Cargos in '" + kPasaje +
          "') as A Where Not Exists(Select id_Cargo From Cargos as CC Where "
          "CC.id_Cargo=A.id_Cargo)",
      "Update Sectores as D Inner Join  (Select * From Sectores in '" + kPasaje +
          "') as A on D.id_Sector=A.id_Sector Set D.Descripcion=A.Descripcion ",
      "Insert Into Sectores Select A.id_Sector, A.Descripcion From (Select * From Sectores in '" +
          kPasaje +
          "') as A Where Not Exists(Select id_Sector From Sectores as CC Where CC.id_Sector "
          "=A.id_Sector)",
      "Update Sucursales as D Inner Join  (Select * From Sucursales in '" + kPasaje +
          "') as A on D.id_Sucursal=A.id_Sucursal Set D.Nombre=A.Nombre,D.Direccion=A.Direccion "
          ",D.Telefono=A.Telefono ,D.Email=A.Email, "
          "D.Contacto=A.Contacto,D.InicioAct=A.InicioAct,D.id_Dpto=A.id_Dpto Where "
          "D.id_Sucursal>0",
      "Insert Into Sucursales Select A.id_Sucursal, A.Nombre,A.Direccion,A.Telefono, "
      "A.Email,A.Contacto,A.InicioAct,A.id_Dpto From (Select * From Sucursales in '" + kPasaje +
          "') as A Where Not Exists(Select id_Sucursal From Sucursales as CC Where CC.id_Sucursal "
          "=A.id_Sucursal)",
      "Update TRegHorario as D Inner Join  (Select * From TRegHorario in '" + kPasaje +
          "') as A on D.id_Regimen=A.id_Regimen Set "
          "D.Descripcion=A.Descripcion,D.CantHxDia=A.CantHxDia ,D.HorasXSem=A.HorasXSem Where "
          "D.id_Regimen>0",
      "Insert Into TRegHorario Select A.id_Regimen,A.Descripcion,A.CantHxDia,A.HorasXSem From "
      "(Select * From TRegHorario in '" + kPasaje +
          "') as A Where Not Exists(Select id_Regimen From TRegHorario as CC Where CC.id_Regimen "
          "=A.id_Regimen)",
      "Update Obras as D Inner Join  (Select * From Obras in '" + kPasaje +
          "') as A on D.idObr=A.idObr Set D.Nombre=A.Nombre, D.NroObra=A.NroObra, "
          "D.id_EstadoObr=A.id_EstadoObr, D.DireccionObr=A.DireccionObr, "
          "D.NroEmpresaTit=A.NroEmpresaTit, D.NroContribTit=A.NroContribTit, "
          "D.RazonSocialTit=A.RazonSocialTit, D.idTipoContTit=A.idTipoContTit, "
          "D.idTipoApoTit=A.idTipoApoTit,  D.idDepTit=A.idDepTit, D.idCajAct=A.idCajAct, "
          "D.DirecTit=A.DirecTit, D.Telefono=A.Telefono, D.EmailTit=A.EmailTit, D.Fax=A.Fax, "
          "D.ContactoTit=A.ContactoTit, D.idTipoAct=A.idTipoAct, "
          "D.id_FormaDeReal=A.id_FormaDeReal, D.NumAutoriza=A.NumAutoriza,  D.FecIni=A.FecIni, "
          "D.FecFin=A.FecFin, D.id_TipoAPObra=A.id_TipoAPObra",
      "Insert Into OBRAS Select A.idOBR, A.Nombre, A.NroObra, A.id_EstadoObr, A.DireccionObr, "
      "A.NroEmpresaTit, A.NroContribTit, A.RazonSocialTit, A.idTipoContTit, A.idTipoApoTit, "
      "A.idDepTit, A.idCajAct, A.DirecTit, A.Telefono, A.EmailTit, A.Fax, A.ContactoTit, "
      "A.idTipoAct,  A.id_FormaDeReal, A.NumAutoriza, A.FecIni, A.FecFin, A.id_TipoAPObra  From "
      "(Select * From Obras in '" + kPasaje +
          "') as A Where Not Exists(Select idObr From Obras as CC Where CC.idObr =A.idObr)",
      "Update CentroCosto as D inner join (Select * From CentroCosto  in '" + kPasaje +
          "') as O on O.idCC=D.idCC set D.NombreCC=O.NombreCC, D.FecIni=O.FecIni, "
          "D.FecFin=O.FecFin",
      "Insert into CentroCosto Select O.idCC, O.NombreCC, O.FecIni, O.FecFin From (Select * From "
      "CentroCosto  in '" + kPasaje +
          "') as O Where not Exists(Select idCC From CentroCosto as CC where CC.idCC=O.idCC)",
      "Update rCC_Cont as RCC inner join Contrato as C on C.id_Contrato=RCC.id_Contrato set "
      "RCC.id_Cargo=C.id_Cargo           Where isnull(RCC.id_Cargo) or RCC.id_Cargo=0",
      "Update rCC_Cont as RCC inner join Contrato as C on C.id_Contrato=RCC.id_Contrato set "
      "RCC.id_Seguro_Sal=C.id_Seguro_Sal Where isnull(RCC.id_Seguro_Sal) or RCC.id_Seguro_Sal=0",
      "Update rCC_Cont as RCC inner join Contrato as C on C.id_Contrato=RCC.id_Contrato set "
      "RCC.id_Exonera=C.id_Exoneracion      Where isnull(RCC.id_Exonera) or RCC.id_Exonera=0",
  };
}

std::vector<std::string> PersonsAndContracts() {
  const std::string p = kPasaje;
  const std::string contract_update =
      "Update Contrato as C inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=C.id_Persona Set "
      "C.id_Persona=Val(AOR.C2),Numero_Alternativo=AOR.C2 & "
      "iif(instr(Numero_Alternativo,'_'),'_' & Right(Numero_Alternativo,1),'') ";
  const std::string tail_bse =
      " as idPlanilla From Contrato as C Where Not Exists(Select idContrato From "
      "Con_Planilla_BSE as CPM Where CPM.idContrato=C.id_Contrato)";
  return {
      "Update Personas Set NUMERO=Trim(Numero)",
      "Update Personas Set NUMERO=iif(instr(Numero,'-')=0,Numero,Left(Numero,len(Numero)-2) & "
      "Right(Numero,1)) Where instr(Numero,'-')<>0",
      "Update Personas Set NUMERO=iif(instr(Numero,'_')=0,Numero,Left(Numero,len(Numero)-2) & "
      "Right(Numero,1)) Where instr(Numero,'_')<>0",
      "Update Personas Set NUMERO=iif(instr(Numero,'.')=0,Numero,Left(Numero,len(Numero)-2) & "
      "Right(Numero,1)) Where instr(Numero,'.')<>0",
      "Update Personas as P set id_Persona=1000000000+id_Persona where id_Persona<1000000000",
      "Update Contrato as C set id_Persona=1000000000+id_Persona, "
      "Numero_Alternativo=1000000000+id_Persona & "
      "iif(instr(Numero_Alternativo,'_'),'_' & Right(Numero_Alternativo,1),'') Where "
      "id_Persona<1000000000",
      "Update rPersonas_Dto_Comunicacion as PDC set Id_Persona=1000000000+Id_Persona",
      "Update Declaraciones set id_Persona=1000000000+id_Persona, "
      "id_PersRelac=iif(Trabaja,1000000000,0) + id_PersRelac where id_Persona<1000000000",
      "Delete * From AuxOtrosRep",
      "Insert into AuxOtrosRep Select P.id_Persona as C1, A.id_Persona as C2 From Personas as P "
      "inner Join (Select * From Personas in '" + p +
          "') as A  on Val(P.NUMERO)=Val(A.NUMERO) and P.id_Persona<>A.id_Persona",
      "Update Personas as P inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=P.id_Persona Set "
      "P.id_Persona=Val(AOR.C2)",
      contract_update,
      "Update rPersonas_Dto_Comunicacion as PDC inner Join AuxOtrosRep as AOR  on "
      "Val(AOR.C1)=PDC.id_Persona Set id_Persona=Val(AOR.C2)",
      "Update Declaraciones as D inner Join AuxOtrosRep as AOR  on (Val(AOR.C1)=D.id_Persona and "
      "id_PersRelac=Val(AOR.C1)) Set id_PersRelac=Val(AOR.C2) Where Trabaja",
      "Update Declaraciones as D inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=D.id_Persona Set "
      "id_Persona=Val(AOR.C2)",
      "Update Personas as P inner Join (Select * From Personas in '" + p +
          "') as A  on P.id_Persona=A.id_Persona and P.NUMERO=A.NUMERO Set "
          "P.Apellido_1=A.Apellido_1,  P.Nombre_1=A.Nombre_1, P.Apellido_2=A.Apellido_2, "
          "P.Nombre_2=A.Nombre_2, P.Direccion=A.Direccion, P.Id_Sexo=A.Id_Sexo, "
          "P.ID_EstadoCivil=A.ID_EstadoCivil,P.Fecha_Nacimiento=A.Fecha_Nacimiento, "
          "P.Id_Localidad=A.id_Localidad, P.Id_dpto=A.Id_dpto, "
          "P.id_Nacionalidad=A.id_Nacionalidad,P.id_Pais=A.id_Pais, "
          "P.ID_Doc_Exigidos=A.ID_Doc_Exigidos, P.FECHA_EMISION=A.FECHA_EMISION, "
          "P.FECHA_VENCIMIENTO=A.FECHA_VENCIMIENTO",
      "Insert into Personas Select * From (Select * From Personas in '" + p +
          "') as A where Not Exists(Select id_Persona From Personas as P where "
          "A.id_Persona=P.id_Persona)",
      "Select * From PersonasRela",
      "Delete A.* From PersonasRela as A",
      "Insert into PersonasRela Select * From (Select * From PersonasRela in '" + p + "') as A ",
      "Select * From Declaraciones",
      "Delete * From Declaraciones",
      "Insert into Declaraciones Select * From (Select * From Declaraciones in '" + p + "') as A ",
      "Insert into rPersonas_Dto_Comunicacion Select A.ID_Dto_Comunicacion,A.Id_Persona, A.Dato "
      "From (Select * From rPersonas_Dto_Comunicacion in '" + p +
          "') as A  Where not exists(Select Id_Persona From rPersonas_Dto_Comunicacion as P where "
          "A.Id_Persona=P.Id_Persona and P.ID_Dto_Comunicacion=A.ID_Dto_Comunicacion)",
      "Select iif(isnull(Max(id_Contrato)),0,Max(id_Contrato)) From Contrato",
      "Insert into Contrato Select * From (Select 250 + Contrato.Id_Contrato as "
      "Id_Contrato,NUMERO_ALTERNATIVO,Id_Persona,SUELDO,HORAS,FECHA_INICIO,FECHA_FIN,vigente,"
      "Tarjeta,id_Memo,Id_MotivoEgr,id_Tipo_Contrato,id_TipoRem,FECHA_RECONO,DiasExtLicXC,"
      "id_FormaDePago,LugarDePago,CuentaBanc,id_Seguro_Sal,id_Vinculo_Fun,id_Exoneracion,"
      "id_CompEsp,id_CausalEgr,id_Sucursal,id_Regimen,id_AportaX,id_Cat,id_TipoAJ,AcuLab,"
      "id_CobraPor,Confidencial,id_CuentaADeb,id_Cargo,id_Sector,id_Moneda,CantDiasXMes,"
      "TomaDTdeCont,idCC,idBancoEmp From Contrato in '" + p +
          "') as A  Where Not Exists(Select * From Contrato as PP where PP.id_Persona=A.id_Persona "
          "and A.FECHA_INICIO=PP.FECHA_INICIO and "
          "iif(isnull(A.Fecha_Fin),1,A.Fecha_Fin)=iif(isnull(PP.Fecha_Fin),1,PP.Fecha_Fin))  ",
      "Update Contrato as PP inner join (Select * From Contrato in '" + p +
          "') as A  on (PP.NUMERO_ALTERNATIVO=A.NUMERO_ALTERNATIVO and A.AcuLab=PP.AcuLab)  Set  "
          "PP.SUELDO=A.SUELDO, PP.HORAS=A.Horas, PP.FECHA_INICIO=A.FECHA_INICIO,"
          "PP.FECHA_FIN=A.FECHA_FIN, PP.vigente=A.Vigente,PP.Tarjeta=A.Tarjeta,"
          "PP.id_Tipo_Contrato=A.id_Tipo_Contrato ,PP.id_TipoRem=A.id_TipoRem,"
          "PP.FECHA_RECONO=A.FECHA_RECONO,  PP.DiasExtLicXC=A.DiasExtLicXC,"
          "PP.id_FormaDePago=A.id_FormaDePago, PP.LugarDePago=A.LugarDePago,"
          "PP.CuentaBanc=A.CuentaBanc,PP.id_Seguro_Sal=A.id_Seguro_Sal,"
          "PP.id_Vinculo_Fun=A.id_Vinculo_Fun,PP.id_Exoneracion=A.id_Exoneracion,  "
          "PP.id_CompEsp=A.id_CompEsp,PP.id_CausalEgr=A.id_CausalEgr,"
          "PP.id_Sucursal=A.id_Sucursal,PP.id_Regimen=A.id_Regimen, PP.AcuLab=A.AcuLab,"
          "PP.id_CobraPor=A.id_CobraPor, PP.Confidencial=A.Confidencial,PP.id_Cargo=A.id_Cargo,  "
          "PP.id_Sector=A.id_Sector,PP.CantDiasXMes=A.CantDiasXMes,"
          "PP.TomaDTdeCont=A.TomaDTdeCont,PP.id_AportaX=A.id_AportaX",
      "Select Top 1 id_Planilla From Planillas Where Id_TPlanilla=1 and id_Planilla<>0",
      "Insert Into rPlanillas Select C.Id_Contrato as idContrato, 4" + tail_bse,
      "Select Top 1 id_Planilla From Planillas Where Id_TPlanilla=2 and id_Planilla<>0",
      "Insert Into rPlanillas Select C.Id_Contrato as idContrato, 5 as idPlanilla From Contrato "
      "as C Where Not Exists(Select idContrato From Con_Planilla_MTSS as CPM Where "
      "CPM.idContrato=C.id_Contrato)",
      "Select Top 1 id_Planilla From Planillas Where Id_TPlanilla=3 and id_Planilla<>0",
      "Insert Into rPlanillas Select C.Id_Contrato as idContrato, 6 as idPlanilla From Contrato "
      "as C Where Not Exists(Select idContrato From Con_Planilla_BPS as CPM Where "
      "CPM.idContrato=C.id_Contrato)",
      "Update contrato set id_Tipo_Contrato=1 Where isnull(id_Tipo_Contrato)",
      "Update contrato set id_CobraPor=4 Where id_TipoRem=2 and id_CobraPor=8",
      "Update contrato set Horas=8 Where HORAS=0 or isnull(HORAS)",
      "Select Max(Id_Persona) From Personas where id_Persona<1000000000",
      "Insert into AuxOtrosRep Select P.id_Persona as C1, P.id_Persona-1000000000 as C2 From "
      "Personas as P where id_Persona>1000000000 and not Exists(Select id_Persona From Personas "
      "as KK Where KK.id_Persona=P.id_Persona-1000000000)",
      "Insert into AuxOtrosRep Select P.id_Persona as C1, 320 +1 as C2 From Personas as P Where "
      "id_Persona>1000000000 and Exists(Select id_Persona From Personas as KK Where "
      "KK.id_Persona=P.id_Persona-1000000000)",
      "Select iif(isnull(Max(Val(C2))),0,Max(Val(C2))) as MaxID From AuxOtrosRep",
      "Update AuxOtrosRep Set C2=325 Where Val(C2)>320",
      "Select iif(isnull(Min(id)),0,Min(id)) as MinID From AuxOtrosRep",
      "Update AuxOtrosRep as AOR Set C2=Val(C2)-17+ID where Val(C2)>320",
      "Update Personas as P inner Join AuxOtrosRep as AOR  on Val(AOR.C1)=P.id_Persona Set "
      "P.id_Persona=Val(AOR.C2) ",
      "Update rPersonas_Dto_Comunicacion as PDC inner Join AuxOtrosRep as AOR  on "
      "Val(AOR.C1)=PDC.Id_Persona Set Id_Persona=Val(AOR.C2) Where not exists(Select "
      "ID_Dto_Comunicacion From rPersonas_Dto_Comunicacion as JJ Where JJ.Id_Persona=Val(AOR.C2) "
      "and JJ.ID_Dto_Comunicacion=PDC.ID_Dto_Comunicacion)",
      "Insert into AuxOtrosRep Select Max(P.id_Contrato) as C1, P.id_Persona as C2,AcuLab as C3 "
      "From Contrato as P Group by P.id_Persona,Fecha_Inicio,Fecha_Fin,AcuLab having count(*)>1",
      "Delete E.* From Encabezados as E inner join AuxOtrosRep as AOR on "
      "E.id_contrato=Val(AOR.C1)",
      "Delete C.* From Contrato as C inner join AuxOtrosRep as AOR on C.id_contrato=Val(AOR.C1)",
      "Insert into Legajo Select D.UltLeg+id_Contrato as id_Legajo, 1 as id_TMLegajo,"
      "C.id_Contrato,Null as id_DatoAnt,1 as id_Usuario,0 as aId,cstr(C.FECHA_INICIO) as "
      "strAValor,Date() as Fecha,Null as id_Memo From (Select "
      "iif(isnull(Max(id_Legajo)),0,Max(id_Legajo)) as UltLeg From Legajo) as D, Contrato as C "
      "where not Exists(Select id_Legajo From Legajo as L where L.id_Contrato=C.id_Contrato and "
      "L.id_TMLegajo=1)",
  };
}

std::vector<std::string> ConceptsAndTypes() {
  const std::string kel = kKel;
  return {
      "SELECT OS.* FROM Conceptos AS OS Where Not Exists (Select * From RelacConc AS RR Inner "
      "JOIN (Select * From Conceptos in '" + kel +
          "') as PP ON  (RR.CodKEL = PP.ID_Concepto or RR.CodKEL=-1) Where "
          "OS.id_Concepto=RR.CodOS and not isnull(RR.CodKEL) ) ",
      "select Max(id_concepto) From Conceptos",
      "Select id_concepto From Conceptos where Codigo='B12'",
      "Delete * From conceptos Where id_Concepto=140",
      "Insert into Conceptos Select 251 as id_Concepto  ,'B12_1' as Codigo ,'Basico' as "
      "NombreReducido ,'Sueldo basico' as Nombre ,Null as id_ConsLiquidacion , 1 as TipoDato "
      ",'S' as TipoOperacion ,True as ModificaNominal,2 as RedoCoef,2 as RedoCant ,1 as "
      "id_Moneda,'' as FCant,'[Sueldo]/30' as FCoef, True as VisibleEnRec",
      "Delete * From RelacConc  Where CodKEL=251 and CodOS=12",
      "Insert into RelacConc Select 251 as CodKEL,12 as CodOS",
      "SELECT OS.* FROM TiposLiquidacion AS OS Where Not exists (Select * From RelacTLiq AS RR "
      "INNER JOIN (Select * From TiposLiquidacion in '" + kel +
          "') as PP ON  RR.CodKEL = PP.id_TipoLiq where OS.id_TipoLiq=RR.CodOS) ",
      "select Max(id_TipoLiq) From TiposLiquidacion",
      "Select id_TipoLiq From TiposLiquidacion where Nombre='Mensual'",
      "delete * from encabezados where id_TipoLiq=3",
      "Delete * From TiposLiquidacion Where id_TipoLiq=3",
      "Insert into TiposLiquidacion Select 9 as id_TipoLiq  ,'Mensual_3' as Nombre ,0 as Color  "
      ",True as Salarial, True as Activa,False as ParaEmp, 1 as CodigoParaBPS",
      "Delete * From rAporPat_TipoLiq where id_TipoLiq=9",
      "insert into rAporPat_TipoLiq Select A.id_Aporte as id_Aporte,a.Codigo as Codigo, 9 as "
      "id_TipoLiq  From rAporPat_TipoLiq as A where Codigo<>'VCM' And id_TipoLiq=1",
      "Delete * From RelacTLiq  Where CodKEL=9 and CodOS=4",
      "Insert into RelacTLiq Select 9 as CodKEL, 4 as CodOS ",
  };
}

std::vector<std::string> Liquidations(const std::string& J) {
  const std::string first_lic =
      "Insert Into rLic_Enc Select Licencias.id_Lic, Encabezados.id_Encabezado,"
      "Datos_Liquidacion.id_Dato as id_DatoLiq From (Licencias inner join Encabezados on "
      "Encabezados.id_contrato=Licencias.id_contrato and "
      "Encabezados.MesDeLiq=cdate(Format(Licencias.desde,'MM/yyyy'))) ";
  return {
      "Update Personas Set NUMERO=Left(Numero,len(Numero)-2) & Right(Numero,1) Where "
      "instr(Numero,'-')<>0",
      "Delete DL.* From Datos_Liquidacion as DL inner join Encabezados as E on "
      "E.id_Encabezado=DL.id_Encabezado Where MesDeLiq<cdate('03/2023')",
      "Delete E.* From Encabezados as E Where MesDeLiq<cdate('03/2023')",
      "Delete DL.* From Datos_Liquidacion as DL inner join Encabezados as E on "
      "E.id_Encabezado=DL.id_Encabezado Where MesDeLiq>cdate('12/2023')",
      "Delete E.* From Encabezados as E Where MesDeLiq>cdate('12/2023')",
      "Select iif(isnull(Max(Id_Encabezado)),0,Max(Id_Encabezado)) +1 From Encabezados",
      "Select iif(isnull(Max(Id_Dato)),0,Max(Id_Dato)) +1 From Datos_Liquidacion",
      "Insert into Encabezados Select 501 + A.idEnc as id_Encabezado, A.CodKEL as Id_TipoLiq, "
      "A.FDL as FechaDeLiq, A.MesDeLiq, A.Impreso, A.Terminado, C.id_Contrato,A.id_Usuario, Null "
      "as FechaVisto, Null as idLote,0 as Cod1, 0 as Cod2, 0 as  Cod5, 0 as Cod7, 0 as Cod8, 0 as "
      "Cod41, 0 as OtrosH, 0 as Aporte, 0 as Liquido,0 as DTE, 0 as DTP, 0 as Cod1AD, 0 as "
      "Cod5AD, 0 as OtrosHAD  From (((Select CodKEL,  Max(EE.id_Encabezado) as "
      "idEnc,Max(EE.FechaDeLiq) as FDL, "
      "EE.MesDeLiq,EE.Impreso,EE.Terminado,EE.id_Usuario,EE.id_Contrato   From (Select * From "
      "Encabezados " + S + ") as EE Inner Join (Select * From RelacTLiq " + S +
          ") as RTL on RTL.CodOS=EE.id_TipoLiq Group by "
          "EE.MesDeLiq,EE.Impreso,EE.Terminado,EE.id_Usuario,EE.id_Contrato ,RTL.CodKEL) as A  "
          "inner Join (Select * From Contrato " + S +
          ")as B on B.id_Contrato=A.id_Contrato) inner join (Select * From Personas " + S +
          ") as P on P.id_Persona=B.id_Persona)  inner join (Select Contrato.* , Personas.Numero "
          "From Contrato inner join Personas on Personas.id_Persona=Contrato.id_Persona) as C "
          "on " + J +
          " and C.AcuLab=B.AcuLab and C.FECHA_INICIO=B.FECHA_INICIO and "
          "A.MesDeLiq>=cdate(format(C.FECHA_INICIO,'MM/yyyy')) and "
          "A.MesDeLiq<=iif(C.vigente,#03/25/2080#,C.FECHA_FIN) Where ((C.vigente=B.vigente and "
          "c.Vigente=True) or C.FECHA_Fin=B.FECHA_Fin) and Not Exists(Select id_Encabezado From "
          "Encabezados as XX Where C.id_Contrato=XX.id_Contrato and A.MesDeLiq=XX.MesDeLiq and "
          "A.CodKEL=XX.id_TipoLiq) ",
      "Insert into Datos_Liquidacion  Select 9001 + DL.id_dato as "
      "id_Dato,iif(isnull(XX.id_Encabezado),501+A.id_Encabezado,XX.id_Encabezado) as "
      "id_Encabezado,CC.CodKEL as id_Concepto, "
      "DL.Cantidad,DL.Coeficiente,DL.RedoEnLiq,DL.idAgrupa,DL.Monto,DL.Relacion,DL.DTE,DL.DTP  "
      "From ((  (Select EE.*, C.id_Contrato as IDCAct,B.id_Contrato as idContPasaje,RTL.CodKEL "
      "From  ((((Select * From Encabezados " + S +
          ") as EE  Inner Join    (Select * From RelacTLiq " + S +
          ") as RTL on RTL.CodOS=EE.id_TipoLiq ) inner Join    (Select * From Contrato " + S +
          ") as B on B.id_Contrato=EE.id_Contrato) inner join    (Select * From Personas " + S +
          ") as P on P.id_Persona=B.id_Persona) inner join    (Select Contrato.* , "
          "Personas.Numero From Contrato inner join Personas on "
          "Personas.id_Persona=Contrato.id_Persona) as C on " + J +
          " and C.FECHA_INICIO=B.FECHA_INICIO and C.AcuLab=B.AcuLab Where ((C.vigente=B.vigente "
          "and c.Vigente=True) or C.FECHA_Fin=B.FECHA_Fin))  as A       inner join (Select * "
          "From Datos_Liquidacion " + S +
          ") as DL on DL.id_Encabezado=A.id_Encabezado)       inner join (Select * From "
          "RelacConc " + S +
          " Where RelacConc.CodKEL<>-1)as CC on CC.CodOS=DL.id_Concepto)  inner join  "
          "Encabezados as XX on (A.IDCAct=XX.id_Contrato and A.MesDeLiq=XX.MesDeLiq and "
          "A.CodKEL=XX.id_TipoLiq)  ",
      "Select id_Encabezado,E.id_Contrato,E.id_TipoLiq,MesDeLiq From Encabezados as E inner join "
      "TiposLiquidacion as TL on TL.id_TipoLiq=E.id_TipoLiq Where TL.ParaEmp",
      "Insert Into Calendario_liq Select * From (Select "
      "iif(isnull(Max(Calendario_liq.id_Liquidacion)),0,Max(Calendario_liq.id_Liquidacion))+1 "
      "as id_Liquidacion,3 as id_TipoLiq,#05/01/2023# as Fecha,77 as id_contrato,'' as "
      "CondCalLiq From Calendario_liq) as CL  Where Not Exists(Select * From Calendario_liq as "
      "CC where Cdate(Format(Fecha,'MM/yyyy'))=#05/01/2023# and id_TipoLiq=3 and "
      "id_Contrato=77)",
      "Select * From (Select Distinct TL.id_TipoLiq,MesDeLiq,C.id_TipoRem From (Encabezados as E "
      "inner join TiposLiquidacion as TL on TL.id_TipoLiq=E.id_TipoLiq) inner join Contrato as C "
      "on E.id_Contrato=C.id_contrato Where Not TL.ParaEmp and Not Salarial) AS A Order by "
      "A.id_TipoLiq,A.id_TipoRem,A.MesDeLiq",
      "Insert Into Calendario_liq Select * From (Select "
      "iif(isnull(Max(Calendario_liq.id_Liquidacion)),0,Max(Calendario_liq.id_Liquidacion))+1 "
      "as id_Liquidacion,4 as id_TipoLiq,#06/01/2023# as Fecha,Null as id_contrato, 'id_TipoRem "
      "in (1,2)'  as CondCalLiq From Calendario_liq) as CL  Where Not Exists(Select * From "
      "Calendario_liq as CC where Cdate(Format(Fecha,'MM/yyyy'))=#06/01/2023# and "
      "id_TipoLiq=4)",
      "Insert into licencias Select distinct E.id_Encabezado as id_Lic, E.id_Contrato, MesDeLiq "
      "as Desde, MesDeLiq as Hasta,1 as CantDias, cbool(E.id_TipoLiq=6) as Anticipada From "
      "Encabezados as E  where E.id_TipoLiq in (5,6,1,2) and Exists(Select id_Dato From "
      "Datos_Liquidacion as DL Where DL.id_Encabezado=E.id_Encabezado and id_concepto in "
      "(20,22,14,66))",
      first_lic +
          " Inner join datos_Liquidacion on "
          "datos_Liquidacion.id_Encabezado=Encabezados.id_Encabezado Where id_concepto in "
          "(22,20,14,66) and Encabezados.id_TipoLiq in (6,5,1,2) and (Not Exists (Select "
          "DISTINCT rLic_Enc.id_lic From rLic_Enc Where Licencias.id_lic=rLic_Enc.id_lic )) ",
      first_lic +
          " Inner join datos_Liquidacion on "
          "datos_Liquidacion.id_Encabezado=Encabezados.id_Encabezado Where id_concepto in "
          "(22,20,14,66) and Encabezados.id_TipoLiq in (6,5,1,2)  And (Exists (Select DISTINCT "
          "rLic_Enc.id_lic From rLic_Enc Where Licencias.id_lic=rLic_Enc.id_lic))  And (Not "
          "Exists (Select DISTINCT rLic_Enc.id_lic From rLic_Enc where "
          "Datos_Liquidacion.id_Dato=rLic_Enc.id_DatoLiq))",
      "UPDATE Datos_Liquidacion INNER JOIN CDetaLiq_DiasTrab AS PP ON "
      "PP.id_Dato=Datos_Liquidacion.id_Dato SET Datos_Liquidacion.DTE = PP.DTE, "
      "Datos_Liquidacion.DTP = PP.DTP",
      "Delete * From AuxOtrosRep",
      "Delete * From Cotizacion Where id_Moneda<>1",
      "Insert into Cotizacion Select * From Cotizacion " + S,
      "Select * into AuxXX From cLiqTotBPS",
      "Update Encabezados as E inner join AuxXX as AA on AA.id_Encabezado=E.id_Encabezado set "
      "E.Cod1 = AA.TotCod1,E.Cod2=AA.TotCod2, E.Cod5=AA.TotCod5, E.Cod7=AA.TotCod7,"
      "E.Cod8=AA.TotCod8, E.Cod41=AA.TotCod41,E.OtrosH=AA.TotOtrosH, E.Aporte=AA.TotApo, "
      "E.Liquido=AA.TotLiq, E.DTE=AA.DTE, E.DTP=AA.DTP, E.Cod1AD=AA.TotCod1AD, "
      "E.Cod5AD=AA.TotCod5AD, E.OtrosHAD=AA.TotOtrosHAD",
      "Drop Table AuxXX",
  };
}

std::vector<std::string> Preview() {
  return {
      "Update Personas Set Numero=Trim(Numero)",
      "Update Personas Set Numero=left(Numero,len(Numero)-2) & Right(Numero,1) where "
      "instr(Numero,'-')<>0",
      "Update Contrato as C Set "
      "C.Numero_Alternativo=left(C.Numero_Alternativo,instr(C.Numero_Alternativo,'_')-1)  Where "
      "(Select Count(id_contrato) as Cant From Contrato as B where B.id_Persona=C.id_persona "
      "Group by id_Persona )<=1",
      "Select Nombre,RazonSocial,Direccion,Telefono1,Fax,Seccion_Policial,Ramo,P.Numero as "
      "NBPS,RUC,Email From Empresa as A Left Join (Select 1 as ID, * From Planillas Where "
      "id_TPlanilla=3) as P on A.idEmpresa=P.id",
      "Select * From (Select ID_Cargo as ID, CARGO as Nombre From Cargos)",
      "Select * From (Select Id_Sector as id,Descripcion as Nombre From Sectores)",
      "Select * From (Select id_Sucursal as id,Nombre as Nombre From Sucursales)",
      "Select * From (Select id_Regimen as id,Descripcion as Nombre From TRegHorario)",
      "Select * From cLstCont order by id_Persona",
      "Select idDeclaracion,id_Persona,idRubroDed,idTipoDeduc,idCausalDeduc,idCodigoRegimen,"
      "idCauBajaRela,DescripRubro,DescTipoDeduccion,DescRegimen,id_PersRelac,NomRela_1,"
      "NomRela_2,ApeRela_1,ApeRela_2,Id_SexoRela,id_NacRela,NDoc, id_PaisRela,NDocRela,"
      "NumeroRela,ID_Doc_ExigRela,Trabaja,TieneMonto,CantBPC,DescCausaDeduc,id_RelacFil,"
      "DescRelaFil,FecNacRela,Porc,Monto,Desde,FechaDeclaracion,Hasta,DescCausalBaja, "
      "Format(Desde,'MM/yy') as strDesde, Format(Hasta,'MM/yy') as strHasta, "
      "format(FecNacRela,'dd/MM/yy') as strFecNacRela, format(FechaDeclaracion,'dd/MM/yy') as "
      "strFechaDeclaracion,  NomRela_1 & iif(NomRela_2<>'' and not isnull(NomRela_2), ', ' & "
      "NomRela_2,',-')  AS NombresRela ,left(ApeRela_1 & iif(ApeRela_2<>'' and not "
      "isnull(ApeRela_2), ', ' & ApeRela_2,',-') ,45) AS ApellidosRela ,  Nombre_1 & "
      "iif(Nombre_2<>'' and not isnull(Nombre_2), ', ' & Nombre_2,',-')  AS Nombres "
      ",Left(Apellido_1 & iif(Apellido_2<>'' and not isnull(Apellido_2), ', ' & Apellido_2,',-') "
      ",45) AS Apellidos  From cDeclaraciones where Desde<=cdate('12/2023') and "
      "(Hasta>=cdate('03/2023') or isnull(Hasta))",
      "Select id_Concepto,Codigo,Nombre From Conceptos order by Codigo",
      "Select id_TipoLiq,Nombre From TiposLiquidacion order by id_TipoLiq",
      "SELECT id_TipoLiq,Nombre FROM TiposLiquidacion order by id_TipoLiq",
      "Delete * From Conceptos as C Where Not Exists(Select id_Datos From Datos_Liquidacion as DL "
      "Where DL.id_Concepto=C.id_Concepto)",
      "Delete * From RelacConc as C Where Not Exists(Select id_Concepto From Conceptos as DL "
      "Where DL.id_Concepto=C.CodOS)",
      "SELECT id_concepto,Codigo,Nombre FROM Conceptos order by Nombre",
      "Select * From CHistLiq order by id_Persona,MesDeLiq,id_TipoLiq,id_Contrato",
      "Select * From CHistLiq order by Nombres Desc,MesDeLiq,id_TipoLiq,id_Contrato",
      "Select * From CHistLiq order by cdate(strMesDeLiq),MesDeLiq,id_TipoLiq,id_Contrato",
      "Select *,cstr(Round(Cantidad,3)) & iif(TipoDato=1,' %','') as Cant,"
      "cstr(Round(Coeficiente,2)) as Coef, CStr(Round(Monto,2)) as strMonto From cLisLiquida "
      "Where id_Encabezado=1234 Order by TipoOperacion Desc, id_Concepto",
  };
}

void ExpectAllTranslate(const std::vector<std::string>& statements) {
  kel_test::FakeContext context;
  DeclareTables(context);
  for (const std::string& jet : statements) {
    SCOPED_TRACE(jet);
    try {
      db::jet::Translation t = db::jet::translate(jet, context);
      ASSERT_EQ(t.statements.size(), 1u);
      EXPECT_FALSE(t.statements[0].empty());
      // KEL_JET_DUMP=<file> collects the translations, to feed them to sqlite3.
      if (const char* dump = std::getenv("KEL_JET_DUMP")) {
        std::ofstream(dump, std::ios::app) << t.statements[0] << "\n";
      }
    } catch (const std::exception& e) {
      ADD_FAILURE() << e.what();
    }
  }
}

TEST(JetCorpus, StagingLoadAndMappingStatementsTranslate) { ExpectAllTranslate(StagingAndMapping()); }
TEST(JetCorpus, CompanyAndCatalogueStatementsTranslate) { ExpectAllTranslate(CompanyAndCatalogues()); }
TEST(JetCorpus, PersonAndContractStatementsTranslate) { ExpectAllTranslate(PersonsAndContracts()); }
TEST(JetCorpus, ConceptAndTypeStatementsTranslate) { ExpectAllTranslate(ConceptsAndTypes()); }
TEST(JetCorpus, PreviewStatementsTranslate) { ExpectAllTranslate(Preview()); }

TEST(JetCorpus, LiquidationStatementsTranslateWithBothContractMatches) {
  ExpectAllTranslate(Liquidations("C.id_Persona=B.id_Persona "));
  ExpectAllTranslate(Liquidations("C.Numero=P.Numero"));
}

// The staging path is attached once per statement however often it is named.
TEST(JetCorpus, HeaderInsertAttachesTheStagingDatabaseOnce) {
  kel_test::FakeContext context;
  DeclareTables(context);
  db::jet::Translation t = db::jet::translate(Liquidations("C.Numero=P.Numero")[7], context);
  EXPECT_EQ(context.attached.size(), 1u);
  EXPECT_EQ(context.attached[0], kPasaje);
  EXPECT_NE(t.statements[0].find("FROM jet1.Encabezados"), std::string::npos);
  EXPECT_EQ(t.statements[0].rfind("INSERT INTO Encabezados (id_Encabezado, Id_TipoLiq, "
                                  "FechaDeLiq, MesDeLiq, Impreso, Terminado, id_Contrato, ",
                                  0),
            0u);
}

}  // namespace
