// A host in VBScript: docs/hosts/host.vbs, run by the system's script host.
#include <ado_com.h>

#include <cstdlib>
#include <fstream>
#include <utility>

#include "platform/odbc/odbc_connection.h"
#include "platform/windows/handles.h"
#include "samples/company/sample_company.h"
#include "tests/support/temporary_folder.h"
#include "tests/windows/input_screen.h"
#include "tests/windows/script_server.h"
#include "tests/windows/server_dll.h"
#include "tests/windows/service_stub.h"

namespace velk {
namespace {

std::wstring braced(REFCLSID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

/// The component and the tests' server in the registry, the latter in place of the machine's own
/// ADO. Its keys are volatile: whatever happens, they are gone when the system stops. Where
/// OPNIMP_INSTALLED is set the component has been registered by its installer.
class RegisteredServers {
 public:
  RegisteredServers() {
    if (!isInstalled_) REQUIRE(component_.call("DllRegisterServer") == S_OK);
    const std::wstring library = programFolder() / "opnimp_script_server.dll";
    const std::wstring name = L"OpeningHost.Service";
    add(name, L"");
    add(name + L"\\CLSID", braced(__uuidof(VelkHostService)));
    for (const CLSID& id : {__uuidof(VelkHostService), scriptConnectionClass, scriptCommandClass}) {
      add(L"CLSID\\" + braced(id), L"");
      add(L"CLSID\\" + braced(id) + L"\\InprocServer32", library);
    }
    add(L"CLSID\\" + braced(__uuidof(::Connection)) + L"\\TreatAs", braced(scriptConnectionClass));
    add(L"CLSID\\" + braced(__uuidof(::Command)) + L"\\TreatAs", braced(scriptCommandClass));
  }
  ~RegisteredServers() {
    for (const std::wstring& key : keys_) RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
    if (!isInstalled_) component_.call("DllUnregisterServer");
  }
  RegisteredServers(const RegisteredServers&) = delete;
  RegisteredServers& operator=(const RegisteredServers&) = delete;

 private:
  void add(const std::wstring& name, const std::wstring& value) {
    const std::wstring& path = keys_.emplace_back(L"Software\\Classes\\" + name);
    HKEY made = nullptr;
    REQUIRE(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &made, nullptr) == ERROR_SUCCESS);
    const RegistryKey owned{made};
    REQUIRE(RegSetKeyValueW(made, nullptr, nullptr, REG_SZ, value.c_str(),
                            static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) ==
            ERROR_SUCCESS);
  }

  ServerDll component_;
  bool isInstalled_ = std::getenv("OPNIMP_INSTALLED") != nullptr;
  std::vector<std::wstring> keys_;
};

/// The script host at work, and what it prints.
class ScriptProcess {
 public:
  ScriptProcess(const std::string& arguments, std::filesystem::path output)
      : output_(std::move(output)) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const FileHandle opened(CreateFileW(output_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                        CREATE_ALWAYS, 0, nullptr));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = opened.get();
    std::wstring line = toWide("cscript.exe //nologo " + arguments);
    REQUIRE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                           nullptr, &startup, &process_) != FALSE);
  }
  ~ScriptProcess() {
    if (runs()) TerminateProcess(process_.hProcess, 1);
    WaitForSingleObject(process_.hProcess, patience);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }
  ScriptProcess(const ScriptProcess&) = delete;
  ScriptProcess& operator=(const ScriptProcess&) = delete;

  bool runs() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }
  Texts printed() const {
    std::ifstream printed(output_, std::ios::binary);
    Texts lines;
    for (std::string text; std::getline(printed, text);)
      lines.push_back(text.substr(0, text.find('\r')));
    return lines;
  }
  /// The window, once there is one.
  HWND waitFor(const std::function<HWND()>& find) const {
    HWND found = nullptr;
    pumpUntil([&] { return (found = find()) != nullptr || !runs(); }, patience);
    CAPTURE(printed());
    REQUIRE(found != nullptr);
    return found;
  }
  Window screen() const { return Window(openScreens(process_.dwThreadId).at(0)); }
  static constexpr DWORD patience = 20'000;  // milliseconds

 private:
  PROCESS_INFORMATION process_{};
  std::filesystem::path output_;
};

/// Presses View and Import, closes the screen, and then the box that the script waits in.
void useScreen(const ScriptProcess& host) {
  const HWND box = host.waitFor([] { return FindWindowW(L"#32770", L"A host in VBScript"); });
  const Window screen = host.screen();
  const HWND import = screen.button("&Import");
  const auto waitUntilEnabled = [&](BOOL enabled) {
    host.waitFor([&] { return IsWindowEnabled(import) == enabled ? import : nullptr; });
  };
  // Whole clicks: the box that appears takes the mouse from a button that is held down.
  PostMessageW(screen.button("&View"), BM_CLICK, 0, 0);
  waitUntilEnabled(TRUE);
  PostMessageW(import, BM_CLICK, 0, 0);
  waitUntilEnabled(FALSE);
  PostMessageW(screen.handle, WM_CLOSE, 0, 0);
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  CHECK(pumpUntil([&] { return !host.runs(); }, ScriptProcess::patience));
}

TEST_CASE("windows: a host in VBScript opens, arranges and uses a screen") {
  const TemporaryFolder folder;
  const std::string company = embeddedConnectionString(folder.path("company.db"));
  createSampleCompany(folder.path("company.db"));
  const std::string records = folder.write("opening.csv",
                                           "Customer ID,Reference,Date,Bill Amount,Balance\r\n"
                                           "C001,V-1,03/03/2008,120.50,20.50\r\n"
                                           "NONE,V-2,03/03/2008,1.00,1.00\r\n");
  const RegisteredServers servers;
  const std::string script = fromWide((programFolder() / "host.vbs").wstring());
  const ScriptProcess host("\"" + script + "\" \"" + company + "\" \"" + records + "\"",
                           folder.path("printed.txt"));
  useScreen(host);
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  CHECK(
      host.printed() ==
      Texts{"5 fields, the first: C001", "Starting Velk_frmCustOpn_OpnImp",
            "Ready Import Customer Opening True",
            "15 controls: FraBrowse TxtFileName CmdBrowse cmdview FraData Label2 lv Label1 lstCust "
            "CmdClear cmdImport cmdExit CommonDialog1 test subclr",
            "moved by the host: 1500 7600 2000 0 Courier New", "Icon set: True", "Visible: False",
            "ZOrder 438", "Hide of a button 438", "SetFocus where it cannot be 5",
            "Message 64: Check The Error Log " + fromWide(system) + "\\Error.log", "Closed 0"});
  const auto posted = openOdbc(company)->Execute(
      "SELECT printf('%s %.2f %.2f', CustomerID, Amount, Balance) FROM CustomerDebitNote");
  CHECK(posted->field(0) == Value("C001 120.50 20.50"));
  posted->MoveNext();
  CHECK(posted->isEOF());
}

}  // namespace
}  // namespace velk
