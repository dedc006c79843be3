-- csv/regimenesdeduccion.sql: loads RegimenesDeduccion.csv (one row per RegimenesDeduccion row; see formats/README.md,
-- "Shipped formats") into the staging table RegimenesDeduccion.

Insert into RegimenesDeduccion (
  idCodigoRegimen, DescRegimen)
Select
  idCodigoRegimen, DescRegimen
From Imp_RegimenesDeduccion;

@ARCHIVO
Tabla=Imp_RegimenesDeduccion
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idCodigoRegimen:entero
Columna=DescRegimen:texto
