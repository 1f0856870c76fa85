#include "tests/support/child_cases.h"

#include <sys/mman.h>

#include <cstddef>
#include <new>

namespace vex {

std::vector<ChildResult> runCasesInChildren(int count, const std::function<int(int)>& body) {
  const std::size_t size = sizeof(int) * static_cast<std::size_t>(count + 1);
  void* shared = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) throw std::bad_alloc();
  int& next = static_cast<int*>(shared)[0];
  int* returned = static_cast<int*>(shared) + 1;
  std::vector<ChildResult> results;
  while (next < count) {
    const ChildResult result = runInChild([&] {
      for (; next < count; ++next) returned[next] = body(next);
    });
    for (int i = static_cast<int>(results.size()); i < next; ++i) results.push_back({returned[i], ""});
    if (next++ < count) results.push_back(result);
  }
  munmap(shared, size);
  return results;
}

}  // namespace vex
