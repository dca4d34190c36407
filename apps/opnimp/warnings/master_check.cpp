#include "apps/opnimp/warnings/master_check.h"

#include "apps/opnimp/warnings/text_check.h"
#include "base/text.h"
#include "masters/vendor_import.h"

namespace velk {

namespace {

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

}  // namespace

void checkMaster(const CheckedRecord& record, std::vector<Warning>& warnings) {
  for (std::size_t field = 0; field < record.file.mapping.size(); ++field) {
    if (const CodedField* const coded = codedField(record.file.kind, field)) {
      checkCoded(record, *coded, warnings);
    } else {
      checkText(record, field, warnings);
    }
  }
}

}  // namespace velk
