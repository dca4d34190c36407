-- The tables of the sample company, for MariaDB 10.11. Their names are written with the letter case
-- that the statements of the dialect have.

-- Codes and names compare without regard to letter case, but with their accents.
ALTER DATABASE CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci;
SET default_storage_engine = InnoDB;

-- The company and the colours of its screens.
CREATE TABLE Setup (
  CompanyName text NOT NULL,
  OpeningDate date NOT NULL  -- first transaction date; opening documents are dated before it
);
CREATE TABLE ColorSettings (
  ItemName text NOT NULL,
  BackColor int NULL,
  ForeColor int NULL
);

-- Customers, their opening documents and their opening balances. A document needs a known customer and a
-- date; its amounts carry no sign, the kind of note does.
CREATE TABLE Customer (
  CustomerID varchar(255) NOT NULL PRIMARY KEY CHECK (char_length(CustomerID) BETWEEN 1 AND 15),
  CustomerName text NOT NULL CHECK (char_length(CustomerName) BETWEEN 1 AND 150),
  Address text NOT NULL DEFAULT '',
  City text NOT NULL DEFAULT '',
  Phone text NOT NULL DEFAULT '',
  CreditDays int NOT NULL DEFAULT 0
);
CREATE TABLE CustomerDebitNote (
  DocumentID int AUTO_INCREMENT PRIMARY KEY,
  CustomerID varchar(255) NOT NULL REFERENCES Customer (CustomerID),
  DocReference text NOT NULL CHECK (char_length(DocReference) <= 255),
  DocumentDate date NOT NULL,
  Amount double NOT NULL CHECK (Amount > 0),
  Balance double NOT NULL CHECK (Balance >= 0),
  Narration text NOT NULL
);
CREATE TABLE CustomerCreditNote (
  DocumentID int AUTO_INCREMENT PRIMARY KEY,
  CustomerID varchar(255) NOT NULL REFERENCES Customer (CustomerID),
  DocReference text NOT NULL CHECK (char_length(DocReference) <= 255),
  DocumentDate date NOT NULL,
  Amount double NOT NULL CHECK (Amount > 0),
  Balance double NOT NULL CHECK (Balance >= 0),
  Narration text NOT NULL
);
CREATE TABLE CustomerOpeningBalance (
  CustomerID varchar(255) NOT NULL PRIMARY KEY REFERENCES Customer (CustomerID),
  OpeningBalance double NOT NULL
);

-- Vendors, their accounts, opening documents and opening balances.
CREATE TABLE Vendors (
  VendorID varchar(255) NOT NULL PRIMARY KEY CHECK (char_length(VendorID) BETWEEN 1 AND 15),
  VendorName text NOT NULL CHECK (char_length(VendorName) BETWEEN 1 AND 150),
  ContactPerson text NOT NULL DEFAULT '',
  Address text NOT NULL DEFAULT '' CHECK (char_length(Address) <= 255),
  CityID int NOT NULL DEFAULT 0,
  StateID int NOT NULL DEFAULT 0,
  CountryID int NOT NULL DEFAULT 0,
  CreditTermID int NOT NULL DEFAULT 0,
  PostalCode text NOT NULL DEFAULT '',
  Phone text NOT NULL DEFAULT '' CHECK (char_length(Phone) <= 50),
  Fax text NOT NULL DEFAULT '',
  AlternateCode text NOT NULL DEFAULT '',
  Locality int NOT NULL DEFAULT 1 CHECK (Locality IN (1, 2)),  -- 1 local, 2 outstation
  Email text NOT NULL DEFAULT '',
  TinNumber text NOT NULL DEFAULT '',
  SaleType int NOT NULL DEFAULT 2 CHECK (SaleType IN (1, 2)),  -- 1 first sales, 2 second sales
  TNGST text NOT NULL DEFAULT '' CHECK (char_length(TNGST) <= 50),
  CST text NOT NULL DEFAULT '' CHECK (char_length(CST) <= 50),
  DrugLicense text NOT NULL DEFAULT '',
  CreditDays int NOT NULL DEFAULT 0,
  Remarks text NOT NULL DEFAULT '',
  PanNumber text NOT NULL DEFAULT '' CHECK (char_length(PanNumber) <= 20)
);
CREATE TABLE VendorAccount (
  VendorID varchar(255) NOT NULL PRIMARY KEY REFERENCES Vendors (VendorID),
  AccountName text NOT NULL,
  GroupName text NOT NULL DEFAULT 'Sundry Creditors'
);
CREATE TABLE VendorDebitNote (
  DocumentID int AUTO_INCREMENT PRIMARY KEY,
  VendorID varchar(255) NOT NULL REFERENCES Vendors (VendorID),
  DocReference text NOT NULL CHECK (char_length(DocReference) <= 255),
  DocumentDate date NOT NULL,
  Amount double NOT NULL CHECK (Amount > 0),
  Balance double NOT NULL CHECK (Balance >= 0),
  Narration text NOT NULL
);
CREATE TABLE VendorCreditNote (
  DocumentID int AUTO_INCREMENT PRIMARY KEY,
  VendorID varchar(255) NOT NULL REFERENCES Vendors (VendorID),
  DocReference text NOT NULL CHECK (char_length(DocReference) <= 255),
  DocumentDate date NOT NULL,
  Amount double NOT NULL CHECK (Amount > 0),
  Balance double NOT NULL CHECK (Balance >= 0),
  Narration text NOT NULL
);
CREATE TABLE VendorOpeningBalance (
  VendorID varchar(255) NOT NULL PRIMARY KEY REFERENCES Vendors (VendorID),
  OpeningBalance double NOT NULL
);

-- Banks and their branches.
CREATE TABLE BankMaster (
  BankCode varchar(255) NOT NULL PRIMARY KEY CHECK (char_length(BankCode) BETWEEN 1 AND 15),
  BankName text NOT NULL CHECK (char_length(BankName) BETWEEN 1 AND 100)
);
CREATE TABLE BranchMaster (
  BankCode varchar(255) NOT NULL REFERENCES BankMaster (BankCode),
  BranchCode varchar(255) NOT NULL CHECK (char_length(BranchCode) BETWEEN 1 AND 15),
  BranchName text NOT NULL CHECK (char_length(BranchName) BETWEEN 1 AND 100),
  PRIMARY KEY (BankCode, BranchCode)
);

-- Salesmen and their DS types. The operational category group in force: only its DS types may be given to a
-- salesman.
CREATE TABLE tbl_velk_configabstract (
  ScreenCode varchar(50) NOT NULL,
  ScreenName varchar(50) NOT NULL,
  flag varchar(50) NOT NULL,
  PRIMARY KEY (ScreenCode, ScreenName)
);
CREATE TABLE Salesman (
  SalesmanID int AUTO_INCREMENT PRIMARY KEY,
  Salesman_name varchar(255) NOT NULL UNIQUE CHECK (char_length(Salesman_name) BETWEEN 1 AND 50),
  Address text NOT NULL DEFAULT '' CHECK (char_length(Address) <= 255),
  ResidentialNUmber text NOT NULL DEFAULT '' CHECK (char_length(ResidentialNUmber) <= 50),
  MobileNumber text NOT NULL DEFAULT '' CHECK (char_length(MobileNumber) <= 50),
  SkillLevel int NOT NULL DEFAULT 0,
  Remarks text NOT NULL DEFAULT ''
);
-- DSTypeCtlPos 1: the type; 2: the handheld. A default value is one that salesmen may be given by import.
CREATE TABLE DSType_Master (
  DSTypeID int AUTO_INCREMENT PRIMARY KEY,
  DSTypeName varchar(50) NOT NULL,
  DSTypeValue varchar(50) NOT NULL,
  DSTypeCtlPos int NOT NULL CHECK (DSTypeCtlPos IN (1, 2)),
  Active int NULL DEFAULT 1,
  OCGtype varchar(50) NOT NULL,
  IsDefault int NOT NULL DEFAULT 1,
  UNIQUE (DSTypeCtlPos, OCGtype, DSTypeName, DSTypeValue)
);
CREATE TABLE DStype_Details (
  SalesmanID int NOT NULL REFERENCES Salesman (SalesmanID),
  DSTypeID int NOT NULL REFERENCES DSType_Master (DSTypeID),
  PRIMARY KEY (SalesmanID, DSTypeID)
);
