-- The procedures of the sample company, as rows of their table (docs/embedded-database.md).

INSERT INTO StoredProcedure (name, step, statement, arguments)
VALUES
  ('sp_insert_CustDebitNote', 1,
   'INSERT INTO CustomerDebitNote
      (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (?, ?, date(?), ?, ?, ?)',
   '1,2,3,4,5,6'),
  ('sp_insert_CustCreditNote', 1,
   'INSERT INTO CustomerCreditNote
      (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (?, ?, date(?), ?, ?, ?)',
   '1,2,3,4,5,6'),
  -- Called once a document: the documents of one customer add up.
  ('sp_acc_import_customeropeningbalance', 1,
   'INSERT INTO CustomerOpeningBalance (CustomerID, OpeningBalance)
    VALUES (?, ?)
    ON CONFLICT (CustomerID) DO UPDATE SET OpeningBalance = OpeningBalance + excluded.OpeningBalance',
   '1,2');

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
