// The machine's active code page.
#pragma once

#include "base/text.h"

namespace velk {

/// The system's single-byte code page; windows-1252 where the active one is double-byte or UTF-8.
CodePage activeCodePage();

/// A single-byte code page by its number.
CodePage codePageOf(unsigned number);

}  // namespace velk
