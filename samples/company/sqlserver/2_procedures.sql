-- The procedures of the sample company, for SQL Server 2008 and later. Each statement of theirs takes effect
-- by itself, so that what can be refused is looked at first. They count rows, print and return rows.
GO

-- Each document's number is answered.
CREATE PROCEDURE sp_insert_CustDebitNote
  @party nvarchar(2048), @reference nvarchar(2048), @made datetime, @amount float, @balance float,
  @narration nvarchar(2048)
AS
INSERT INTO CustomerDebitNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
VALUES (@party, @reference, DATEADD(day, DATEDIFF(day, 0, @made), 0), @amount, @balance, @narration)
IF @@ERROR <> 0
BEGIN
  RAISERROR ('The document of %s was not entered.', 16, 1, @party)
  RETURN 1
END
SELECT SCOPE_IDENTITY() AS DocumentID
GO

CREATE PROCEDURE sp_insert_CustCreditNote
  @party nvarchar(2048), @reference nvarchar(2048), @made datetime, @amount float, @balance float,
  @narration nvarchar(2048)
AS
INSERT INTO CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
VALUES (@party, @reference, DATEADD(day, DATEDIFF(day, 0, @made), 0), @amount, @balance, @narration)
IF @@ERROR <> 0
BEGIN
  RAISERROR ('The document of %s was not entered.', 16, 1, @party)
  RETURN 1
END
SELECT SCOPE_IDENTITY() AS DocumentID
GO

-- Called once a document: the documents of one customer add up.
CREATE PROCEDURE sp_acc_import_customeropeningbalance @party nvarchar(2048), @amount float
AS
UPDATE CustomerOpeningBalance SET OpeningBalance = OpeningBalance + @amount WHERE CustomerID = @party
IF @@ROWCOUNT = 0
  INSERT INTO CustomerOpeningBalance (CustomerID, OpeningBalance) VALUES (@party, @amount)
PRINT 'Opening balance of ' + @party + ' entered.'
GO

CREATE PROCEDURE sp_insert_VendorDebitNote
  @party nvarchar(2048), @reference nvarchar(2048), @made datetime, @amount float, @balance float,
  @narration nvarchar(2048)
AS
INSERT INTO VendorDebitNote (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
VALUES (@party, @reference, DATEADD(day, DATEDIFF(day, 0, @made), 0), @amount, @balance, @narration)
IF @@ERROR <> 0
BEGIN
  RAISERROR ('The document of %s was not entered.', 16, 1, @party)
  RETURN 1
END
SELECT SCOPE_IDENTITY() AS DocumentID
GO

CREATE PROCEDURE sp_insert_VendorCreditNote
  @party nvarchar(2048), @reference nvarchar(2048), @made datetime, @amount float, @balance float,
  @narration nvarchar(2048)
AS
INSERT INTO VendorCreditNote (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
VALUES (@party, @reference, DATEADD(day, DATEDIFF(day, 0, @made), 0), @amount, @balance, @narration)
IF @@ERROR <> 0
BEGIN
  RAISERROR ('The document of %s was not entered.', 16, 1, @party)
  RETURN 1
END
SELECT SCOPE_IDENTITY() AS DocumentID
GO

CREATE PROCEDURE sp_acc_import_vendoropeningbalance @party nvarchar(2048), @amount float
AS
UPDATE VendorOpeningBalance SET OpeningBalance = OpeningBalance + @amount WHERE VendorID = @party
IF @@ROWCOUNT = 0
  INSERT INTO VendorOpeningBalance (VendorID, OpeningBalance) VALUES (@party, @amount)
PRINT 'Opening balance of ' + @party + ' entered.'
GO

-- A vendor that exists is refused.
CREATE PROCEDURE sp_insert_Vendors
  @code nvarchar(2048), @name nvarchar(2048), @contact nvarchar(2048), @place nvarchar(2048),
  @city int, @state int, @country int, @credit_term int, @postal_code nvarchar(2048),
  @phone_number nvarchar(2048), @fax_number nvarchar(2048), @alternate nvarchar(2048),
  @locality_code int, @mail nvarchar(2048), @tin nvarchar(2048), @sale_type int,
  @tngst_number nvarchar(2048), @cst_number nvarchar(2048), @drug_license nvarchar(2048),
  @credit_days int, @remark nvarchar(2048), @pan nvarchar(2048)
AS
INSERT INTO Vendors
  (VendorID, VendorName, ContactPerson, Address, CityID, StateID, CountryID, CreditTermID, PostalCode,
   Phone, Fax, AlternateCode, Locality, Email, TinNumber, SaleType, TNGST, CST, DrugLicense, CreditDays,
   Remarks, PanNumber)
VALUES
  (@code, @name, @contact, @place, @city, @state, @country, @credit_term, @postal_code,
   @phone_number, @fax_number, @alternate, @locality_code, @mail, @tin, @sale_type, @tngst_number,
   @cst_number, @drug_license, @credit_days, @remark, @pan)
IF @@ERROR <> 0
BEGIN
  RAISERROR ('The vendor %s was not entered.', 16, 1, @code)
  RETURN 1
END
GO

-- The name comes before the code here.
CREATE PROCEDURE sp_acc_importvendor @name nvarchar(2048), @code nvarchar(2048)
AS
INSERT INTO VendorAccount (AccountName, VendorID) VALUES (@name, @code)
GO

-- Called once a branch, so that the bank is often there already. Quotes arrive doubled.
CREATE PROCEDURE sp_insert_BankMaster @code nvarchar(2048), @name nvarchar(2048)
AS
SELECT @code = REPLACE(@code, '''''', ''''), @name = REPLACE(@name, '''''', '''')
IF NOT EXISTS (SELECT 1 FROM BankMaster WHERE BankCode = @code)
  INSERT INTO BankMaster (BankCode, BankName) VALUES (@code, @name)
GO

-- A branch that exists, or one of a bank that does not, is refused.
CREATE PROCEDURE sp_insert_branch @code nvarchar(2048), @name nvarchar(2048), @bank nvarchar(2048)
AS
INSERT INTO BranchMaster (BranchCode, BranchName, BankCode) VALUES (@code, @name, @bank)
GO

-- A salesman of that name is brought up to date.
CREATE PROCEDURE sp_save_salesman
  @name nvarchar(2048), @place nvarchar(2048), @residential nvarchar(2048), @mobile nvarchar(2048),
  @skill int, @remark nvarchar(2048)
AS
UPDATE Salesman SET Address = @place, ResidentialNUmber = @residential, MobileNumber = @mobile
WHERE Salesman_name = @name
IF @@ROWCOUNT = 0
  INSERT INTO Salesman (Salesman_name, Address, ResidentialNUmber, MobileNumber, SkillLevel, Remarks)
  VALUES (@name, @place, @residential, @mobile, @skill, @remark)
GO

-- Both values replace what the salesman had. An unknown salesman, type or handheld value is refused.
CREATE PROCEDURE sp_save_DsType
  @name nvarchar(2048), @type_name nvarchar(2048), @type_value nvarchar(2048), @handheld_name nvarchar(2048),
  @handheld_value nvarchar(2048)
AS
DECLARE @man int, @type int, @handheld int
SELECT @man = SalesmanID FROM Salesman WHERE Salesman_name = @name
SELECT @type = DSTypeID FROM DSType_Master
WHERE DSTypeName = @type_name AND DSTypeValue = @type_value AND DSTypeCtlPos = 1
  AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = 'OCGDS')
SELECT @handheld = DSTypeID FROM DSType_Master
WHERE DSTypeName = @handheld_name AND DSTypeValue = @handheld_value AND DSTypeCtlPos = 2
IF @man IS NULL OR @type IS NULL OR @handheld IS NULL
BEGIN
  RAISERROR ('There is no such salesman, type or handheld value: %s.', 16, 1, @name)
  RETURN 1
END
DELETE FROM DStype_Details WHERE SalesmanID = @man
INSERT INTO DStype_Details (SalesmanID, DSTypeID) VALUES (@man, @type), (@man, @handheld)
GO

-- 1 when the caption is the name of the DS types here, else 0.
CREATE PROCEDURE sp_Check_DSCaption @caption nvarchar(2048)
AS
SELECT CASE WHEN EXISTS (SELECT 1 FROM DSType_Master WHERE DSTypeName = @caption AND DSTypeCtlPos = 1)
  THEN 1 ELSE 0 END
GO

-- 0 when the value is a DS type that is no default; no row when it is none at all.
CREATE PROCEDURE Velk_sp_checkDefault_DSTypeValue @value nvarchar(2048)
AS
SELECT IsDefault FROM DSType_Master
WHERE DSTypeName = 'DSType' AND DSTypeValue = @value AND DSTypeCtlPos = 1
  AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = 'OCGDS')
GO

-- How many documents such a note has made: asked only when a connection was lost within it.
CREATE PROCEDURE opnimp_count_documents
  @note nvarchar(2048), @party nvarchar(2048), @reference nvarchar(2048), @made datetime, @billed float,
  @due float
AS
SELECT CASE @note
  WHEN 'sp_insert_CustDebitNote' THEN (
    SELECT COUNT(*) FROM CustomerDebitNote
    WHERE CustomerID = @party AND DocReference = @reference AND DocumentDate = @made
      AND Amount = @billed AND Balance = @due)
  WHEN 'sp_insert_CustCreditNote' THEN (
    SELECT COUNT(*) FROM CustomerCreditNote
    WHERE CustomerID = @party AND DocReference = @reference AND DocumentDate = @made
      AND Amount = @billed AND Balance = @due)
  WHEN 'sp_insert_VendorDebitNote' THEN (
    SELECT COUNT(*) FROM VendorDebitNote
    WHERE VendorID = @party AND DocReference = @reference AND DocumentDate = @made
      AND Amount = @billed AND Balance = @due)
  WHEN 'sp_insert_VendorCreditNote' THEN (
    SELECT COUNT(*) FROM VendorCreditNote
    WHERE VendorID = @party AND DocReference = @reference AND DocumentDate = @made
      AND Amount = @billed AND Balance = @due)
END
GO
