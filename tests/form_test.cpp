#include "ui/form.h"

#include <cmath>
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
  using Form::acceptEvents;

  Frame box{*this, "box", {}, "box"};
  CommandButton go{*this, &box, "go", {5, 6, 7, 8}, "&Go"};
  CommandButton other{*this, nullptr, "other", {}, ""};
  TextBox field{*this, &box, "field", {}};
  ComboBox combo{*this, nullptr, "combo", {}, {"first", "second"}};
  int clicks = 0;
  int keys = 0;
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

}  // namespace
}  // namespace velk
