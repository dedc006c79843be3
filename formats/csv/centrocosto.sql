-- csv/centrocosto.sql: loads CentroCosto.csv (one row per CentroCosto row; see formats/README.md,
-- "Shipped formats") into the staging table CentroCosto.

Insert into CentroCosto (
  idCC, NombreCC, FecIni, FecFin)
Select
  idCC, NombreCC, FecIni, FecFin
From Imp_CentroCosto;

@ARCHIVO
Tabla=Imp_CentroCosto
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idCC:entero
Columna=NombreCC:texto
Columna=FecIni:fecha:yyyy-MM-dd
Columna=FecFin:fecha:yyyy-MM-dd
