-- bd/causalesbajarela.sql: copies the table CausalesBajaRela of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table CausalesBajaRela.

Insert into CausalesBajaRela (
  idCauBajaRela, DescCausalBaja)
Select
  idCauBajaRela, DescCausalBaja
From CausalesBajaRela in '[BDOrigen]';
