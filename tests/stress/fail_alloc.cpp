// The linker sends malloc, calloc and realloc of every object file here
// (--wrap); new and delete are replaced for the whole program. Libraries that
// are loaded at run time keep their own.
#include "stress/fail_alloc.h"

#include <cstdlib>
#include <new>

extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* old, size_t size);
}

namespace vexel::test {

namespace {

bool g_armed = false;
int g_paused = 0;
bool g_failed = false;
FailMode g_mode = FailMode::kOnce;
int64_t g_left = 0;  // allocations until the first that fails

bool Fails() {
  if (!g_armed || g_paused > 0) return false;
  --g_left;
  const bool fails = g_mode == FailMode::kOnce ? g_left == 0 : g_left <= 0;
  g_failed |= fails;
  return fails;
}

}  // namespace

void ArmAllocations(FailMode mode, int64_t n) {
  g_mode = mode;
  g_left = n;
  g_failed = false;
  g_armed = true;
}

bool DisarmAllocations() {
  g_armed = false;
  return g_failed;
}

AllocationPause::AllocationPause() {
  ++g_paused;
}
AllocationPause::~AllocationPause() {
  --g_paused;
}

}  // namespace vexel::test

using vexel::test::Fails;

extern "C" {
void* __wrap_malloc(size_t size) {
  return Fails() ? nullptr : __real_malloc(size);
}
void* __wrap_calloc(size_t count, size_t size) {
  return Fails() ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* old, size_t size) {
  return Fails() ? nullptr : __real_realloc(old, size);
}
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return Fails() ? nullptr : __real_malloc(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return Fails() ? nullptr : __real_malloc(size);
}
void* operator new(size_t size) {
  void* memory = __real_malloc(size);
  if (!memory) abort();
  return memory;
}
void* operator new[](size_t size) {
  return operator new(size);
}
void operator delete(void* memory) noexcept {
  free(memory);
}
void operator delete[](void* memory) noexcept {
  free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
  free(memory);
}
