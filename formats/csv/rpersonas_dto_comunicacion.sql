-- csv/rpersonas_dto_comunicacion.sql: loads rPersonas_Dto_Comunicacion.csv (one row per rPersonas_Dto_Comunicacion row; see formats/README.md,
-- "Shipped formats") into the staging table rPersonas_Dto_Comunicacion.

Insert into rPersonas_Dto_Comunicacion (
  ID_Dto_Comunicacion, Id_Persona, Dato)
Select
  ID_Dto_Comunicacion, Id_Persona, Dato
From Imp_rPersonas_Dto_Comunicacion;

@ARCHIVO
Tabla=Imp_rPersonas_Dto_Comunicacion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=ID_Dto_Comunicacion:entero
Columna=Id_Persona:entero
Columna=Dato:texto
