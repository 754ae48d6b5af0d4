#include <gtest/gtest.h>

#include <string>

#include "text/speed_str.h"

namespace {

TEST(SpeedStr, TakesEveryKindOfPart) {
    CSpeedStr part, builder;
    part += L"three";
    ((builder += L"one ") += RWWString(L"two ")) += part;
    builder += L'!';
    builder.append(L"\0?", 2);
    builder.append(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(builder.ToString(), std::wstring(L"one two three!\0?", 16));
    builder.Clear();
    EXPECT_TRUE(builder.isNull());
    builder += L"uvwxyz";
    builder.prepend(L"ab");
    EXPECT_EQ(builder.ToString(), std::wstring(L"abuvyz\0\0", 8)) << "no more move than are put in front";
}

}  // namespace
