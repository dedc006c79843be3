-- bd/contrato.sql: copies the table Contrato of the source database (the interchange
-- schema of formats/README.md, "Shipped formats") into the staging table Contrato.

Insert into Contrato (
  Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, HORAS, FECHA_INICIO, FECHA_FIN,
  vigente, Tarjeta, id_Memo, Id_MotivoEgr, id_Tipo_Contrato, id_TipoRem, FECHA_RECONO,
  DiasExtLicXC, id_FormaDePago, LugarDePago, CuentaBanc, id_Seguro_Sal, id_Vinculo_Fun,
  id_Exoneracion, id_CompEsp, id_CausalEgr, id_Sucursal, id_Regimen, id_AportaX, id_Cat,
  id_TipoAJ, AcuLab, id_CobraPor, Confidencial, id_CuentaADeb, id_Cargo, id_Sector,
  id_Moneda, CantDiasXMes, TomaDTdeCont, idCC, idBancoEmp)
Select
  Id_Contrato, NUMERO_ALTERNATIVO, Id_Persona, SUELDO, HORAS, FECHA_INICIO, FECHA_FIN,
  Nz(vigente, 0), Tarjeta, id_Memo, Id_MotivoEgr, id_Tipo_Contrato, id_TipoRem,
  FECHA_RECONO, DiasExtLicXC, id_FormaDePago, LugarDePago, CuentaBanc, id_Seguro_Sal,
  id_Vinculo_Fun, id_Exoneracion, id_CompEsp, id_CausalEgr, id_Sucursal, id_Regimen,
  id_AportaX, id_Cat, id_TipoAJ, Nz(AcuLab, 0), id_CobraPor, Nz(Confidencial, 0),
  id_CuentaADeb, id_Cargo, id_Sector, id_Moneda, CantDiasXMes, Nz(TomaDTdeCont, 0), idCC,
  idBancoEmp
From Contrato in '[BDOrigen]';
