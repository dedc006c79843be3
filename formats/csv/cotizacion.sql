-- csv/cotizacion.sql: loads Cotizacion.csv (one row per Cotizacion row; see formats/README.md,
-- "Shipped formats") into the staging table Cotizacion.

Insert into Cotizacion (
  id_Moneda, Fecha, Valor)
Select
  id_Moneda, Fecha, Valor
From Imp_Cotizacion;

@ARCHIVO
Tabla=Imp_Cotizacion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Moneda:entero
Columna=Fecha:fecha:yyyy-MM-dd
Columna=Valor:real
