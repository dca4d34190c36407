#include "masters/ds_type_rules.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/errors.h"
#include "base/numbers.h"

namespace velk {

namespace {

constexpr std::int32_t namesInALine = 11;

std::int16_t toCode(double number) {
  constexpr double beyond = 1e9;  // far outside the range of a code, but not of an integer
  return toInt16(std::llrint(std::clamp(number, -beyond, beyond)));
}

bool hasRows(const Recordset& reply) {
  return !(reply.isEOF() && reply.isBOF());
}

}  // namespace

/// The first result with rows; null when the procedure failed.
std::shared_ptr<Recordset> DsTypeRules::ask(std::string_view procedure, const Value& parameter) {
  const std::array<ProcedureParameter, 1> parameters{{{parameter}}};
  return Velk_ModOpnImp::GetDataRecordset(
      screen_.module().ExecuteProcedure(screen_.connection(), procedure, parameters, Purpose::Ask));
}

// The tag names another routine than this one: it is the text that support staff search logs for.
std::int16_t DsTypeRules::ChkForValidDSTypeName() {
  std::int16_t code = 0;
  screen_.run().trap("ImportSalesman - CheckForValidDSType : ", [&] {
    const auto reply = ask("sp_Check_DSCaption", std::string("DSType"));
    if (reply == nullptr) return;
    code = toCode(Velk_ModOpnImp::ValOrZero(reply->field(0)));
    reply->Close();
  });
  return code;
}

// An answer without rows says nothing against the type, so that it is acceptable.
bool DsTypeRules::CheckForDefaultVal(std::string_view name, std::string_view existingValue) {
  bool acceptable = true;
  if (existingValue.empty()) return acceptable;
  screen_.trapRoutine("CheckForDefaultVal", [&] {
    const auto reply = ask("Velk_sp_checkDefault_DSTypeValue", std::string(existingValue));
    if (reply == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
    if (hasRows(*reply) && Velk_ModOpnImp::ValOrZero(reply->field(0)) == 0) {
      acceptable = false;
      noteNotDefault(name);
    }
    reply->Close();
  });
  return acceptable;
}

// The list begins with a comma: each name brings its own.
void DsTypeRules::noteNotDefault(std::string_view name) {
  notDefaultFound_ = true;
  notDefaultList_ += ',';
  if (++notDefaultCount_ == namesInALine) {
    notDefaultList_ += "\r\n";
    notDefaultCount_ = 0;
  }
  notDefaultList_ += name;
}

void DsTypeRules::reset() {
  notDefaultList_.clear();
  notDefaultCount_ = 0;
  notDefaultFound_ = false;
}

// Quotes in the value are not doubled, so that a value with one makes the query fail and counts as
// not found. The blank at the end is part of the text that databases know.
std::string dsTypeQuery(std::string_view value) {
  return std::string(dsTypeQueryStart)
      .append(value)
      .append(dsTypeQueryEnd)
      .append(groupInForce)
      .append(" ");
}

DsTypeCheck DsTypeRules::IsvalidateDSType(std::string_view value) {
  DsTypeCheck result = DsTypeCheck::NotFound;
  screen_.trapRoutine("IsvalidateDSType", [&] {
    const auto reply = screen_.connection().Execute(dsTypeQuery(value));
    if (reply == nullptr || reply->isEOF()) return;
    const bool active = Velk_ModOpnImp::ValOrZero(reply->field(0)) >= 1;
    result = active ? DsTypeCheck::Valid : DsTypeCheck::Inactive;
    reply->Close();
  });
  return result;
}

bool DsTypeRules::FilterAlphaNumeric(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ' ||
           c == '&';
  });
}

}  // namespace velk
