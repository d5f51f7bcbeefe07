// A preloaded library that makes one allocation of the program fail, see AllocationFaultInjector.h.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tests/faults/AllocationControl.h"

// glibc's internal names of the replaced functions.
// NOLINTBEGIN
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}
// NOLINTEND

namespace {

seldial::tests::AllocationControl* control = nullptr;

__attribute__((constructor)) void attach() {
  const char* const path = std::getenv(seldial::tests::kAllocationControlVariable);
  const int descriptor = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
  if (descriptor == -1) return;
  void* const memory =
      mmap(nullptr, sizeof *control, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  close(descriptor);
  if (memory != MAP_FAILED) control = static_cast<seldial::tests::AllocationControl*>(memory);
}

/// libxcb waits forever if it has no memory for a reply: it marks its connection as broken, and
/// then polls it.
bool isOfXcb(const void* caller) {
  Dl_info object{};
  return dladdr(caller, &object) != 0 && std::strstr(object.dli_fname, "/libxcb") != nullptr;
}

bool fails(const void* caller) {
  if (control == nullptr || isOfXcb(caller)) return false;
  const int phase = control->phase;
  const long occurrence = control->counts[phase]++;
  if (phase != control->failingPhase || occurrence != control->failingOccurrence) return false;
  control->injected = true;
  errno = ENOMEM;
  return true;
}

}  // namespace

// NOLINTBEGIN
extern "C" {

void* malloc(size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_realloc(memory, size);
}

void* memalign(size_t alignment, size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, size_t alignment, size_t size) {
  if (fails(__builtin_return_address(0))) return ENOMEM;
  *memory = __libc_memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}

}  // extern "C"
// NOLINTEND
