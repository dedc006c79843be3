-- csv/sectores.sql: loads Sectores.csv (one row per Sectores row; see formats/README.md,
-- "Shipped formats") into the staging table Sectores.

Insert into Sectores (
  id_Sector, Descripcion)
Select
  id_Sector, Descripcion
From Imp_Sectores;

@ARCHIVO
Tabla=Imp_Sectores
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Sector:entero
Columna=Descripcion:texto
