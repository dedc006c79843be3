-- bd/tiposliquidacion.sql: copies the table TiposLiquidacion of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table TiposLiquidacion.

Insert into TiposLiquidacion (
  id_TipoLiq, Nombre, Color, Salarial, Activa, ParaEmp, CodigoParaBPS)
Select
  id_TipoLiq, Nombre, Nz(Color, 0), Nz(Salarial, 0), Nz(Activa, -1), Nz(ParaEmp, 0),
  Nz(CodigoParaBPS, 1)
From TiposLiquidacion in '[BDOrigen]';
