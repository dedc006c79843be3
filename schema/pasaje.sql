-- schema/pasaje.sql — the staging database (the template Generica/Pasaje.mdb).
--
-- The staging loader fills these tables from the source system; the user
-- reviews them and maps codes; the transfer reads them from the destination
-- connection through `in '<path>'`.
--
-- The staged tables are declared EXACTLY as in kel.sql (same columns, order,
-- types, collations and keys): the transfer copies whole rows by name
-- ("Insert into Personas Select * From (Select * From Personas in ...)"), so
-- every staged column must exist in the destination. The schema tests compare
-- both files column by column; change them together. The keys are kept too,
-- so that a source with duplicated ids is refused while staging instead of
-- breaking the transfer half-way.
--
-- Only in the staging database: the mapping tables RelacConc and RelacTLiq,
-- the deduction catalogues the declaration view names, and the saved queries
-- the preview reads (CHistLiq, cLisLiquida, cLstCont, cDeclaraciones).
-- Dates are ISO text, Yes/No -1/0, text compares without regard to case.
-- No FOREIGN KEY constraints: the loader empties and fills tables in any order.

-- Pages of 16 KiB: the liquidation lines (millions of rows, three b-trees)
-- are appended with a quarter of the page splits and writes of the default
-- 4 KiB, which made the staging load about 8 % faster; reading is no slower.
-- Only an empty file takes it, so it stands before the first table.
PRAGMA page_size = 16384;

------------------------------------------------------------------------------
-- Staged copies of destination tables (keep in step with kel.sql)
------------------------------------------------------------------------------

CREATE TABLE Empresa (
  IdEmpresa INTEGER,
  Nombre TEXT COLLATE NOCASE,
  RazonSocial TEXT COLLATE NOCASE,
  Direccion TEXT COLLATE NOCASE,
  RUC TEXT COLLATE NOCASE,
  Email TEXT COLLATE NOCASE,
  Telefono1 TEXT COLLATE NOCASE,
  Fax TEXT COLLATE NOCASE,
  Contacto1 TEXT COLLATE NOCASE,
  Notas TEXT COLLATE NOCASE,
  id_Tipo_Aport_Emp INTEGER,
  id_Tipo_Contrib INTEGER,
  NombreGest TEXT COLLATE NOCASE,
  DirecGest TEXT COLLATE NOCASE,
  TelefonoGest TEXT COLLATE NOCASE,
  FaxGest TEXT COLLATE NOCASE,
  ContactoGest TEXT COLLATE NOCASE,
  EMailGest TEXT COLLATE NOCASE,
  id_TipoVenc INTEGER,
  id_Exonera INTEGER,
  InicioDeAct TEXT,
  id_Dpto INTEGER,
  id_Localidad INTEGER,
  id_NatJur INTEGER,
  Ramo TEXT COLLATE NOCASE,
  Seccion_Policial TEXT COLLATE NOCASE,
  CentralizaSucursales INTEGER DEFAULT 0,
  id_TConvenio INTEGER,
  VencConv TEXT,
  FechaInsBPS TEXT,
  DiasExtraXConvenio INTEGER DEFAULT 0,
  DiasXMesEnContrato INTEGER DEFAULT 30,
  TomaDTdeCont INTEGER DEFAULT 0,
  LicEnUnSoloMes INTEGER DEFAULT 0,
  PrimDiaExtraDeLicaPartir INTEGER DEFAULT 0,
  MaxDiasExtraDeLic INTEGER DEFAULT 0,
  DiasDeLicAnuales INTEGER DEFAULT 20,
  CodPost TEXT COLLATE NOCASE,
  TomaHLDRsiTDTC INTEGER DEFAULT 0,
  TomaDLicEnProm INTEGER DEFAULT 0,
  CodigoEmp TEXT COLLATE NOCASE,
  PieDeImpresion TEXT COLLATE NOCASE
);

CREATE TABLE Planillas (
  id_planilla INTEGER,
  SubNombre TEXT COLLATE NOCASE,
  Numero TEXT COLLATE NOCASE,
  id_Tplanilla INTEGER,
  Dato TEXT COLLATE NOCASE,
  idSG INTEGER,
  idGrupoV INTEGER,
  idSGrupoV INTEGER
);

CREATE TABLE Cargos (
  id_Cargo INTEGER PRIMARY KEY,
  Cargo TEXT COLLATE NOCASE,
  Laudo REAL,
  id_CobraPor INTEGER,
  Id_Cat INTEGER
);

CREATE TABLE Sectores (
  id_Sector INTEGER PRIMARY KEY,
  Descripcion TEXT COLLATE NOCASE
);

CREATE TABLE Sucursales (
  id_Sucursal INTEGER PRIMARY KEY,
  Nombre TEXT COLLATE NOCASE,
  Direccion TEXT COLLATE NOCASE,
  Telefono TEXT COLLATE NOCASE,
  Email TEXT COLLATE NOCASE,
  Contacto TEXT COLLATE NOCASE,
  InicioAct TEXT,
  id_Dpto INTEGER
);

CREATE TABLE TRegHorario (
  id_Regimen INTEGER PRIMARY KEY,
  Descripcion TEXT COLLATE NOCASE,
  CantHxDia REAL,
  HorasXSem REAL
);

CREATE TABLE Obras (
  idObr INTEGER PRIMARY KEY,
  Nombre TEXT COLLATE NOCASE,
  NroObra TEXT COLLATE NOCASE,
  id_EstadoObr INTEGER,
  DireccionObr TEXT COLLATE NOCASE,
  NroEmpresaTit TEXT COLLATE NOCASE,
  NroContribTit TEXT COLLATE NOCASE,
  RazonSocialTit TEXT COLLATE NOCASE,
  idTipoContTit INTEGER,
  idTipoApoTit INTEGER,
  idDepTit INTEGER,
  idCajAct INTEGER,
  DirecTit TEXT COLLATE NOCASE,
  Telefono TEXT COLLATE NOCASE,
  EmailTit TEXT COLLATE NOCASE,
  Fax TEXT COLLATE NOCASE,
  ContactoTit TEXT COLLATE NOCASE,
  idTipoAct INTEGER,
  id_FormaDeReal INTEGER,
  NumAutoriza TEXT COLLATE NOCASE,
  FecIni TEXT,
  FecFin TEXT,
  id_TipoAPObra INTEGER
);

CREATE TABLE CentroCosto (
  idCC INTEGER PRIMARY KEY,
  NombreCC TEXT COLLATE NOCASE,
  FecIni TEXT,
  FecFin TEXT
);

CREATE TABLE TiposRemuneracion (
  id_TipoRem INTEGER PRIMARY KEY,
  Descripcion TEXT COLLATE NOCASE
);

CREATE TABLE CobraPor (
  id_CobraPor INTEGER PRIMARY KEY,
  Descripcion TEXT COLLATE NOCASE
);

CREATE TABLE Personas (
  id_Persona INTEGER PRIMARY KEY,
  NUMERO TEXT COLLATE NOCASE,
  Apellido_1 TEXT COLLATE NOCASE,
  Nombre_1 TEXT COLLATE NOCASE,
  Apellido_2 TEXT COLLATE NOCASE,
  Nombre_2 TEXT COLLATE NOCASE,
  Direccion TEXT COLLATE NOCASE,
  Id_Sexo INTEGER,
  ID_EstadoCivil INTEGER,
  Fecha_Nacimiento TEXT,
  Id_Localidad INTEGER,
  Id_dpto INTEGER,
  id_Nacionalidad INTEGER,
  id_Pais INTEGER,
  ID_Doc_Exigidos INTEGER,
  FECHA_EMISION TEXT,
  FECHA_VENCIMIENTO TEXT
);

CREATE TABLE PersonasRela (
  id_PersRelac INTEGER PRIMARY KEY,
  NomRela_1 TEXT COLLATE NOCASE,
  NomRela_2 TEXT COLLATE NOCASE,
  ApeRela_1 TEXT COLLATE NOCASE,
  ApeRela_2 TEXT COLLATE NOCASE,
  Id_SexoRela INTEGER,
  id_NacRela INTEGER,
  id_PaisRela INTEGER,
  NDocRela TEXT COLLATE NOCASE,
  ID_Doc_ExigRela INTEGER,
  FecNacRela TEXT
);

CREATE TABLE Declaraciones (
  idDeclaracion INTEGER PRIMARY KEY,
  id_Persona INTEGER,
  idRubroDed INTEGER,
  idTipoDeduc INTEGER,
  idCausalDeduc INTEGER,
  idCodigoRegimen INTEGER,
  idCauBajaRela INTEGER,
  id_PersRelac INTEGER,
  id_RelacFil INTEGER,
  Trabaja INTEGER DEFAULT 0,
  TieneMonto INTEGER DEFAULT 0,
  CantBPC REAL,
  Porc REAL,
  Monto REAL,
  FechaDeclaracion TEXT,
  Desde TEXT,
  Hasta TEXT
);

CREATE TABLE rPersonas_Dto_Comunicacion (
  ID_Dto_Comunicacion INTEGER,
  Id_Persona INTEGER,
  Dato TEXT COLLATE NOCASE
);

CREATE TABLE Contrato (
  Id_Contrato INTEGER PRIMARY KEY,
  NUMERO_ALTERNATIVO TEXT COLLATE NOCASE,
  Id_Persona INTEGER,
  SUELDO REAL,
  HORAS REAL,
  FECHA_INICIO TEXT,
  FECHA_FIN TEXT,
  vigente INTEGER DEFAULT 0,
  Tarjeta TEXT COLLATE NOCASE,
  id_Memo INTEGER,
  Id_MotivoEgr INTEGER,
  id_Tipo_Contrato INTEGER,
  id_TipoRem INTEGER,
  FECHA_RECONO TEXT,
  DiasExtLicXC INTEGER,
  id_FormaDePago INTEGER,
  LugarDePago TEXT COLLATE NOCASE,
  CuentaBanc TEXT COLLATE NOCASE,
  id_Seguro_Sal INTEGER,
  id_Vinculo_Fun INTEGER,
  id_Exoneracion INTEGER,
  id_CompEsp INTEGER,
  id_CausalEgr INTEGER,
  id_Sucursal INTEGER,
  id_Regimen INTEGER,
  id_AportaX INTEGER,
  id_Cat INTEGER,
  id_TipoAJ INTEGER,
  AcuLab INTEGER DEFAULT 0,
  id_CobraPor INTEGER,
  Confidencial INTEGER DEFAULT 0,
  id_CuentaADeb INTEGER,
  id_Cargo INTEGER,
  id_Sector INTEGER,
  id_Moneda INTEGER,
  CantDiasXMes INTEGER,
  TomaDTdeCont INTEGER DEFAULT 0,
  idCC INTEGER,
  idBancoEmp INTEGER
);

CREATE TABLE Conceptos (
  id_Concepto INTEGER PRIMARY KEY,
  Codigo TEXT COLLATE NOCASE,
  NombreReducido TEXT COLLATE NOCASE,
  Nombre TEXT COLLATE NOCASE,
  id_ConsLiquidacion INTEGER,
  TipoDato INTEGER DEFAULT 0,
  TipoOperacion TEXT COLLATE NOCASE,
  ModificaNominal INTEGER DEFAULT 0,
  RedoCoef INTEGER DEFAULT 2,
  RedoCant INTEGER DEFAULT 2,
  id_Moneda INTEGER DEFAULT 1,
  FCant TEXT COLLATE NOCASE,
  FCoef TEXT COLLATE NOCASE,
  VisibleEnRec INTEGER DEFAULT -1
);

CREATE TABLE TiposLiquidacion (
  id_TipoLiq INTEGER PRIMARY KEY,
  Nombre TEXT COLLATE NOCASE,
  Color INTEGER DEFAULT 0,
  Salarial INTEGER DEFAULT 0,
  Activa INTEGER DEFAULT -1,
  ParaEmp INTEGER DEFAULT 0,
  CodigoParaBPS INTEGER DEFAULT 1
);

CREATE TABLE Cotizacion (
  id_Moneda INTEGER,
  Fecha TEXT,
  Valor REAL
);

CREATE TABLE Encabezados (
  id_Encabezado INTEGER PRIMARY KEY,
  Id_TipoLiq INTEGER,
  FechaDeLiq TEXT,
  MesDeLiq TEXT,
  Impreso INTEGER DEFAULT 0,
  Terminado INTEGER DEFAULT 0,
  id_Contrato INTEGER,
  id_Usuario INTEGER,
  FechaVisto TEXT,
  idLote INTEGER,
  Cod1 REAL DEFAULT 0,
  Cod2 REAL DEFAULT 0,
  Cod5 REAL DEFAULT 0,
  Cod7 REAL DEFAULT 0,
  Cod8 REAL DEFAULT 0,
  Cod41 REAL DEFAULT 0,
  OtrosH REAL DEFAULT 0,
  Aporte REAL DEFAULT 0,
  Liquido REAL DEFAULT 0,
  DTE REAL DEFAULT 0,
  DTP REAL DEFAULT 0,
  Cod1AD REAL DEFAULT 0,
  Cod5AD REAL DEFAULT 0,
  OtrosHAD REAL DEFAULT 0
);

CREATE TABLE Datos_Liquidacion (
  id_Dato INTEGER PRIMARY KEY,
  id_Encabezado INTEGER,
  id_Concepto INTEGER,
  Cantidad REAL,
  Coeficiente REAL,
  RedoEnLiq INTEGER,
  idAgrupa INTEGER,
  Monto REAL,
  Relacion INTEGER,
  DTE REAL,
  DTP REAL,
  -- Staging only: the line id under the name the preview's "unused concepts"
  -- delete reads. Generated, so it is not part of the copied column list
  -- (PRAGMA table_info and positional inserts leave it out).
  id_Datos INTEGER GENERATED ALWAYS AS (id_Dato) VIRTUAL
);

CREATE INDEX ix_Personas_NUMERO ON Personas(NUMERO);
CREATE INDEX ix_Contrato_Persona ON Contrato(Id_Persona, FECHA_INICIO);
CREATE INDEX ix_Declaraciones_Persona ON Declaraciones(id_Persona);
CREATE INDEX ix_Encabezados_Contrato ON Encabezados(id_Contrato, MesDeLiq, Id_TipoLiq);
CREATE INDEX ix_Encabezados_Mes ON Encabezados(MesDeLiq);
CREATE INDEX ix_Datos_Liquidacion_Encabezado ON Datos_Liquidacion(id_Encabezado);
CREATE INDEX ix_Datos_Liquidacion_Concepto ON Datos_Liquidacion(id_Concepto);

-- The staged contracts, persons and declarations refer to KEL's own codes of
-- these catalogues; the template carries KEL's rows so that the preview can
-- name them (a format that stages them replaces them).
INSERT INTO TiposRemuneracion (id_TipoRem, Descripcion) VALUES
  (1, 'Mensual'), (2, 'Jornalero'), (3, 'Por hora');
INSERT INTO CobraPor (id_CobraPor, Descripcion) VALUES
  (1, 'Hora'), (4, 'Día'), (7, 'Quincena'), (8, 'Mes');

------------------------------------------------------------------------------
-- Mappings of source codes onto KEL's
------------------------------------------------------------------------------

-- Source concept CodOS (a staged Conceptos.id_Concepto) becomes KEL concept
-- CodKEL; CodKEL -1 means "not to be imported", Null "no destination chosen".
CREATE TABLE RelacConc (
  CodKEL INTEGER,
  CodOS INTEGER
);
CREATE INDEX ix_RelacConc_OS ON RelacConc(CodOS);
CREATE INDEX ix_RelacConc_KEL ON RelacConc(CodKEL);

-- Source liquidation type CodOS becomes KEL type CodKEL (several rows allowed).
CREATE TABLE RelacTLiq (
  CodKEL INTEGER,
  CodOS INTEGER
);
CREATE INDEX ix_RelacTLiq_OS ON RelacTLiq(CodOS);

-- The tables that are not source data: a staging load never empties them,
-- whatever the format's TablaNoBorrar says (the user's mappings and the
-- catalogues this template brings; PasajeEmpresa records the company file the
-- staging database was prepared for).
CREATE TABLE TablasPropias (
  Tabla TEXT COLLATE NOCASE PRIMARY KEY
);
INSERT INTO TablasPropias (Tabla) VALUES
  ('TablasPropias'), ('PasajeEmpresa'), ('RelacConc'), ('RelacTLiq'), ('TiposRemuneracion'), ('CobraPor');

-- The KEL company file (absolute, normal path) this staging database was
-- prepared for; empty in the template. A second company whose folder has the
-- same name is told before it reuses the first one's data.
CREATE TABLE PasajeEmpresa (
  Archivo TEXT
);

------------------------------------------------------------------------------
-- Deduction catalogues named by the declaration view
------------------------------------------------------------------------------

CREATE TABLE RubrosDeduccion (
  idRubroDed INTEGER PRIMARY KEY,
  DescripRubro TEXT COLLATE NOCASE
);
CREATE TABLE TiposDeduccion (
  idTipoDeduc INTEGER PRIMARY KEY,
  DescTipoDeduccion TEXT COLLATE NOCASE
);
CREATE TABLE RegimenesDeduccion (
  idCodigoRegimen INTEGER PRIMARY KEY,
  DescRegimen TEXT COLLATE NOCASE
);
CREATE TABLE CausalesDeduccion (
  idCausalDeduc INTEGER PRIMARY KEY,
  DescCausaDeduc TEXT COLLATE NOCASE
);
CREATE TABLE RelacionesFiliares (
  id_RelacFil INTEGER PRIMARY KEY,
  DescRelaFil TEXT COLLATE NOCASE
);
CREATE TABLE CausalesBajaRela (
  idCauBajaRela INTEGER PRIMARY KEY,
  DescCausalBaja TEXT COLLATE NOCASE
);

------------------------------------------------------------------------------
-- Saved queries read by the preview
------------------------------------------------------------------------------

-- Staged liquidation headers for the liquidation browser, one row per header.
-- Column order matters (the grid sorts by column index, and column 5 is
-- sorted through cdate): 0 id_Encabezado, 1 id_Persona, 2 id_Contrato,
-- 3 NUMERO_ALTERNATIVO, 4 Nombres ("Apellidos, Nombres"), 5 strMesDeLiq (the
-- month as 'MM/yyyy'), 6 DescTipoLiq, 7 MesDeLiq, 8 id_TipoLiq, 9 FechaDeLiq,
-- 10 Impreso, 11 Terminado. Headers whose contract, person or type is missing
-- still appear (outer joins), with empty names.
-- The names are put together once per contract (the subquery, which SQLite
-- materialises because it is a join on the right of a LEFT JOIN), not once
-- per header: a ten-year history has some 200 headers a contract, and
-- sorting the browser by Nombres would otherwise build 200,000 names.
CREATE VIEW CHistLiq AS
  SELECT E.id_Encabezado AS id_Encabezado,
         C.Id_Persona AS id_Persona,
         E.id_Contrato AS id_Contrato,
         C.NUMERO_ALTERNATIVO AS NUMERO_ALTERNATIVO,
         COALESCE(C.Nombres, '') AS Nombres,
         strftime('%m/%Y', E.MesDeLiq) AS strMesDeLiq,
         TL.Nombre AS DescTipoLiq,
         E.MesDeLiq AS MesDeLiq,
         E.Id_TipoLiq AS id_TipoLiq,
         E.FechaDeLiq AS FechaDeLiq,
         E.Impreso AS Impreso,
         E.Terminado AS Terminado
  FROM Encabezados AS E
  LEFT JOIN (SELECT CP.Id_Contrato AS Id_Contrato,
                    CP.Id_Persona AS Id_Persona,
                    CP.NUMERO_ALTERNATIVO AS NUMERO_ALTERNATIVO,
                    TRIM(TRIM(COALESCE(P.Apellido_1, '') || ' ' || COALESCE(P.Apellido_2, '')) || ', ' ||
                         TRIM(COALESCE(P.Nombre_1, '') || ' ' || COALESCE(P.Nombre_2, '')), ', ') AS Nombres
             FROM Contrato AS CP
             LEFT JOIN Personas AS P ON P.id_Persona = CP.Id_Persona) AS C ON C.Id_Contrato = E.id_Contrato
  LEFT JOIN TiposLiquidacion AS TL ON TL.id_TipoLiq = E.Id_TipoLiq;

-- Staged liquidation lines with their concept's code, name, kind of datum
-- (TipoDato 1: the quantity is a percentage) and operation ('S' adds, 'R'
-- subtracts). A line whose concept is not staged shows empty concept columns.
CREATE VIEW cLisLiquida AS
  SELECT DL.id_Dato AS id_Dato,
         DL.id_Encabezado AS id_Encabezado,
         DL.id_Concepto AS id_Concepto,
         CO.Codigo AS Codigo,
         CO.Nombre AS Nombre,
         DL.Cantidad AS Cantidad,
         DL.Coeficiente AS Coeficiente,
         DL.Monto AS Monto,
         CO.TipoDato AS TipoDato,
         CO.TipoOperacion AS TipoOperacion
  FROM Datos_Liquidacion AS DL
  LEFT JOIN Conceptos AS CO ON CO.id_Concepto = DL.id_Concepto;

-- Staged contracts for the contracts grid: the contract number, the person's
-- names and surnames, the remuneration type, the salary with its pay unit
-- ("25000.00 x Mes"), position, sector, document number, start and end.
CREATE VIEW cLstCont AS
  SELECT C.NUMERO_ALTERNATIVO AS NUMERO_ALTERNATIVO,
         TRIM(COALESCE(P.Nombre_1, '') || ' ' || COALESCE(P.Nombre_2, '')) AS Nombres,
         TRIM(COALESCE(P.Apellido_1, '') || ' ' || COALESCE(P.Apellido_2, '')) AS Apellidos,
         TR.Descripcion AS TipoRemDesc,
         CASE WHEN C.SUELDO IS NULL THEN NULL
              ELSE printf('%.2f', C.SUELDO) ||
                   CASE WHEN CP.Descripcion IS NULL THEN '' ELSE ' x ' || CP.Descripcion END
         END AS SueldoCobraX,
         CA.Cargo AS CarNombre,
         SE.Descripcion AS SecNombre,
         P.NUMERO AS NUMERO,
         C.FECHA_INICIO AS FECHA_INICIO,
         C.FECHA_FIN AS FECHA_FIN,
         C.Id_Persona AS id_Persona,
         C.Id_Contrato AS id_Contrato
  FROM Contrato AS C
  LEFT JOIN Personas AS P ON P.id_Persona = C.Id_Persona
  LEFT JOIN TiposRemuneracion AS TR ON TR.id_TipoRem = C.id_TipoRem
  LEFT JOIN CobraPor AS CP ON CP.id_CobraPor = C.id_CobraPor
  LEFT JOIN Cargos AS CA ON CA.id_Cargo = C.id_Cargo
  LEFT JOIN Sectores AS SE ON SE.id_Sector = C.id_Sector;

-- Staged declarations with the declaring person (Nombre_1.., Apellido_1..,
-- NDoc: the person's document number), the descriptions of their codes and
-- the related person's data. When Trabaja is yes the related person is a
-- staged person (id_PersRelac is a Personas id) and the *Rela columns come
-- from Personas, NumeroRela being that person's id; otherwise they come from
-- PersonasRela and NumeroRela is empty.
CREATE VIEW cDeclaraciones AS
  SELECT D.idDeclaracion AS idDeclaracion,
         D.id_Persona AS id_Persona,
         D.idRubroDed AS idRubroDed,
         D.idTipoDeduc AS idTipoDeduc,
         D.idCausalDeduc AS idCausalDeduc,
         D.idCodigoRegimen AS idCodigoRegimen,
         D.idCauBajaRela AS idCauBajaRela,
         RD.DescripRubro AS DescripRubro,
         TD.DescTipoDeduccion AS DescTipoDeduccion,
         RG.DescRegimen AS DescRegimen,
         D.id_PersRelac AS id_PersRelac,
         CASE WHEN D.Trabaja <> 0 THEN PT.Nombre_1 ELSE PR.NomRela_1 END AS NomRela_1,
         CASE WHEN D.Trabaja <> 0 THEN PT.Nombre_2 ELSE PR.NomRela_2 END AS NomRela_2,
         CASE WHEN D.Trabaja <> 0 THEN PT.Apellido_1 ELSE PR.ApeRela_1 END AS ApeRela_1,
         CASE WHEN D.Trabaja <> 0 THEN PT.Apellido_2 ELSE PR.ApeRela_2 END AS ApeRela_2,
         CASE WHEN D.Trabaja <> 0 THEN PT.Id_Sexo ELSE PR.Id_SexoRela END AS Id_SexoRela,
         CASE WHEN D.Trabaja <> 0 THEN PT.id_Nacionalidad ELSE PR.id_NacRela END AS id_NacRela,
         P.NUMERO AS NDoc,
         CASE WHEN D.Trabaja <> 0 THEN PT.id_Pais ELSE PR.id_PaisRela END AS id_PaisRela,
         CASE WHEN D.Trabaja <> 0 THEN PT.NUMERO ELSE PR.NDocRela END AS NDocRela,
         CASE WHEN D.Trabaja <> 0 THEN CAST(PT.id_Persona AS TEXT) ELSE NULL END AS NumeroRela,
         CASE WHEN D.Trabaja <> 0 THEN PT.ID_Doc_Exigidos ELSE PR.ID_Doc_ExigRela END AS ID_Doc_ExigRela,
         D.Trabaja AS Trabaja,
         D.TieneMonto AS TieneMonto,
         D.CantBPC AS CantBPC,
         CD.DescCausaDeduc AS DescCausaDeduc,
         D.id_RelacFil AS id_RelacFil,
         RF.DescRelaFil AS DescRelaFil,
         CASE WHEN D.Trabaja <> 0 THEN PT.Fecha_Nacimiento ELSE PR.FecNacRela END AS FecNacRela,
         D.Porc AS Porc,
         D.Monto AS Monto,
         D.Desde AS Desde,
         D.FechaDeclaracion AS FechaDeclaracion,
         D.Hasta AS Hasta,
         CB.DescCausalBaja AS DescCausalBaja,
         P.Nombre_1 AS Nombre_1,
         P.Nombre_2 AS Nombre_2,
         P.Apellido_1 AS Apellido_1,
         P.Apellido_2 AS Apellido_2
  FROM Declaraciones AS D
  LEFT JOIN Personas AS P ON P.id_Persona = D.id_Persona
  LEFT JOIN Personas AS PT ON D.Trabaja <> 0 AND PT.id_Persona = D.id_PersRelac
  LEFT JOIN PersonasRela AS PR ON D.Trabaja = 0 AND PR.id_PersRelac = D.id_PersRelac
  LEFT JOIN RubrosDeduccion AS RD ON RD.idRubroDed = D.idRubroDed
  LEFT JOIN TiposDeduccion AS TD ON TD.idTipoDeduc = D.idTipoDeduc
  LEFT JOIN RegimenesDeduccion AS RG ON RG.idCodigoRegimen = D.idCodigoRegimen
  LEFT JOIN CausalesDeduccion AS CD ON CD.idCausalDeduc = D.idCausalDeduc
  LEFT JOIN RelacionesFiliares AS RF ON RF.id_RelacFil = D.id_RelacFil
  LEFT JOIN CausalesBajaRela AS CB ON CB.idCauBajaRela = D.idCauBajaRela;
