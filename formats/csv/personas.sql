-- csv/personas.sql: loads Personas.csv (one row per Personas row; see formats/README.md,
-- "Shipped formats") into the staging table Personas.

Insert into Personas (
  id_Persona, NUMERO, Apellido_1, Nombre_1, Apellido_2, Nombre_2, Direccion, Id_Sexo,
  ID_EstadoCivil, Fecha_Nacimiento, Id_Localidad, Id_dpto, id_Nacionalidad, id_Pais,
  ID_Doc_Exigidos, FECHA_EMISION, FECHA_VENCIMIENTO)
Select
  id_Persona, NUMERO, Apellido_1, Nombre_1, Apellido_2, Nombre_2, Direccion, Id_Sexo,
  ID_EstadoCivil, Fecha_Nacimiento, Id_Localidad, Id_dpto, id_Nacionalidad, id_Pais,
  ID_Doc_Exigidos, FECHA_EMISION, FECHA_VENCIMIENTO
From Imp_Personas;

@ARCHIVO
Tabla=Imp_Personas
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Persona:entero
Columna=NUMERO:texto
Columna=Apellido_1:texto
Columna=Nombre_1:texto
Columna=Apellido_2:texto
Columna=Nombre_2:texto
Columna=Direccion:texto
Columna=Id_Sexo:entero
Columna=ID_EstadoCivil:entero
Columna=Fecha_Nacimiento:fecha:yyyy-MM-dd
Columna=Id_Localidad:entero
Columna=Id_dpto:entero
Columna=id_Nacionalidad:entero
Columna=id_Pais:entero
Columna=ID_Doc_Exigidos:entero
Columna=FECHA_EMISION:fecha:yyyy-MM-dd
Columna=FECHA_VENCIMIENTO:fecha:yyyy-MM-dd
