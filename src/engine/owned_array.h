#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace vex {

template <typename T>
void deleteOwned(T* object) {
  delete object;
}

// Array of pointers to owned objects that ends in a null slot. It has one slot more than objects,
// allocated once; its size is found by walking to the null. "None" (no array) and an empty array are
// different things: the first is false and may be walked all the same.
// Objects are destroyed in array order by `destroy`, which tells derived records apart where T heads
// several of them.
template <typename T, void (*destroy)(T*) = deleteOwned<T>>
class OwnedArray {
 public:
  OwnedArray() = default;
  OwnedArray(OwnedArray&& other) noexcept : slots(std::exchange(other.slots, nullptr)) {}
  OwnedArray& operator=(OwnedArray&& other) noexcept {
    std::swap(slots, other.slots);
    return *this;
  }
  ~OwnedArray() { clear(); }

  // Room for `size` objects, all slots null. What was there is destroyed.
  void allocate(int size) {
    clear();
    slots = new T* [static_cast<std::size_t>(size) + 1] {};
  }

  // Destroys the objects in order, then the array; leaves none.
  void clear() {
    for (T* object : *this) destroy(object);
    delete[] std::exchange(slots, nullptr);
  }

  explicit operator bool() const { return slots != nullptr; }

  // Slot i, 0 to the size the array was allocated with.
  T*& operator[](int i) { return slots[i]; }
  T* operator[](int i) const { return slots[i]; }

  int count() const {
    int n = 0;
    while (slots && slots[n]) ++n;
    return n;
  }

  // Walks up to the first null slot.
  struct End {};
  struct Iterator {
    T** slot;
    T* operator*() const { return *slot; }
    Iterator& operator++() {
      ++slot;
      return *this;
    }
    bool operator!=(End) const { return slot && *slot; }
  };
  Iterator begin() const { return {slots}; }
  End end() const { return {}; }

 private:
  T** slots = nullptr;
};

}  // namespace vex
