#include "opening/vendor_opening.h"

namespace velk {

const OpeningImportKind vendorOpening{
    .idNotMapped = "Vendor Id is Mandatory.Its not been Mapped",
    .existsQuery = "select count(*) from Vendors where VendorID='",  // no N before the quote here
    .unknownParty = "Vendor does not exist for code - ",
    .invalidDate = "",
    .forParty = ") for Vendor - ",
    .balanceTooBig = "Balance is greater than BillAmount for Vendor - ",
    .debitNote = "sp_insert_VendorDebitNote",
    .creditNote = "sp_insert_VendorCreditNote",
    .openingBalance = "sp_acc_import_vendoropeningbalance",
    .showsPlainly = true,
    .refusalKeepsScreen = true,
    .completed = "Import Successfull",
    .checkTheLog = "Check The Error Log",
    .namesTheLog = false,
};

void importVendorOpening(OpeningScreen& screen) {
  OpeningImport(screen, vendorOpening).cmdImport_Click();
}

}  // namespace velk
