// A buffer that grows in place where the allocator can, and never fills what nobody writes.
//
// A vector would zero what is about to be read over and copy at every growth; for a file of a
// hundred megabytes that costs more than reading it. The C library's realloc moves large blocks by
// remapping their pages.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include "base/errors.h"

namespace velk {

template <class T>
class GrowingBuffer {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  T* data() { return items_.get(); }
  const T* data() const { return items_.get(); }
  std::size_t capacity() const { return capacity_; }

  /// Makes room for `capacity` items; what stands in the buffer stays. Error 7 when there is none.
  void reserve(std::size_t capacity) {
    if (capacity <= capacity_) return;
    void* const grown = std::realloc(items_.get(), capacity * sizeof(T));
    if (grown == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
    static_cast<void>(items_.release());
    items_.reset(static_cast<T*>(grown));
    capacity_ = capacity;
  }

  /// Gives the items up for sharing; the buffer is empty again.
  std::shared_ptr<const T[]> release() {
    capacity_ = 0;
    return std::shared_ptr<const T[]>(items_.release(), Free{});
  }

 private:
  struct Free {
    void operator()(T* items) const { std::free(items); }
  };
  std::unique_ptr<T[], Free> items_;
  std::size_t capacity_ = 0;
};

}  // namespace velk
