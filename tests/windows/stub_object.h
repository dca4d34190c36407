// Takes the place of a COM object of which a test needs few members.
#pragma once

#include <ole2.h>

#include <array>
#include <cstring>

#include "tests/support/checks.h"

namespace velk {

/// Answers for one interface (and IUnknown) whose members give E_NOTIMPL until `on` sets them. It
/// lives as long as its scope and checks at its end that no reference is left.
template <class Interface>
class StubObject {
 public:
  StubObject() {
    members_.fill(reinterpret_cast<void*>(&notImplemented));
    members_[0] = reinterpret_cast<void*>(&query);
    members_[1] = reinterpret_cast<void*>(&addReference);
    members_[2] = reinterpret_cast<void*>(&release);
  }
  ~StubObject() { CHECK(references_ == 0); }
  StubObject(const StubObject&) = delete;
  StubObject& operator=(const StubObject&) = delete;

  /// `Function` is that of a lambda without captures: it takes the stub and the member's arguments.
  template <class Member, class Function>
  void on(Member member, Function) {
    // A pointer to a virtual member begins with its place in the table, in bytes, plus one.
    std::size_t place = 0;
    std::memcpy(&place, &member, sizeof place);
    members_.at((place - 1) / sizeof(void*)) = entry(&Function::operator());
  }
  /// Another identifier that it answers to, with another object or with itself.
  void answer(REFIID iid, IUnknown* object) {
    otherId_ = iid;
    other_ = object;
  }
  Interface* get() { return reinterpret_cast<Interface*>(this); }

 private:
  template <class Function, class Self, class... Arguments>
  static void* entry(HRESULT (Function::*)(Self*, Arguments...) const) {
    return reinterpret_cast<void*>(&forward<Function, Arguments...>);
  }
  template <class Function, class... Arguments>
  static HRESULT STDMETHODCALLTYPE forward(StubObject* self, Arguments... arguments) {
    return Function()(self, arguments...);
  }
  static HRESULT STDMETHODCALLTYPE notImplemented(StubObject*) { return E_NOTIMPL; }
  static ULONG STDMETHODCALLTYPE addReference(StubObject* self) { return ++self->references_; }
  static ULONG STDMETHODCALLTYPE release(StubObject* self) { return --self->references_; }
  static HRESULT STDMETHODCALLTYPE query(StubObject* self, REFIID iid, void** object) {
    const bool own = iid == __uuidof(Interface) || iid == __uuidof(IUnknown);
    auto* const given = own                     ? reinterpret_cast<IUnknown*>(self)
                        : iid == self->otherId_ ? self->other_
                                                : nullptr;
    *object = given;
    if (given != nullptr) given->AddRef();
    return given != nullptr ? S_OK : E_NOINTERFACE;
  }

  void** table_ = members_.data();
  std::array<void*, 128> members_;
  ULONG references_ = 0;
  IID otherId_{};
  IUnknown* other_ = nullptr;
};

}  // namespace velk
