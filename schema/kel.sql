-- schema/kel.sql — the KEL company database (the transfer's destination).
--
-- Native SQLite DDL: every table and column that the importer's statements
-- read or write, the views the transfer reads, and the indexes its joins need.
-- kel_base.sql adds the base data of a fresh company (concepts, liquidation
-- types, contributions, currency, BPS relations).
--
-- Storage conventions: dates are ISO 8601 text ('YYYY-MM-DD', or
-- 'YYYY-MM-DD HH:MM:SS' when there is a time); Yes/No columns hold -1 (yes)
-- and 0 (no); money is REAL; text columns compare without regard to case.
--
-- Keys. Ids the statements treat as unique (persons, contracts, headers,
-- lines, concepts, liquidation types, file entries...) are primary keys, so a
-- mistake shows up as a refused statement instead of silently duplicated ids.
-- Two tables deliberately have none:
--   * Empresa: the company copy inserts every staged company row as IdEmpresa 1.
--   * Planillas: the neutral registration 0 is created before the staged
--     registrations are copied with their own ids, and a staged registration 0
--     must not make the whole copy fail; id_planilla is indexed, not unique.
--
-- No FOREIGN KEY constraints are declared, on purpose. The person step parks
-- every person id at +1000000000 and renumbers persons while contracts,
-- declarations and contact rows still point to the old ids, and the
-- liquidation step inserts lines before their totals exist; any declared
-- reference would be violated half-way through a statement sequence that is
-- consistent when it ends. Consistency is kept by the statements themselves.
--
-- The staging database (pasaje.sql) declares the staged tables with exactly
-- the same column lists: the transfer copies whole rows by name.

------------------------------------------------------------------------------
-- Company and payroll registrations
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

-- id_Tplanilla: 1 insurer (BSE), 2 labour ministry (MTSS), 3 social security (BPS).
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
CREATE INDEX ix_Planillas_id ON Planillas(id_planilla);
CREATE INDEX ix_Planillas_tipo ON Planillas(id_Tplanilla);

------------------------------------------------------------------------------
-- Catalogues
------------------------------------------------------------------------------

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

-- Remuneration types of contracts (1 monthly, 2 daily-paid...).
CREATE TABLE TiposRemuneracion (
  id_TipoRem INTEGER PRIMARY KEY,
  Descripcion TEXT COLLATE NOCASE
);

-- Pay unit of a salary (per hour, day, fortnight, month).
CREATE TABLE CobraPor (
  id_CobraPor INTEGER PRIMARY KEY,
  Descripcion TEXT COLLATE NOCASE
);

------------------------------------------------------------------------------
-- Persons, declarations, contact data
------------------------------------------------------------------------------

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
CREATE INDEX ix_Personas_NUMERO ON Personas(NUMERO);

-- Related persons who do not work in the company (dependants and the like).
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

-- Declarations of dependants. id_PersRelac is a Personas id when Trabaja is
-- yes (the related person works in the company), a PersonasRela id otherwise.
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
CREATE INDEX ix_Declaraciones_Persona ON Declaraciones(id_Persona);

-- A person's contact data: ID_Dto_Comunicacion is the kind (telephone,
-- mobile, e-mail...), at most one of each kind per person.
CREATE TABLE rPersonas_Dto_Comunicacion (
  ID_Dto_Comunicacion INTEGER,
  Id_Persona INTEGER,
  Dato TEXT COLLATE NOCASE
);
CREATE UNIQUE INDEX ux_rPersonas_Dto_Comunicacion
  ON rPersonas_Dto_Comunicacion(Id_Persona, ID_Dto_Comunicacion);

------------------------------------------------------------------------------
-- Contracts, registrations of contracts, cost centres, personnel file
------------------------------------------------------------------------------

-- NUMERO_ALTERNATIVO is the person id as text, optionally followed by "_" and
-- one character; AcuLab tells concurrent employment agreements apart.
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
CREATE INDEX ix_Contrato_Persona ON Contrato(Id_Persona, FECHA_INICIO);
CREATE INDEX ix_Contrato_Numero ON Contrato(NUMERO_ALTERNATIVO, AcuLab);

-- A contract's payroll registrations (one per registration type).
CREATE TABLE rPlanillas (
  idContrato INTEGER,
  idPlanilla INTEGER
);
CREATE UNIQUE INDEX ux_rPlanillas ON rPlanillas(idContrato, idPlanilla);
CREATE INDEX ix_rPlanillas_Planilla ON rPlanillas(idPlanilla);

-- Cost-centre assignments of contracts, with the position, health insurance
-- and exemption that apply to the share of the contract in that centre.
CREATE TABLE rCC_Cont (
  id_Contrato INTEGER,
  idCC INTEGER,
  Porcentaje REAL,
  id_Cargo INTEGER,
  id_Seguro_Sal INTEGER,
  id_Exonera INTEGER
);
CREATE INDEX ix_rCC_Cont_Contrato ON rCC_Cont(id_Contrato);

-- Personnel file entries; id_TMLegajo 1 is the start of employment.
CREATE TABLE Legajo (
  id_Legajo INTEGER PRIMARY KEY,
  id_TMLegajo INTEGER,
  id_Contrato INTEGER,
  id_DatoAnt INTEGER,
  id_Usuario INTEGER,
  aId INTEGER,
  strAValor TEXT COLLATE NOCASE,
  Fecha TEXT,
  id_Memo INTEGER
);
CREATE INDEX ix_Legajo_Contrato ON Legajo(id_Contrato, id_TMLegajo);

------------------------------------------------------------------------------
-- Concepts, liquidation types, employer contributions, currencies
------------------------------------------------------------------------------

-- TipoDato 0 amount, 1 percentage, 2 quantity; TipoOperacion 'S' adds, 'R'
-- subtracts; FCant and FCoef are the formulas of quantity and coefficient.
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
CREATE INDEX ix_Conceptos_Codigo ON Conceptos(Codigo);

-- Salarial: a salary liquidation (carries employer contributions); ParaEmp:
-- liquidated employee by employee (one calendar entry per contract).
CREATE TABLE TiposLiquidacion (
  id_TipoLiq INTEGER PRIMARY KEY,
  Nombre TEXT COLLATE NOCASE,
  Color INTEGER DEFAULT 0,
  Salarial INTEGER DEFAULT 0,
  Activa INTEGER DEFAULT -1,
  ParaEmp INTEGER DEFAULT 0,
  CodigoParaBPS INTEGER DEFAULT 1
);
CREATE INDEX ix_TiposLiquidacion_Nombre ON TiposLiquidacion(Nombre);

-- Employer contributions and the liquidation types they apply to.
CREATE TABLE AportesPatronales (
  id_Aporte INTEGER PRIMARY KEY,
  Codigo TEXT COLLATE NOCASE,
  Nombre TEXT COLLATE NOCASE,
  Porcentaje REAL
);
CREATE TABLE rAporPat_TipoLiq (
  id_Aporte INTEGER,
  Codigo TEXT COLLATE NOCASE,
  id_TipoLiq INTEGER
);
CREATE INDEX ix_rAporPat_TipoLiq ON rAporPat_TipoLiq(id_TipoLiq);

CREATE TABLE Monedas (
  id_Moneda INTEGER PRIMARY KEY,
  Nombre TEXT COLLATE NOCASE,
  Simbolo TEXT COLLATE NOCASE
);

-- Exchange rates; currency 1 is the local currency. No unique key: the
-- liquidation step appends the staged rates after deleting only the foreign
-- ones, so a local rate may legitimately appear twice.
CREATE TABLE Cotizacion (
  id_Moneda INTEGER,
  Fecha TEXT,
  Valor REAL
);
CREATE INDEX ix_Cotizacion ON Cotizacion(id_Moneda, Fecha);

-- Which KEL concepts make up each total reported to BPS. CodBPS is one of:
--   '1', '2', '5', '7', '8', '41'  the BPS codes of the same number;
--   '1AD', '5AD'                   codes 1 and 5 of the additional part;
--   'OTROSH', 'OTROSHAD'           other earnings (and of the additional part);
--   'APORTE'                       the employee's contributions;
--   'LIQUIDO'                      net pay (Haberes +1, Descuentos -1);
--   'DTE', 'DTP'                   worked days: the line's Cantidad counts as
--                                  days worked (DTE) or days paid (DTP).
-- Signo multiplies the line's amount (or quantity for DTE/DTP).
CREATE TABLE rConcepto_BPS (
  id_Concepto INTEGER NOT NULL,
  CodBPS TEXT COLLATE NOCASE NOT NULL,
  Signo INTEGER NOT NULL DEFAULT 1,
  PRIMARY KEY (id_Concepto, CodBPS)
);
CREATE INDEX ix_rConcepto_BPS_Cod ON rConcepto_BPS(CodBPS);

------------------------------------------------------------------------------
-- Liquidations, calendar, leave
------------------------------------------------------------------------------

-- One liquidation of one contract for one month and type, with its totals.
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
CREATE INDEX ix_Encabezados_Contrato ON Encabezados(id_Contrato, MesDeLiq, Id_TipoLiq);
CREATE INDEX ix_Encabezados_Tipo ON Encabezados(Id_TipoLiq, MesDeLiq);

-- The lines of a liquidation.
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
  DTP REAL
);
CREATE INDEX ix_Datos_Liquidacion_Encabezado ON Datos_Liquidacion(id_Encabezado);
CREATE INDEX ix_Datos_Liquidacion_Concepto ON Datos_Liquidacion(id_Concepto);

-- Liquidation calendar: one entry per type and month, either for one
-- contract (id_contrato) or for the contracts meeting CondCalLiq.
CREATE TABLE Calendario_liq (
  id_Liquidacion INTEGER PRIMARY KEY,
  id_TipoLiq INTEGER,
  Fecha TEXT,
  id_contrato INTEGER,
  CondCalLiq TEXT COLLATE NOCASE
);
CREATE INDEX ix_Calendario_liq ON Calendario_liq(id_TipoLiq, id_contrato);

-- Leave taken or paid. A leave derived from a liquidation has that header's
-- id as its own id, so deriving it twice is refused by the key.
CREATE TABLE licencias (
  id_Lic INTEGER PRIMARY KEY,
  id_Contrato INTEGER,
  Desde TEXT,
  Hasta TEXT,
  CantDias REAL,
  Anticipada INTEGER DEFAULT 0
);
CREATE INDEX ix_licencias_Contrato ON licencias(id_Contrato);

-- Which liquidation (and which of its lines) paid a leave.
CREATE TABLE rLic_Enc (
  id_lic INTEGER,
  id_Encabezado INTEGER,
  id_DatoLiq INTEGER
);
CREATE INDEX ix_rLic_Enc_Lic ON rLic_Enc(id_lic);
CREATE INDEX ix_rLic_Enc_Dato ON rLic_Enc(id_DatoLiq);

------------------------------------------------------------------------------
-- Scratch table of the transfer (id maps, duplicate lists). Values are text
-- and always read back through Val; id numbers the rows in insertion order.
------------------------------------------------------------------------------

CREATE TABLE AuxOtrosRep (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  C1 TEXT COLLATE NOCASE,
  C2 TEXT COLLATE NOCASE,
  C3 TEXT COLLATE NOCASE
);

------------------------------------------------------------------------------
-- Saved queries
------------------------------------------------------------------------------

-- Contracts that already have an insurer (BSE) registration.
CREATE VIEW Con_Planilla_BSE AS
  SELECT DISTINCT R.idContrato AS idContrato
  FROM rPlanillas AS R JOIN Planillas AS P ON P.id_planilla = R.idPlanilla
  WHERE P.id_Tplanilla = 1;

-- Contracts that already have a labour ministry (MTSS) registration.
CREATE VIEW Con_Planilla_MTSS AS
  SELECT DISTINCT R.idContrato AS idContrato
  FROM rPlanillas AS R JOIN Planillas AS P ON P.id_planilla = R.idPlanilla
  WHERE P.id_Tplanilla = 2;

-- Contracts that already have a social security (BPS) registration.
CREATE VIEW Con_Planilla_BPS AS
  SELECT DISTINCT R.idContrato AS idContrato
  FROM rPlanillas AS R JOIN Planillas AS P ON P.id_planilla = R.idPlanilla
  WHERE P.id_Tplanilla = 3;

-- Worked days per liquidation line. Only lines of concepts related to 'DTE'
-- or 'DTP' in rConcepto_BPS appear: their quantity (times the relation's
-- sign) is the days worked (DTE) and the days paid (DTP) of the line; a
-- concept related to only one of the two gives 0 for the other. Lines of
-- other concepts are absent and keep the worked days they came with. The
-- view is not aggregated so that a lookup by id_Dato uses the line's key.
CREATE VIEW CDetaLiq_DiasTrab AS
  SELECT DL.id_Dato AS id_Dato,
         COALESCE(DL.Cantidad, 0.0) * COALESCE(
           (SELECT SUM(R.Signo) FROM rConcepto_BPS AS R
            WHERE R.id_Concepto = DL.id_Concepto AND R.CodBPS = 'DTE'), 0.0) AS DTE,
         COALESCE(DL.Cantidad, 0.0) * COALESCE(
           (SELECT SUM(R.Signo) FROM rConcepto_BPS AS R
            WHERE R.id_Concepto = DL.id_Concepto AND R.CodBPS = 'DTP'), 0.0) AS DTP
  FROM Datos_Liquidacion AS DL
  WHERE DL.id_Concepto IN
        (SELECT id_Concepto FROM rConcepto_BPS WHERE CodBPS IN ('DTE', 'DTP'));

-- BPS totals of every liquidation header, computed from its lines through
-- rConcepto_BPS: each Tot column is the sum of Monto * Signo of the header's
-- lines whose concept is related to that code (TotApo: 'APORTE', TotLiq:
-- 'LIQUIDO', TotOtrosH: 'OTROSH', the AD columns: the additional part), and
-- DTE/DTP the sum of Cantidad * Signo of its 'DTE'/'DTP' lines (the same
-- days CDetaLiq_DiasTrab gives per line). Every header appears, with zeros
-- when it has no related line.
CREATE VIEW cLiqTotBPS AS
  SELECT E.id_Encabezado AS id_Encabezado,
         COALESCE(T.TotCod1, 0.0) AS TotCod1,
         COALESCE(T.TotCod2, 0.0) AS TotCod2,
         COALESCE(T.TotCod5, 0.0) AS TotCod5,
         COALESCE(T.TotCod7, 0.0) AS TotCod7,
         COALESCE(T.TotCod8, 0.0) AS TotCod8,
         COALESCE(T.TotCod41, 0.0) AS TotCod41,
         COALESCE(T.TotOtrosH, 0.0) AS TotOtrosH,
         COALESCE(T.TotApo, 0.0) AS TotApo,
         COALESCE(T.TotLiq, 0.0) AS TotLiq,
         COALESCE(T.DTE, 0.0) AS DTE,
         COALESCE(T.DTP, 0.0) AS DTP,
         COALESCE(T.TotCod1AD, 0.0) AS TotCod1AD,
         COALESCE(T.TotCod5AD, 0.0) AS TotCod5AD,
         COALESCE(T.TotOtrosHAD, 0.0) AS TotOtrosHAD
  FROM Encabezados AS E
  LEFT JOIN (
    SELECT DL.id_Encabezado AS id_Encabezado,
           SUM(CASE WHEN R.CodBPS = '1' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod1,
           SUM(CASE WHEN R.CodBPS = '2' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod2,
           SUM(CASE WHEN R.CodBPS = '5' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod5,
           SUM(CASE WHEN R.CodBPS = '7' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod7,
           SUM(CASE WHEN R.CodBPS = '8' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod8,
           SUM(CASE WHEN R.CodBPS = '41' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod41,
           SUM(CASE WHEN R.CodBPS = 'OTROSH' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotOtrosH,
           SUM(CASE WHEN R.CodBPS = 'APORTE' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotApo,
           SUM(CASE WHEN R.CodBPS = 'LIQUIDO' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotLiq,
           SUM(CASE WHEN R.CodBPS = 'DTE' THEN DL.Cantidad * R.Signo ELSE 0.0 END) AS DTE,
           SUM(CASE WHEN R.CodBPS = 'DTP' THEN DL.Cantidad * R.Signo ELSE 0.0 END) AS DTP,
           SUM(CASE WHEN R.CodBPS = '1AD' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod1AD,
           SUM(CASE WHEN R.CodBPS = '5AD' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotCod5AD,
           SUM(CASE WHEN R.CodBPS = 'OTROSHAD' THEN DL.Monto * R.Signo ELSE 0.0 END) AS TotOtrosHAD
    FROM Datos_Liquidacion AS DL
    JOIN rConcepto_BPS AS R ON R.id_Concepto = DL.id_Concepto
    GROUP BY DL.id_Encabezado
  ) AS T ON T.id_Encabezado = E.id_Encabezado;
