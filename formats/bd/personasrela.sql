-- bd/personasrela.sql: copies the table PersonasRela of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table PersonasRela.

Insert into PersonasRela (
  id_PersRelac, NomRela_1, NomRela_2, ApeRela_1, ApeRela_2, Id_SexoRela, id_NacRela,
  id_PaisRela, NDocRela, ID_Doc_ExigRela, FecNacRela)
Select
  id_PersRelac, NomRela_1, NomRela_2, ApeRela_1, ApeRela_2, Id_SexoRela, id_NacRela,
  id_PaisRela, NDocRela, ID_Doc_ExigRela, FecNacRela
From PersonasRela in '[BDOrigen]';
