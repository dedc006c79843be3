-- csv/tiposdeduccion.sql: loads TiposDeduccion.csv (one row per TiposDeduccion row; see formats/README.md,
-- "Shipped formats") into the staging table TiposDeduccion.

Insert into TiposDeduccion (
  idTipoDeduc, DescTipoDeduccion)
Select
  idTipoDeduc, DescTipoDeduccion
From Imp_TiposDeduccion;

@ARCHIVO
Tabla=Imp_TiposDeduccion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idTipoDeduc:entero
Columna=DescTipoDeduccion:texto
