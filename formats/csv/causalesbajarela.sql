-- csv/causalesbajarela.sql: loads CausalesBajaRela.csv (one row per CausalesBajaRela row; see formats/README.md,
-- "Shipped formats") into the staging table CausalesBajaRela.

Insert into CausalesBajaRela (
  idCauBajaRela, DescCausalBaja)
Select
  idCauBajaRela, DescCausalBaja
From Imp_CausalesBajaRela;

@ARCHIVO
Tabla=Imp_CausalesBajaRela
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idCauBajaRela:entero
Columna=DescCausalBaja:texto
