-- bd/obras.sql: copies the table Obras of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Obras.

Insert into Obras (
  idObr, Nombre, NroObra, id_EstadoObr, DireccionObr, NroEmpresaTit, NroContribTit,
  RazonSocialTit, idTipoContTit, idTipoApoTit, idDepTit, idCajAct, DirecTit, Telefono,
  EmailTit, Fax, ContactoTit, idTipoAct, id_FormaDeReal, NumAutoriza, FecIni, FecFin,
  id_TipoAPObra)
Select
  idObr, Nombre, NroObra, id_EstadoObr, DireccionObr, NroEmpresaTit, NroContribTit,
  RazonSocialTit, idTipoContTit, idTipoApoTit, idDepTit, idCajAct, DirecTit, Telefono,
  EmailTit, Fax, ContactoTit, idTipoAct, id_FormaDeReal, NumAutoriza, FecIni, FecFin,
  id_TipoAPObra
From Obras in '[BDOrigen]';
