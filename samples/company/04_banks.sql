-- Banks and their branches.

CREATE TABLE BankMaster (
  BankCode TEXT NOT NULL COLLATE NOCASE PRIMARY KEY CHECK (length(BankCode) BETWEEN 1 AND 15),
  BankName TEXT NOT NULL CHECK (length(BankName) BETWEEN 1 AND 100)
) WITHOUT ROWID;
GO
INSERT INTO BankMaster (BankCode, BankName)
VALUES
  ('BSH', 'Bank of Sahyadri'),
  ('CCB', 'Citizens Co-operative Bank'),
  ('UBD', 'Union Bank of the Deccan');
GO

CREATE TABLE BranchMaster (
  BankCode TEXT NOT NULL COLLATE NOCASE REFERENCES BankMaster,
  BranchCode TEXT NOT NULL COLLATE NOCASE CHECK (length(BranchCode) BETWEEN 1 AND 15),
  BranchName TEXT NOT NULL CHECK (length(BranchName) BETWEEN 1 AND 100),
  PRIMARY KEY (BankCode, BranchCode)
) WITHOUT ROWID;
GO
INSERT INTO BranchMaster (BankCode, BranchCode, BranchName)
VALUES
  ('BSH', 'BSH001', 'Shivajinagar'),
  ('BSH', 'BSH002', 'Deccan Gymkhana'),
  ('CCB', 'CCB001', 'Laxmi Road'),
  ('UBD', 'UBD001', 'Pune Main'),
  ('UBD', 'UBD002', 'Pimpri');
GO

INSERT INTO StoredProcedure (name, step, statement, arguments)
VALUES
  -- Called once a branch, so that the bank is often there already. Quotes arrive doubled.
  ('sp_insert_BankMaster', 1,
   'INSERT INTO BankMaster (BankCode, BankName)
    VALUES (replace(?, '''''''''''', ''''''''), replace(?, '''''''''''', ''''''''))
    ON CONFLICT (BankCode) DO NOTHING',
   '1,2'),
  -- A branch that exists, or one of a bank that does not, is refused.
  ('sp_insert_branch', 1,
   'INSERT INTO BranchMaster (BranchCode, BranchName, BankCode) VALUES (?, ?, ?)',
   '1,2,3');
GO
