-- csv/declaraciones.sql: loads Declaraciones.csv (one row per Declaraciones row; see formats/README.md,
-- "Shipped formats") into the staging table Declaraciones.

Insert into Declaraciones (
  idDeclaracion, id_Persona, idRubroDed, idTipoDeduc, idCausalDeduc, idCodigoRegimen,
  idCauBajaRela, id_PersRelac, id_RelacFil, Trabaja, TieneMonto, CantBPC, Porc, Monto,
  FechaDeclaracion, Desde, Hasta)
Select
  idDeclaracion, id_Persona, idRubroDed, idTipoDeduc, idCausalDeduc, idCodigoRegimen,
  idCauBajaRela, id_PersRelac, id_RelacFil, Nz(Trabaja, 0), Nz(TieneMonto, 0), CantBPC,
  Porc, Monto, FechaDeclaracion, Desde, Hasta
From Imp_Declaraciones;

@ARCHIVO
Tabla=Imp_Declaraciones
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idDeclaracion:entero
Columna=id_Persona:entero
Columna=idRubroDed:entero
Columna=idTipoDeduc:entero
Columna=idCausalDeduc:entero
Columna=idCodigoRegimen:entero
Columna=idCauBajaRela:entero
Columna=id_PersRelac:entero
Columna=id_RelacFil:entero
Columna=Trabaja:entero
Columna=TieneMonto:entero
Columna=CantBPC:real
Columna=Porc:real
Columna=Monto:real
Columna=FechaDeclaracion:fecha:yyyy-MM-dd
Columna=Desde:fecha:yyyy-MM-dd
Columna=Hasta:fecha:yyyy-MM-dd
