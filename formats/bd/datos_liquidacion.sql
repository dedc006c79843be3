-- bd/datos_liquidacion.sql: copies the table Datos_Liquidacion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Datos_Liquidacion.

Insert into Datos_Liquidacion (
  id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa, Monto,
  Relacion, DTE, DTP)
Select
  id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa, Monto,
  Relacion, DTE, DTP
From Datos_Liquidacion in '[BDOrigen]'
Where id_Encabezado In (Select id_Encabezado From Encabezados);
