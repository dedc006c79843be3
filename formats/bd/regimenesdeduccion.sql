-- bd/regimenesdeduccion.sql: copies the table RegimenesDeduccion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table RegimenesDeduccion.

Insert into RegimenesDeduccion (
  idCodigoRegimen, DescRegimen)
Select
  idCodigoRegimen, DescRegimen
From RegimenesDeduccion in '[BDOrigen]';
