set(MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(MINGW_LINK_FLAGS -Wl,--high-entropy-va)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
