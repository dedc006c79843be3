-- bd/cargos.sql: copies the table Cargos of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Cargos.

Insert into Cargos (
  id_Cargo, Cargo, Laudo, id_CobraPor, Id_Cat)
Select
  id_Cargo, Cargo, Laudo, id_CobraPor, Id_Cat
From Cargos in '[BDOrigen]';
