// What this process has of what Windows counts: so a test sees what is never given back.
#pragma once

#include <windows.h>

#include <cstdint>

namespace velk {

/// Wine's own counters answer 0, so each is counted by what Windows shows of it.
struct LiveObjects {
  int windows = userObjects();
  int graphics = graphicsObjects();
  int kernel = kernelHandles();
  int threadSlots = takenThreadSlots();
  std::size_t memory = heapBytes();

  bool operator==(const LiveObjects&) const = default;

 private:
  static int userObjects() {
    constexpr int lastHandle = 0xFFFE;
    int count = 0;
    for (int low = 0; low <= lastHandle; low += 2) {
      DWORD process = 0;
      GetWindowThreadProcessId(reinterpret_cast<HWND>(static_cast<INT_PTR>(low)), &process);
      count += process == GetCurrentProcessId() ? 1 : 0;
    }
    return count;
  }

  /// In the table that the process environment block points to.
  static int graphicsObjects() {
    struct Entry {
      std::uint64_t object;
      std::uint32_t owner;
      std::uint16_t unique;
      std::uint8_t type, flags;
      std::uint64_t user;
    };
    constexpr int pointer = sizeof(void*) == 8 ? 0xF8 : 0x94;
    constexpr int entries = 0x4000;
    const FARPROC processBlock = GetProcAddress(GetModuleHandleW(L"ntdll"), "RtlGetCurrentPeb");
    const auto* block =
        reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(processBlock))();
    const auto* table = *reinterpret_cast<const Entry* const*>(block + pointer);
    int count = 0;
    for (int i = 0; i < entries; ++i) count += table[i].type != 0 ? 1 : 0;
    return count;
  }

  static int kernelHandles() {
    constexpr std::uintptr_t last = 0x4000;
    int count = 0;
    for (std::uintptr_t handle = 4; handle <= last; handle += 4) {
      DWORD flags = 0;
      count += GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE ? 1 : 0;
    }
    return count;
  }

  /// Those that are free are found by taking them all.
  static int takenThreadSlots() {
    constexpr int all = 64 + 1024;
    DWORD slots[all];
    int free = 0;
    while (free < all && (slots[free] = TlsAlloc()) != TLS_OUT_OF_INDEXES) ++free;
    for (int i = 0; i < free; ++i) TlsFree(slots[i]);
    return all - free;
  }

  static std::size_t heapBytes() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count; ++i) {
      PROCESS_HEAP_ENTRY entry{};
      HeapLock(heaps[i]);
      while (HeapWalk(heaps[i], &entry) != FALSE) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
      }
      HeapUnlock(heaps[i]);
    }
    return bytes;
  }
};

}  // namespace velk
