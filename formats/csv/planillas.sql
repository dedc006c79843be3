-- csv/planillas.sql: loads Planillas.csv (one row per Planillas row; see formats/README.md,
-- "Shipped formats") into the staging table Planillas.

Insert into Planillas (
  id_planilla, SubNombre, Numero, id_Tplanilla, Dato, idSG, idGrupoV, idSGrupoV)
Select
  id_planilla, SubNombre, Numero, id_Tplanilla, Dato, idSG, idGrupoV, idSGrupoV
From Imp_Planillas;

@ARCHIVO
Tabla=Imp_Planillas
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_planilla:entero
Columna=SubNombre:texto
Columna=Numero:texto
Columna=id_Tplanilla:entero
Columna=Dato:texto
Columna=idSG:entero
Columna=idGrupoV:entero
Columna=idSGrupoV:entero
