// ADO's interfaces, under their own names.
#pragma once

#include <ado_com.h>

#include "platform/windows/com_errors.h"

namespace velk {

/// Interface ids that newer versions of ADO gave to the same members; an object may answer to them
/// only.
inline constexpr IID newerConnectionId = {
    0x00001550, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
inline constexpr IID newerCommandId = {
    0x986761E8, 0x7269, 0x4890, {0xAA, 0x65, 0xAD, 0x7C, 0x03, 0x69, 0x7A, 0x6D}};

}  // namespace velk
