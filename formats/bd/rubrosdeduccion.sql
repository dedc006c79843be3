-- bd/rubrosdeduccion.sql: copies the table RubrosDeduccion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table RubrosDeduccion.

Insert into RubrosDeduccion (
  idRubroDed, DescripRubro)
Select
  idRubroDed, DescripRubro
From RubrosDeduccion in '[BDOrigen]';
