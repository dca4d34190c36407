# Builds for Windows with mingw-w64. The -posix compilers: the others have no std::mutex.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_CXX_COMPILER ${MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${MINGW_TRIPLE}-windres)

# The oldest Windows that the component runs on is 7.
string(JOIN " " CMAKE_CXX_FLAGS_INIT ${MINGW_FLAGS} -ffunction-sections -fdata-sections
       -DUNICODE -D_UNICODE -DNOMINMAX -DWIN32_LEAN_AND_MEAN -D_WIN32_WINNT=0x0601)
# Static: no run-time beyond what Windows has. Without the time of the build, so that the same
# sources make the same bytes.
string(JOIN " " MINGW_LINK -static -s -Wl,--no-insert-timestamp -Wl,--gc-sections -Wl,--dynamicbase -Wl,--nxcompat
       ${MINGW_LINK_FLAGS})
set(CMAKE_EXE_LINKER_FLAGS_INIT ${MINGW_LINK})
set(CMAKE_SHARED_LINKER_FLAGS_INIT ${MINGW_LINK})
