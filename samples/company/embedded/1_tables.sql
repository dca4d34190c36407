-- The tables of the sample company: what an import reads and writes.

-- The company and the colours of its screens.

CREATE TABLE Setup (
  CompanyName TEXT NOT NULL,
  OpeningDate TEXT NOT NULL  -- first transaction date; opening documents are dated before it
);

-- Row k, counted from 0, colours: 0 the screen and its frames, 1 captions and choices, 2 inputs and
-- lists; 3 to 5 belong to other screens. A colour is red + 256 * green + 65536 * blue; a negative
-- number is one of the system's own colours.
CREATE TABLE ColorSettings (
  ItemName TEXT NOT NULL,
  BackColor INTEGER,
  ForeColor INTEGER
);

-- Procedures are statements in this table. A row is one step; the steps of a call take effect
-- together or not at all, and a step that returns rows is a result of the call. "arguments" lists, for
-- each mark of the statement, the number of the parameter it takes; the highest number is how many
-- parameters the procedure has.
CREATE TABLE StoredProcedure (
  name TEXT NOT NULL COLLATE NOCASE,
  step INTEGER NOT NULL,
  statement TEXT NOT NULL,
  arguments TEXT NOT NULL,
  PRIMARY KEY (name, step)
) WITHOUT ROWID;

-- Customers, their opening documents and their opening balances.

CREATE TABLE Customer (
  CustomerID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY CHECK (length(CustomerID) BETWEEN 1 AND 15),
  CustomerName TEXT NOT NULL CHECK (length(CustomerName) BETWEEN 1 AND 150),
  Address TEXT NOT NULL DEFAULT '',
  City TEXT NOT NULL DEFAULT '',
  Phone TEXT NOT NULL DEFAULT '',
  CreditDays INTEGER NOT NULL DEFAULT 0
) WITHOUT ROWID;

-- A document needs a known customer and a date; its amounts carry no sign, the kind of note does.
CREATE TABLE CustomerDebitNote (
  DocumentID INTEGER PRIMARY KEY,
  CustomerID TEXT NOT NULL COLLATE NOCASE REFERENCES Customer,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);

CREATE TABLE CustomerCreditNote (
  DocumentID INTEGER PRIMARY KEY,
  CustomerID TEXT NOT NULL COLLATE NOCASE REFERENCES Customer,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);

-- The account's balance before the first transaction: what its opening documents still come to.
CREATE TABLE CustomerOpeningBalance (
  CustomerID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY REFERENCES Customer,
  OpeningBalance REAL NOT NULL
) WITHOUT ROWID;

-- Vendors, their accounts, opening documents and opening balances.

CREATE TABLE Vendors (
  VendorID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY CHECK (length(VendorID) BETWEEN 1 AND 15),
  VendorName TEXT NOT NULL CHECK (length(VendorName) BETWEEN 1 AND 150),
  ContactPerson TEXT NOT NULL DEFAULT '',
  Address TEXT NOT NULL DEFAULT '' CHECK (length(Address) <= 255),
  CityID INTEGER NOT NULL DEFAULT 0,
  StateID INTEGER NOT NULL DEFAULT 0,
  CountryID INTEGER NOT NULL DEFAULT 0,
  CreditTermID INTEGER NOT NULL DEFAULT 0,
  PostalCode TEXT NOT NULL DEFAULT '',
  Phone TEXT NOT NULL DEFAULT '' CHECK (length(Phone) <= 50),
  Fax TEXT NOT NULL DEFAULT '',
  AlternateCode TEXT NOT NULL DEFAULT '',
  Locality INTEGER NOT NULL DEFAULT 1 CHECK (Locality IN (1, 2)),  -- 1 local, 2 outstation
  Email TEXT NOT NULL DEFAULT '',
  TinNumber TEXT NOT NULL DEFAULT '',
  SaleType INTEGER NOT NULL DEFAULT 2 CHECK (SaleType IN (1, 2)),  -- 1 first sales, 2 second sales
  TNGST TEXT NOT NULL DEFAULT '' CHECK (length(TNGST) <= 50),
  CST TEXT NOT NULL DEFAULT '' CHECK (length(CST) <= 50),
  DrugLicense TEXT NOT NULL DEFAULT '',
  CreditDays INTEGER NOT NULL DEFAULT 0,
  Remarks TEXT NOT NULL DEFAULT '',
  PanNumber TEXT NOT NULL DEFAULT '' CHECK (length(PanNumber) <= 20)
) WITHOUT ROWID;

CREATE TABLE VendorAccount (
  VendorID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY REFERENCES Vendors,
  AccountName TEXT NOT NULL,
  GroupName TEXT NOT NULL DEFAULT 'Sundry Creditors'
) WITHOUT ROWID;

CREATE TABLE VendorDebitNote (
  DocumentID INTEGER PRIMARY KEY,
  VendorID TEXT NOT NULL COLLATE NOCASE REFERENCES Vendors,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);

CREATE TABLE VendorCreditNote (
  DocumentID INTEGER PRIMARY KEY,
  VendorID TEXT NOT NULL COLLATE NOCASE REFERENCES Vendors,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);

CREATE TABLE VendorOpeningBalance (
  VendorID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY REFERENCES Vendors,
  OpeningBalance REAL NOT NULL
) WITHOUT ROWID;

-- Banks and their branches.

CREATE TABLE BankMaster (
  BankCode TEXT NOT NULL COLLATE NOCASE PRIMARY KEY CHECK (length(BankCode) BETWEEN 1 AND 15),
  BankName TEXT NOT NULL CHECK (length(BankName) BETWEEN 1 AND 100)
) WITHOUT ROWID;

CREATE TABLE BranchMaster (
  BankCode TEXT NOT NULL COLLATE NOCASE REFERENCES BankMaster,
  BranchCode TEXT NOT NULL COLLATE NOCASE CHECK (length(BranchCode) BETWEEN 1 AND 15),
  BranchName TEXT NOT NULL CHECK (length(BranchName) BETWEEN 1 AND 100),
  PRIMARY KEY (BankCode, BranchCode)
) WITHOUT ROWID;

-- Salesmen and their DS types: what kind of salesman each is, and whether he carries a handheld.

-- The operational category group in force: only its DS types may be given to a salesman.
CREATE TABLE tbl_velk_configabstract (
  ScreenCode TEXT NOT NULL COLLATE NOCASE,
  ScreenName TEXT NOT NULL COLLATE NOCASE,
  flag TEXT NOT NULL COLLATE NOCASE,
  PRIMARY KEY (ScreenCode, ScreenName)
) WITHOUT ROWID;

CREATE TABLE Salesman (
  SalesmanID INTEGER PRIMARY KEY,
  Salesman_name TEXT NOT NULL COLLATE NOCASE UNIQUE CHECK (length(Salesman_name) BETWEEN 1 AND 50),
  Address TEXT NOT NULL DEFAULT '' CHECK (length(Address) <= 255),
  ResidentialNUmber TEXT NOT NULL DEFAULT '' CHECK (length(ResidentialNUmber) <= 50),
  MobileNumber TEXT NOT NULL DEFAULT '' CHECK (length(MobileNumber) <= 50),
  SkillLevel INTEGER NOT NULL DEFAULT 0,
  Remarks TEXT NOT NULL DEFAULT ''
);

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

CREATE TABLE DStype_Details (
  SalesmanID INTEGER NOT NULL REFERENCES Salesman,
  DSTypeID INTEGER NOT NULL REFERENCES DSType_Master,
  PRIMARY KEY (SalesmanID, DSTypeID)
) WITHOUT ROWID;
