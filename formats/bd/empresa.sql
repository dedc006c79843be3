-- bd/empresa.sql: copies the table Empresa of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Empresa.

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
From Empresa in '[BDOrigen]';
