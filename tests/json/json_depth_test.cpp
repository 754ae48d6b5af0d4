#include <gtest/gtest.h>

#include "json/json.h"
#include "platform/unique_handle.h"

namespace {

constexpr std::size_t kDepth = 10'000'000;
constexpr std::ptrdiff_t kStackBytes = 64 << 10;

#ifdef _WIN32
constexpr DWORD kExactly = STACK_SIZE_PARAM_IS_A_RESERVATION;

// Some systems reserve more stack than was asked for: the pages beyond it are made to fault.
bool CutStack() {
    MEMORY_BASIC_INFORMATION page{};
    if (!VirtualQuery(&page, &page, sizeof page)) return false;
    auto* const lowest = static_cast<char*>(page.AllocationBase);
    auto* const highest = static_cast<char*>(page.BaseAddress) + page.RegionSize;
    const auto excess = highest - lowest - kStackBytes;
    DWORD former = 0;
    return excess <= 0 || VirtualProtect(lowest, static_cast<SIZE_T>(excess), PAGE_NOACCESS, &former);
}
#else
constexpr DWORD kExactly = 0;

// Elsewhere a thread's stack is larger, and still too small for a call on each level.
bool CutStack() {
    return true;
}
#endif

// Arrays in objects in arrays.
std::wstring NestedDocument() {
    std::wstring document;
    for (std::size_t i = 0; i < kDepth / 2; ++i) document += L"[{\"\":";
    document += L"[]";
    for (std::size_t i = 0; i < kDepth / 2; ++i) document += L"}]";
    return document;
}

// What cannot be done so deep; null when all can.
const char* FirstFailure() {
    if (!CutStack()) return "the stack is not small";
    if (JSON::Parse(std::wstring(kDepth, L'['))) return "refused unclosed";
    auto tree = std::make_unique<JSON::Value>(JSON::Array);
    for (std::size_t i = 1; i < kDepth; ++i) {
        auto outer = std::make_unique<JSON::Value>(JSON::Array);
        if (!outer->AddElement(std::move(tree))) return "made by hand";
        tree = std::move(outer);
    }
    tree.reset();
    const std::wstring document = NestedDocument();
    tree = JSON::Parse(document);
    if (!tree || JSON::Serialize(tree.get()).str() != document) return "parsed and written";
    const auto copy = tree->Clone();
    tree.reset();
    return copy && JSON::Serialize(copy.get()).str() == document ? nullptr : "copied and destroyed";
}

DWORD WINAPI Try(void* failure) {
    *static_cast<const char**>(failure) = FirstFailure();
    return 0;
}

}  // namespace

TEST(JsonDepth, TenMillionLevelsAreNoMatterOnASmallStack) {
    const char* failure = "run";
    const ql::UniqueKernelHandle thread(
        ::CreateThread(nullptr, kStackBytes, &Try, &failure, kExactly, nullptr));
    ::WaitForSingleObject(thread.get(), INFINITE);
    EXPECT_STREQ(nullptr, failure);
}
