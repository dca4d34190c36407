-- The procedures of the sample company, for MariaDB 10.11. Each statement of theirs takes effect by itself,
-- so that what can be refused is looked at first.
--
-- They run with their owner's rights, so that an import needs none to the tables that it writes.
DELIMITER //

-- Each document's number is answered.
CREATE PROCEDURE sp_insert_CustDebitNote(
  party varchar(2048), reference varchar(2048), made datetime, amount double, balance double,
  narration varchar(2048))
BEGIN
  INSERT INTO CustomerDebitNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
  VALUES (party, reference, date(made), amount, balance, narration);
  SELECT last_insert_id() AS DocumentID;
END //
CREATE PROCEDURE sp_insert_CustCreditNote(
  party varchar(2048), reference varchar(2048), made datetime, amount double, balance double,
  narration varchar(2048))
BEGIN
  INSERT INTO CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
  VALUES (party, reference, date(made), amount, balance, narration);
  SELECT last_insert_id() AS DocumentID;
END //

-- Called once a document: the documents of one customer add up.
CREATE PROCEDURE sp_acc_import_customeropeningbalance(party varchar(2048), amount double)
BEGIN
  DECLARE note text DEFAULT concat('Opening balance of ', party, ' entered.');
  INSERT INTO CustomerOpeningBalance (CustomerID, OpeningBalance) VALUES (party, amount)
  ON DUPLICATE KEY UPDATE OpeningBalance = OpeningBalance + amount;
  SIGNAL SQLSTATE '01000' SET MESSAGE_TEXT = note;
END //

CREATE PROCEDURE sp_insert_VendorDebitNote(
  party varchar(2048), reference varchar(2048), made datetime, amount double, balance double,
  narration varchar(2048))
BEGIN
  INSERT INTO VendorDebitNote (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
  VALUES (party, reference, date(made), amount, balance, narration);
  SELECT last_insert_id() AS DocumentID;
END //
CREATE PROCEDURE sp_insert_VendorCreditNote(
  party varchar(2048), reference varchar(2048), made datetime, amount double, balance double,
  narration varchar(2048))
BEGIN
  INSERT INTO VendorCreditNote (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
  VALUES (party, reference, date(made), amount, balance, narration);
  SELECT last_insert_id() AS DocumentID;
END //
CREATE PROCEDURE sp_acc_import_vendoropeningbalance(party varchar(2048), amount double)
BEGIN
  DECLARE note text DEFAULT concat('Opening balance of ', party, ' entered.');
  INSERT INTO VendorOpeningBalance (VendorID, OpeningBalance) VALUES (party, amount)
  ON DUPLICATE KEY UPDATE OpeningBalance = OpeningBalance + amount;
  SIGNAL SQLSTATE '01000' SET MESSAGE_TEXT = note;
END //

-- A vendor that exists is refused.
CREATE PROCEDURE sp_insert_Vendors(
  code varchar(2048), name varchar(2048), contact varchar(2048), place varchar(2048), city int,
  state int, country int, credit_term int, postal_code varchar(2048), phone_number varchar(2048),
  fax_number varchar(2048), alternate varchar(2048), locality_code int, mail varchar(2048),
  tin varchar(2048), sale_type int, tngst_number varchar(2048), cst_number varchar(2048),
  drug_license varchar(2048), credit_days int, remark varchar(2048), pan varchar(2048))
BEGIN
  IF EXISTS (SELECT 1 FROM Vendors WHERE VendorID = code) THEN
    SIGNAL SQLSTATE '23000' SET MESSAGE_TEXT = 'There is such a vendor already.';
  END IF;
  INSERT INTO Vendors
    (VendorID, VendorName, ContactPerson, Address, CityID, StateID, CountryID, CreditTermID, PostalCode,
     Phone, Fax, AlternateCode, Locality, Email, TinNumber, SaleType, TNGST, CST, DrugLicense, CreditDays,
     Remarks, PanNumber)
  VALUES (
    code, name, contact, place, city, state, country, credit_term, postal_code, phone_number, fax_number,
    alternate, locality_code, mail, tin, sale_type, tngst_number, cst_number, drug_license, credit_days, remark,
    pan);
END //

-- The name comes before the code here.
CREATE PROCEDURE sp_acc_importvendor(name varchar(2048), code varchar(2048))
BEGIN
  INSERT INTO VendorAccount (AccountName, VendorID) VALUES (name, code);
END //

-- Called once a branch, so that the bank is often there already. Quotes arrive doubled.
CREATE PROCEDURE sp_insert_BankMaster(code varchar(2048), name varchar(2048))
BEGIN
  INSERT INTO BankMaster (BankCode, BankName)
  VALUES (replace(code, '''''', ''''), replace(name, '''''', ''''))
  ON DUPLICATE KEY UPDATE BankName = BankMaster.BankName;
END //

-- A branch that exists, or one of a bank that does not, is refused.
CREATE PROCEDURE sp_insert_branch(code varchar(2048), name varchar(2048), bank varchar(2048))
BEGIN
  INSERT INTO BranchMaster (BranchCode, BranchName, BankCode) VALUES (code, name, bank);
END //

-- A salesman of that name is brought up to date.
CREATE PROCEDURE sp_save_salesman(
  name varchar(2048), place varchar(2048), residential varchar(2048), mobile varchar(2048), skill int,
  remark varchar(2048))
BEGIN
  INSERT INTO Salesman (Salesman_name, Address, ResidentialNUmber, MobileNumber, SkillLevel, Remarks)
  VALUES (name, place, residential, mobile, skill, remark)
  ON DUPLICATE KEY UPDATE Address = place, ResidentialNUmber = residential, MobileNumber = mobile;
END //

-- Both values replace what the salesman had. An unknown salesman, type or handheld value is refused.
CREATE PROCEDURE sp_save_DsType(
  name varchar(2048), type_name varchar(2048), type_value varchar(2048), handheld_name varchar(2048),
  handheld_value varchar(2048))
BEGIN
  DECLARE man int DEFAULT (SELECT SalesmanID FROM Salesman WHERE Salesman_name = name);
  DECLARE type int DEFAULT (SELECT DSTypeID FROM DSType_Master
    WHERE DSTypeName = type_name AND DSTypeValue = type_value AND DSTypeCtlPos = 1
      AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = 'OCGDS'));
  DECLARE handheld int DEFAULT (SELECT DSTypeID FROM DSType_Master
    WHERE DSTypeName = handheld_name AND DSTypeValue = handheld_value AND DSTypeCtlPos = 2);
  IF man IS NULL OR type IS NULL OR handheld IS NULL THEN
    SIGNAL SQLSTATE '23000' SET MESSAGE_TEXT = 'There is no such salesman, type or handheld value.';
  END IF;
  DELETE FROM DStype_Details WHERE SalesmanID = man;
  INSERT INTO DStype_Details (SalesmanID, DSTypeID) VALUES (man, type), (man, handheld);
END //

-- 1 when the caption is the name of the DS types here, else 0.
CREATE PROCEDURE sp_Check_DSCaption(caption varchar(2048))
BEGIN
  SELECT EXISTS (SELECT 1 FROM DSType_Master WHERE DSTypeName = caption AND DSTypeCtlPos = 1);
END //

-- 0 when the value is a DS type that is no default; no row when it is none at all.
CREATE PROCEDURE Velk_sp_checkDefault_DSTypeValue(value varchar(2048))
BEGIN
  SELECT IsDefault FROM DSType_Master
  WHERE DSTypeName = 'DSType' AND DSTypeValue = value AND DSTypeCtlPos = 1
    AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = 'OCGDS');
END //

-- How many documents such a note has made: asked only when a connection was lost within it.
CREATE PROCEDURE opnimp_count_documents(
  note varchar(2048), party varchar(2048), reference varchar(2048), made datetime, billed double,
  due double)
BEGIN
  SELECT CASE note
    WHEN 'sp_insert_CustDebitNote' THEN (
      SELECT count(*) FROM CustomerDebitNote
      WHERE CustomerID = party AND DocReference = reference AND DocumentDate = date(made)
        AND Amount = billed AND Balance = due)
    WHEN 'sp_insert_CustCreditNote' THEN (
      SELECT count(*) FROM CustomerCreditNote
      WHERE CustomerID = party AND DocReference = reference AND DocumentDate = date(made)
        AND Amount = billed AND Balance = due)
    WHEN 'sp_insert_VendorDebitNote' THEN (
      SELECT count(*) FROM VendorDebitNote
      WHERE VendorID = party AND DocReference = reference AND DocumentDate = date(made)
        AND Amount = billed AND Balance = due)
    WHEN 'sp_insert_VendorCreditNote' THEN (
      SELECT count(*) FROM VendorCreditNote
      WHERE VendorID = party AND DocReference = reference AND DocumentDate = date(made)
        AND Amount = billed AND Balance = due)
  END;
END //

DELIMITER ;
