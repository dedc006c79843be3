-- csv/treghorario.sql: loads TRegHorario.csv (one row per TRegHorario row; see formats/README.md,
-- "Shipped formats") into the staging table TRegHorario.

Insert into TRegHorario (
  id_Regimen, Descripcion, CantHxDia, HorasXSem)
Select
  id_Regimen, Descripcion, CantHxDia, HorasXSem
From Imp_TRegHorario;

@ARCHIVO
Tabla=Imp_TRegHorario
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Regimen:entero
Columna=Descripcion:texto
Columna=CantHxDia:real
Columna=HorasXSem:real
