-- csv/personasrela.sql: loads PersonasRela.csv (one row per PersonasRela row; see formats/README.md,
-- "Shipped formats") into the staging table PersonasRela.

Insert into PersonasRela (
  id_PersRelac, NomRela_1, NomRela_2, ApeRela_1, ApeRela_2, Id_SexoRela, id_NacRela,
  id_PaisRela, NDocRela, ID_Doc_ExigRela, FecNacRela)
Select
  id_PersRelac, NomRela_1, NomRela_2, ApeRela_1, ApeRela_2, Id_SexoRela, id_NacRela,
  id_PaisRela, NDocRela, ID_Doc_ExigRela, FecNacRela
From Imp_PersonasRela;

@ARCHIVO
Tabla=Imp_PersonasRela
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_PersRelac:entero
Columna=NomRela_1:texto
Columna=NomRela_2:texto
Columna=ApeRela_1:texto
Columna=ApeRela_2:texto
Columna=Id_SexoRela:entero
Columna=id_NacRela:entero
Columna=id_PaisRela:entero
Columna=NDocRela:texto
Columna=ID_Doc_ExigRela:entero
Columna=FecNacRela:fecha:yyyy-MM-dd
