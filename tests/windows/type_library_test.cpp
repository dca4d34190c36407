// The type library as hosts' compilers read it, of both architectures.
#include <map>

#include "tests/windows/server_dll.h"

namespace velk {
namespace {

std::string nameOf(ITypeInfo* info) {
  Bstr name;
  info->GetDocumentation(MEMBERID_NIL, name.receive(), nullptr, nullptr, nullptr);
  return name.text();
}

std::string typeText(ITypeInfo* info, const TYPEDESC& type) {
  static const std::map<VARTYPE, const char*> names{
      {VT_BSTR, "BSTR"}, {VT_BOOL, "VARIANT_BOOL"}, {VT_VARIANT, "VARIANT"},
      {VT_I2, "short"},  {VT_I4, "long"},           {VT_HRESULT, "HRESULT"}};
  if (type.vt == VT_PTR) return typeText(info, *type.lptdesc) + "*";
  if (type.vt != VT_USERDEFINED) return names.at(type.vt);
  ComPtr<ITypeInfo> other;
  REQUIRE(info->GetRefTypeInfo(type.hreftype, other.GetAddressOf()) == S_OK);
  return nameOf(other.Get());
}

std::string directionOf(USHORT flags) {
  std::string text;
  if ((flags & PARAMFLAG_FIN) != 0) text += "in ";
  if ((flags & PARAMFLAG_FOUT) != 0) text += "out ";
  if ((flags & PARAMFLAG_FRETVAL) != 0) text += "retval ";
  return text;
}

/// "slot id kind result name(direction type name, ...)" of one member.
std::string memberText(ITypeInfo* info, UINT index) {
  FUNCDESC* member = nullptr;
  REQUIRE(info->GetFuncDesc(index, &member) == S_OK);
  BSTR names[3]{};
  UINT count = 0;
  info->GetNames(member->memid, names, 3, &count);
  std::string text = std::to_string(static_cast<std::size_t>(member->oVft) / sizeof(void*)) + ' ' +
                     std::to_string(member->memid) + ' ' + std::to_string(member->invkind) + ' ' +
                     typeText(info, member->elemdescFunc.tdesc) + ' ' + Bstr::textOf(names[0]) +
                     '(';
  for (SHORT i = 0; i < member->cParams; ++i) {
    const ELEMDESC& parameter = member->lprgelemdescParam[i];
    if (i > 0) text += ", ";
    text += directionOf(parameter.paramdesc.wParamFlags) + typeText(info, parameter.tdesc);
  }
  for (BSTR name : names) SysFreeString(name);
  info->ReleaseFuncDesc(member);
  return text + ')';
}

const Texts expectedMembers{
    "7 1 1 HRESULT ImportCustomerOpening(in out _Connection**, in out Picture**)",
    "8 2 1 HRESULT ImportVendorOpening(in out _Connection**, in out Picture**)",
    "9 3 1 HRESULT ImportBankBranchOpening(in out _Connection**, in out Picture**)",
    "10 4 2 HRESULT FileName(out retval BSTR*)",
    "11 4 4 HRESULT FileName(in BSTR)",
    "12 5 1 HRESULT MoveNext()",
    "13 6 1 HRESULT Fields(in long, out retval BSTR*)",
    "14 7 1 HRESULT IsEOF(out retval VARIANT_BOOL*)",
    "15 8 1 HRESULT Count(out retval long*)",
    "16 9 1 HRESULT Rewind()",
    "17 10 1 HRESULT CSVSplit(in BSTR, out retval VARIANT*)",
    "18 11 1 HRESULT ValidateData(in short, in _Velk_ClsOpnImp*, out retval VARIANT_BOOL*)"};

TEST_CASE("the type library has the members that hosts were compiled against") {
  const auto builds = programFolder() / "../..";
  const struct {
    std::filesystem::path dll;
    SYSKIND kind;
  } rows[] = {{builds / "windows-x64/bin/Velk_OpnImp.dll", SYS_WIN64},
              {builds / "windows-x86/bin/Velk_OpnImp.dll", SYS_WIN32}};
  // Where ADO itself is not registered its stub is found by its file name.
  std::filesystem::current_path(programFolder() / "../component/com/com");
  for (const auto& row : rows) {
    CAPTURE(row.dll.string());
    ComPtr<ITypeLib> library;
    REQUIRE(LoadTypeLibEx(row.dll.c_str(), REGKIND_NONE, library.GetAddressOf()) == S_OK);
    TLIBATTR* attributes = nullptr;
    REQUIRE(library->GetLibAttr(&attributes) == S_OK);
    CHECK(attributes->syskind == row.kind);
    library->ReleaseTLibAttr(attributes);

    ComPtr<ITypeInfo> dispatch, vtable;
    HREFTYPE reference = 0;
    REQUIRE(library->GetTypeInfoOfGuid(__uuidof(_Velk_ClsOpnImp), dispatch.GetAddressOf()) == S_OK);
    REQUIRE(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference) == S_OK);
    REQUIRE(dispatch->GetRefTypeInfo(reference, vtable.GetAddressOf()) == S_OK);
    Texts members;
    for (UINT i = 0; i < expectedMembers.size(); ++i) {
      members.push_back(memberText(vtable.Get(), i));
    }
    CHECK(members == expectedMembers);
    FUNCDESC* beyond = nullptr;
    CHECK(FAILED(vtable->GetFuncDesc(static_cast<UINT>(expectedMembers.size()), &beyond)));

    ComPtr<ITypeInfo> coclass;
    REQUIRE(library->GetTypeInfoOfGuid(__uuidof(::Velk_ClsOpnImp), coclass.GetAddressOf()) == S_OK);
    CHECK(nameOf(coclass.Get()) == "Velk_ClsOpnImp");
  }
}

}  // namespace
}  // namespace velk
