// Whether the program was built to watch itself for wrong uses of memory.
#pragma once

namespace velk {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
inline constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
inline constexpr bool isSanitized = false;
#endif

}  // namespace velk
