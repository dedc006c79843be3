-- bd/cotizacion.sql: copies the table Cotizacion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Cotizacion.

Insert into Cotizacion (
  id_Moneda, Fecha, Valor)
Select
  id_Moneda, Fecha, Valor
From Cotizacion in '[BDOrigen]';
