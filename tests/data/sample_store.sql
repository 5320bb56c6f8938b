-- Sample rows of every table, in SQLite's words, so that the store's tests and
-- benchmarks do not depend on the dialect they measure. Dates are Jet day numbers
-- (46348 is 22/11/2026).
INSERT INTO Tbl_Reparto (Reparto) VALUES ('Reparto A'), ('Stampaggio'), ('Assemblaggio');
INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, ID_REPARTO, REPARTO, Costruttore, Anno) VALUES
  ('PRESSA', 'AX100', 'Attiva', 1, 'Reparto A', 'Meccanica Srl', '2001'),
  ('Pressa', 'BX200', 'Ferma', 1, 'Reparto A', 'Meccanica Srl', '2005'),
  ('TORNIO', 'T-50 dell''officina', 'Attiva', 2, 'Stampaggio', 'Utensili Spa', '1999');
INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('10', 1), ('2', 1), ('A3', 1), ('1', 2), ('7', 3);
INSERT INTO Tbl_Proc_General_Macc (ID_MODELLO, Macchina, Modello, Tempo_Minuti) VALUES (1, 'PRESSA', 'AX100', 90);
INSERT INTO Tbl_Proc_General (ID_MODELLO, Num, Titolo, Procedura, Minuti) VALUES
  (1, 1, 'Controllo olio', 'Verifica livello', 30), (1, 2, 'Pulizia', 'Pulire i filtri', 60);
INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello, Manutenzione_Tipo, Tempo_Minuti, Tempo_Ore,
  Minuti_Sett, Num_Macchine, Tot_Minuti_Sett, Tot_Ore_Sett) VALUES
  (1, 2, 'PRESSA', 'AX100', 'Mensile', 90, '01:30:00', '22,50', '3', '1.067,50', '17:47:30'),
  (1, 3, 'PRESSA', 'AX100', 'Bimestrale', 60, '01:00:00', '7,50', '3', '22,50', '00:22:30');
INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Num, Titolo, Procedura, Minuti) VALUES
  (1, 2, 1, 'Controllo olio', 'Verifica livello', 30), (1, 2, 2, 'Pulizia', 'Pulire i filtri', 60),
  (1, 3, 1, 'Ingrassaggio', 'Ingrassare', 60);
INSERT INTO Tbl_Certif_Proced_Manut (ID_Assegna_M, Scheda, Data_Scheda, Rev, Data_Rev) VALUES
  (1, '1_2PRE_AX1_Men', 46300, 0, 46300), (2, '1_3PRE_AX1_Bim', 46300, 0, 46300);
INSERT INTO Tbl_Maintenance (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, ID_MAINT_TIPO, Manutenzione_Tipo,
  Frequenza_Sett, Ultima, Prossima, Tempo_Minuti, ID_OPERATORE, Operatore) VALUES
  (1, 'PRESSA', 'AX100', 1, '10', 2, 'Mensile', 4, 46320, 46348, 90, 1, 'Rossi'),
  (1, 'PRESSA', 'AX100', 2, '2', 3, 'Bimestrale', 8, 46300, 46356, 60, 1, 'Rossi'),
  (3, 'TORNIO', 'T-50 dell''officina', 5, '7', 2, 'Mensile', 4, 46200, 46228, 45, 2, 'Bianchi');
INSERT INTO Tbl_Maintenance_Note (ID_MAINTENANCE, ID_MODELLO, ID_NUM, ID_OPERATORE, Ultima, Avvisa, NOTE, Tipo_Nota,
  Tipo_Nota2, Images, Percorso) VALUES
  (1, 1, 1, 1, '22/11/2026', NULL, 'Cambiato olio', 'Guasto', 'Elettrico', NULL, NULL),
  (2, 1, 2, 1, '03/03/2025', NULL, 'Controllo olio e filtri', 'Manutenzione', 'Meccanico', 'a.jpg', '/tmp/a.jpg'),
  (0, 3, 5, 2, '15/03/2024', NULL, 'Rumore anomalo', 'Guasto', NULL, NULL, NULL);
INSERT INTO Tbl_Fermi_Macchina (ID_NUM, ID_MAINT_TIPO, Ferma_Dal, Giorni_Stop, TOT_Giorni_Stop, Numero_Stop) VALUES
  (1, 2, '15/11/2026', 7, 0, 1), (2, 3, NULL, 0, 5, 1);
INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "9", "10", "15") VALUES
  (1, 'PRESSA', 'AX100', 1, '10', 'Men', '', 'Men/Bim'), (1, 'PRESSA', 'AX100', 2, '2', '', 'Bim', '');
INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('CUSCINETTI', 'Pz'), ('OLIO', 'Lt');
INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Codice, Costo, Giacenza, Scorta, NOTE) VALUES
  (1, 'CUSCINETTI', 'Cuscinetto 6204', 'C6204', 12.5, 10, 2, NULL),
  (1, 'CUSCINETTI', 'Cuscinetto 6205', 'C6205', 1234.5, 1, 2, NULL),
  (2, 'OLIO', 'Olio idraulico', 'OL46', 8, 40, 5, 'ISO 46');
INSERT INTO Tbl_Images_Desc_Ricambi (ID_DESCRIZIONE_RICAMBI, Images, Percorso) VALUES (1, 'c.jpg', '/tmp/c.jpg');
INSERT INTO Tbl_Causa_Intervento (Causa_Interv) VALUES ('Rottura'), ('Usura');
INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, ID_DESCRIZIONE_RICAMBI, Descrizione,
  ID_RICAMBI, Ricambi, Quantita, Destinazione, ID_CAUSA) VALUES
  (46340, 1, 'PRESSA', 'AX100', 1, '10', 1, 'Cuscinetto 6204', 1, 'CUSCINETTI', 2, 'Motore principale', 1),
  (45720, 1, 'PRESSA', 'AX100', 2, '2', 3, 'Olio idraulico', 2, 'OLIO', 5, 'Centralina', 2),
  (45355, 3, 'TORNIO', 'T-50 dell''officina', 5, '7', 1, 'Cuscinetto 6204', 1, 'CUSCINETTI', 1, 'Mandrino', 1),
  (NULL, 1, 'PRESSA', 'AX100', 1, '10', 2, 'Cuscinetto 6205', 1, 'CUSCINETTI', 1, 'Motore principale', 2);
INSERT INTO Tbl_Fornitori (Fornitore, Nome_Soceta, "Part_IVA/Cod_Fisc", "Citta/Paese", CAP, Provincia, Via, Tel, Fax,
  Email, Url) VALUES ('Rossi Forniture', 'Rossi Srl', '01234567890', 'Brescia', '25100', 'BS', 'Via Roma 1',
  '030 1234', '030 5678', 'info@example.it', 'www.example.it');
INSERT INTO Tbl_Order (ID_RICAMBI, Ricambi, ID_DESCRIZIONE_RICAMBI, Descrizione, Codice, Quantita, ID_FORNITORE,
  Fornitore) VALUES (1, 'CUSCINETTI', 1, 'Cuscinetto 6204', 'C6204', 4, 1, 'Rossi Forniture');
INSERT INTO Tbl_Historian_Orders (DATA, ID_RICAMBI, Ricambi, ID_DESCRIZIONE_RICAMBI, Descrizione, Codice, Quantita,
  ID_FORNITORE, Fornitore) VALUES (46348, 2, 'OLIO', 3, 'Olio idraulico', 'OL46', 10, 1, 'Rossi Forniture');
INSERT INTO Tbl_Operatore (Operatore, Qualifica, Data_Nascita, Tipo, Inizio_Rapp, Fine_Rapp) VALUES
  ('Rossi', 'Elettricista', 29000, 'Interno', 40000, NULL), ('Bianchi', 'Meccanico', 30000, 'Esterno', 41000, 0);
INSERT INTO Tbl_Register (Date_Open, Date_Close, Tempo) VALUES (46348.25, 46348.3754166667, NULL);
