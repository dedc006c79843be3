-- csv/datos_liquidacion.sql: loads Datos_Liquidacion.csv (one row per Datos_Liquidacion row; see formats/README.md,
-- "Shipped formats") into the staging table Datos_Liquidacion.

Insert into Datos_Liquidacion (
  id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa, Monto,
  Relacion, DTE, DTP)
Select
  id_Dato, id_Encabezado, id_Concepto, Cantidad, Coeficiente, RedoEnLiq, idAgrupa, Monto,
  Relacion, DTE, DTP
From Imp_Datos_Liquidacion
Where id_Encabezado In (Select id_Encabezado From Encabezados);

@ARCHIVO
Tabla=Imp_Datos_Liquidacion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Dato:entero
Columna=id_Encabezado:entero
Columna=id_Concepto:entero
Columna=Cantidad:real
Columna=Coeficiente:real
Columna=RedoEnLiq:entero
Columna=idAgrupa:entero
Columna=Monto:real
Columna=Relacion:entero
Columna=DTE:real
Columna=DTP:real
