-- The tables of the sample company, for SQL Server 2008 and later. Codes and names compare as the
-- database's collation says: without regard to letter case, as it is by default.

SET DATEFORMAT ymd;

-- The company and the colours of its screens.
CREATE TABLE Setup (
  CompanyName nvarchar(2048) NOT NULL,
  OpeningDate datetime NOT NULL  -- first transaction date; opening documents are dated before it
);
CREATE TABLE ColorSettings (
  ItemName nvarchar(2048) NOT NULL,
  BackColor int NULL,
  ForeColor int NULL
);

-- Customers, their opening documents and their opening balances. A document needs a known customer and a
-- date; its amounts carry no sign, the kind of note does.
CREATE TABLE Customer (
  CustomerID nvarchar(255) NOT NULL PRIMARY KEY CHECK (LEN(CustomerID) BETWEEN 1 AND 15),
  CustomerName nvarchar(2048) NOT NULL CHECK (LEN(CustomerName) BETWEEN 1 AND 150),
  Address nvarchar(2048) NOT NULL DEFAULT '',
  City nvarchar(2048) NOT NULL DEFAULT '',
  Phone nvarchar(2048) NOT NULL DEFAULT '',
  CreditDays int NOT NULL DEFAULT 0
);
CREATE TABLE CustomerDebitNote (
  DocumentID int IDENTITY PRIMARY KEY,
  CustomerID nvarchar(255) NOT NULL REFERENCES Customer,
  DocReference nvarchar(2048) NOT NULL CHECK (LEN(DocReference) <= 255),
  DocumentDate datetime NOT NULL,
  Amount float NOT NULL CHECK (Amount > 0),
  Balance float NOT NULL CHECK (Balance >= 0),
  Narration nvarchar(2048) NOT NULL
);
CREATE TABLE CustomerCreditNote (
  DocumentID int IDENTITY PRIMARY KEY,
  CustomerID nvarchar(255) NOT NULL REFERENCES Customer,
  DocReference nvarchar(2048) NOT NULL CHECK (LEN(DocReference) <= 255),
  DocumentDate datetime NOT NULL,
  Amount float NOT NULL CHECK (Amount > 0),
  Balance float NOT NULL CHECK (Balance >= 0),
  Narration nvarchar(2048) NOT NULL
);
CREATE TABLE CustomerOpeningBalance (
  CustomerID nvarchar(255) NOT NULL PRIMARY KEY REFERENCES Customer,
  OpeningBalance float NOT NULL
);

-- Vendors, their accounts, opening documents and opening balances.
CREATE TABLE Vendors (
  VendorID nvarchar(255) NOT NULL PRIMARY KEY CHECK (LEN(VendorID) BETWEEN 1 AND 15),
  VendorName nvarchar(2048) NOT NULL CHECK (LEN(VendorName) BETWEEN 1 AND 150),
  ContactPerson nvarchar(2048) NOT NULL DEFAULT '',
  Address nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(Address) <= 255),
  CityID int NOT NULL DEFAULT 0,
  StateID int NOT NULL DEFAULT 0,
  CountryID int NOT NULL DEFAULT 0,
  CreditTermID int NOT NULL DEFAULT 0,
  PostalCode nvarchar(2048) NOT NULL DEFAULT '',
  Phone nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(Phone) <= 50),
  Fax nvarchar(2048) NOT NULL DEFAULT '',
  AlternateCode nvarchar(2048) NOT NULL DEFAULT '',
  Locality int NOT NULL DEFAULT 1 CHECK (Locality IN (1, 2)),  -- 1 local, 2 outstation
  Email nvarchar(2048) NOT NULL DEFAULT '',
  TinNumber nvarchar(2048) NOT NULL DEFAULT '',
  SaleType int NOT NULL DEFAULT 2 CHECK (SaleType IN (1, 2)),  -- 1 first sales, 2 second sales
  TNGST nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(TNGST) <= 50),
  CST nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(CST) <= 50),
  DrugLicense nvarchar(2048) NOT NULL DEFAULT '',
  CreditDays int NOT NULL DEFAULT 0,
  Remarks nvarchar(2048) NOT NULL DEFAULT '',
  PanNumber nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(PanNumber) <= 20)
);
CREATE TABLE VendorAccount (
  VendorID nvarchar(255) NOT NULL PRIMARY KEY REFERENCES Vendors,
  AccountName nvarchar(2048) NOT NULL,
  GroupName nvarchar(2048) NOT NULL DEFAULT 'Sundry Creditors'
);
CREATE TABLE VendorDebitNote (
  DocumentID int IDENTITY PRIMARY KEY,
  VendorID nvarchar(255) NOT NULL REFERENCES Vendors,
  DocReference nvarchar(2048) NOT NULL CHECK (LEN(DocReference) <= 255),
  DocumentDate datetime NOT NULL,
  Amount float NOT NULL CHECK (Amount > 0),
  Balance float NOT NULL CHECK (Balance >= 0),
  Narration nvarchar(2048) NOT NULL
);
CREATE TABLE VendorCreditNote (
  DocumentID int IDENTITY PRIMARY KEY,
  VendorID nvarchar(255) NOT NULL REFERENCES Vendors,
  DocReference nvarchar(2048) NOT NULL CHECK (LEN(DocReference) <= 255),
  DocumentDate datetime NOT NULL,
  Amount float NOT NULL CHECK (Amount > 0),
  Balance float NOT NULL CHECK (Balance >= 0),
  Narration nvarchar(2048) NOT NULL
);
CREATE TABLE VendorOpeningBalance (
  VendorID nvarchar(255) NOT NULL PRIMARY KEY REFERENCES Vendors,
  OpeningBalance float NOT NULL
);

-- Banks and their branches.
CREATE TABLE BankMaster (
  BankCode nvarchar(200) NOT NULL PRIMARY KEY CHECK (LEN(BankCode) BETWEEN 1 AND 15),
  BankName nvarchar(2048) NOT NULL CHECK (LEN(BankName) BETWEEN 1 AND 100)
);
CREATE TABLE BranchMaster (
  BankCode nvarchar(200) NOT NULL REFERENCES BankMaster,
  BranchCode nvarchar(200) NOT NULL CHECK (LEN(BranchCode) BETWEEN 1 AND 15),
  BranchName nvarchar(2048) NOT NULL CHECK (LEN(BranchName) BETWEEN 1 AND 100),
  PRIMARY KEY (BankCode, BranchCode)
);

-- Salesmen and their DS types. The operational category group in force: only its DS types may be given to a
-- salesman.
CREATE TABLE tbl_velk_configabstract (
  ScreenCode nvarchar(50) NOT NULL,
  ScreenName nvarchar(50) NOT NULL,
  flag nvarchar(50) NOT NULL,
  PRIMARY KEY (ScreenCode, ScreenName)
);
CREATE TABLE Salesman (
  SalesmanID int IDENTITY PRIMARY KEY,
  Salesman_name nvarchar(255) NOT NULL UNIQUE CHECK (LEN(Salesman_name) BETWEEN 1 AND 50),
  Address nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(Address) <= 255),
  ResidentialNUmber nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(ResidentialNUmber) <= 50),
  MobileNumber nvarchar(2048) NOT NULL DEFAULT '' CHECK (LEN(MobileNumber) <= 50),
  SkillLevel int NOT NULL DEFAULT 0,
  Remarks nvarchar(2048) NOT NULL DEFAULT ''
);
-- DSTypeCtlPos 1: the type; 2: the handheld. A default value is one that salesmen may be given by import.
CREATE TABLE DSType_Master (
  DSTypeID int IDENTITY PRIMARY KEY,
  DSTypeName nvarchar(50) NOT NULL,
  DSTypeValue nvarchar(50) NOT NULL,
  DSTypeCtlPos int NOT NULL CHECK (DSTypeCtlPos IN (1, 2)),
  Active int NULL DEFAULT 1,
  OCGtype nvarchar(50) NOT NULL,
  IsDefault int NOT NULL DEFAULT 1,
  UNIQUE (DSTypeCtlPos, OCGtype, DSTypeName, DSTypeValue)
);
CREATE TABLE DStype_Details (
  SalesmanID int NOT NULL REFERENCES Salesman,
  DSTypeID int NOT NULL REFERENCES DSType_Master,
  PRIMARY KEY (SalesmanID, DSTypeID)
);
GO
