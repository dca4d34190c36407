#include "apps/opnimp/cli/kind_fields.h"

#include <array>
#include <cstddef>

namespace velk {

namespace {

constexpr FieldTitle referenceColumn{"Reference", FieldNature::Text, false,
                                     "number of the document; may be empty", "INV-0711"};
constexpr FieldTitle dateColumn{
    "Date", FieldNature::Date, false,
    "of the document, day first, such as 31/03/2008 or 31-Mar-2008, before the "
    "first transaction date; empty: the day before that date",
    "31/03/2008"};
constexpr FieldTitle billColumn{
    "Bill Amount", FieldNature::Amount, true,
    "above zero a debit note, below zero a credit note, such as -1250.50; a "
    "record with zero is skipped",
    "12450.00"};
constexpr FieldTitle balanceColumn{
    "Balance", FieldNature::Amount, true,
    "what is still open of the bill, with its sign; no greater than the bill", "8210.50"};

constexpr FieldTitle customerOpeningTable[] = {
    {"Customer ID", FieldNature::Code, true, "of a customer whom the company has", "C001"},
    {"Customer Name", FieldNature::Text, false, "for your eyes; it is not imported",
     "Aggarwal General Stores"},
    referenceColumn,
    dateColumn,
    billColumn,
    balanceColumn,
};

constexpr FieldTitle vendorOpeningTable[] = {
    {"Vendor ID", FieldNature::Code, true, "of a vendor whom the company has", "V01"},
    {"Vendor Name", FieldNature::Text, false, "for your eyes; it is not imported",
     "Sagar Consumer Products Ltd"},
    referenceColumn,
    dateColumn,
    billColumn,
    balanceColumn,
};

constexpr FieldTitle bankBranchTable[] = {
    {"Bank Code", FieldNature::Code, true, "of the bank; a bank has a line for each branch", "DGB"},
    {"Bank Name", FieldNature::Text, true, "the same in each of its lines", "Deccan Grameen Bank"},
    {"Branch Code", FieldNature::Code, true, "of the branch", "DGB001"},
    {"Branch Name", FieldNature::Text, true, "of the branch", "Baramati"},
};

constexpr FieldTitle vendorTable[] = {
    {"Vendor Code", FieldNature::Code, true, "of the new vendor", "W01"},
    {"Vendor Name", FieldNature::Text, true, "of the new vendor", "Konkan Cashew Traders"},
    {"Address", FieldNature::Text, false, "may be empty", "4 Fort Road Ratnagiri"},
    {"Phone", FieldNature::Text, false, "may be empty", "02352-222110"},
    {"Contact Person", FieldNature::Text, false, "may be empty", "S. Gokhale"},
    {"Locality", FieldNature::Choice, false, "Local or Outstation; empty: Local", "Outstation"},
    {"Sale Type", FieldNature::Choice, false, "First Sales or Second Sales; empty: Second Sales",
     "First Sales"},
    {"TNGST", FieldNature::Text, false, "number of that tax; may be empty", "TN/1182"},
    {"CST", FieldNature::Text, false, "number of that tax; may be empty", "CST/9921"},
    {"Pan Number", FieldNature::Text, false, "may be empty", "AAFPN4411K"},
};

constexpr FieldTitle salesmanTable[] = {
    {"Salesman", FieldNature::Text, true, "by whom he is known again: the same name replaces him",
     "Ramesh Pawar"},
    {"Address", FieldNature::Text, false, "may be empty", "12 Market Road"},
    {"ResNumber", FieldNature::Text, false, "phone at home; may be empty", "020-25530001"},
    {"MobNumber", FieldNature::Text, false, "mobile phone; may be empty", "09822000001"},
    {"Existing DSType", FieldNature::Text, false, "what an export found; it is not imported", ""},
    {"DSType", FieldNature::Choice, true, "one of the company's DS types", "Retail"},
    {"HandHeld DS", FieldNature::Choice, false, "YES or NO, in capital letters; empty: NO", "NO"},
};

}  // namespace

// Before whatever is made from them while the program starts.
constinit const std::span<const FieldTitle> customerOpeningFields = customerOpeningTable;
constinit const std::span<const FieldTitle> vendorOpeningFields = vendorOpeningTable;
constinit const std::span<const FieldTitle> bankBranchFields = bankBranchTable;
constinit const std::span<const FieldTitle> vendorFields = vendorTable;
constinit const std::span<const FieldTitle> salesmanFileColumns = salesmanTable;

std::string_view natureName(FieldNature nature) {
  constexpr std::array<std::string_view, 5> names{"text", "code", "date", "amount", "choice"};
  return names.at(static_cast<std::size_t>(nature));
}

}  // namespace velk
