// What a salesman's DS type (the category of a distributor's salesman) may be: the allowed values
// of the operational category group in force.
#include <algorithm>
#include <array>
#include <cmath>

#include "base/errors.h"
#include "base/numbers.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"

namespace velk {

namespace {

constexpr std::int32_t namesInALine = 11;

std::int16_t toCode(double number) {
  constexpr double beyond = 1e9;  // of a code by far
  return toInt16(std::llrint(std::clamp(number, -beyond, beyond)));
}

void requireResult(const std::shared_ptr<Recordset>& reply) {
  if (reply == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
}

bool hasRows(const Recordset& reply) {
  return !(reply.isEOF() && reply.isBOF());
}

}  // namespace

std::shared_ptr<Recordset> Velk_frmBankBranch_OpnImp::callForRows(std::string_view procedure,
                                                                  const Value& parameter) {
  const std::array<ProcedureParameter, 1> parameters{{{parameter}}};
  return Velk_ModOpnImp::GetDataRecordset(
      module().ExecuteProcedure(connection(), procedure, parameters));
}

std::int16_t Velk_frmBankBranch_OpnImp::ChkForValidDSTypeName() {
  std::int16_t code = 0;
  module().trap("ImportSalesman - CheckForValidDSType : ", [&] {
    const auto reply = callForRows("sp_Check_DSCaption", std::string("DSType"));
    if (reply == nullptr) return;
    code = toCode(Velk_ModOpnImp::ValOrZero(reply->field(0)));
    reply->Close();
  });
  return code;
}

bool Velk_frmBankBranch_OpnImp::CheckForDefaultVal(std::string_view name,
                                                   std::string_view existingValue) {
  bool acceptable = true;
  if (existingValue.empty()) return acceptable;
  trapRoutine("CheckForDefaultVal", [&] {
    const auto reply = callForRows("Velk_sp_checkDefault_DSTypeValue", std::string(existingValue));
    requireResult(reply);
    if (hasRows(*reply) && Velk_ModOpnImp::ValOrZero(reply->field(0)) == 0) {
      acceptable = false;
      NotDefaultFound = true;
      noteNotDefault(name);
    }
    reply->Close();
  });
  return acceptable;
}

// The list begins with a comma, intended.
void Velk_frmBankBranch_OpnImp::noteNotDefault(std::string_view name) {
  NotDefaultList += ',';
  if (++NotDefaultCount == namesInALine) {
    NotDefaultList += "\r\n";
    NotDefaultCount = 0;
  }
  NotDefaultList += name;
}

Velk_frmBankBranch_OpnImp::DsTypeCheck Velk_frmBankBranch_OpnImp::IsvalidateDSType(
    std::string_view value) {
  DsTypeCheck result = DsTypeCheck::NotFound;
  trapRoutine("IsvalidateDSType", [&] {
    // Quotes in the value are not doubled, and the blank at the end belongs to the text: intended.
    const auto reply = connection().Execute(
        std::string("Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue "
                    "= '")
            .append(value)
            .append(
                "' and DSTypeCtlPos = 1 and OCGtype = (Select flag from tbl_velk_Configabstract "
                "where ScreenCode = 'OCGDS' and ScreenName ='OperationalCategoryGroup') "));
    if (reply == nullptr || reply->isEOF()) return;
    const bool active = Velk_ModOpnImp::ValOrZero(reply->field(0)) >= 1;
    result = active ? DsTypeCheck::Valid : DsTypeCheck::Inactive;
    reply->Close();
  });
  return result;
}

bool Velk_frmBankBranch_OpnImp::FilterAlphaNumeric(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ' ||
           c == '&';
  });
}

}  // namespace velk
