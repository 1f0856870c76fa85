#include "benchmarks/allocation_count.h"

#include <cstdlib>
#include <new>

namespace {
std::uint64_t allocations = 0;
}

std::uint64_t vex::allocationCount() {
  return allocations;
}

// Arrays and the forms without exceptions come here too.
void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
