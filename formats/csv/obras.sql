-- csv/obras.sql: loads Obras.csv (one row per Obras row; see formats/README.md,
-- "Shipped formats") into the staging table Obras.

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
From Imp_Obras;

@ARCHIVO
Tabla=Imp_Obras
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=idObr:entero
Columna=Nombre:texto
Columna=NroObra:texto
Columna=id_EstadoObr:entero
Columna=DireccionObr:texto
Columna=NroEmpresaTit:texto
Columna=NroContribTit:texto
Columna=RazonSocialTit:texto
Columna=idTipoContTit:entero
Columna=idTipoApoTit:entero
Columna=idDepTit:entero
Columna=idCajAct:entero
Columna=DirecTit:texto
Columna=Telefono:texto
Columna=EmailTit:texto
Columna=Fax:texto
Columna=ContactoTit:texto
Columna=idTipoAct:entero
Columna=id_FormaDeReal:entero
Columna=NumAutoriza:texto
Columna=FecIni:fecha:yyyy-MM-dd
Columna=FecFin:fecha:yyyy-MM-dd
Columna=id_TipoAPObra:entero
