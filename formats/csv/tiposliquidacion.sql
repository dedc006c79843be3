-- csv/tiposliquidacion.sql: loads TiposLiquidacion.csv (one row per TiposLiquidacion row; see formats/README.md,
-- "Shipped formats") into the staging table TiposLiquidacion.

Insert into TiposLiquidacion (
  id_TipoLiq, Nombre, Color, Salarial, Activa, ParaEmp, CodigoParaBPS)
Select
  id_TipoLiq, Nombre, Nz(Color, 0), Nz(Salarial, 0), Nz(Activa, -1), Nz(ParaEmp, 0),
  Nz(CodigoParaBPS, 1)
From Imp_TiposLiquidacion;

@ARCHIVO
Tabla=Imp_TiposLiquidacion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=id_TipoLiq:entero
Columna=Nombre:texto
Columna=Color:entero
Columna=Salarial:entero
Columna=Activa:entero
Columna=ParaEmp:entero
Columna=CodigoParaBPS:entero
