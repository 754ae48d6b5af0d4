#include <gtest/gtest.h>

#include "text/speed_str.h"

TEST(SpeedStr, TakesEveryKindOfPart) {
    CSpeedStr part, builder;
    part += L"three";
    ((builder += L"one ") += RWWString(L"two ")) += part;
    builder.append(L"\0?", 2);
    builder.append(static_cast<const wchar_t*>(nullptr));
    builder.append(L"x", 0xFFFFFFFF);  // more than there can be
    EXPECT_EQ(builder.ToString(), std::wstring(L"one two three\0?", 15));
    builder.Clear();
    EXPECT_TRUE(builder.isNull());
}
