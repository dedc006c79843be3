// mapping/grid_sql.cpp — texts of the mapping grids.
#include "mapping/grid_sql.h"

namespace mapping::sql {

std::string concept_grid_select(std::string_view destination_path, std::string_view sort) {
  const std::string order = sort.empty() ? std::string("DescOS") : std::string(sort);
  return std::string("Select * From ") +
         " (SELECT OS.id_Concepto AS CodigoOS,OS.codigo & '->'& Trim(OS.Nombre) AS DescOS,  KEL.ID_Concepto AS "
         "CodigoKEL, KEL.Nombre AS DescKEL," +
         "  iif((isnull(KEL.id_Concepto) and RR.CodKEL=-1),'No Importar','Importar') as Totalizar, "
         "(isnull(KEL.id_Concepto) and isnull(RR.CodKEL)) as ConcCrear " +
         " FROM Conceptos AS OS LEFT JOIN " + " (Select * From RelacConc AS RR  Left JOIN (Select * From Conceptos in '" +
         std::string(destination_path) + "') as PP " + " ON  RR.CodKEL = PP.ID_Concepto) AS KEL  ON OS.id_concepto=KEL.CodOS) order by " +
         order;
}

std::string concept_relation_delete(std::string_view cod_os) {
  return "Delete * From RelacConc Where CodOS=" + std::string(cod_os);
}

std::string concept_relation_insert(std::string_view cod_kel, std::string_view cod_os) {
  // The double blank before CodOS is part of the text.
  return "Insert into RelacConc Select " + std::string(cod_kel) + " as CodKEL," + std::string(cod_os) + " as  CodOS";
}

std::string concept_relation_remove(std::int64_t cod_kel, std::string_view cod_os) {
  return "Delete * From RelacConc Where  CodKEL=" + std::to_string(cod_kel) + " and CodOS=" + std::string(cod_os);
}

std::string automatic_links_delete(std::string_view kel_ids) {
  return "Delete * From RelacConc where CodKEL in (" + std::string(kel_ids) + ")";
}

std::string type_grid_select(std::string_view destination_path) {
  return "SELECT * From (Select OS.id_TipoLiq AS CodigoOS, Trim(OS.Nombre) AS DescOS, KEL.ID_TipoLiq AS CodigoKEL, "
         "KEL.Nombre AS DescKEL  FROM  TiposLiquidacion AS OS LEFT JOIN (Select * From RelacTLiq AS RR  INNER JOIN "
         "(Select * From TiposLiquidacion in '" +
         std::string(destination_path) + "') as PP ON  RR.CodKEL = PP.ID_TipoLiq) AS KEL  ON OS.id_TipoLiq=KEL.CodOS) order by " +
         "Val(CodigoOS)";
}

std::string type_relation_insert(std::string_view cod_kel, std::string_view cod_os) {
  return "insert into RelacTLiq Select " + std::string(cod_kel) + " as CodKEL, " + std::string(cod_os) + " as  CodOS";
}

std::string type_relation_delete(std::string_view cod_os_trimmed, std::int64_t cod_kel) {
  std::string text = "Delete * From RelacTLiq Where  trim(CodOS)='" + std::string(cod_os_trimmed) + "' ";
  if (cod_kel != 0) text += " and CodKEL=" + std::to_string(cod_kel);
  return text;
}

}  // namespace mapping::sql
