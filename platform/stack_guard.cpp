// What the compiler's guarded stacks and checked calls ask of each shipped module. The compiler's own library
// for it opens a provider of keys while the module is loaded: a DLL more, under the loader's lock, and 10 ms
// for every module.

#include "platform/win32.h"

#include <ntsecapi.h>

#include <cstdint>

// NOLINTBEGIN(bugprone-reserved-identifier): the compiler's own names
extern "C" {

std::uintptr_t __stack_chk_guard = 0;

[[noreturn]] void __stack_chk_fail();

// Nothing on this stack can be trusted: from Windows 8 on no handler is asked, and no destructor runs.
void __stack_chk_fail() {
    asm volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
    __builtin_unreachable();
}

// A call that was about to write behind its buffer.
[[noreturn, gnu::alias("__stack_chk_fail")]] void __chk_fail() noexcept;

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace {

// Not guarded itself: the value changes while it runs.
__attribute__((constructor, no_stack_protector)) void MakeStackGuard() {
    std::uintptr_t random = 0;
    // Without randomness, what an overrun by text alone cannot write.
    if (::RtlGenRandom(&random, sizeof random) == FALSE) random = 0xff0a'0d00;
    __stack_chk_guard = random;
}

}  // namespace
