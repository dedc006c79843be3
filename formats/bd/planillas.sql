-- bd/planillas.sql: copies the table Planillas of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Planillas.

Insert into Planillas (
  id_planilla, SubNombre, Numero, id_Tplanilla, Dato, idSG, idGrupoV, idSGrupoV)
Select
  id_planilla, SubNombre, Numero, id_Tplanilla, Dato, idSG, idGrupoV, idSGrupoV
From Planillas in '[BDOrigen]';
