#include "apps/opnimp/warnings/master_check.h"

#include "apps/opnimp/records/posted_values.h"
#include "apps/opnimp/warnings/text_check.h"
#include "base/text.h"
#include "masters/vendor_import.h"

namespace velk {

namespace {

constexpr std::size_t bankCode = 0;
constexpr std::size_t bankName = 1;
constexpr std::size_t branchCode = 2;

/// A vendor's field that is posted as a code: every text but a few means one of two.
struct CodedField {
  std::size_t field;
  std::int32_t (*code)(std::string_view text);
  std::int32_t otherwise;      ///< what a text that is not known means
  std::string_view beginning;  ///< of the texts that are meant so, in capital letters
  std::string_view readAs;
  WarningId warning;
};

constexpr CodedField codedFields[] = {{vendorField::Locality, localityCode, localLocality, "LOCAL",
                                       "local", WarningId::LocalityUnknown},
                                      {vendorField::SaleType, saleTypeCode, secondSales, "SECOND",
                                       "second sales", WarningId::SaleTypeUnknown}};

void checkCoded(const CheckedRecord& record, const CodedField& coded,
                std::vector<Warning>& warnings) {
  const std::string text = withoutQuotes(std::string(trim(record.read(coded.field))));
  // No value at all means so by custom.
  const bool meant = text.empty() || upperAscii(text).starts_with(coded.beginning);
  if (meant || coded.code(text) != coded.otherwise) return;
  addWarning(warnings, coded.warning,
             record.misreading(coded.field, text, std::string(coded.readAs)));
}

const CodedField* codedField(const ImportKind& kind, std::size_t field) {
  if (kind.type != MasterType::Vendor) return nullptr;
  for (const CodedField& coded : codedFields) {
    if (coded.field == field) return &coded;
  }
  return nullptr;
}

std::string keyOf(const CheckedRecord& record, std::size_t field) {
  return comparedText(postedText(record, field));
}

}  // namespace

void MasterCheck::check(const CheckedRecord& record, bool repeated,
                        std::vector<Warning>& warnings) {
  for (std::size_t field = 0; field < record.file.mapping.size(); ++field) {
    if (const CodedField* const coded = codedField(record.file.kind, field)) {
      checkCoded(record, *coded, warnings);
    } else {
      checkText(record, field, warnings);
    }
  }
  if (!repeated) checkRepetition(record, warnings);
  if (record.file.kind.type == MasterType::BankBranch) checkBankName(record, warnings);
}

// A bank is there once for each of its branches.
void MasterCheck::checkRepetition(const CheckedRecord& record, std::vector<Warning>& warnings) {
  const bool isVendor = record.file.kind.type == MasterType::Vendor;
  const std::size_t field = isVendor ? std::size_t{vendorField::Code} : branchCode;
  std::string key = keyOf(record, field);
  if (key.empty()) return;
  if (!isVendor) key.append(1, '\0').append(keyOf(record, bankCode));
  const auto [earlier, isNew] = lines_.emplace(std::move(key), record.line());
  if (isNew) return;
  addWarning(warnings, isVendor ? WarningId::DuplicateVendors : WarningId::DuplicateBranches,
             record.misreading(field, postedText(record, field),
                               std::string(isVendor ? "the vendor" : "the branch") + " of line " +
                                   std::to_string(earlier->second) + " once more"));
}

void MasterCheck::checkBankName(const CheckedRecord& record, std::vector<Warning>& warnings) {
  const std::string name = postedText(record, bankName);
  const Named& first =
      banks_.try_emplace(keyOf(record, bankCode), Named{name, record.line()}).first->second;
  if (equalsIgnoringCase(name, first.name)) return;
  addWarning(warnings, WarningId::BankNamesDiffer,
             record.misreading(bankName, name,
                               "a bank that line " + std::to_string(first.line) + " has as \"" +
                                   first.name + "\""));
}

}  // namespace velk
