#define DOCTEST_CONFIG_IMPLEMENT
// At a thread's end mingw's 32-bit run-time frees thread-local objects and destroys them
// afterwards. Here one thread checks at a time, so that they need not be.
#define DOCTEST_THREAD_LOCAL
#include <ole2.h>

#include <doctest/doctest.h>

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const int failed = doctest::Context(argc, argv).run();
  CoUninitialize();
  return failed;
}
