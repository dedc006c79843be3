-- csv/contrato.sql: loads Contrato.csv (one row per Contrato row; see formats/README.md,
-- "Shipped formats") into the staging table Contrato.

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
From Imp_Contrato;

@ARCHIVO
Tabla=Imp_Contrato
Formato=Delimitado
Separador=;
Comillas="
Encabezado=Si
Codificacion=auto
Decimal=.
Columna=Id_Contrato:entero
Columna=NUMERO_ALTERNATIVO:texto
Columna=Id_Persona:entero
Columna=SUELDO:real
Columna=HORAS:real
Columna=FECHA_INICIO:fecha:yyyy-MM-dd
Columna=FECHA_FIN:fecha:yyyy-MM-dd
Columna=vigente:entero
Columna=Tarjeta:texto
Columna=id_Memo:entero
Columna=Id_MotivoEgr:entero
Columna=id_Tipo_Contrato:entero
Columna=id_TipoRem:entero
Columna=FECHA_RECONO:fecha:yyyy-MM-dd
Columna=DiasExtLicXC:entero
Columna=id_FormaDePago:entero
Columna=LugarDePago:texto
Columna=CuentaBanc:texto
Columna=id_Seguro_Sal:entero
Columna=id_Vinculo_Fun:entero
Columna=id_Exoneracion:entero
Columna=id_CompEsp:entero
Columna=id_CausalEgr:entero
Columna=id_Sucursal:entero
Columna=id_Regimen:entero
Columna=id_AportaX:entero
Columna=id_Cat:entero
Columna=id_TipoAJ:entero
Columna=AcuLab:entero
Columna=id_CobraPor:entero
Columna=Confidencial:entero
Columna=id_CuentaADeb:entero
Columna=id_Cargo:entero
Columna=id_Sector:entero
Columna=id_Moneda:entero
Columna=CantDiasXMes:entero
Columna=TomaDTdeCont:entero
Columna=idCC:entero
Columna=idBancoEmp:entero
