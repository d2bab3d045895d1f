-- A hospital's reading rooms: ten configurations, one for each vendor format and one more, and
-- forty workstations. Irregular data as in real sites: old rows with NULL in the columns that were
-- added later (3), flags stored as -1 and as 1, and a workstation whose configuration no longer
-- exists (ANNEX-02).

BEGIN;

INSERT INTO Interface_PACS_cfg (
  config_id, pacs_type, description, request_filename, response_filename,
  bidirectional, response_for_paused_jobs, response_for_aborted_jobs, response_for_nonrequests,
  ins_ovr_before_pacs, flag1, user_mapping_option, pacs_request_password, pacs_response_password,
  last_user_id, last_change_date) VALUES
(1, 1, 'Default Configuration', 'C:\pacs\request.xml', 'C:\pacs\response.xml',
  -1, -1, 0, 0, 8, 10, 1, 0, 0, 1, '2023-02-06 08:12:40'),
(2, 2, 'CT and MR, main building', '\\nas01\ris\ct\request.xml', '\\nas01\ris\ct\response.xml',
  1, 0, 1, 0, 8, 0, 0, 1, 1, 12, '2023-05-22 16:03:11'),
(3, 4, 'Broker (old)', '', '',
  1, 0, 0, 0, 0, 0, 0, 0, 0, 3, '2016-11-30 10:45:00'),
(4, 5, 'Broker, reading room 4', '', '',
  1, 1, 1, 0, 0, 10, 0, 0, 0, 12, '2024-01-15 09:30:27'),
(5, 8, 'Teleradiology listener', '', 'https://ris.example.org/open?acc={11}&id={AF}',
  1, 1, 1, 1, 8, 10, 4, 2, 0, 9, '2024-03-04 13:58:02'),
(6, 9, 'O''Neil Clinic', '\\oneil-fs\exchange\request.xml', 'MSH|^~\&|CV|ONEIL|{AF}',
  1, 0, 0, 0, 10, 0, 6, 0, 2, 4, '2024-06-18 07:41:55'),
(7, 7, 'Custom map, "Annex" CT', 'C:\pacs\ct_request.xml', 'C:\pacs\ct_response.xml',
  1, 1, 0, 0, 10, 8, 0, 1, 0, 12, '2024-09-09 11:20:36'),
(8, 3, 'Kårdiologi Łódź', 'D:\wymiana\zlecenie.xml', 'D:\wymiana\odpowiedź.xml',
  -1, 0, 0, 0, 8, 10, 2, 0, 0, 4, '2024-10-01 15:00:09'),
(9, 0, 'Ward round, no integration', '', '',
  0, 0, 0, 0, 0, 0, 0, 1, 0, 1, '2025-01-20 12:00:00'),
(12, 1, 'Übergang – Zürich', 'C:\zh\anfrage.xml', 'C:\zh\antwort.xml',
  1, 0, 0, 1, 8, 10, 3, 2, 1, 9, '2025-02-11 17:22:48');

-- The columns that were added later, for every row but the old one.
UPDATE Interface_PACS_cfg SET
  string1 = '', string2 = '', string3 = '', string4 = '', string5 = '',
  flag2 = 0, flag3 = 0, flag4 = 0, flag5 = 0, flag6 = 0, flag7 = 0, flag8 = 0, flag9 = 0,
  flag10 = 1, flag11 = 0, flag12 = 0, flag13 = 0, flag14 = 0, flag15 = 0, flag16 = 0, flag17 = 0,
  flag18 = 0
WHERE config_id <> 3;

UPDATE Interface_PACS_cfg SET flag7 = -1, flag14 = -1, flag9 = 10, flag10 = 7 WHERE config_id = 2;
UPDATE Interface_PACS_cfg SET flag12 = -1, flag13 = -1, flag8 = 10 WHERE config_id = 4;
UPDATE Interface_PACS_cfg SET
  flag2 = 1, flag3 = 1, flag4 = 2, flag6 = 10000, flag8 = 5, flag9 = 35, flag10 = 27, flag11 = 2,
  string2 = '7,11', string3 = 'Accession ID,Account', flag18 = 1
WHERE config_id = 5;
UPDATE Interface_PACS_cfg SET
  flag2 = 2, string1 = 'ClinicMap.xml', string2 = '1', flag9 = 45, flag10 = 24, flag15 = -1
WHERE config_id = 6;
UPDATE Interface_PACS_cfg SET
  string1 = 'AnnexCT.xml', flag3 = 1, flag4 = 1, flag5 = 1, flag7 = 1, flag8 = 5, flag9 = 30,
  flag10 = 11, flag11 = 1, string3 = 'Accession ID,Order ID', string4 = 'C:\pacs\context.xml',
  flag14 = 1, flag15 = 1, flag16 = 1, string5 = 'C:\pacs\close.xml', flag17 = 10, flag18 = 1
WHERE config_id = 7;
UPDATE Interface_PACS_cfg SET flag10 = NULL, flag3 = 1, flag4 = 0 WHERE config_id = 12;

INSERT INTO System_pc_names (pc_name, access_string, flag2) VALUES
('READ-01', 'A1', 1), ('READ-02', 'A1', 1), ('READ-03', 'A1', 1), ('READ-04', 'A1', 1),
('READ-05', 'A1', 1), ('READ-06', 'A1', 1), ('READ-07', 'A1', 1), ('READ-08', 'A1', 1),
('READ-09', 'A1', 1), ('READ-10', 'A1', 1), ('READ-11', 'A1', 0), ('READ-12', 'A1', 0),
('CT-CONSOLE-1', 'B2', 1), ('CT-CONSOLE-2', 'B2', 1), ('CT-CONSOLE-3', 'B2', 1),
('MR-CONSOLE-1', 'B2', 1), ('MR-CONSOLE-2', 'B2', 1),
('ANNEX-01', 'B2', 1), ('ANNEX-02', 'B2', 1), ('ANNEX-03', 'B2', 0),
('ER-TRAUMA-1', 'C1', 1), ('ER-TRAUMA-2', 'C1', 1), ('ER-DESK', 'C1', 0),
('MAMMO-01', 'C1', 1), ('MAMMO-02', 'C1', 1),
('CARDIO-01', 'C1', 1), ('CARDIO-02', 'C1', 0),
('CLINIC-N1', NULL, 1), ('CLINIC-N2', NULL, 1),
('RÖNTGEN-ZH-1', NULL, 1), ('RÖNTGEN-ZH-2', NULL, 1),
('TELERAD-01', NULL, 1), ('TELERAD-02', NULL, 1), ('TELERAD-03', NULL, 1),
('WARD-3A', NULL, 0), ('WARD-3B', NULL, 0), ('WARD-5', NULL, 0),
('TYPIST-01', NULL, 0), ('TYPIST-02', NULL, 0), ('LIBRARY', NULL, 0);

INSERT INTO System_workstation_cfg
  (pc_name, application_id, key_name, key_value, user_id, flag1) VALUES
('READ-01', 38, 'PACSConfig', '1', -1, 0), ('READ-02', 38, 'PACSConfig', '1', -1, 0),
('READ-03', 38, 'PACSConfig', '1', -1, 0), ('READ-04', 38, 'PACSConfig', '4', -1, 0),
('READ-05', 38, 'PACSConfig', '2', -1, 0), ('READ-06', 38, 'PACSConfig', '2', -1, 0),
('READ-07', 38, 'PACSConfig', '7', -1, 0), ('READ-08', 38, 'PACSConfig', '1', -1, 0),
('READ-09', 38, 'PACSConfig', '3', -1, 0), ('READ-10', 38, 'PACSConfig', '0', -1, 0),
('READ-11', 38, 'PACSConfig', '1', -1, 0),
('CT-CONSOLE-1', 38, 'PACSConfig', '2', -1, 0), ('CT-CONSOLE-2', 38, 'PACSConfig', '2', -1, 0),
('CT-CONSOLE-3', 38, 'PACSConfig', '7', -1, 0),
('MR-CONSOLE-1', 38, 'PACSConfig', '2', -1, 0), ('MR-CONSOLE-2', 38, 'PACSConfig', '2', -1, 0),
('ANNEX-01', 38, 'PACSConfig', '7', -1, 0), ('ANNEX-02', 38, 'PACSConfig', '11', -1, 0),
('ER-TRAUMA-1', 38, 'PACSConfig', '4', -1, 0), ('ER-TRAUMA-2', 38, 'PACSConfig', '4', -1, 0),
('MAMMO-01', 38, 'PACSConfig', '3', -1, 0), ('MAMMO-02', 38, 'PACSConfig', '3', -1, 0),
('CARDIO-01', 38, 'PACSConfig', '8', -1, 0), ('CARDIO-02', 38, 'PACSConfig', NULL, -1, 0),
('CLINIC-N1', 38, 'PACSConfig', '6', -1, 0), ('CLINIC-N2', 38, 'PACSConfig', '6', -1, 0),
('RÖNTGEN-ZH-1', 38, 'PACSConfig', '12', -1, 0), ('RÖNTGEN-ZH-2', 38, 'PACSConfig', '12', -1, 0),
('TELERAD-01', 38, 'PACSConfig', '5', -1, 0), ('TELERAD-02', 38, 'PACSConfig', '5', -1, 0),
('TELERAD-03', 38, 'PACSConfig', '5', -1, 0),
('WARD-3A', 38, 'PACSConfig', '9', -1, 0), ('WARD-3B', 38, 'PACSConfig', '9', -1, 0),
-- Settings of other programs.
('READ-07', 38, 'WindowLeft', '120', 12, 0), ('READ-07', 12, 'Microphone', 'Desk', 12, 0),
('TYPIST-01', 12, 'FootPedal', 'COM3', 30, 0);

INSERT INTO System_offline_db_updates VALUES (-1, 3, '2025-02-11 17:22:48', 0, NULL);

COMMIT;
