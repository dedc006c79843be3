-- bd/tiposdeduccion.sql: copies the table TiposDeduccion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table TiposDeduccion.

Insert into TiposDeduccion (
  idTipoDeduc, DescTipoDeduccion)
Select
  idTipoDeduc, DescTipoDeduccion
From TiposDeduccion in '[BDOrigen]';
