#include "tests/tour/tour_imports.h"

#include "platform/windows/module_path.h"

namespace velk {

namespace {

std::wstring ownFolder() {
  const std::wstring program = modulePath(nullptr);
  return program.substr(0, program.rfind(L'\\') + 1);
}

}  // namespace

Places::Places(const std::wstring& pictureFolder)
    : pictures(pictureFolder + L"\\"), programs(ownFolder()) {}

std::vector<TourImport> tourImports(const Places& places) {
  const std::wstring& samples = places.samples;
  return {{.picture = "customers",
           .button = L"&Customer opening...",
           .title = L"Import Customer Opening",
           .file = samples + L"customer_opening.csv",
           .remaps = true,
           .messages = {L"Check The Error Log " + places.errorLog},
           .table = "Customer opening documents"},
          {.picture = "vendors-opening",
           .button = L"V&endor opening...",
           .title = L"Import VendorOpening",
           .file = samples + L"vendor_opening.csv",
           .messages = {L"Import Successfull", L"Check The Error Log"},
           .table = "Vendor opening documents"},
          {.picture = "banks",
           .file = samples + L"bank_branch.csv",
           .messages = {L"Import Successfull"},
           .table = "Banks and branches"},
          {.picture = "vendors",
           .type = 1,
           .typeTitle = L"Import - Vendor",
           .file = samples + L"vendor.csv",
           .messages = {L"Import Successfull"},
           .table = "Vendors"},
          {.picture = "salesmen",
           .type = 2,
           .typeTitle = L"Import - Salesman",
           .file = places.programs + L"salesmen-edited.xls",
           .exports = true,
           .messages = {L"Salesman Imported.\r\nProcessed : 7\r\nUnProcessed : 1\r\n Please check "
                        L"the error log."},
           .table = "Salesmen"}};
}

}  // namespace velk
