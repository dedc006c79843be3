// transfer/empresa_sql.cpp — texts of the company and registrations step.
#include "transfer/empresa_sql.h"

namespace transfer::sql {

std::string empresa_delete() { return "Delete From Empresa"; }

std::string empresa_copy(std::string_view staging_path) {
  return std::string("Insert into Empresa Select 1 as IdEmpresa, A.Nombre, A.RazonSocial,A.Direccion,A.RUC") +
         ",A.Email,A.Telefono1,A.Fax,A.Contacto1,A.Notas, A.id_Tipo_Aport_Emp " +
         ",A.id_Tipo_Contrib,A.NombreGest,A.DirecGest, A.TelefonoGest, A.FaxGest, A.ContactoGest,A.EMailGest " +
         ",A.id_TipoVenc, A.id_Exonera, A.InicioDeAct,A.id_Dpto,A.id_Localidad,A.id_NatJur,A.Ramo,A.Seccion_Policial," +
         "A.CentralizaSucursales,A.id_TConvenio,A.VencConv,A.FechaInsBPS,A.DiasExtraXConvenio,A.DiasXMesEnContrato,A.TomaDTdeCont, " +
         "A.LicEnUnSoloMes,A.PrimDiaExtraDeLicaPartir,A.MaxDiasExtraDeLic,A.DiasDeLicAnuales,A.CodPost,A.TomaHLDRsiTDTC,A.TomaDLicEnProm, " +
         "A.CodigoEmp, A.PieDeImpresion From (Select * From Empresa in '" + std::string(staging_path) + "') as A";
}

std::string planillas_delete() { return "Delete * From Planillas"; }

std::string planillas_neutral_insert() {
  return "Insert into Planillas Select Top 1 0 as id_planilla, '' as SubNombre,'-' as Numero, 2 as "
         "id_Tplanilla,null as Dato, 0 as IDSG, 0 as idGrupoV, 0 as idSGrupoV From Empresa where Not "
         "Exists(Select id_planilla From Planillas Where id_planilla=0)";
}

std::string planillas_copy(std::string_view staging_path) {
  // The two blanks before "as" are part of the text.
  return "Insert into Planillas Select A.id_planilla,A.SubNombre,A.Numero, A.id_Tplanilla,A.Dato,A.idSG,"
         "A.idGrupoV,A.idSGrupoV From (Select * From Planillas in '" +
         std::string(staging_path) + "')  as A";
}

std::vector<std::string> empresa_step(std::string_view staging_path) {
  return {empresa_delete(), empresa_copy(staging_path), planillas_delete(), planillas_neutral_insert(),
          planillas_copy(staging_path)};
}

}  // namespace transfer::sql
