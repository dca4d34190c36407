#include <ole2.h>

// Defines the library's identifier, which the headers below only declare.
#include <initguid.h>

#include <filesystem>
#include <optional>

#include "platform/windows/handles.h"
#include "tests/windows/server_dll.h"

namespace velk {
namespace {

constexpr wchar_t programmaticName[] = L"Velk_OpnImp.Velk_ClsOpnImp";

/// The names of all keys right below the classes key and below those that hold identifiers.
Texts registeredNames(HKEY root) {
  Texts names;
  for (const std::wstring below : {L"", L"\\CLSID", L"\\Interface", L"\\TypeLib"}) {
    HKEY opened = nullptr;
    RegOpenKeyExW(root, (L"Software\\Classes" + below).c_str(), 0, KEY_READ, &opened);
    const RegistryKey key(opened);
    wchar_t name[256];
    for (DWORD i = 0, size = 256; RegEnumKeyExW(key.get(), i, name, &size, nullptr, nullptr,
                                                nullptr, nullptr) == ERROR_SUCCESS;
         ++i, size = 256) {
      names.push_back(fromWide(below + L"\\" + name));
    }
  }
  return names;
}

std::filesystem::path registeredServer(HKEY root) {
  wchar_t path[MAX_PATH]{};
  DWORD size = sizeof path;
  RegGetValueW(root,
               L"Software\\Classes\\CLSID\\{8CF395CD-1257-4C04-B023-22886DE017FB}\\InprocServer32",
               nullptr, RRF_RT_REG_SZ, nullptr, path, &size);
  return path;
}

HRESULT activate(REFCLSID id) {
  ComPtr<_Velk_ClsOpnImp> object;
  const HRESULT result =
      CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(object.GetAddressOf()));
  if (SUCCEEDED(result)) CHECK(references(object.Get()) == 1);
  return result;
}

HRESULT activateByName() {
  CLSID id{};
  const HRESULT result = CLSIDFromProgID(programmaticName, &id);
  return FAILED(result) ? result : activate(id);
}

/// While it lives, access to the machine's classes is refused.
class ForbiddenMachine {
 public:
  ForbiddenMachine() {
    setAccess(TRUE);
    REQUIRE(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_.get()) == ERROR_SUCCESS);
  }
  ~ForbiddenMachine() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    setAccess(FALSE);
    RegDeleteTreeW(HKEY_CURRENT_USER, name);
  }

 private:
  /// An empty list of rights gives none, no list gives all.
  void setAccess(BOOL listed) {
    SECURITY_DESCRIPTOR security{};
    ACL none{};
    InitializeSecurityDescriptor(&security, SECURITY_DESCRIPTOR_REVISION);
    InitializeAcl(&none, sizeof none, ACL_REVISION);
    SetSecurityDescriptorDacl(&security, TRUE, listed != FALSE ? &none : nullptr, FALSE);
    REQUIRE(RegSetKeySecurity(classes_.get(), DACL_SECURITY_INFORMATION, &security) ==
            ERROR_SUCCESS);
  }

  static constexpr wchar_t name[] = L"Software\\ForbiddenMachine";
  static RegistryKey made(HKEY root, const wchar_t* key) {
    HKEY opened = nullptr;
    RegCreateKeyExW(root, key, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened, nullptr);
    return RegistryKey(opened);
  }

  RegistryKey machine_ = made(HKEY_CURRENT_USER, name);
  RegistryKey classes_ = made(machine_.get(), L"Software\\Classes");
};

TEST_CASE("registration makes the class known and leaves nothing when taken back") {
  const ServerDll dll;
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    CAPTURE(root);
    std::optional<ForbiddenMachine> user;
    if (root == HKEY_CURRENT_USER) user.emplace();
    const auto before = registeredNames(root);
    REQUIRE(activateByName() == CO_E_CLASSSTRING);
    REQUIRE(activate(__uuidof(::Velk_ClsOpnImp)) == REGDB_E_CLASSNOTREG);

    CHECK(dll.call("DllRegisterServer") == S_OK);
    CHECK(registeredServer(root) == programFolder() / "Velk_OpnImp.dll");
    CHECK(dll.call("DllRegisterServer") == S_OK);
    if (root == HKEY_LOCAL_MACHINE) {  // Wine activates only what the machine knows
      CHECK(activateByName() == S_OK);
      ComPtr<ITypeLib> library;
      CHECK(LoadRegTypeLib(LIBID_Velk_OpnImp, 1, 0, LOCALE_NEUTRAL, library.GetAddressOf()) ==
            S_OK);
    }
    CHECK(dll.call("DllUnregisterServer") == S_OK);
    CHECK(registeredNames(root) == before);
    CHECK(activateByName() == CO_E_CLASSSTRING);
    CHECK(dll.call("DllUnregisterServer") == S_OK);
  }
}

TEST_CASE("registration for the user or the machine alone leaves the other one as it is") {
  const ServerDll dll;
  for (const wchar_t* const scope : {L"user", L"machine"}) {
    CAPTURE(fromWide(scope));
    const bool isUser = scope[0] == 'u';
    const HKEY root = isUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    const HKEY other = isUser ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    const auto before = registeredNames(root);
    CHECK(dll.install(TRUE, scope) == S_OK);
    CHECK(registeredServer(root) == programFolder() / "Velk_OpnImp.dll");
    CHECK(registeredServer(other).empty());
    CHECK(dll.install(FALSE, isUser ? L"machine" : L"user") == S_OK);
    CHECK(!registeredServer(root).empty());
    CHECK(dll.install(FALSE, scope) == S_OK);
    CHECK(registeredNames(root) == before);
  }
  CHECK(dll.install(TRUE, L"all") == E_INVALIDARG);
  CHECK(dll.install(TRUE, nullptr) == E_INVALIDARG);
}

TEST_CASE("a manifest makes the class known without registration") {
  {
    const KnownByManifest known;
    CHECK(activate(__uuidof(::Velk_ClsOpnImp)) == S_OK);
    CHECK(activateByName() == S_OK);
  }
  CHECK(activate(__uuidof(::Velk_ClsOpnImp)) == REGDB_E_CLASSNOTREG);
}

}  // namespace
}  // namespace velk
