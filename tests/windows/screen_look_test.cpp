// What each control of each screen looks like: its text, font and colours, as they are painted.
#include <ole2.h>

#include <commctrl.h>
#include <ocidl.h>
#include <olectl.h>

#include "platform/windows/ole_picture.h"
#include "tests/windows/open_screen.h"
#include "tests/windows/seen_text.h"

namespace velk {
namespace {

// By the rows of ColorSettings: frames and the form, labels, then lists and boxes. Numbers of no
// palette, so that nothing else is painted in them.
constexpr COLORREF backs[] = {0xF8E8D8, 0xD8F8E8, 0xE8F8F8};
constexpr COLORREF fores[] = {0x6B2211, 0x116B22, 0x22116B};
constexpr Look inFrame{L"Arial", fores[0], backs[0]};
constexpr Look inLabel{L"Arial", fores[1], backs[1]};
constexpr Look inList{L"Arial", fores[2], backs[2]};
constexpr Look inBold{L"Arial", fores[2], backs[2], true};

struct ScreenCase {
  std::string caption;
  ScreenMaker make;
  std::string dataFrameFace;
  Texts titles;         ///< of the mapping list
  std::string file;     ///< its first column maps by its title to the third field
  Texts previewTitles;  ///< of the file
};

const ScreenCase screenCases[] = {
    {"Import Customer Opening",
     customerScreen,
     "Arial",
     {"Customer ID", "Party", "Reference", "Date", "Bill Amount", "Balance", "Document Type"},
     "Reference,other\r\nR1,x\r\n",
     {"Reference", "other"}},
    {"Import VendorOpening",
     vendorScreen,
     "Arial",
     {"Vendor ID", "Vendor Name", "Reference", "Date", "Bill Amount", "Balance"},
     "Reference,other\r\nR1,x\r\n",
     {"Reference", "other"}},
    {"Import - Bank & Branch",
     masterScreen,
     "MS Sans Serif",
     {"Bank Code", "Bank Name", "Branch Code", "Branch Name"},
     "Branch Code,other\r\nR1,x\r\n",
     {"Branch Code", "other"}},
};

/// The host's icon, as the picture that it hands over.
struct HostIcon {
  HICON icon = CopyIcon(LoadIconW(nullptr, IDI_WARNING));
  std::shared_ptr<const Picture> picture() const {
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_ICON;
    description.icon.hicon = icon;
    void* made = nullptr;
    REQUIRE(SUCCEEDED(OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, &made)));
    auto* object = static_cast<IUnknown*>(made);
    const auto picture = std::make_shared<OlePicture>(queryInterface<IUnknown>(object));
    object->Release();
    return picture;
  }
};

/// A screen of each kind, with a file viewed and nothing in the way of its looks.
struct ShownScreen : OpenScreen {
  explicit ShownScreen(const ScreenCase& what) {
    world.host->captions["Customer Name"] = "Party";
    FakeRows colours;
    for (const std::size_t row : {0U, 1U, 2U}) {
      colours.push_back({"", std::to_string(backs[row]), std::to_string(fores[row])});
    }
    world.database->answerRows("Select * From ColorSettings", colours);
    open(what.make, {}, icon.picture());
    world.view(*screen, what.file);
    for (const char* button : {"&View", "&Import"}) EnableWindow(window.button(button), TRUE);
    SetFocus(window.button("&Clear"));  // from the box, which shows a choice with the focus as such
    pump();
    RedrawWindow(window.handle, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  }

  HostIcon icon;
};

Texts titlesOf(HWND list) {
  Texts titles;
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  wchar_t text[64];
  HDITEMW item{};
  item.mask = HDI_TEXT;
  item.pszText = text;
  item.cchTextMax = 64;
  while (SendMessageW(header, HDM_GETITEMW, titles.size(), reinterpret_cast<LPARAM>(&item))) {
    titles.push_back(fromWide(item.pszText));
  }
  return titles;
}

COLORREF pixel(HWND of, int x, int y) {
  const HDC dc = GetDC(of);
  const COLORREF colour = GetPixel(dc, x, y);
  ReleaseDC(of, dc);
  return colour;
}

LONG topOf(HWND window) {
  RECT at{};
  GetWindowRect(window, &at);
  return at.top;
}

/// Window and lists: what is no text inside a control.
void checkScreen(const ShownScreen& shown, const ScreenCase& what) {
  const Window& window = shown.window;
  CHECK(textOf(window.handle) == what.caption);
  for (const WPARAM size : {ICON_SMALL, ICON_BIG}) {
    const LRESULT icon = SendMessageW(window.handle, WM_GETICON, size, 0);
    CHECK(reinterpret_cast<HICON>(icon) == shown.icon.icon);
  }
  CHECK(pixel(window.handle, 2, 2) == backs[0]);
  const HWND frame = GetParent(window.list(0));
  CHECK(textOf(frame).empty());
  CHECK(faceOf(frame) == what.dataFrameFace);
  CHECK(pixel(frame, 5, 50) == backs[0]);
  for (const int list : {0, 1}) CHECK(pixel(window.list(list), 500, 100) == backs[2]);
  CHECK(titlesOf(window.list(0)) == what.previewTitles);
  CHECK(titlesOf(window.list(1)) == what.titles);
  // A label is above the list that it names.
  CHECK(topOf(window.button("CSV File Data")) < topOf(window.list(0)));
  CHECK(topOf(window.list(0)) < topOf(window.button("Mapped to")));
  CHECK(topOf(window.button("Mapped to")) < topOf(window.list(1)));
}

struct SeenText {
  HWND window;
  std::string text;
  Look look;
};

void checkTexts(std::initializer_list<SeenText> rows) {
  for (const SeenText& row : rows) {
    CAPTURE(row.text);
    CHECK(row.window != nullptr);
    CHECK(faceOf(row.window) == "Arial");
    CHECK(shows(row.window, row.text, row.look));
  }
}

/// Choosing salesmen shows the button.
void checkMasterControls(const ShownScreen& shown, HWND type, const Look& inButton) {
  checkTexts({{type, "Bank && Branch", inList}});
  chooseSalesmen(shown.window);
  const HWND button = shown.window.button("&Export DS");
  UpdateWindow(button);
  checkTexts({{button, "&Export DS", inButton}});
}

TEST_CASE("windows: what each control of each screen looks like") {
  const Look inButton{L"Arial", GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNFACE)};
  for (const ScreenCase& what : screenCases) {
    CAPTURE(what.caption);
    const ShownScreen shown(what);
    const Window& window = shown.window;
    checkScreen(shown, what);
    checkTexts({{window.button("Select the CSV file"), "Select the CSV file", inFrame},
                {shown.ofClass(L"Edit"), "in.cs", inList},  // the box moves "v" closer
                {window.button("&Browse"), "&Browse", inButton},
                {window.button("&View"), "&View", inButton},
                {window.button("CSV File Data"), "CSV File Data", inLabel},
                {window.list(0), "R1", inList},
                {window.button("Mapped to"), "Mapped to", inLabel},
                {window.list(1), what.titles[2], inBold},
                {window.list(1), "Not Yet", inList},
                {window.list(1), "R1", inList},
                {window.button("&Clear"), "&Clear", inButton},
                {window.button("&Import"), "&Import", inButton},
                {window.button("C&lose"), "C&lose", inButton}});
    const HWND type = shown.ofClass(L"ComboBox");
    if (type != nullptr) checkMasterControls(shown, type, inButton);
  }
}

}  // namespace
}  // namespace velk
