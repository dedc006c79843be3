-- csv/empresa.sql: loads Empresa.csv (one row per Empresa row; see formats/README.md,
-- "Shipped formats") into the staging table Empresa.

Insert into Empresa (
  IdEmpresa, Nombre, RazonSocial, Direccion, RUC, Email, Telefono1, Fax, Contacto1, Notas,
  id_Tipo_Aport_Emp, id_Tipo_Contrib, NombreGest, DirecGest, TelefonoGest, FaxGest,
  ContactoGest, EMailGest, id_TipoVenc, id_Exonera, InicioDeAct, id_Dpto, id_Localidad,
  id_NatJur, Ramo, Seccion_Policial, CentralizaSucursales, id_TConvenio, VencConv,
  FechaInsBPS, DiasExtraXConvenio, DiasXMesEnContrato, TomaDTdeCont, LicEnUnSoloMes,
  PrimDiaExtraDeLicaPartir, MaxDiasExtraDeLic, DiasDeLicAnuales, CodPost, TomaHLDRsiTDTC,
  TomaDLicEnProm, CodigoEmp, PieDeImpresion)
Select
  IdEmpresa, Nombre, RazonSocial, Direccion, RUC, Email, Telefono1, Fax, Contacto1, Notas,
  id_Tipo_Aport_Emp, id_Tipo_Contrib, NombreGest, DirecGest, TelefonoGest, FaxGest,
  ContactoGest, EMailGest, id_TipoVenc, id_Exonera, InicioDeAct, id_Dpto, id_Localidad,
  id_NatJur, Ramo, Seccion_Policial, Nz(CentralizaSucursales, 0), id_TConvenio, VencConv,
  FechaInsBPS, Nz(DiasExtraXConvenio, 0), Nz(DiasXMesEnContrato, 30), Nz(TomaDTdeCont, 0),
  Nz(LicEnUnSoloMes, 0), Nz(PrimDiaExtraDeLicaPartir, 0), Nz(MaxDiasExtraDeLic, 0),
  Nz(DiasDeLicAnuales, 20), CodPost, Nz(TomaHLDRsiTDTC, 0), Nz(TomaDLicEnProm, 0),
  CodigoEmp, PieDeImpresion
From Imp_Empresa;

@ARCHIVO
Tabla=Imp_Empresa
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=IdEmpresa:entero
Columna=Nombre:texto
Columna=RazonSocial:texto
Columna=Direccion:texto
Columna=RUC:texto
Columna=Email:texto
Columna=Telefono1:texto
Columna=Fax:texto
Columna=Contacto1:texto
Columna=Notas:texto
Columna=id_Tipo_Aport_Emp:entero
Columna=id_Tipo_Contrib:entero
Columna=NombreGest:texto
Columna=DirecGest:texto
Columna=TelefonoGest:texto
Columna=FaxGest:texto
Columna=ContactoGest:texto
Columna=EMailGest:texto
Columna=id_TipoVenc:entero
Columna=id_Exonera:entero
Columna=InicioDeAct:fecha:yyyy-MM-dd
Columna=id_Dpto:entero
Columna=id_Localidad:entero
Columna=id_NatJur:entero
Columna=Ramo:texto
Columna=Seccion_Policial:texto
Columna=CentralizaSucursales:entero
Columna=id_TConvenio:entero
Columna=VencConv:fecha:yyyy-MM-dd
Columna=FechaInsBPS:fecha:yyyy-MM-dd
Columna=DiasExtraXConvenio:entero
Columna=DiasXMesEnContrato:entero
Columna=TomaDTdeCont:entero
Columna=LicEnUnSoloMes:entero
Columna=PrimDiaExtraDeLicaPartir:entero
Columna=MaxDiasExtraDeLic:entero
Columna=DiasDeLicAnuales:entero
Columna=CodPost:texto
Columna=TomaHLDRsiTDTC:entero
Columna=TomaDLicEnProm:entero
Columna=CodigoEmp:texto
Columna=PieDeImpresion:texto
