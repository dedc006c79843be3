-- bd/causalesdeduccion.sql: copies the table CausalesDeduccion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table CausalesDeduccion.

Insert into CausalesDeduccion (
  idCausalDeduc, DescCausaDeduc)
Select
  idCausalDeduc, DescCausaDeduc
From CausalesDeduccion in '[BDOrigen]';
