-- bd/rpersonas_dto_comunicacion.sql: copies the table rPersonas_Dto_Comunicacion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table rPersonas_Dto_Comunicacion.

Insert into rPersonas_Dto_Comunicacion (
  ID_Dto_Comunicacion, Id_Persona, Dato)
Select
  ID_Dto_Comunicacion, Id_Persona, Dato
From rPersonas_Dto_Comunicacion in '[BDOrigen]';
