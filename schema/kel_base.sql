-- schema/kel_base.sql — KEL's own base data of a fresh company.
--
-- Run after kel.sql. Holds what every new KEL company starts with: the
-- standard concepts (ids up to 100; the importer never hands out ids below
-- 101), the liquidation types, the employer contributions of each salary
-- type, the local currency, the small catalogues contracts refer to, the
-- neutral branch and working-time scheme (id 0), and the relation of concepts
-- to the totals reported to BPS that the views cLiqTotBPS and
-- CDetaLiq_DiasTrab read. The company record itself is not base data.

-- Concepts. The BPS totalisation defaults are 17 (code 1), 13 (code 2),
-- 45 (code 5), 12 (code 7), 71 (code 8), 53 (Haberes) and 4 (Descuentos);
-- 14, 20, 22 and 66 are the leave concepts.
INSERT INTO Conceptos (id_Concepto, Codigo, NombreReducido, Nombre, id_ConsLiquidacion, TipoDato,
                       TipoOperacion, ModificaNominal, RedoCoef, RedoCant, id_Moneda, FCant, FCoef,
                       VisibleEnRec) VALUES
  (1, '1', 'Sueldo', 'Sueldo mensual', NULL, 0, 'S', -1, 2, 2, 1, '', '', -1),
  (2, '2', 'Jornales', 'Jornales trabajados', NULL, 0, 'S', -1, 2, 2, 1, '', '', -1),
  (3, '3', 'Días trab.', 'Días trabajados', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (4, '4', 'Tot. desc.', 'Total descuentos', NULL, 0, 'R', 0, 2, 2, 1, '', '', -1),
  (5, '5', 'Ap. jubil.', 'Aporte jubilatorio', NULL, 1, 'R', 0, 2, 2, 1, '', '15', -1),
  (6, '6', 'FONASA', 'Aporte seguro de salud (FONASA)', NULL, 1, 'R', 0, 2, 2, 1, '', '4.5', -1),
  (7, '7', 'FRL', 'Fondo de reconversión laboral', NULL, 1, 'R', 0, 2, 2, 1, '', '0.1', -1),
  (8, '8', 'IRPF', 'Retención IRPF', NULL, 0, 'R', 0, 2, 2, 1, '', '', -1),
  (9, '9', 'Hs. extra', 'Horas extra', NULL, 2, 'S', -1, 2, 2, 1, '', '', -1),
  (10, '10', 'Presentismo', 'Presentismo', NULL, 0, 'S', -1, 2, 2, 1, '', '', -1),
  (11, '11', 'Nocturnidad', 'Nocturnidad', NULL, 0, 'S', -1, 2, 2, 1, '', '', -1),
  (12, '12', 'Grav. parc.', 'Partidas gravadas parcialmente', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (13, '13', 'Aguinaldo', 'Aguinaldo', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (14, '14', 'Licencia', 'Licencia', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (15, '15', 'Sal. vacac.', 'Salario vacacional', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (16, '16', 'Feriado', 'Feriado trabajado', NULL, 2, 'S', -1, 2, 2, 1, '', '', -1),
  (17, '17', 'Imponible', 'Monto imponible mensual', NULL, 0, 'S', 0, 2, 2, 1, '', '', 0),
  (18, '18', 'Anticipo', 'Anticipo de sueldo', NULL, 0, 'R', 0, 2, 2, 1, '', '', -1),
  (19, '19', 'Ret. judicial', 'Retención judicial', NULL, 1, 'R', 0, 2, 2, 1, '', '', -1),
  (20, '20', 'Lic. gozada', 'Licencia gozada', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (21, '21', 'Viáticos', 'Viáticos', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (22, '22', 'Lic. no goz.', 'Licencia no gozada', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (23, '23', 'Despido', 'Indemnización por despido', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (24, '24', 'Ticket alim.', 'Ticket alimentación', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (25, '25', 'Cuota sind.', 'Cuota sindical', NULL, 0, 'R', 0, 2, 2, 1, '', '', -1),
  (45, '45', 'Adic. IRPF', 'Adicional IRPF', NULL, 0, 'R', 0, 2, 2, 1, '', '', -1),
  (53, '53', 'Tot. hab.', 'Total haberes', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (66, '66', 'Lic. antic.', 'Licencia anticipada', NULL, 2, 'S', 0, 2, 2, 1, '', '', -1),
  (71, '71', 'No grav.', 'Monto no gravado IRPF', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (72, '72', 'Subsidio', 'Subsidio por enfermedad', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (81, '81', 'Impon. adic.', 'Monto imponible adicional', NULL, 0, 'S', 0, 2, 2, 1, '', '', 0),
  (82, '82', 'Adic. IRPF ad.', 'Adicional IRPF parte adicional', NULL, 0, 'R', 0, 2, 2, 1, '', '', -1),
  (83, '83', 'Otros hab. ad.', 'Otros haberes parte adicional', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1),
  (100, '100', 'Líquido', 'Líquido a cobrar', NULL, 0, 'S', 0, 2, 2, 1, '', '', -1);

-- Liquidation types. Salary types carry the employer contributions; types
-- liquidated per employee get one calendar entry per contract, the others
-- one entry per month for the contracts of a remuneration type.
INSERT INTO TiposLiquidacion (id_TipoLiq, Nombre, Color, Salarial, Activa, ParaEmp, CodigoParaBPS) VALUES
  (1, 'Mensual', 0, -1, -1, 0, 1),
  (2, 'Quincenal', 0, -1, -1, 0, 1),
  (3, 'Aguinaldo', 0, 0, -1, 0, 2),
  (4, 'Egreso', 0, -1, -1, -1, 1),
  (5, 'Licencia', 0, -1, -1, -1, 1),
  (6, 'Licencia anticipada', 0, -1, -1, -1, 1),
  (7, 'Salario vacacional', 0, 0, -1, -1, 1);

INSERT INTO AportesPatronales (id_Aporte, Codigo, Nombre, Porcentaje) VALUES
  (1, 'JUB', 'Aporte jubilatorio patronal', 7.5),
  (2, 'FONASA', 'Seguro de salud patronal', 5),
  (3, 'FRL', 'Fondo de reconversión laboral patronal', 0.1),
  (4, 'FGCL', 'Fondo de garantía de créditos laborales', 0.025),
  (5, 'VCM', 'Aporte sobre vales de comida', 7.5);

-- Type 1 carries every contribution; the other salary types all but 'VCM',
-- as the importer gives to the salary types it creates.
INSERT INTO rAporPat_TipoLiq (id_Aporte, Codigo, id_TipoLiq) VALUES
  (1, 'JUB', 1), (2, 'FONASA', 1), (3, 'FRL', 1), (4, 'FGCL', 1), (5, 'VCM', 1),
  (1, 'JUB', 2), (2, 'FONASA', 2), (3, 'FRL', 2), (4, 'FGCL', 2),
  (1, 'JUB', 4), (2, 'FONASA', 4), (3, 'FRL', 4), (4, 'FGCL', 4),
  (1, 'JUB', 5), (2, 'FONASA', 5), (3, 'FRL', 5), (4, 'FGCL', 5),
  (1, 'JUB', 6), (2, 'FONASA', 6), (3, 'FRL', 6), (4, 'FGCL', 6);

INSERT INTO Monedas (id_Moneda, Nombre, Simbolo) VALUES
  (1, 'Peso uruguayo', '$'),
  (2, 'Dólar estadounidense', 'U$S');
INSERT INTO Cotizacion (id_Moneda, Fecha, Valor) VALUES (1, '2000-01-01', 1);

INSERT INTO TiposRemuneracion (id_TipoRem, Descripcion) VALUES
  (1, 'Mensual'), (2, 'Jornalero'), (3, 'Por hora');
INSERT INTO CobraPor (id_CobraPor, Descripcion) VALUES
  (1, 'Hora'), (4, 'Día'), (7, 'Quincena'), (8, 'Mes');

INSERT INTO Sucursales (id_Sucursal, Nombre, Direccion, Telefono, Email, Contacto, InicioAct, id_Dpto)
  VALUES (0, 'Sin sucursal', '', '', '', '', NULL, NULL);
INSERT INTO TRegHorario (id_Regimen, Descripcion, CantHxDia, HorasXSem)
  VALUES (0, 'Sin régimen', 8, 44);

-- Concepts behind each BPS total, other earnings, contributions, net pay and
-- worked days (see rConcepto_BPS in kel.sql).
INSERT INTO rConcepto_BPS (id_Concepto, CodBPS, Signo) VALUES
  (17, '1', 1),
  (13, '2', 1),
  (45, '5', 1),
  (12, '7', 1),
  (71, '8', 1),
  (72, '41', 1),
  (81, '1AD', 1),
  (82, '5AD', 1),
  (9, 'OTROSH', 1),
  (10, 'OTROSH', 1),
  (11, 'OTROSH', 1),
  (16, 'OTROSH', 1),
  (83, 'OTROSHAD', 1),
  (5, 'APORTE', 1),
  (6, 'APORTE', 1),
  (7, 'APORTE', 1),
  (53, 'LIQUIDO', 1),
  (4, 'LIQUIDO', -1),
  (3, 'DTE', 1),
  (3, 'DTP', 1),
  (20, 'DTP', 1);
