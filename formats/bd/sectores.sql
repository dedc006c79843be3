-- bd/sectores.sql: copies the table Sectores of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Sectores.

Insert into Sectores (
  id_Sector, Descripcion)
Select
  id_Sector, Descripcion
From Sectores in '[BDOrigen]';
