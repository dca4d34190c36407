// What the record that begins an encrypted workbook says of its password.
#pragma once

#include <string_view>

namespace velk::xls {

enum class Opening {
  WithoutPassword,  ///< its structure is protected, and the password is one that programs know
  WithPassword,
  NotKnown  ///< another way of encryption, or a damaged record
};

/// By the payload of the record FilePass.
Opening openingOf(std::string_view filePass);

}  // namespace velk::xls
