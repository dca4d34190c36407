#include "platform/windows/forms/form_window.h"

#include <commctrl.h>

#include <algorithm>

#include "base/errors.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/forms/window_class.h"
#include "platform/windows/forms/window_factory.h"
#include "platform/windows/handles.h"
#include "platform/windows/module_path.h"
#include "platform/windows/ole_picture.h"
#include "platform/windows/pending_input.h"
#include "platform/windows/wide_text.h"
#include "ui/tab_order.h"

namespace velk {

namespace {

constexpr UINT flushMessage = WM_APP + 1;
// Of a fixed size: no border to drag.
constexpr DWORD formStyle =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;

// The platform's numbers for the keys that are held down with another.
std::int16_t shiftState() {
  const auto down = [](int key) { return GetKeyState(key) < 0; };
  return static_cast<std::int16_t>((down(VK_SHIFT) ? 1 : 0) + (down(VK_CONTROL) ? 2 : 0) +
                                   (down(VK_MENU) ? 4 : 0));
}

}  // namespace

FormWindow::FormWindow(std::shared_ptr<Form> form, std::shared_ptr<void> keep)
    : keep_(std::move(keep)), form_(std::move(form)), scale_(Scale::ofDisplay()) {
  makeWindow();
  try {  // the destructor does not run for an object whose constructor fails
    makeControls();
  } catch (...) {
    destroy();
    throw;
  }
  form_->setObserver(this);
  // Handles of windows have 32 significant bits, on 64-bit Windows, too.
  form_->set(Property::hWnd, static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(handle_)));
}

FormWindow::~FormWindow() {
  destroy();
}

void FormWindow::makeWindow() {
  const Bounds at = scale_.pixels(form_->bounds());
  // Before the controls are made: the classes of lists and tooltips are not there by themselves.
  const INITCOMMONCONTROLSEX lists{sizeof(INITCOMMONCONTROLSEX),
                                   ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
  InitCommonControlsEx(&lists);
  handle_ = CreateWindowExW(WS_EX_CONTROLPARENT, registeredClass(formClass, procedure),
                            toWide(form_->text(Property::Caption)).c_str(), formStyle, at.left,
                            at.top, at.width, at.height, nullptr, nullptr, thisModule(), nullptr);
  if (handle_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  applyIcon();
}

// As they stand on the screen, so that each frame is there before what it contains.
void FormWindow::makeControls() {
  const auto keep = [this] { return weak_from_this().lock(); };
  for (Control* control : orderOnScreen(*form_)) {
    const ControlWindow* frame =
        control->container() == nullptr ? nullptr : windowOf(*control->container());
    const HWND parent = frame == nullptr ? handle_ : frame->handle();
    if (auto window = makeControlWindow(*control, {parent, scale_, fonts_, keep})) {
      controls_.push_back(std::move(window));
    }
  }
  nameBoxes();
  applyTabOrder();
}

// The Tab key goes from the top of the stack of windows to its bottom.
void FormWindow::applyTabOrder() const {
  for (const Control* control : tabOrder(*form_)) {
    if (const ControlWindow* window = windowOf(*control)) window->putLast();
  }
}

// What a box is for stands on its frame.
void FormWindow::nameBoxes() const {
  for (const auto& window : controls_) {
    const Control& control = window->control();
    const bool isBox = control.has(Property::Text) && control.container() != nullptr;
    if (isBox) window->nameBy(control.container()->text(Property::Caption));
  }
}

void FormWindow::show() {
  applyVisible(SW_SHOWNORMAL);
  // The first one in the order of the Tab key; Windows does so for dialogs only.
  SetFocus(GetNextDlgTabItem(handle_, nullptr, FALSE));
}

void FormWindow::destroy() noexcept {
  if (handle_ == nullptr) return;
  const HWND window = std::exchange(handle_, nullptr);
  form_->setObserver(nullptr);
  // Its last messages must not reach an object that may be half gone.
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  DestroyWindow(window);
}

// Windows of the same class may belong to another copy of this code, with objects of its own.
std::shared_ptr<FormWindow> FormWindow::of(HWND window) {
  const HWND root = GetAncestor(window, GA_ROOT);
  if (root == nullptr ||
      GetClassLongPtrW(root, GCLP_WNDPROC) != reinterpret_cast<ULONG_PTR>(procedure)) {
    return nullptr;
  }
  auto* found = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(root, GWLP_USERDATA));
  return found == nullptr ? nullptr : found->weak_from_this().lock();
}

ControlWindow* FormWindow::windowOf(const Control& control) const {
  const auto found = std::ranges::find_if(
      controls_, [&](const auto& window) { return &window->control() == &control; });
  return found == controls_.end() ? nullptr : found->get();
}

// The innermost: frames hold what their controls hold, and a list its header.
ControlWindow* FormWindow::holding(HWND window) const {
  for (; window != nullptr && window != handle_; window = GetAncestor(window, GA_PARENT)) {
    const auto found =
        std::ranges::find(controls_, window, [](const auto& c) { return c->handle(); });
    if (found != controls_.end()) return found->get();
  }
  return nullptr;
}

// Messages

LRESULT CALLBACK FormWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  const MaskedFloatingPoint masked;
  const auto alive = self->weak_from_this().lock();  // null while it is being made
  try {
    const LRESULT answer = self->handle(message, wParam, lParam);
    if (message != flushMessage) self->changeLater();
    return answer;
  } catch (...) {
    // No exception crosses Windows: what a handler lets out was told to the user before.
    return 0;
  }
}

LRESULT FormWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      command(wParam, reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_NOTIFY:
      return notify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC:
      return color(message, wParam, lParam);
    case WM_ERASEBKGND:
      erase(reinterpret_cast<HDC>(wParam));
      return TRUE;
    case WM_SYSCOLORCHANGE:
      showSystemColors();
      return 0;
    // Windows remembers the focused control for dialogs only.
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) focus_ = GetFocus();
      return defaultHandling(message, wParam, lParam);
    case WM_SETFOCUS:
      takeFocusBack();
      return 0;
    case WM_WINDOWPOSCHANGED:
      return positionChanged(wParam, lParam);
    case WM_DESTROY:  // by the host, or with the end of its thread
      destroy();
      [[fallthrough]];
    case WM_CLOSE:
      form_->unload();
      return 0;
    case flushMessage:
      flush();
      return 0;
    default:
      return defaultHandling(message, wParam, lParam);
  }
}

// A run may have disabled the control meanwhile: a window that is disabled gets no keys.
void FormWindow::takeFocusBack() const {
  if (focus_ == nullptr || IsChild(handle_, focus_) == FALSE) return;
  const bool takesKeys = IsWindowEnabled(focus_) != FALSE && IsWindowVisible(focus_) != FALSE;
  SetFocus(takesKeys ? focus_ : GetNextDlgTabItem(handle_, focus_, FALSE));
}

void FormWindow::command(WPARAM wParam, HWND control) {
  if (ControlWindow* window = control == nullptr ? nullptr : holding(control)) {
    return window->command(HIWORD(wParam));
  }
  // IsDialogMessage turns the Enter key into IDOK.
  // Enter presses the button that has the focus.
  if (LOWORD(wParam) != IDOK) return;
  const ControlWindow* focused = holding(GetFocus());
  if (focused != nullptr && dynamic_cast<CommandButton*>(&focused->control()) != nullptr) {
    SendMessageW(focused->handle(), BM_CLICK, 0, 0);
  }
}

LRESULT FormWindow::notify(NMHDR& header) const {
  ControlWindow* control = holding(header.hwndFrom);
  return control == nullptr ? 0 : control->notify(header);
}

LRESULT FormWindow::color(UINT message, WPARAM wParam, LPARAM lParam) const {
  const ControlWindow* control = holding(reinterpret_cast<HWND>(lParam));
  const HBRUSH brush = control == nullptr ? nullptr : control->color(reinterpret_cast<HDC>(wParam));
  return brush != nullptr ? reinterpret_cast<LRESULT>(brush)
                          : defaultHandling(message, wParam, lParam);
}

void FormWindow::erase(HDC dc) const {
  RECT all;
  GetClientRect(handle_, &all);
  SetDCBrushColor(dc, toColorRef(form_->number(Property::BackColor)));
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

// Only top windows are told, and a colour of the model may be one of the system's.
void FormWindow::showSystemColors() const {
  for (const auto& window : controls_) {
    SendMessageW(window->handle(), WM_SYSCOLORCHANGE, 0, 0);
    window->propertyChanged(Property::BackColor);
  }
  RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE);
}

WindowState FormWindow::state() const {
  if (IsIconic(handle_) != FALSE) return WindowState::Minimised;
  return IsZoomed(handle_) != FALSE ? WindowState::Maximised : WindowState::Normal;
}

LRESULT FormWindow::positionChanged(WPARAM wParam, LPARAM lParam) {
  const LRESULT answer = defaultHandling(WM_WINDOWPOSCHANGED, wParam, lParam);
  moved(*reinterpret_cast<const WINDOWPOS*>(lParam));
  return answer;
}

// A move alone is no event, as it changes neither size nor state; what code does is no user's
// doing.
void FormWindow::moved(const WINDOWPOS& position) {
  if (applying_ || handle_ == nullptr) return;
  if ((position.flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW)) != 0) {
    form_->userVisible((position.flags & SWP_SHOWWINDOW) != 0);
  }
  const bool sized = (position.flags & SWP_NOSIZE) == 0;
  if (!sized && state() == form_->windowState()) return;
  RECT outer;
  GetWindowRect(handle_, &outer);
  const Bounds known = form_->bounds();
  const bool iconic = state() == WindowState::Minimised;
  // A minimised window's own place is far outside the screen.
  form_->userResize(state(), iconic ? known : scale_.twips(outer, known));
  flush();
}

bool FormWindow::preTranslate(const MSG& message) {
  if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
    form_->userKeyDown(static_cast<std::int16_t>(message.wParam), shiftState());
    if (handle_ == nullptr) return true;  // the key has closed the form
    ControlWindow* focused = holding(message.hwnd);
    if (focused != nullptr && focused->keyDown(message.wParam, shiftState())) return true;
  }
  // A letter alone is no mnemonic: the dialog manager takes it for one where no text is typed.
  if (message.message == WM_CHAR) return false;
  MSG copy = message;  // the call may change what the host's loop still needs
  return IsDialogMessageW(handle_, &copy) != FALSE;
}

Menu* FormWindow::popup(const Menu& menu) const {
  std::vector<Menu*> items;
  const UniqueMenu shown(CreatePopupMenu());
  for (Control* control : form_->controls()) {
    auto* item = dynamic_cast<Menu*>(control);
    if (item == nullptr || item->container() != &menu || !item->visible()) continue;
    items.push_back(item);
    // Numbered from 1, because 0 is the answer for a menu without a choice.
    AppendMenuW(shown.get(), MF_STRING | (item->enabled() ? MF_ENABLED : MF_GRAYED), items.size(),
                toWide(item->text(Property::Caption)).c_str());
  }
  POINT at{};
  GetCursorPos(&at);
  for (const auto& control : controls_) at = control->menuPlace().value_or(at);
  const BOOL chosen = TrackPopupMenuEx(shown.get(), TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON,
                                       at.x, at.y, handle_, nullptr);
  return chosen <= 0 ? nullptr : items[static_cast<std::size_t>(chosen) - 1];
}

// What the code changed

void FormWindow::formChanged(Property property) {
  if (handle_ == nullptr) return;
  // A host may close the form as it is shown or activated.
  const auto alive = weak_from_this().lock();
  switch (property) {
    case Property::Caption:
      SetWindowTextW(handle_, toWide(form_->text(Property::Caption)).c_str());
      break;
    case Property::BackColor:
      RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE);
      break;
    case Property::Icon:
      applyIcon();
      break;
    case Property::Visible:
      applyVisible(form_->visible() ? SW_SHOW : SW_HIDE);
      break;
    case Property::Enabled:
      EnableWindow(handle_, form_->flag(Property::Enabled) ? TRUE : FALSE);
      break;
    case Property::Focus:
      SetActiveWindow(handle_);
      break;
    case Property::TabOrder:
      applyTabOrder();
      break;
    case Property::hWnd:
    case Property::Tag:
      break;
    default:
      // Put off: code sets several of these in a row, and each would resize the window.
      boundsChanged_ = true;
      changeLater();
  }
}

void FormWindow::controlChanged(Control& control, Property property) {
  const auto alive = weak_from_this().lock();  // a focus that moves runs handlers
  ControlWindow* const window = windowOf(control);
  // First: while the user is in another program it is for when he comes back.
  if (window != nullptr && property == Property::Focus) focus_ = window->handle();
  if (window != nullptr) window->propertyChanged(property);
  if (property == Property::Caption) nameBoxes();
  changeLater();
}

void FormWindow::workProgressed(std::size_t done, std::size_t total) {
  progress_.show(handle_, form_->text(Property::Caption), done, total);
}

void FormWindow::workEnded() noexcept try {
  dropPendingInput();
  progress_.end(handle_, form_->text(Property::Caption));
} catch (...) {
  // Without memory the title bar keeps the progress; the work has ended all the same.
}

// Once for any number of changes, at the next turn of whatever message loop runs: the host's, or
// that of a message box.
void FormWindow::changeLater() {
  if (flushPosted_ || handle_ == nullptr) return;
  const bool needed = boundsChanged_ || std::ranges::any_of(controls_, [](const auto& window) {
                        return window->needsFlush();
                      });
  if (needed) flushPosted_ = PostMessageW(handle_, flushMessage, 0, 0) != FALSE;
}

void FormWindow::flush() {
  flushPosted_ = false;
  for (const auto& window : controls_) window->flush();
  if (std::exchange(boundsChanged_, false)) applyBounds();
}

// A state that was set while the window was hidden would have shown it, so that it is due now.
void FormWindow::applyVisible(int command) {
  applying_ = true;
  ShowWindow(handle_, command);
  applying_ = false;
  boundsChanged_ = true;
  changeLater();
}

// The window's place in the maximised and minimised states is Windows' own matter.
void FormWindow::applyBounds() {
  applying_ = true;
  const WindowState wanted = form_->windowState();
  if (state() != wanted && form_->visible()) {
    ShowWindow(handle_, wanted == WindowState::Minimised   ? SW_MINIMIZE
                        : wanted == WindowState::Maximised ? SW_MAXIMIZE
                                                           : SW_RESTORE);
  }
  if (wanted == WindowState::Normal) {
    const Bounds at = scale_.pixels(form_->bounds());
    SetWindowPos(handle_, nullptr, at.left, at.top, at.width, at.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  }
  applying_ = false;
}

void FormWindow::applyIcon() const {
  const auto* picture = dynamic_cast<const OlePicture*>(form_->icon().get());
  const HICON icon = picture != nullptr ? picture->icon() : LoadIconW(nullptr, IDI_APPLICATION);
  SendMessageW(handle_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
  SendMessageW(handle_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
}

}  // namespace velk
