-- csv/causalesdeduccion.sql: loads CausalesDeduccion.csv (one row per CausalesDeduccion row; see formats/README.md,
-- "Shipped formats") into the staging table CausalesDeduccion.

Insert into CausalesDeduccion (
  idCausalDeduc, DescCausaDeduc)
Select
  idCausalDeduc, DescCausaDeduc
From Imp_CausalesDeduccion;

@ARCHIVO
Tabla=Imp_CausalesDeduccion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idCausalDeduc:entero
Columna=DescCausaDeduc:texto
