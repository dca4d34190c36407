#define DOCTEST_CONFIG_IMPLEMENT
#include <ole2.h>

#include <doctest/doctest.h>

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const int failed = doctest::Context(argc, argv).run();
  CoUninitialize();
  return failed;
}
