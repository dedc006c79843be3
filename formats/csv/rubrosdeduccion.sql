-- csv/rubrosdeduccion.sql: loads RubrosDeduccion.csv (one row per RubrosDeduccion row; see formats/README.md,
-- "Shipped formats") into the staging table RubrosDeduccion.

Insert into RubrosDeduccion (
  idRubroDed, DescripRubro)
Select
  idRubroDed, DescripRubro
From Imp_RubrosDeduccion;

@ARCHIVO
Tabla=Imp_RubrosDeduccion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idRubroDed:entero
Columna=DescripRubro:texto
