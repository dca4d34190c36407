// The icon that the host hands over as an automation picture.
#pragma once

#include <windows.h>

#include <ole2.h>

#include "platform/windows/com_pointer.h"
#include "ui/form_shell.h"

namespace velk {

class OlePicture final : public Picture {
 public:
  /// Of an object that is a picture; the icon lives as long as this.
  explicit OlePicture(ComPtr<IUnknown> picture) : picture_(std::move(picture)) {}

  void requireIcon() const override { icon(); }
  const ComPtr<IUnknown>& picture() const { return picture_; }
  /// Error 481 when the picture is no icon.
  HICON icon() const;

 private:
  ComPtr<IUnknown> picture_;
};

}  // namespace velk
