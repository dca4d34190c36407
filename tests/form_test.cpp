#include "ui/form.h"
#include "ui/tab_order.h"

#include <cmath>
#include <limits>
#include <new>
#include <stdexcept>

#include "tests/support/checks.h"
#include "ui/controls.h"
#include "ui/headless/headless_shell.h"

namespace velk {
namespace {

struct TestForm : Form {
  explicit TestForm(FormShell& shell) : Form(shell, "TestForm", "Test", {1, 2, 3, 4}) {
    go.onClick = [this] { ++clicks; };
  }
  void eventFailed(const RuntimeError& error) noexcept override {
    failures.push_back(std::to_string(error.number()) + " " + error.description());
    // The user is told in a message box, during which a second click can come.
    CHECK(go.userClick() == EventResult::Dropped);
  }
  void Form_KeyDown(std::int16_t key, std::int16_t) override { keys += key; }
  void Form_Resize() override {
    ++resizes;
    set(Property::Width, 100);
  }
  using Form::acceptEvents;

  Frame box{*this, "box", {}, "box"};
  CommandButton go{*this, &box, "go", {5, 6, 7, 8}, "&Go"};
  CommandButton other{*this, nullptr, "other", {}, ""};
  TextBox field{*this, &box, "field", {}};
  ComboBox combo{*this, nullptr, "combo", {}, {"first", "second"}};
  int clicks = 0;
  int keys = 0;
  int resizes = 0;
  Texts failures;
};

struct Opened {
  HeadlessShell shell;
  std::shared_ptr<TestForm> form = std::make_shared<TestForm>(shell);
  Opened() {
    form->show();
    form->acceptEvents();
  }
};

TEST_CASE("events that reach their handler and events that are dropped") {
  const std::pair<void (*)(TestForm&), int> rows[] = {
      {[](TestForm&) {}, 1},
      {[](TestForm& f) { f.go.setEnabled(false); }, 0},
      {[](TestForm& f) { f.go.setVisible(false); }, 0},
      {[](TestForm& f) { f.box.setEnabled(false); }, 0},
      {[](TestForm& f) { f.box.setVisible(false); }, 0},
      {[](TestForm& f) { f.other.setEnabled(false); }, 1},
      {[](TestForm& f) { f.unload(); }, 0},
      {[](TestForm& f) { f.go.onClick = nullptr; }, 0}};
  for (const auto& row : rows) {
    CAPTURE(&row - rows);
    const Opened opened;
    row.first(*opened.form);
    const auto result = opened.form->go.userClick();
    CHECK(result == (row.second == 1 ? EventResult::Handled : EventResult::Dropped));
    CHECK(opened.form->clicks == row.second);
  }
}

TEST_CASE("no event before the form is shown and accepts them") {
  HeadlessShell shell;
  const auto form = std::make_shared<TestForm>(shell), hidden = std::make_shared<TestForm>(shell);
  hidden->acceptEvents();
  CHECK(hidden->go.userClick() == EventResult::Dropped);
  form->show();
  CHECK(form->field.userText("x") == EventResult::Dropped);
  CHECK(form->field.value().empty());
  form->userKeyDown(65, 0);
  CHECK(form->keys == 0);
  form->acceptEvents();
  form->userKeyDown(65, 0);
  CHECK(form->keys == 65);
}

TEST_CASE("while a handler runs its form drops events, other forms do not") {
  const Opened one, two;
  one.form->go.onClick = [&] {
    CHECK(one.form->go.userClick() == EventResult::Dropped);
    CHECK(one.form->combo.userChoose(1) == EventResult::Dropped);
    one.form->userKeyDown(65, 0);
    CHECK(two.form->go.userClick() == EventResult::Handled);
  };
  CHECK(one.form->go.userClick() == EventResult::Handled);
  CHECK(one.form->keys == 0);
  CHECK(one.form->combo.index() == -1);
}

TEST_CASE("errors that a handler lets out leave the form usable") {
  const std::pair<void (*)(), Texts> rows[] = {
      {[] { throw RuntimeError(-5, "driver"); }, {"-5 driver"}},
      {[] { throw std::bad_alloc(); }, {"7 Out of memory"}},
      {[] { throw std::logic_error("what it was"); }, {"5 what it was"}},
      {[] { throw 1; }, {}}};  // no error: not ours to keep
  for (const auto& row : rows) {
    CAPTURE(row.second);
    const Opened opened;
    opened.form->other.onClick = row.first;
    if (row.second.empty()) {
      CHECK_THROWS_AS(opened.form->other.userClick(), int);
    } else {
      CHECK(opened.form->other.userClick() == EventResult::Failed);
    }
    CHECK(opened.form->failures == row.second);
    CHECK(opened.form->go.userClick() == EventResult::Handled);
  }
}

TEST_CASE("closing from a handler waits for its end, and the form lives until then") {
  Opened opened;
  const std::weak_ptr<TestForm> watch = opened.form;
  TestForm& form = *opened.form;
  form.other.onClick = [&] {
    opened.form.reset();
    form.unload();
    form.unload();
    CHECK(form.isOpen());
    CHECK(opened.shell.open().size() == 1);
    throw RuntimeError(ErrorNumber::Overflow);
  };
  CHECK(form.other.userClick() == EventResult::Failed);
  CHECK(opened.shell.open().empty());
  CHECK(watch.expired());
}

TEST_CASE("code that changes the size or the state raises the event, once and in its time") {
  HeadlessShell shell;
  const auto form = std::make_shared<TestForm>(shell);
  form->show();
  form->set(Property::Height, 7);  // by a host, while the form is set up
  CHECK(form->resizes == 0);
  form->acceptEvents();
  CHECK(form->resizes == 1);
  form->set(Property::Left, 9);
  CHECK(form->resizes == 1);
  form->set(Property::Width, 50);
  CHECK(form->resizes == 2);
  CHECK(form->number(Property::Width) == 100);
  form->other.onClick = [&] {
    form->set(Property::WindowState, 2);
    CHECK(form->resizes == 2);
  };
  form->other.userClick();
  CHECK(form->resizes == 3);
}

TEST_CASE("observers hear what code changed, once, and no echo of the user") {
  struct Recorder : FormObserver {
    void controlChanged(Control& control, Property property) override {
      heard.emplace_back(&control, property);
    }
    std::vector<std::pair<const Control*, Property>> heard;
  } recorder;
  const Opened opened;
  TestForm& form = *opened.form;
  form.setObserver(&recorder);
  form.field.userText("typed");
  form.combo.userChoose(1);
  CHECK(form.combo.text(Property::Text) == "second");
  form.field.setValue("typed");
  form.field.set(Property::Text, 12);
  form.combo.setIndex(0);
  CHECK((recorder.heard == decltype(recorder.heard){{&form.field, Property::Text},
                                                    {&form.combo, Property::ListIndex},
                                                    {&form.combo, Property::Text}}));
  CHECK(form.field.value() == "12");
}

TEST_CASE("properties that a bag has not, and values of another kind") {
  HeadlessShell shell;
  TestForm form(shell);
  CHECK(errorOf([&] { form.go.get(Property::BackColor); }) == 438);
  CHECK(errorOf([&] { form.set(Property::Icon, 1); }) == 438);
  CHECK(errorOf([&] { form.go.set(Property::Left, std::string("wide")); }) == 13);
  CHECK(errorOf([&] { form.combo.setIndex(2); }) == 380);
  for (const double size : {HUGE_VAL, std::nan("")}) {
    CHECK(errorOf([&] { form.go.set(Property::FontSize, size); }) == 380);
  }
  form.go.set(Property::Left, std::string(" 77 "));
  CHECK(form.go.number(Property::Left) == 77);
  for (const Value& on : {Value(1), Value(-1), Value("true"), Value("True"), Value(0.5)}) {
    form.go.set(Property::Enabled, Value("False"));
    CHECK_FALSE(form.go.enabled());
    form.go.set(Property::Enabled, on);
    CHECK(form.go.number(Property::Enabled) == PropertyBag::flagTrue);
  }
  CHECK(errorOf([&] { form.go.set(Property::Enabled, Value("yes")); }) == 13);
}

TEST_CASE("properties by name, in any letter case") {
  const std::pair<const char*, std::optional<Property>> rows[] = {
      {"NAME", Property::Name},
      {"height", Property::Height},
      {"CalendarforeColor", Property::CalendarForeColor},
      {"filename", Property::FileName},
      {"HWND", Property::hWnd},
      {"Icon", std::nullopt},
      {"", std::nullopt}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK((propertyNamed(row.first) == row.second));
  }
}

TEST_CASE("the tab order is that on the screen until code sets another") {
  HeadlessShell shell;
  struct Rows final : Form {
    explicit Rows(FormShell& to) : Form(to, "Rows", "", {}) {}
    void eventFailed(const RuntimeError&) noexcept override {}
    // As far down as a host can put it.
    TextBox low{*this, nullptr, "low", {0, std::numeric_limits<int>::max(), 100, 90}};
    Frame frame{*this, "frame", {0, 100, 500, 300}, ""};
    TextBox right{*this, &frame, "right", {200, 20, 100, 100}};
    TextBox left{*this, &frame, "left", {0, 40, 100, 60}};  // its middle is that of `right`
  };
  const auto rows = std::make_shared<Rows>(shell);
  const auto names = [&] {
    Texts all;
    for (const Control* control : tabOrder(*rows)) all.push_back(control->name());
    return all;
  };
  CHECK(names() == Texts{"frame", "left", "right", "low"});
  setTabIndex(*rows, rows->low, 1);
  CHECK(names() == Texts{"frame", "low", "left", "right"});
  setTabIndex(*rows, rows->frame, 99);
  CHECK(names() == Texts{"low", "left", "right", "frame"});
}

}  // namespace
}  // namespace velk
