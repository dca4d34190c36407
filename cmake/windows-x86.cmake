set(MINGW_TRIPLE i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR X86)
# Hosts call with a stack aligned to four bytes; results must not depend on their x87 settings.
set(MINGW_FLAGS -mstackrealign -msse2 -mfpmath=sse)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
