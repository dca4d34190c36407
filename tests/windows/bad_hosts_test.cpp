// Hosts that go away, lie, fail or forget: the component and the host live on, and the log says
// why.
#include <olectl.h>

#include "platform/windows/named_members.h"
#include "platform/windows/variants.h"
#include "tests/windows/dll_host.h"
#include "tests/windows/service_stub.h"

namespace velk {
namespace {

const std::string noService =
    "The host's service object is not registered; captions are their keys";

TEST_CASE("bad hosts: a connection that is null or closed") {
  const auto closed = connectionObject(nullptr);
  const std::pair<EntryPoint, std::string> rows[] = {{customers, "Velk_frmCustOpn_OpnImp"},
                                                     {vendors, "Velk_frmVenOpn_OpnImp"},
                                                     {masters, "Velk_frmBankBranch_OpnImp"}};
  for (const auto& [entry, name] : rows) {
    for (_Connection* given : {static_cast<_Connection*>(nullptr), closed.Get()}) {
      CAPTURE(name);
      CAPTURE(given);
      Host host;
      const HWND screen = host.open(entry, given);
      // The master screen is shown after its connection has been tried.
      CHECK((screen != nullptr) == (entry != masters || given == nullptr));
      REQUIRE(log().size() == 2);
      CHECK(log()[1].starts_with("(3709): " + name + " : " +
                                 (given == nullptr ? "InitLoadColors - " : "initForm - ")));
      if (entry != masters) host.import(screen);
      CHECK(host.boxes.shown().size() == (entry != masters ? 1 : 0));
    }
  }
}

TEST_CASE("bad hosts: a picture that is null, or no icon") {
  Host host;
  PICTDESC bitmap{};
  bitmap.cbSizeofstruct = sizeof bitmap;
  bitmap.picType = PICTYPE_BITMAP;
  bitmap.bmp.hbitmap = CreateBitmap(8, 8, 1, 1, nullptr);
  ComPtr<IPictureDisp> picture, empty;
  OleCreatePictureIndirect(&bitmap, IID_IPictureDisp, TRUE,
                           reinterpret_cast<void**>(picture.GetAddressOf()));
  OleCreatePictureIndirect(nullptr, IID_IPictureDisp, TRUE,
                           reinterpret_cast<void**>(empty.GetAddressOf()));
  for (IUnknown* wrong :
       {static_cast<IUnknown*>(picture.Get()), static_cast<IUnknown*>(empty.Get()),
        static_cast<IUnknown*>(host.connection.Get())}) {
    CHECK(host.open(customers, host.connection.Get(), static_cast<IPictureDisp*>(wrong)) ==
          nullptr);
    CHECK(references(wrong) == 1);
  }
  const std::string refused = "(481): Velk_frmCustOpn_OpnImp : initForm - Invalid picture";
  CHECK(log() == Texts{noService, refused, refused, refused});
  const HWND screen = host.open(customers);
  CHECK(SendMessageW(screen, WM_GETICON, ICON_BIG, 0) ==
        reinterpret_cast<LRESULT>(LoadIconW(nullptr, IDI_APPLICATION)));
}

TEST_CASE("bad hosts: calls from a second apartment") {
  Host host;
  const HWND first = host.open(customers);
  inAnotherApartment([&] {
    Host second;
    CHECK(second.open(vendors) != first);
    _Connection* connection = second.connection.Get();
    IPictureDisp* icon = nullptr;
    CHECK(host.object->ImportVendorOpening(&connection, &icon) == RPC_E_WRONG_THREAD);
    CHECK(closeScreens().size() == 1);
    CHECK(second.dll.call("DllCanUnloadNow") == S_FALSE);
  });
  host.import(first);
  CHECK(host.database.procedureCalls().size() == 4);
}

TEST_CASE("bad hosts: ADO that fails from some call on") {
  const std::string lost = "Communication link failure";
  const std::string lostLine = "(-2147467259): " + lost;
  const std::string unknown = "Customer does not exist for code - P2";
  const std::string check = "Check The Error Log " + fromWide(logFile().wstring());
  const RuntimeError linkFailure(-2147467259, lost), timeout(ErrorNumber::ProviderTimeout);
  const struct {
    std::size_t from;  // 2: the first transaction date; 4, 5: the calls for the first record
    RuntimeError error;
    Texts logged, shown;
  } rows[] = {{2, linkFailure, {lostLine}, {lost}},
              {4, linkFailure, {lostLine, lostLine, unknown}, {check}},
              {5,
               timeout,
               {"(-2147217871): " + timeout.description(), unknown},
               {"Database is busy, cannot establish connection", check}}};
  for (const auto& row : rows) {
    CAPTURE(row.from);
    Host host;
    const HWND screen = host.open(customers);
    host.database.onCall = [&](const FakeCall&) {
      if (host.database.calls.size() >= row.from) throw RuntimeError(row.error);
    };
    host.import(screen);
    Texts logged{noService}, shown;
    logged.insert(logged.end(), row.logged.begin(), row.logged.end());
    for (const std::string& text : row.shown) shown.push_back("Velk_OpnImp|" + text + "|OK");
    CHECK(log() == logged);
    CHECK(host.boxes.shown() == shown);
    CHECK(closeScreens().size() == 1);
  }
}

TEST_CASE("bad hosts: ADO that says it is well and gives nothing") {
  StubObject<_Connection> connection;
  connection.on(&_Connection::Execute, [](void*, BSTR, VARIANT*, LONG, _Recordset** rows) {
    *rows = nullptr;
    return S_OK;
  });
  StubObject<_Command> command;
  command.on(&_Command::putref_ActiveConnection, [](void*, _Connection*) { return S_OK; });
  command.on(&_Command::put_CommandType, [](void*, CommandTypeEnum type) {
    CHECK(type == adCmdStoredProc);
    return S_OK;
  });
  command.on(&_Command::CreateParameter,
             [](void*, BSTR name, DataTypeEnum type, ParameterDirectionEnum direction,
                ADO_LONGPTR size, VARIANT value, _Parameter** parameter) {
               CHECK(Bstr::textOf(name) == "Param0");
               CHECK(type == adVarChar);
               CHECK(direction == adParamInput);
               CHECK(size == 2048);
               CHECK(value.vt == VT_ERROR);
               *parameter = nullptr;
               return S_OK;
             });
  command.on(&_Command::get_Parameters, [](void*, Parameters** list) {
    *list = nullptr;
    return S_OK;
  });
  Host host;
  host.commands.reset();
  const ClassRegistration registered(__uuidof(::Command),
                                     [&] { return ComPtr<IUnknown>(command.get()); });
  host.import(host.open(vendors));
  const std::string notSet = "(91): " + RuntimeError(ErrorNumber::ObjectNotSet).description();
  CHECK(log() == Texts{noService, notSet, notSet, notSet, notSet});
  host.import(host.open(vendors, connection.get()));
  CHECK(log().back() == notSet);
  CHECK(host.database.procedureCalls().empty());
}

TEST_CASE("bad hosts: a service object that fails") {
  const ServiceStub service;
  const struct {
    int slot;
    bool opens;
    std::size_t posted;
    std::string logged;
  } rows[] = {{1, true, 4, "(-2147467259): Velk_frmVenOpn_OpnImp : initForm - "},
              {2, false, 0, "(-2147467259): Velk_frmVenOpn_OpnImp : initForm - "},
              {3, false, 0, "(-2147467259): Velk_frmVenOpn_OpnImp : initForm - "},
              {4, true, 0, "Error in Mapping Identical Fields"},
              {5, true, 4, "(-2147467259): The import stopped at its end: "},
              {6, true, 4, "(-2147467259): The import stopped at its end: "}};
  for (const auto& row : rows) {
    CAPTURE(row.slot);
    ServiceStub::failing = row.slot;
    Host host;
    const HWND screen = host.open(vendors);
    CHECK((screen != nullptr) == row.opens);
    if (screen != nullptr) host.import(screen);
    CHECK(host.database.procedureCalls().size() == row.posted);
    REQUIRE(log().size() == 1);
    CHECK(log()[0].starts_with(row.logged));
  }
}

/// The host's main window, whose control array takes the focus, and what it was asked.
struct MenuWindow final : NamedMembers {
  static constexpr const char* members[] = {"Item", "cmdMainMenu", "SetFocus"};
  DISPID idOf(std::string_view name) const override {
    const auto* found = std::find(std::begin(members), std::end(members), name);
    return found == std::end(members) ? DISPID_UNKNOWN : static_cast<DISPID>(found - members);
  }
  bool takesIndex(DISPID) const override { return true; }
  Variant get(DISPID member, const std::optional<Value>& index) override {
    asked.push_back(std::string(members[member]) + (index ? " " + toText(*index) : ""));
    if (member == 2) SetFocus(button);
    return Variant(this);
  }
  static inline HWND button = nullptr;
  static inline Texts asked;
};

TEST_CASE("bad hosts: key 0 moves the focus to the host's main menu") {
  StubObject<IVelkHostWindow> windows;
  ServiceStub service;
  service.answer(__uuidof(IVelkHostWindow), windows.get());
  windows.on(&IVelkHostWindow::get_MainWindow, [](void*, IDispatch** window) {
    *window = new MenuWindow;
    return S_OK;
  });
  MenuWindow::button =
      CreateWindowW(L"BUTTON", L"", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  Host host;
  host.open(customers);
  press(0);
  CHECK(GetFocus() == MenuWindow::button);
  CHECK(MenuWindow::asked == Texts{"cmdMainMenu", "Item 0", "SetFocus"});
  CHECK(log().empty());
  DestroyWindow(MenuWindow::button);
}

TEST_CASE("bad hosts: an object of a control is kept beyond its screen") {
  static ComPtr<IDispatch> kept;
  ServiceStub service;
  service.on(&IVelkHostService::ScreenReady, [](void*, IDispatch* screen, VARIANT_BOOL) {
    kept = memberObject(memberObject(screen, "cmdExit").Get(), "Font");
    const auto indexed = [&] {
      callMember(screen, "Caption", DISPATCH_PROPERTYGET, argumentList(1));
    };
    CHECK(errorOf(indexed) == 450);
    return S_OK;
  });
  Host host;
  host.open(customers);
  closeScreens();
  host.object.Reset();
  CHECK(host.dll.call("DllCanUnloadNow") == S_FALSE);
  CHECK(errorOf([] { callMember(kept.Get(), "Size", DISPATCH_PROPERTYGET); }) == 91);
  kept.Reset();
}

TEST_CASE("bad hosts: a thread ends with a screen open, and a later one gets its number") {
  const auto copy = std::filesystem::temp_directory_path() / "abandoned.dll";
  std::filesystem::copy_file(programFolder() / "Velk_OpnImp.dll", copy,
                             std::filesystem::copy_options::overwrite_existing);
  // Of its own, because it cannot go any more.
  const ServerDll dll(copy);
  DWORD ended = 0;
  HWND screen = nullptr;
  const auto open = [&] {
    const auto object = dll.makeObject();
    _Connection* connection = nullptr;
    IPictureDisp* icon = nullptr;
    CHECK(object->ImportCustomerOpening(&connection, &icon) == S_OK);
    return openScreens().at(0);
  };
  inAnotherApartment([&] {
    screen = open();
    ended = GetCurrentThreadId();
  });
  CHECK(IsWindow(screen) == FALSE);
  bool again = false;
  for (int i = 0; i < 5000 && !again; ++i) {
    inAnotherApartment([&] {
      if (GetCurrentThreadId() != ended) return;
      again = true;
      open();
      const HWND before = GetFocus();
      press(VK_TAB);
      CHECK(GetFocus() != before);
      CHECK(closeScreens().size() == 1);
    });
  }
  CHECK(again);
}

}  // namespace
}  // namespace velk
