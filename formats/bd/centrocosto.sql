-- bd/centrocosto.sql: copies the table CentroCosto of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table CentroCosto.

Insert into CentroCosto (
  idCC, NombreCC, FecIni, FecFin)
Select
  idCC, NombreCC, FecIni, FecFin
From CentroCosto in '[BDOrigen]';
