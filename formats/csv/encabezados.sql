-- csv/encabezados.sql: loads Encabezados.csv (one row per Encabezados row; see formats/README.md,
-- "Shipped formats") into the staging table Encabezados.

Insert into Encabezados (
  id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Impreso, Terminado, id_Contrato,
  id_Usuario, FechaVisto, idLote, Cod1, Cod2, Cod5, Cod7, Cod8, Cod41, OtrosH, Aporte,
  Liquido, DTE, DTP, Cod1AD, Cod5AD, OtrosHAD)
Select
  id_Encabezado, Id_TipoLiq, FechaDeLiq, MesDeLiq, Nz(Impreso, 0), Nz(Terminado, 0),
  id_Contrato, id_Usuario, FechaVisto, idLote, Nz(Cod1, 0), Nz(Cod2, 0), Nz(Cod5, 0),
  Nz(Cod7, 0), Nz(Cod8, 0), Nz(Cod41, 0), Nz(OtrosH, 0), Nz(Aporte, 0), Nz(Liquido, 0),
  Nz(DTE, 0), Nz(DTP, 0), Nz(Cod1AD, 0), Nz(Cod5AD, 0), Nz(OtrosHAD, 0)
From Imp_Encabezados
Where MesDeLiq Between [Desde] and [Hasta];

@ARCHIVO
Tabla=Imp_Encabezados
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Encabezado:entero
Columna=Id_TipoLiq:entero
Columna=FechaDeLiq:fecha:yyyy-MM-dd
Columna=MesDeLiq:fecha:yyyy-MM-dd
Columna=Impreso:entero
Columna=Terminado:entero
Columna=id_Contrato:entero
Columna=id_Usuario:entero
Columna=FechaVisto:fecha:yyyy-MM-dd
Columna=idLote:entero
Columna=Cod1:real
Columna=Cod2:real
Columna=Cod5:real
Columna=Cod7:real
Columna=Cod8:real
Columna=Cod41:real
Columna=OtrosH:real
Columna=Aporte:real
Columna=Liquido:real
Columna=DTE:real
Columna=DTP:real
Columna=Cod1AD:real
Columna=Cod5AD:real
Columna=OtrosHAD:real
