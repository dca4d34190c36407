-- The account of an import, for SQL Server 2008 and later: it reads what an import asks and runs the
-- procedures, and has no right to write to a table. Change its password.
IF NOT EXISTS (SELECT 1 FROM sys.server_principals WHERE name = 'opnimp_import')
  CREATE LOGIN opnimp_import WITH PASSWORD = 'Change-me-1'
GO
IF NOT EXISTS (SELECT 1 FROM sys.database_principals WHERE name = 'opnimp_import')
  CREATE USER opnimp_import FOR LOGIN opnimp_import
GO

GRANT SELECT ON Setup TO opnimp_import
GRANT SELECT ON ColorSettings TO opnimp_import
GRANT SELECT ON Customer TO opnimp_import
GRANT SELECT ON Vendors TO opnimp_import
GRANT SELECT ON tbl_velk_configabstract TO opnimp_import
GRANT SELECT ON Salesman TO opnimp_import
GRANT SELECT ON DSType_Master TO opnimp_import
GRANT SELECT ON DStype_Details TO opnimp_import
GO

GRANT EXECUTE ON sp_insert_CustDebitNote TO opnimp_import
GRANT EXECUTE ON sp_insert_CustCreditNote TO opnimp_import
GRANT EXECUTE ON sp_acc_import_customeropeningbalance TO opnimp_import
GRANT EXECUTE ON sp_insert_VendorDebitNote TO opnimp_import
GRANT EXECUTE ON sp_insert_VendorCreditNote TO opnimp_import
GRANT EXECUTE ON sp_acc_import_vendoropeningbalance TO opnimp_import
GRANT EXECUTE ON sp_insert_Vendors TO opnimp_import
GRANT EXECUTE ON sp_acc_importvendor TO opnimp_import
GRANT EXECUTE ON sp_insert_BankMaster TO opnimp_import
GRANT EXECUTE ON sp_insert_branch TO opnimp_import
GRANT EXECUTE ON sp_save_salesman TO opnimp_import
GRANT EXECUTE ON sp_save_DsType TO opnimp_import
GRANT EXECUTE ON sp_Check_DSCaption TO opnimp_import
GRANT EXECUTE ON Velk_sp_checkDefault_DSTypeValue TO opnimp_import
GRANT EXECUTE ON opnimp_count_documents TO opnimp_import
GO
