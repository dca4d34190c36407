#include "component/com/registration.h"

#include <ole2.h>

// Defines the library's identifier, which the next header only declares.
#include <initguid.h>

#include <Velk_OpnImp_com.h>

#include <iterator>
#include <string>
#include <vector>

#include "component/com/identifiers.h"
#include "component/com/registry_key.h"
#include "component/com/server.h"
#include "platform/windows/com_errors.h"

namespace velk {

namespace {

using Text = std::wstring;

struct Entry {
  Text key;
  const wchar_t* name;  ///< null: the key's default value
  Text value;
};

const Text thisBitness = sizeof(void*) == 8 ? L"win64" : L"win32";
const Text otherBitness = sizeof(void*) == 8 ? L"win32" : L"win64";
constexpr wchar_t classesKey[] = L"Software\\Classes";
// The marshaller that reads interfaces from type libraries.
constexpr wchar_t automationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

Text braced(REFGUID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return text;
}

Text classKey() {
  return L"CLSID\\" + braced(__uuidof(::Velk_ClsOpnImp));
}
Text interfaceKey() {
  return L"Interface\\" + braced(__uuidof(_Velk_ClsOpnImp));
}
Text libraryKey() {
  return L"TypeLib\\" + braced(LIBID_Velk_OpnImp);
}
Text libraryFileKey(const Text& bitness) {
  return libraryKey() + L"\\" + versionText + L"\\0\\" + bitness;
}

std::vector<Entry> classEntries(const Text& path) {
  const Text key = classKey();
  const Text library = braced(LIBID_Velk_OpnImp);
  return {{key, nullptr, programmaticName},
          {key + L"\\InprocServer32", nullptr, path},
          {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
          {key + L"\\ProgID", nullptr, programmaticName},
          {key + L"\\TypeLib", nullptr, library},
          {key + L"\\Version", nullptr, versionText},
          {key + L"\\Programmable", nullptr, L""}};
}

std::vector<Entry> sharedEntries(const Text& path) {
  const Text library = braced(LIBID_Velk_OpnImp);
  const Text version = libraryKey() + L"\\" + versionText;
  return {{programmaticName, nullptr, libraryTitle},
          {Text(programmaticName) + L"\\CLSID", nullptr, braced(__uuidof(::Velk_ClsOpnImp))},
          {interfaceKey(), nullptr, L"_Velk_ClsOpnImp"},
          {interfaceKey() + L"\\ProxyStubClsid32", nullptr, automationMarshaller},
          {interfaceKey() + L"\\TypeLib", nullptr, library},
          {interfaceKey() + L"\\TypeLib", L"Version", versionText},
          {version, nullptr, libraryTitle},
          {version + L"\\FLAGS", nullptr, L"0"},
          {version + L"\\HELPDIR", nullptr, path.substr(0, path.rfind(L'\\'))},
          {libraryFileKey(thisBitness), nullptr, path}};
}

void checkWin32(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw comError(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

void write(HKEY classes, const Entry& entry) {
  RegistryKey key;
  checkWin32(RegCreateKeyExW(classes, entry.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                             key.receive(), nullptr));
  const auto bytes = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  checkWin32(RegSetValueExW(key.get(), entry.name, 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(entry.value.c_str()), bytes));
}

void remove(HKEY classes, const Text& key) {
  const LSTATUS status = RegDeleteTreeW(classes, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) checkWin32(status);
}

bool exists(HKEY classes, const Text& key) {
  RegistryKey found;
  return RegOpenKeyExW(classes, key.c_str(), 0, KEY_READ, found.receive()) == ERROR_SUCCESS;
}

void removeAll(HKEY classes) {
  remove(classes, classKey());
  if (exists(classes, libraryFileKey(otherBitness))) {
    remove(classes, libraryFileKey(thisBitness));
    return;
  }
  for (const Text& key : {Text(programmaticName), interfaceKey(), libraryKey()}) {
    remove(classes, key);
  }
  // A user may have had none of these before; those that hold others stay.
  for (const wchar_t* container : {L"CLSID", L"Interface", L"TypeLib"}) {
    RegDeleteKeyW(classes, container);
  }
}

void registerIn(HKEY root) {
  const Text path = serverPath();
  RegistryKey classes;
  checkWin32(RegCreateKeyExW(root, classesKey, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                             classes.receive(), nullptr));
  try {
    for (const Entry& entry : classEntries(path)) write(classes.get(), entry);
    for (const Entry& entry : sharedEntries(path)) write(classes.get(), entry);
  } catch (const RuntimeError&) {
    removeAll(classes.get());
    throw;
  }
}

void unregisterIn(HKEY root) {
  RegistryKey classes;
  if (RegOpenKeyExW(root, classesKey, 0, KEY_READ, classes.receive()) != ERROR_SUCCESS) return;
  const bool registered =
      exists(classes.get(), classKey()) || exists(classes.get(), libraryFileKey(thisBitness));
  if (registered) removeAll(classes.get());
}

}  // namespace

void registerServer() {
  try {
    registerIn(HKEY_LOCAL_MACHINE);
  } catch (const RuntimeError& error) {
    if (error.number() != E_ACCESSDENIED) throw;
    registerIn(HKEY_CURRENT_USER);
  }
}

void unregisterServer() {
  unregisterIn(HKEY_CURRENT_USER);
  unregisterIn(HKEY_LOCAL_MACHINE);
}

}  // namespace velk
