-- The tables of a site that the component reads and writes, for SQLite.
-- Names of workstations and keys are compared without regard to case.

CREATE TABLE Interface_PACS_cfg (
  config_id smallint NOT NULL PRIMARY KEY,
  pacs_type smallint,
  description varchar(255),
  request_filename varchar(255),
  response_filename varchar(2000),
  bidirectional smallint,
  response_for_paused_jobs smallint,
  response_for_aborted_jobs smallint,
  response_for_nonrequests smallint,
  ins_ovr_before_pacs smallint,
  flag1 smallint,
  user_mapping_option smallint,
  pacs_request_password smallint,
  pacs_response_password smallint,
  last_user_id integer,
  last_change_date datetime,
  string1 varchar(255) NULL,
  string2 varchar(1000) NULL,
  flag2 smallint NULL,
  flag3 smallint NULL,
  flag4 smallint NULL,
  flag5 smallint NULL,
  flag6 integer NULL,
  flag7 smallint NULL,
  flag8 smallint NULL,
  flag9 smallint NULL,
  flag10 smallint NULL,
  flag11 smallint NULL,
  string3 varchar(1000) NULL,
  string4 varchar(255) NULL,
  flag12 smallint NULL,
  flag13 smallint NULL,
  flag14 smallint NULL,
  flag15 smallint NULL,
  flag16 smallint NULL,
  string5 varchar(255) NULL,
  flag17 smallint NULL,
  flag18 smallint NULL
);

CREATE TABLE System_pc_names (
  pc_name varchar(50) COLLATE NOCASE NOT NULL PRIMARY KEY,
  access_string varchar(255) NULL,
  flag2 smallint NULL
);

-- The primary key serves the query for one workstation's configuration, which runs for every row of
-- System_pc_names.
CREATE TABLE System_workstation_cfg (
  pc_name varchar(50) COLLATE NOCASE NOT NULL,
  application_id smallint NOT NULL,
  key_name varchar(50) COLLATE NOCASE NOT NULL,
  key_value varchar(255) NULL,
  user_id integer NULL,
  flag1 smallint NULL,
  PRIMARY KEY (pc_name, key_name, application_id)
);

CREATE TABLE System_offline_db_updates (
  user_id integer NOT NULL,
  update_type smallint NOT NULL,
  update_date datetime NOT NULL,
  flag1 smallint NOT NULL,
  string1 varchar(255) NULL
);
