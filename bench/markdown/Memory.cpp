#include "Memory.h"

#include <cstdlib>
#include <new>

#include <malloc.h>

namespace memory {
namespace {

std::size_t live = 0;
std::size_t peak = 0;

void* take(std::size_t size) {
  void* const taken = std::malloc(size);
  if (taken == nullptr) throw std::bad_alloc();
  live += malloc_usable_size(taken);
  if (live > peak) peak = live;
  return taken;
}

void giveBack(void* taken) noexcept {
  if (taken == nullptr) return;
  live -= malloc_usable_size(taken);
  std::free(taken);
}

}  // namespace

std::size_t liveBytes() noexcept { return live; }
std::size_t peakBytes() noexcept { return peak; }
void resetPeak() noexcept { peak = live; }

}  // namespace memory

void* operator new(std::size_t size) { return memory::take(size); }
void* operator new[](std::size_t size) { return memory::take(size); }
void operator delete(void* taken) noexcept { memory::giveBack(taken); }
void operator delete[](void* taken) noexcept { memory::giveBack(taken); }
void operator delete(void* taken, std::size_t) noexcept { memory::giveBack(taken); }
void operator delete[](void* taken, std::size_t) noexcept { memory::giveBack(taken); }
