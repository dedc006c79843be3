-- csv/relacionesfiliares.sql: loads RelacionesFiliares.csv (one row per RelacionesFiliares row; see formats/README.md,
-- "Shipped formats") into the staging table RelacionesFiliares.

Insert into RelacionesFiliares (
  id_RelacFil, DescRelaFil)
Select
  id_RelacFil, DescRelaFil
From Imp_RelacionesFiliares;

@ARCHIVO
Tabla=Imp_RelacionesFiliares
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_RelacFil:entero
Columna=DescRelaFil:texto
