// Writes behind what it has on its stack, as a fault in a shipped program would.
#include <cstdint>

extern "C" std::uintptr_t __stack_chk_guard;  // NOLINT(bugprone-reserved-identifier): the compiler's own name

int main() {
    if (__stack_chk_guard == 0) return 1;
    [[maybe_unused]] volatile char room[16];
    for (int at = 0; at < 64; ++at) room[at] = 'x';
}
