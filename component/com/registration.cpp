#include "component/com/registration.h"

#include <ole2.h>

// Defines the library's identifier, which the next header only declares.
#include <initguid.h>

#include <Velk_OpnImp_com.h>

#include <iterator>
#include <string>
#include <vector>

#include "component/com/identifiers.h"
#include "component/com/server.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/handles.h"

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
  // 38 characters and the NUL.
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
// "0" is the language: the library belongs to none.
Text libraryFileKey(const Text& bitness) {
  return libraryKey() + L"\\" + versionText + L"\\0\\" + bitness;
}

// FLAGS and HELPDIR as Windows itself writes them for a type library.
std::vector<Entry> entries(const Text& path) {
  const Text classId = braced(__uuidof(::Velk_ClsOpnImp));
  const Text library = braced(LIBID_Velk_OpnImp);
  const Text version = libraryKey() + L"\\" + versionText;
  return {{classKey(), nullptr, programmaticName},
          {classKey() + L"\\InprocServer32", nullptr, path},
          {classKey() + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
          {classKey() + L"\\ProgID", nullptr, programmaticName},
          {classKey() + L"\\TypeLib", nullptr, library},
          {classKey() + L"\\Version", nullptr, versionText},
          {classKey() + L"\\Programmable", nullptr, L""},
          {programmaticName, nullptr, libraryTitle},
          {Text(programmaticName) + L"\\CLSID", nullptr, classId},
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
  // The NUL belongs to the data of a REG_SZ.
  const auto bytes = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  checkWin32(
      RegSetKeyValueW(classes, entry.key.c_str(), entry.name, REG_SZ, entry.value.c_str(), bytes));
}

void remove(HKEY classes, const Text& key) {
  const LSTATUS status = RegDeleteTreeW(classes, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) checkWin32(status);
}

/// Of keys that have a default value, as all those asked for do.
bool exists(HKEY classes, const Text& key) {
  return RegGetValueW(classes, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, nullptr) ==
         ERROR_SUCCESS;
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
  HKEY key = nullptr;
  checkWin32(RegCreateKeyExW(root, classesKey, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                             nullptr));
  const RegistryKey classes(key);
  try {
    for (const Entry& entry : entries(serverPath())) write(key, entry);
  } catch (const RuntimeError&) {
    removeAll(key);
    throw;
  }
}

void unregisterIn(HKEY root) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, classesKey, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  const RegistryKey classes(key);
  if (exists(key, classKey()) || exists(key, libraryFileKey(thisBitness))) removeAll(key);
}

HKEY rootOf(std::wstring_view scope) {
  if (scope == L"user") return HKEY_CURRENT_USER;
  if (scope == L"machine") return HKEY_LOCAL_MACHINE;
  throw comError(E_INVALIDARG);
}

}  // namespace

void registerServer() {
  try {
    registerIn(HKEY_LOCAL_MACHINE);
  } catch (const RuntimeError& error) {
    if (error.number() != E_ACCESSDENIED) throw;
    // Without the rights of an administrator it is for this user alone.
    registerIn(HKEY_CURRENT_USER);
  }
}

void unregisterServer() {
  // Both, because it may have been registered with other rights than it is removed with.
  unregisterIn(HKEY_CURRENT_USER);
  unregisterIn(HKEY_LOCAL_MACHINE);
}

void registerServer(std::wstring_view scope) {
  registerIn(rootOf(scope));
}

void unregisterServer(std::wstring_view scope) {
  unregisterIn(rootOf(scope));
}

}  // namespace velk
