-- bd/declaraciones.sql: copies the table Declaraciones of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Declaraciones.

Insert into Declaraciones (
  idDeclaracion, id_Persona, idRubroDed, idTipoDeduc, idCausalDeduc, idCodigoRegimen,
  idCauBajaRela, id_PersRelac, id_RelacFil, Trabaja, TieneMonto, CantBPC, Porc, Monto,
  FechaDeclaracion, Desde, Hasta)
Select
  idDeclaracion, id_Persona, idRubroDed, idTipoDeduc, idCausalDeduc, idCodigoRegimen,
  idCauBajaRela, id_PersRelac, id_RelacFil, Nz(Trabaja, 0), Nz(TieneMonto, 0), CantBPC,
  Porc, Monto, FechaDeclaracion, Desde, Hasta
From Declaraciones in '[BDOrigen]';
