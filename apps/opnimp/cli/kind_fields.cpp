#include "apps/opnimp/cli/kind_fields.h"

#include <array>
#include <utility>

namespace velk {

namespace {

constexpr KindField reference{"Reference", FieldForm::Text, false,
                              "number of the document; may be empty", "INV-0711"};
constexpr KindField date{
    "Date", FieldForm::Date, false,
    "of the document, day first, such as 31/03/2008 or 31-Mar-2008, before the "
    "first transaction date; empty: the day before that date",
    "31/03/2008"};
constexpr KindField bill{"Bill Amount", FieldForm::Amount, true,
                         "above zero a debit note, below zero a credit note, such as -1250.50; a "
                         "record with zero is skipped",
                         "12450.00"};
constexpr KindField balance{
    "Balance", FieldForm::Amount, true,
    "what is still open of the bill, with its sign; no greater than the bill", "8210.50"};

constexpr std::array<KindField, 6> customerOpeningFields{{
    {"Customer ID", FieldForm::Code, true, "of a customer whom the company has", "C001"},
    {"Customer Name", FieldForm::Text, false, "for your eyes; it is not imported",
     "Aggarwal General Stores"},
    reference,
    date,
    bill,
    balance,
}};

constexpr std::array<KindField, 6> vendorOpeningFields{{
    {"Vendor ID", FieldForm::Code, true, "of a vendor whom the company has", "V01"},
    {"Vendor Name", FieldForm::Text, false, "for your eyes; it is not imported",
     "Sagar Consumer Products Ltd"},
    reference,
    date,
    bill,
    balance,
}};

constexpr std::array<KindField, 4> bankBranchFields{{
    {"Bank Code", FieldForm::Code, true, "of the bank; a bank has a line for each branch", "DGB"},
    {"Bank Name", FieldForm::Text, true, "the same in each of its lines", "Deccan Grameen Bank"},
    {"Branch Code", FieldForm::Code, true, "of the branch", "DGB001"},
    {"Branch Name", FieldForm::Text, true, "of the branch", "Baramati"},
}};

constexpr std::array<KindField, 10> vendorFields{{
    {"Vendor Code", FieldForm::Code, true, "of the new vendor", "W01"},
    {"Vendor Name", FieldForm::Text, true, "of the new vendor", "Konkan Cashew Traders"},
    {"Address", FieldForm::Text, false, "may be empty", "4 Fort Road Ratnagiri"},
    {"Phone", FieldForm::Text, false, "may be empty", "02352-222110"},
    {"Contact Person", FieldForm::Text, false, "may be empty", "S. Gokhale"},
    {"Locality", FieldForm::Choice, false, "Local or Outstation; empty: Local", "Outstation"},
    {"Sale Type", FieldForm::Choice, false, "First Sales or Second Sales; empty: Second Sales",
     "First Sales"},
    {"TNGST", FieldForm::Text, false, "number of that tax; may be empty", "TN/1182"},
    {"CST", FieldForm::Text, false, "number of that tax; may be empty", "CST/9921"},
    {"Pan Number", FieldForm::Text, false, "may be empty", "AAFPN4411K"},
}};

constexpr std::array<KindField, 7> salesmanFields{{
    {"Salesman", FieldForm::Text, true, "by whom he is known again: the same name replaces him",
     "Ramesh Pawar"},
    {"Address", FieldForm::Text, false, "may be empty", "12 Market Road"},
    {"ResNumber", FieldForm::Text, false, "phone at home; may be empty", "020-25530001"},
    {"MobNumber", FieldForm::Text, false, "mobile phone; may be empty", "09822000001"},
    {"Existing DSType", FieldForm::Text, false, "what an export found; it is not imported", ""},
    {"DSType", FieldForm::Choice, true, "one of the company's DS types", "Retail"},
    {"HandHeld DS", FieldForm::Choice, false, "YES or NO, in capital letters; empty: NO", "NO"},
}};

}  // namespace

std::span<const KindField> fieldsOf(const ImportKind& kind) {
  if (kind.opening == &customerOpening) return customerOpeningFields;
  if (kind.opening != nullptr) return vendorOpeningFields;
  switch (kind.type.value()) {
    case MasterType::BankBranch:
      return bankBranchFields;
    case MasterType::Vendor:
      return vendorFields;
    case MasterType::Salesman:
      break;
  }
  return salesmanFields;
}

std::string_view formName(FieldForm form) {
  constexpr std::array<std::string_view, 5> names{"text", "code", "date", "amount", "choice"};
  return names.at(static_cast<std::size_t>(form));
}

}  // namespace velk
