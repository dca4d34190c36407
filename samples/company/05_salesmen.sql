-- Salesmen and their DS types: what kind of salesman each is, and whether he carries a handheld.

-- The operational category group in force: only its DS types may be given to a salesman.
CREATE TABLE tbl_velk_configabstract (
  ScreenCode TEXT NOT NULL COLLATE NOCASE,
  ScreenName TEXT NOT NULL COLLATE NOCASE,
  flag TEXT NOT NULL COLLATE NOCASE,
  PRIMARY KEY (ScreenCode, ScreenName)
) WITHOUT ROWID;
GO
INSERT INTO tbl_velk_configabstract (ScreenCode, ScreenName, flag)
VALUES ('OCGDS', 'OperationalCategoryGroup', 'GR1');
GO

CREATE TABLE Salesman (
  SalesmanID INTEGER PRIMARY KEY,
  Salesman_name TEXT NOT NULL COLLATE NOCASE UNIQUE CHECK (length(Salesman_name) BETWEEN 1 AND 50),
  Address TEXT NOT NULL DEFAULT '' CHECK (length(Address) <= 255),
  ResidentialNUmber TEXT NOT NULL DEFAULT '' CHECK (length(ResidentialNUmber) <= 50),
  MobileNumber TEXT NOT NULL DEFAULT '' CHECK (length(MobileNumber) <= 50),
  SkillLevel INTEGER NOT NULL DEFAULT 0,
  Remarks TEXT NOT NULL DEFAULT ''
);
GO
INSERT INTO Salesman (SalesmanID, Salesman_name, Address, ResidentialNUmber, MobileNumber)
VALUES
  (1, 'Anil Kamble', '14 Ganesh Peth, Pune', '020-24450011', '9822011223'),
  (2, 'Bhaskar Rao', '7 Dapodi, Pune', '', '9850123456'),
  (3, 'Dilip Sawant', '9 Kasba Peth, Pune', '020-24478800', '9890554433'),
  (4, 'Ganpat Shelar', '22 Dhankawadi, Pune', '', ''),
  (5, 'Joseph D''Silva', '3 Fatima Nagar, Pune', '020-26811717', '9823098230'),
  (6, 'Kiran Pawar', '51 Chinchwad', '020-27453311', '9960112233'),
  (7, 'Mangesh Gaikwad', '18 Hadapsar, Pune', '', '9881234509'),
  (8, 'Noël Pinto', '5 Khadki Bazaar, Pune', '020-25812299', '9822334455');
GO

-- DSTypeCtlPos 1: the type; 2: the handheld. A default value is one that salesmen may be given by
-- import.
CREATE TABLE DSType_Master (
  DSTypeID INTEGER PRIMARY KEY,
  DSTypeName TEXT NOT NULL COLLATE NOCASE,
  DSTypeValue TEXT NOT NULL COLLATE NOCASE,
  DSTypeCtlPos INTEGER NOT NULL CHECK (DSTypeCtlPos IN (1, 2)),
  Active INTEGER DEFAULT 1,
  OCGtype TEXT NOT NULL COLLATE NOCASE,
  IsDefault INTEGER NOT NULL DEFAULT 1,
  UNIQUE (DSTypeCtlPos, OCGtype, DSTypeName, DSTypeValue)
);
GO
INSERT INTO DSType_Master
  (DSTypeID, DSTypeName, DSTypeValue, DSTypeCtlPos, Active, OCGtype, IsDefault)
VALUES
  (1, 'DSType', 'Retail', 1, 1, 'GR1', 1),
  (2, 'DSType', 'Wholesale', 1, 1, 'GR1', 1),
  (3, 'DSType', 'Rural', 1, 1, 'GR1', 1),
  (4, 'DSType', 'Van Sales', 1, 1, 'GR1', 0),
  (5, 'DSType', 'Institution', 1, 0, 'GR1', 1),
  (6, 'DSType', 'Export', 1, 1, 'GR2', 1),
  (7, 'HandHeld DS', 'YES', 2, 1, 'GR1', 1),
  (8, 'HandHeld DS', 'NO', 2, 1, 'GR1', 1);
GO

CREATE TABLE DStype_Details (
  SalesmanID INTEGER NOT NULL REFERENCES Salesman,
  DSTypeID INTEGER NOT NULL REFERENCES DSType_Master,
  PRIMARY KEY (SalesmanID, DSTypeID)
) WITHOUT ROWID;
GO
INSERT INTO DStype_Details (SalesmanID, DSTypeID)
VALUES (1, 1), (1, 7), (2, 2), (2, 8), (3, 1), (4, 3), (5, 2), (5, 7), (6, 1), (6, 8), (8, 3);
GO

INSERT INTO StoredProcedure (name, step, statement, arguments)
VALUES
  -- A salesman of that name is brought up to date.
  ('sp_save_salesman', 1,
   'INSERT INTO Salesman
      (Salesman_name, Address, ResidentialNUmber, MobileNumber, SkillLevel, Remarks)
    VALUES (?, ?, ?, ?, ?, ?)
    ON CONFLICT (Salesman_name) DO UPDATE SET
      Address = excluded.Address,
      ResidentialNUmber = excluded.ResidentialNUmber,
      MobileNumber = excluded.MobileNumber',
   '1,2,3,4,5,6'),

  -- Both values replace what the salesman had. An unknown salesman, type or handheld value makes a
  -- null key, and the call is refused as a whole.
  ('sp_save_DsType', 1,
   'DELETE FROM DStype_Details
    WHERE SalesmanID = (SELECT SalesmanID FROM Salesman WHERE Salesman_name = ?)',
   '1'),
  ('sp_save_DsType', 2,
   'INSERT INTO DStype_Details (SalesmanID, DSTypeID)
    VALUES (
      (SELECT SalesmanID FROM Salesman WHERE Salesman_name = ?),
      (SELECT DSTypeID FROM DSType_Master
       WHERE DSTypeName = ? AND DSTypeValue = ? AND DSTypeCtlPos = 1
         AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = ''OCGDS'')))',
   '1,2,3'),
  ('sp_save_DsType', 3,
   'INSERT INTO DStype_Details (SalesmanID, DSTypeID)
    VALUES (
      (SELECT SalesmanID FROM Salesman WHERE Salesman_name = ?),
      (SELECT DSTypeID FROM DSType_Master
       WHERE DSTypeName = ? AND DSTypeValue = ? AND DSTypeCtlPos = 2))',
   '1,4,5'),

  -- 1 when the caption is the name of the DS types here, else 0.
  ('sp_Check_DSCaption', 1,
   'SELECT EXISTS (SELECT 1 FROM DSType_Master WHERE DSTypeName = ? AND DSTypeCtlPos = 1)',
   '1'),

  -- 0 when the value is a DS type that is no default; no row when it is none at all.
  ('Velk_sp_checkDefault_DSTypeValue', 1,
   'SELECT IsDefault FROM DSType_Master
    WHERE DSTypeName = ''DSType'' AND DSTypeValue = ? AND DSTypeCtlPos = 1
      AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = ''OCGDS'')',
   '1');
GO
