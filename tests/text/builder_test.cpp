#include <gtest/gtest.h>

#include "text/speed_str.h"

TEST(SpeedStr, TakesCountedZerosAndLeavesOutWhatCannotBe) {
    CSpeedStr builder;
    builder.append(L"a\0?", 3);
    builder.append(static_cast<const wchar_t*>(nullptr));
    builder.append(L"x", 0xFFFFFFFF);  // more than there can be
    EXPECT_EQ(builder.ToString(), std::wstring(L"a\0?", 3));
    builder.Clear();
    EXPECT_TRUE(builder.isNull());
}
