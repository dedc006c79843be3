-- bd/personas.sql: copies the table Personas of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Personas.

Insert into Personas (
  id_Persona, NUMERO, Apellido_1, Nombre_1, Apellido_2, Nombre_2, Direccion, Id_Sexo,
  ID_EstadoCivil, Fecha_Nacimiento, Id_Localidad, Id_dpto, id_Nacionalidad, id_Pais,
  ID_Doc_Exigidos, FECHA_EMISION, FECHA_VENCIMIENTO)
Select
  id_Persona, NUMERO, Apellido_1, Nombre_1, Apellido_2, Nombre_2, Direccion, Id_Sexo,
  ID_EstadoCivil, Fecha_Nacimiento, Id_Localidad, Id_dpto, id_Nacionalidad, id_Pais,
  ID_Doc_Exigidos, FECHA_EMISION, FECHA_VENCIMIENTO
From Personas in '[BDOrigen]';
