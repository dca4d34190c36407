-- The procedures of the sample company, for PostgreSQL 15. What returns rows is a function there.
--
-- They run with their owner's rights, so that an import needs none to the tables that it writes; and a
-- call of such a routine takes effect as a whole or not at all. Each keeps the path that is in force
-- here: if it did not end with pg_temp, that would come first, and whoever calls one could have a temporary
-- table of his own, and its triggers, take the place of a table.
SET search_path = public, pg_temp;

-- Each document's number is answered.
CREATE FUNCTION sp_insert_CustDebitNote(
  party text, reference text, made timestamp, amount double precision, balance double precision, narration text)
RETURNS TABLE (document integer)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  RETURN QUERY
    INSERT INTO CustomerDebitNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (party, reference, made::date, amount, balance, narration)
    RETURNING DocumentID;
END $$;
CREATE FUNCTION sp_insert_CustCreditNote(
  party text, reference text, made timestamp, amount double precision, balance double precision, narration text)
RETURNS TABLE (document integer)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  RETURN QUERY
    INSERT INTO CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (party, reference, made::date, amount, balance, narration)
    RETURNING DocumentID;
END $$;

-- Called once a document: the documents of one customer add up.
CREATE PROCEDURE sp_acc_import_customeropeningbalance(party text, amount double precision)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  INSERT INTO CustomerOpeningBalance AS entry (CustomerID, OpeningBalance) VALUES (party, amount)
  ON CONFLICT (CustomerID) DO UPDATE SET OpeningBalance = entry.OpeningBalance + amount;
  RAISE NOTICE 'Opening balance of % entered.', party;
END $$;

CREATE FUNCTION sp_insert_VendorDebitNote(
  party text, reference text, made timestamp, amount double precision, balance double precision, narration text)
RETURNS TABLE (document integer)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  RETURN QUERY
    INSERT INTO VendorDebitNote (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (party, reference, made::date, amount, balance, narration)
    RETURNING DocumentID;
END $$;
CREATE FUNCTION sp_insert_VendorCreditNote(
  party text, reference text, made timestamp, amount double precision, balance double precision, narration text)
RETURNS TABLE (document integer)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  RETURN QUERY
    INSERT INTO VendorCreditNote (VendorID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (party, reference, made::date, amount, balance, narration)
    RETURNING DocumentID;
END $$;
CREATE PROCEDURE sp_acc_import_vendoropeningbalance(party text, amount double precision)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  INSERT INTO VendorOpeningBalance AS entry (VendorID, OpeningBalance) VALUES (party, amount)
  ON CONFLICT (VendorID) DO UPDATE SET OpeningBalance = entry.OpeningBalance + amount;
  RAISE NOTICE 'Opening balance of % entered.', party;
END $$;

-- A vendor that exists is refused.
CREATE PROCEDURE sp_insert_Vendors(
  code text, name text, contact text, place text, city integer, state integer, country integer,
  credit_term integer, postal_code text, phone_number text, fax_number text, alternate text, locality_code integer,
  mail text, tin text, sale_type integer, tngst_number text, cst_number text, drug_license text,
  credit_days integer, remark text, pan text)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
BEGIN
  IF EXISTS (SELECT FROM Vendors WHERE VendorID = code) THEN
    RAISE EXCEPTION 'There is a vendor % already.', code USING ERRCODE = 'unique_violation';
  END IF;
  INSERT INTO Vendors
    (VendorID, VendorName, ContactPerson, Address, CityID, StateID, CountryID, CreditTermID, PostalCode,
     Phone, Fax, AlternateCode, Locality, Email, TinNumber, SaleType, TNGST, CST, DrugLicense, CreditDays,
     Remarks, PanNumber)
  VALUES (
    code, name, contact, place, city, state, country, credit_term, postal_code, phone_number, fax_number,
    alternate, locality_code, mail, tin, sale_type, tngst_number, cst_number, drug_license, credit_days, remark,
    pan);
END $$;

-- The name comes before the code here.
CREATE PROCEDURE sp_acc_importvendor(name text, code text)
LANGUAGE sql SECURITY DEFINER SET search_path FROM CURRENT AS $$
  INSERT INTO VendorAccount (AccountName, VendorID) VALUES (name, code);
$$;

-- Called once a branch, so that the bank is often there already. Quotes arrive doubled.
CREATE PROCEDURE sp_insert_BankMaster(code text, name text)
LANGUAGE sql SECURITY DEFINER SET search_path FROM CURRENT AS $$
  INSERT INTO BankMaster (BankCode, BankName)
  VALUES (replace(code, '''''', ''''), replace(name, '''''', ''''))
  ON CONFLICT (BankCode) DO NOTHING;
$$;

-- A branch that exists, or one of a bank that does not, is refused.
CREATE PROCEDURE sp_insert_branch(code text, name text, bank text)
LANGUAGE sql SECURITY DEFINER SET search_path FROM CURRENT AS $$
  INSERT INTO BranchMaster (BranchCode, BranchName, BankCode) VALUES (code, name, bank);
$$;

-- A salesman of that name is brought up to date.
CREATE PROCEDURE sp_save_salesman(
  name text, place text, residential text, mobile text, skill integer, remark text)
LANGUAGE sql SECURITY DEFINER SET search_path FROM CURRENT AS $$
  INSERT INTO Salesman (Salesman_name, Address, ResidentialNUmber, MobileNumber, SkillLevel, Remarks)
  VALUES (name, place, residential, mobile, skill, remark)
  ON CONFLICT (Salesman_name) DO UPDATE SET
    Address = excluded.Address,
    ResidentialNUmber = excluded.ResidentialNUmber,
    MobileNumber = excluded.MobileNumber;
$$;

-- Both values replace what the salesman had. An unknown salesman, type or handheld value is refused.
CREATE PROCEDURE sp_save_DsType(
  name text, type_name text, type_value text, handheld_name text, handheld_value text)
LANGUAGE plpgsql SECURITY DEFINER SET search_path FROM CURRENT AS $$
DECLARE
  man integer := (SELECT SalesmanID FROM Salesman WHERE Salesman_name = name);
  type integer := (SELECT DSTypeID FROM DSType_Master
    WHERE DSTypeName = type_name AND DSTypeValue = type_value AND DSTypeCtlPos = 1
      AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = 'OCGDS'));
  handheld integer := (SELECT DSTypeID FROM DSType_Master
    WHERE DSTypeName = handheld_name AND DSTypeValue = handheld_value AND DSTypeCtlPos = 2);
BEGIN
  DELETE FROM DStype_Details WHERE SalesmanID = man;
  INSERT INTO DStype_Details (SalesmanID, DSTypeID) VALUES (man, type), (man, handheld);
END $$;

-- 1 when the caption is the name of the DS types here, else 0.
CREATE FUNCTION sp_Check_DSCaption(caption text) RETURNS integer
LANGUAGE sql STABLE SECURITY DEFINER SET search_path FROM CURRENT AS $$
  SELECT count(*)::integer FROM
    (SELECT FROM DSType_Master WHERE DSTypeName = caption AND DSTypeCtlPos = 1 LIMIT 1) AS found;
$$;

-- 0 when the value is a DS type that is no default; no row when it is none at all.
CREATE FUNCTION Velk_sp_checkDefault_DSTypeValue(value text) RETURNS SETOF integer
LANGUAGE sql STABLE SECURITY DEFINER SET search_path FROM CURRENT AS $$
  SELECT IsDefault FROM DSType_Master
  WHERE DSTypeName = 'DSType' AND DSTypeValue = value AND DSTypeCtlPos = 1
    AND OCGtype = (SELECT flag FROM tbl_velk_configabstract WHERE ScreenCode = 'OCGDS');
$$;

-- How many documents such a note has made: asked only when a connection was lost within it.
CREATE FUNCTION opnimp_count_documents(
  note text, party text, reference text, made timestamp, billed double precision, due double precision)
RETURNS integer
LANGUAGE sql STABLE SECURITY DEFINER SET search_path FROM CURRENT AS $$
  SELECT CASE note
    WHEN 'sp_insert_CustDebitNote' THEN (
      SELECT count(*) FROM CustomerDebitNote
      WHERE CustomerID = party AND DocReference = reference AND DocumentDate = made::date
        AND Amount = billed AND Balance = due)
    WHEN 'sp_insert_CustCreditNote' THEN (
      SELECT count(*) FROM CustomerCreditNote
      WHERE CustomerID = party AND DocReference = reference AND DocumentDate = made::date
        AND Amount = billed AND Balance = due)
    WHEN 'sp_insert_VendorDebitNote' THEN (
      SELECT count(*) FROM VendorDebitNote
      WHERE VendorID = party AND DocReference = reference AND DocumentDate = made::date
        AND Amount = billed AND Balance = due)
    WHEN 'sp_insert_VendorCreditNote' THEN (
      SELECT count(*) FROM VendorCreditNote
      WHERE VendorID = party AND DocReference = reference AND DocumentDate = made::date
        AND Amount = billed AND Balance = due)
  END::integer;
$$;
