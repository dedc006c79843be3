// transfer/catalogos_sql.cpp — texts of the catalogues step.
#include "transfer/catalogos_sql.h"

namespace transfer::sql {

std::vector<std::string> catalogos_merge(std::string_view staging_path) {
  const std::string path(staging_path);
  return {
      // Positions.
      "Update Cargos as D Inner Join  (Select * From Cargos in '" + path +
          "') as A on D.id_Cargo=A.id_Cargo Set D.Cargo=A.Cargo,D.Laudo =A.Laudo,D.id_CobraPor = A.id_CobraPor, D.Id_Cat=A.Id_Cat ",
      "Insert Into Cargos Select A.id_Cargo, A.Cargo,A.Laudo, A.id_CobraPor, A.id_Cat From (Select * From Cargos in '" + path +
          "') as A Where Not Exists(Select id_Cargo From Cargos as CC Where CC.id_Cargo=A.id_Cargo)",
      // Sectors.
      "Update Sectores as D Inner Join  (Select * From Sectores in '" + path +
          "') as A on D.id_Sector=A.id_Sector Set D.Descripcion=A.Descripcion ",
      "Insert Into Sectores Select A.id_Sector, A.Descripcion From (Select * From Sectores in '" + path +
          "') as A Where Not Exists(Select id_Sector From Sectores as CC Where CC.id_Sector =A.id_Sector)",
      // Branches: branch 0 (and below) is never overwritten.
      "Update Sucursales as D Inner Join  (Select * From Sucursales in '" + path +
          "') as A on D.id_Sucursal=A.id_Sucursal Set D.Nombre=A.Nombre,D.Direccion=A.Direccion ,D.Telefono=A.Telefono "
          ",D.Email=A.Email, D.Contacto=A.Contacto,D.InicioAct=A.InicioAct,D.id_Dpto=A.id_Dpto Where D.id_Sucursal>0",
      "Insert Into Sucursales Select A.id_Sucursal, A.Nombre,A.Direccion,A.Telefono, A.Email,A.Contacto,A.InicioAct,A.id_Dpto "
      "From (Select * From Sucursales in '" + path +
          "') as A Where Not Exists(Select id_Sucursal From Sucursales as CC Where CC.id_Sucursal =A.id_Sucursal)",
      // Working-time schemes: scheme 0 (and below) is never overwritten.
      "Update TRegHorario as D Inner Join  (Select * From TRegHorario in '" + path +
          "') as A on D.id_Regimen=A.id_Regimen Set D.Descripcion=A.Descripcion,D.CantHxDia=A.CantHxDia ,D.HorasXSem=A.HorasXSem "
          "Where D.id_Regimen>0",
      "Insert Into TRegHorario Select A.id_Regimen,A.Descripcion,A.CantHxDia,A.HorasXSem From (Select * From TRegHorario in '" +
          path + "') as A Where Not Exists(Select id_Regimen From TRegHorario as CC Where CC.id_Regimen =A.id_Regimen)",
      // Works.
      "Update Obras as D Inner Join  (Select * From Obras in '" + path + "') as A on D.idObr=A.idObr Set D.Nombre=A.Nombre," +
          " D.NroObra=A.NroObra, D.id_EstadoObr=A.id_EstadoObr, D.DireccionObr=A.DireccionObr, D.NroEmpresaTit=A.NroEmpresaTit, "
          "D.NroContribTit=A.NroContribTit, D.RazonSocialTit=A.RazonSocialTit, D.idTipoContTit=A.idTipoContTit, "
          "D.idTipoApoTit=A.idTipoApoTit, " +
          " D.idDepTit=A.idDepTit, D.idCajAct=A.idCajAct, D.DirecTit=A.DirecTit, D.Telefono=A.Telefono, D.EmailTit=A.EmailTit, "
          "D.Fax=A.Fax, D.ContactoTit=A.ContactoTit, D.idTipoAct=A.idTipoAct, D.id_FormaDeReal=A.id_FormaDeReal, "
          "D.NumAutoriza=A.NumAutoriza, " +
          " D.FecIni=A.FecIni, D.FecFin=A.FecFin, D.id_TipoAPObra=A.id_TipoAPObra",
      std::string("Insert Into OBRAS Select A.idOBR, A.Nombre, A.NroObra, A.id_EstadoObr, A.DireccionObr, A.NroEmpresaTit, "
                  "A.NroContribTit, A.RazonSocialTit, A.idTipoContTit, A.idTipoApoTit, A.idDepTit, A.idCajAct, A.DirecTit, "
                  "A.Telefono, A.EmailTit, A.Fax, A.ContactoTit, A.idTipoAct, ") +
          " A.id_FormaDeReal, A.NumAutoriza, A.FecIni, A.FecFin, A.id_TipoAPObra  From (Select * From Obras in '" + path +
          "') as A Where Not Exists(Select idObr From Obras as CC Where CC.idObr =A.idObr)",
      // Cost centres.
      "Update CentroCosto as D inner join (Select * From CentroCosto  in '" + path +
          "') as O on O.idCC=D.idCC set D.NombreCC=O.NombreCC, D.FecIni=O.FecIni, D.FecFin=O.FecFin",
      "Insert into CentroCosto Select O.idCC, O.NombreCC, O.FecIni, O.FecFin From (Select * From CentroCosto  in '" + path +
          "') as O Where not Exists(Select idCC From CentroCosto as CC where CC.idCC=O.idCC)",
  };
}

std::vector<std::string> catalogos_cost_centre_fixups() {
  // The runs of blanks are part of the texts.
  return {
      "Update rCC_Cont as RCC inner join Contrato as C on C.id_Contrato=RCC.id_Contrato set RCC.id_Cargo=C.id_Cargo           "
      "Where isnull(RCC.id_Cargo) or RCC.id_Cargo=0",
      "Update rCC_Cont as RCC inner join Contrato as C on C.id_Contrato=RCC.id_Contrato set RCC.id_Seguro_Sal=C.id_Seguro_Sal "
      "Where isnull(RCC.id_Seguro_Sal) or RCC.id_Seguro_Sal=0",
      "Update rCC_Cont as RCC inner join Contrato as C on C.id_Contrato=RCC.id_Contrato set RCC.id_Exonera=C.id_Exoneracion      "
      "Where isnull(RCC.id_Exonera) or RCC.id_Exonera=0",
  };
}

std::vector<std::string> catalogos_step(std::string_view staging_path) {
  std::vector<std::string> all = catalogos_merge(staging_path);
  for (auto& fixup : catalogos_cost_centre_fixups()) all.push_back(std::move(fixup));
  return all;
}

}  // namespace transfer::sql
