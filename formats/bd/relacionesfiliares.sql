-- bd/relacionesfiliares.sql: copies the table RelacionesFiliares of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table RelacionesFiliares.

Insert into RelacionesFiliares (
  id_RelacFil, DescRelaFil)
Select
  id_RelacFil, DescRelaFil
From RelacionesFiliares in '[BDOrigen]';
