// The values' tests run in several locales and time zones: QL_TEST_LOCALE names the C library's locale of the
// run.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

namespace {

class Surroundings : public testing::Environment {
  public:
    void SetUp() override {
        const char* const wanted = std::getenv("QL_TEST_LOCALE");
        if (!wanted) return;
        ASSERT_NE(nullptr, std::setlocale(LC_ALL, wanted)) << wanted;
        ASSERT_STREQ(",", std::localeconv()->decimal_point) << "a locale that could spoil a number";
    }
};

[[maybe_unused]] const testing::Environment* const kSurroundings =
    testing::AddGlobalTestEnvironment(new Surroundings);

}  // namespace
