-- csv/conceptos.sql: loads Conceptos.csv (one row per Conceptos row; see formats/README.md,
-- "Shipped formats") into the staging table Conceptos.

Insert into Conceptos (
  id_Concepto, Codigo, NombreReducido, Nombre, id_ConsLiquidacion, TipoDato, TipoOperacion,
  ModificaNominal, RedoCoef, RedoCant, id_Moneda, FCant, FCoef, VisibleEnRec)
Select
  id_Concepto, Codigo, NombreReducido, Nombre, id_ConsLiquidacion, Nz(TipoDato, 0),
  TipoOperacion, Nz(ModificaNominal, 0), Nz(RedoCoef, 2), Nz(RedoCant, 2),
  Nz(id_Moneda, 1), FCant, FCoef, Nz(VisibleEnRec, -1)
From Imp_Conceptos;

-- Automatic links: a source concept marked in TotalBPS as the total of a
-- BPS code (1, 2, 5, 7, 8) or of earnings (H) or deductions (D) becomes the
-- KEL concept the format relates to that total, unless the user already
-- mapped it (RelacConc survives reloads).
Insert into RelacConc (CodKEL, CodOS)
Select iif(TotalBPS = '1', [BPS1], iif(TotalBPS = '2', [BPS2], iif(TotalBPS = '5', [BPS5], iif(TotalBPS = '7', [BPS7], iif(TotalBPS = '8', [BPS8], iif(TotalBPS = 'H', [Habe], [Desc])))))),
  id_Concepto
From Imp_Conceptos
Where TotalBPS In ('1', '2', '5', '7', '8', 'H', 'D')
  And id_Concepto Not In (Select CodOS From RelacConc Where Not IsNull(CodOS));

@ARCHIVO
Tabla=Imp_Conceptos
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_Concepto:entero
Columna=Codigo:texto
Columna=NombreReducido:texto
Columna=Nombre:texto
Columna=id_ConsLiquidacion:entero
Columna=TipoDato:entero
Columna=TipoOperacion:texto
Columna=ModificaNominal:entero
Columna=RedoCoef:entero
Columna=RedoCant:entero
Columna=id_Moneda:entero
Columna=FCant:texto
Columna=FCoef:texto
Columna=VisibleEnRec:entero
Columna=TotalBPS
