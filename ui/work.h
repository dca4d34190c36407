// Long work of a handler: told to the shell, so that a window that takes no input does not look
// hung.
#pragma once

#include "ui/form.h"

namespace velk {

/// While it lives the form's handler works, and Form::workProgressed tells how far it is. At its
/// end, also at that of a part that is a work of its own, what the user did meanwhile is dropped.
class Work {
 public:
  explicit Work(Form& form) : form_(form) {}
  ~Work() { form_.workEnded(); }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;

 private:
  Form& form_;
};

}  // namespace velk
