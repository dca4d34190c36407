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
GO
INSERT INTO Vendors (VendorID, VendorName, ContactPerson, Address, Phone, Locality, SaleType)
VALUES
  ('V01', 'Sagar Consumer Products Ltd', 'R. Menon', 'Andheri East, Mumbai', '022-28204455', 2, 1),
  ('V02', 'Nirmal Soaps & Detergents', 'K. Patel', 'Naroda, Ahmedabad', '079-22812233', 2, 1),
  ('V03', 'Peshwa Foods', 'S. Apte', 'Bajirao Road, Pune', '020-24471020', 1, 1),
  ('V04', 'Golden Sheaf Biscuits', 'A. Deshpande', 'Bhosari, Pune', '020-27120909', 1, 1),
  ('V05', 'Godavari Sugar Mills', 'P. Jadhav', 'Sakarwadi', '02423-279321', 2, 2),
  ('V06', 'Coastal Salt Depot', 'M. Irani', 'Kurla, Mumbai', '022-25228790', 2, 2),
  ('V07', 'Red Chilli Spices', 'V. Chopda', 'Hadapsar, Pune', '020-26872120', 1, 1),
  ('V08', 'Lakeside Dairy', 'D. More', 'Katraj, Pune', '020-24370151', 1, 1),
  ('V09', 'Hilltop Fruits', 'N. Vora', 'Panchgani', '02168-240112', 2, 1),
  ('V10', 'Northern Home Care', 'J. Fernandes', 'Gurgaon', '0124-4028000', 2, 2),
  ('V11', 'Desai Tea Company', 'H. Desai', 'Bhavani Peth, Pune', '020-26384411', 1, 2),
  ('V12', 'Malabar Coffee & Co.', 'T. Kurian', 'Kozhikode', '0495-2722266', 2, 1),
  ('V13', 'Sahyadri Oil Mills', 'B. Shinde', 'Sangli', '0233-2672345', 2, 2),
  ('V14', 'Pune Paper Products', 'G. Agarwal', 'Market Yard, Pune', '020-24266001', 1, 2),
  ('V15', 'Champak Cosmetics', 'L. Roy', 'Kolkata', '033-22291177', 2, 1),
  ('V16', 'Long Day Cells', 'C. Nair', 'Chennai', '044-28130550', 2, 2),
  ('V17', 'Mandovi Dairy Foods', 'W. D''Costa', 'Ponda, Goa', '0832-2312200', 2, 1),
  ('V18', 'Apte Pickles & Sons', 'A. Apte', 'Girgaon, Mumbai', '022-23803344', 2, 1),
  ('V19', 'Mula Packaging', 'S. Joshi', 'Karve Nagar, Pune', '020-25446677', 1, 2),
  ('V20', 'Laxmi Rice Mill', 'O. Gupta', 'Nagpur', '0712-2765432', 2, 2),
  ('V21', 'Sharbat Beverages', 'I. Shah', 'Ahmedabad', '079-26575001', 2, 1),
  ('V22', 'Crème & Crust Bakery', 'F. Irani', 'Camp, Pune', '020-26130808', 1, 1),
  ('V23', 'Sparkle Matches', 'E. Rajan', 'Sivakasi', '04562-220134', 2, 2),
  ('V24', 'Tulsi Herbal', 'Y. Pendharkar', 'Dombivli', '0251-2430101', 2, 1),
  ('V25', 'Universal Stationers', 'Z. Contractor', 'Budhwar Peth, Pune', '020-24452020', 1, 2);
GO

CREATE TABLE VendorAccount (
  VendorID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY REFERENCES Vendors,
  AccountName TEXT NOT NULL,
  GroupName TEXT NOT NULL DEFAULT 'Sundry Creditors'
) WITHOUT ROWID;
GO
INSERT INTO VendorAccount (VendorID, AccountName)
SELECT VendorID, VendorName FROM Vendors;
GO

CREATE TABLE VendorDebitNote (
  DocumentID INTEGER PRIMARY KEY,
  VendorID TEXT NOT NULL COLLATE NOCASE REFERENCES Vendors,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);
GO
CREATE TABLE VendorCreditNote (
  DocumentID INTEGER PRIMARY KEY,
  VendorID TEXT NOT NULL COLLATE NOCASE REFERENCES Vendors,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);
GO
CREATE TABLE VendorOpeningBalance (
  VendorID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY REFERENCES Vendors,
  OpeningBalance REAL NOT NULL
) WITHOUT ROWID;
GO

INSERT INTO StoredProcedure (name, step, statement, arguments)
VALUES
  ('sp_insert_VendorDebitNote', 1,
   'INSERT INTO VendorDebitNote
      (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (?, ?, date(?), ?, ?, ?)',
   '1,2,3,4,5,6'),
  ('sp_insert_VendorCreditNote', 1,
   'INSERT INTO VendorCreditNote
      (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (?, ?, date(?), ?, ?, ?)',
   '1,2,3,4,5,6'),
  ('sp_acc_import_vendoropeningbalance', 1,
   'INSERT INTO VendorOpeningBalance (VendorID, OpeningBalance)
    VALUES (?, ?)
    ON CONFLICT (VendorID) DO UPDATE SET OpeningBalance = OpeningBalance + excluded.OpeningBalance',
   '1,2'),
  -- A vendor that exists is refused.
  ('sp_insert_Vendors', 1,
   'INSERT INTO Vendors
      (VendorID, VendorName, ContactPerson, Address, CityID, StateID, CountryID, CreditTermID,
       PostalCode, Phone, Fax, AlternateCode, Locality, Email, TinNumber, SaleType, TNGST, CST,
       DrugLicense, CreditDays, Remarks, PanNumber)
    VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)',
   '1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22'),
  -- The name comes before the code here.
  ('sp_acc_importvendor', 1,
   'INSERT INTO VendorAccount (AccountName, VendorID) VALUES (?, ?)',
   '1,2');
GO
