-- The account of an import, for PostgreSQL 15: it reads what an import asks and runs the procedures, and
-- has no right to write to a table. Change its password.
DO $$ BEGIN
  IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'opnimp_import') THEN
    CREATE ROLE opnimp_import LOGIN PASSWORD 'change-me';
  END IF;
END $$;

GRANT SELECT ON
  Setup, ColorSettings, Customer, Vendors, tbl_velk_configabstract, Salesman, DSType_Master,
  DStype_Details
TO opnimp_import;

-- Without this anybody could run them.
REVOKE EXECUTE ON ROUTINE
  sp_insert_CustDebitNote, sp_insert_CustCreditNote, sp_acc_import_customeropeningbalance,
  sp_insert_VendorDebitNote, sp_insert_VendorCreditNote, sp_acc_import_vendoropeningbalance,
  sp_insert_Vendors, sp_acc_importvendor, sp_insert_BankMaster, sp_insert_branch, sp_save_salesman,
  sp_save_DsType, sp_Check_DSCaption, Velk_sp_checkDefault_DSTypeValue, opnimp_count_documents
FROM PUBLIC;
GRANT EXECUTE ON ROUTINE
  sp_insert_CustDebitNote, sp_insert_CustCreditNote, sp_acc_import_customeropeningbalance,
  sp_insert_VendorDebitNote, sp_insert_VendorCreditNote, sp_acc_import_vendoropeningbalance,
  sp_insert_Vendors, sp_acc_importvendor, sp_insert_BankMaster, sp_insert_branch, sp_save_salesman,
  sp_save_DsType, sp_Check_DSCaption, Velk_sp_checkDefault_DSTypeValue, opnimp_count_documents
TO opnimp_import;
