-- csv/cargos.sql: loads Cargos.csv (one row per Cargos row; see formats/README.md,
-- "Shipped formats") into the staging table Cargos.

Insert into Cargos (
  id_Cargo, Cargo, Laudo, id_CobraPor, Id_Cat)
Select
  id_Cargo, Cargo, Laudo, id_CobraPor, Id_Cat
From Imp_Cargos;

@ARCHIVO
Tabla=Imp_Cargos
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Cargo:entero
Columna=Cargo:texto
Columna=Laudo:real
Columna=id_CobraPor:entero
Columna=Id_Cat:entero
