-- bd/treghorario.sql: copies the table TRegHorario of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table TRegHorario.

Insert into TRegHorario (
  id_Regimen, Descripcion, CantHxDia, HorasXSem)
Select
  id_Regimen, Descripcion, CantHxDia, HorasXSem
From TRegHorario in '[BDOrigen]';
