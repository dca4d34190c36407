#include "opening/customer_opening.h"

namespace velk {

const OpeningImportKind customerOpening{
    .idNotMapped = "Customer Id is Mandatory.Its not been Mapped",
    .existsQuery = "select count(*) from Customer where CustomerID=N'",
    .unknownParty = "Customer does not exist for code - ",
    .invalidDate = "Invalid Date(",
    .forParty = ") for Customer - ",
    .balanceTooBig = "Balance is greater than BillAmount for Customer - ",
    .debitNote = "sp_insert_CustDebitNote",
    .creditNote = "sp_insert_CustCreditNote",
    .openingBalance = "sp_acc_import_customeropeningbalance",
    .showsPlainly = false,
    .refusalKeepsScreen = false,
    .completed = "",
    .checkTheLog = "Check The Error Log ",
    .namesTheLog = true,
};

void importCustomerOpening(OpeningScreen& screen) {
  OpeningImport(screen, customerOpening).cmdImport_Click();
}

}  // namespace velk
