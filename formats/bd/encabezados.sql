-- bd/encabezados.sql: copies the table Encabezados of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Encabezados.

Insert into Encabezados (
  id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Impreso, Terminado, id_Contrato,
  id_Usuario, FechaVisto, idLote, Cod1, Cod2, Cod5, Cod7, Cod8, Cod41, OtrosH, Aporte,
  Liquido, DTE, DTP, Cod1AD, Cod5AD, OtrosHAD)
Select
  id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Nz(Impreso, 0), Nz(Terminado, 0),
  id_Contrato, id_Usuario, FechaVisto, idLote, Nz(Cod1, 0), Nz(Cod2, 0), Nz(Cod5, 0),
  Nz(Cod7, 0), Nz(Cod8, 0), Nz(Cod41, 0), Nz(OtrosH, 0), Nz(Aporte, 0), Nz(Liquido, 0),
  Nz(DTE, 0), Nz(DTP, 0), Nz(Cod1AD, 0), Nz(Cod5AD, 0), Nz(OtrosHAD, 0)
From Encabezados in '[BDOrigen]'
Where MesDeLiq Between [Desde] and [Hasta];
