#include <gtest/gtest.h>

#include <string>

#include "text/speed_str.h"

namespace {

std::wstring TextOf(CSpeedStr& builder) {
    EXPECT_EQ(builder.data()[builder.length()], L'\0');
    EXPECT_EQ(builder.ToString(), std::wstring_view(builder.data(), builder.length()));
    return builder.ToString().str();
}

TEST(SpeedStr, KeepsItsTextAcrossTheMoveToTheHeap) {
    std::wstring expected;
    CSpeedStr builder;
    for (unsigned i = 0; i < 1200; ++i) {
        expected += static_cast<wchar_t>(L'a' + i % 26);
        builder += expected.back();
        ASSERT_EQ(TextOf(builder), expected);
        ASSERT_EQ(builder[i], expected[i]);
    }
}

TEST(SpeedStr, TakesEveryKindOfPart) {
    CSpeedStr part, builder;
    part += L"three";
    ((builder += L"one ") += RWWString(L"two ")) += part;
    builder += L'!';
    builder.append(L"\0?", 2);
    builder.append(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(TextOf(builder), std::wstring(L"one two three!\0?", 16));
    EXPECT_EQ(builder[16], L'\0') << "beyond the text";
}

TEST(SpeedStr, TakesPiecesOfItself) {
    for (const std::size_t length : {10, 300, 600}) {
        const std::wstring text = std::wstring(length - 2, L'x') + L"yz";
        CSpeedStr builder;
        builder += text.c_str();
        builder += builder;
        builder.append(builder.data() + length - 2, 2);
        EXPECT_EQ(TextOf(builder), text + text + L"yz") << length;
        builder.prepend(builder.data() + 1);
        EXPECT_EQ(builder.length(), 2 * (2 * length + 2) - 1) << length;
        EXPECT_EQ(builder.ToString().view().substr(0, 2 * length + 1), (text + text + L"yz").substr(1))
            << length;
    }
}

TEST(SpeedStr, PrependMovesOnlyAsManyUnitsAsItPutsInFront) {
    const std::wstring full(511, L'x');
    const std::wstring cases[][3] = {
        {L"", L"abc", L"abc"},
        {L"wxy", L"abc", L"abcwxy"},
        {L"wxyz", L"ab", std::wstring(L"abwx\0\0", 6)},
        {L"uvwxyz", L"ab", std::wstring(L"abuvyz\0\0", 8)},
        {L"wxyz", L"", L"wxyz"},
        {L"w", full, full + L"w"},                // fills the object
        {L"wx", full, full + L"wx"},              // moves to the heap
        {full + full, L"a", L"a" + full + full},  // is there already
    };
    for (const auto& [former, front, result] : cases) {
        CSpeedStr builder;
        builder.append(former.data(), static_cast<unsigned int>(former.size()));
        builder.prepend(front.c_str());
        EXPECT_EQ(TextOf(builder), result);
    }
}

// Where the text is shows in what a prepend moves.
TEST(SpeedStr, HoldsExactlyTheUnitsThatItPromisesItself) {
    const std::wstring inside(L"abwx\0\0", 6), onTheHeap = L"abwxyz";
    for (const unsigned int length : {512U, 513U}) {
        const std::wstring text = L"wxyz" + std::wstring(length - 4, L'-');
        CSpeedStr appended, prepended, trimmed;
        appended += text;
        prepended += L"w";
        prepended.prepend(text.substr(0, length - 1));
        for (CSpeedStr* builder : {&appended, &prepended}) {
            builder->trimEnd(length - 4);
            builder->prepend(L"ab");
            EXPECT_EQ(length == 512 ? inside : onTheHeap, TextOf(*builder)) << length;
        }
        trimmed += text;
        trimmed.trimEnd(length);
        trimmed += L"wxyz";
        trimmed.prepend(L"ab");
        EXPECT_EQ(inside, TextOf(trimmed)) << "trimmed to nothing, the heap is given back";
    }
}

TEST(SpeedStr, TrimsAndClearsInBothModes) {
    for (const unsigned int length : {20U, 512U, 513U}) {
        CSpeedStr builder;
        builder += std::wstring(length, L'x').c_str();
        builder.trimEnd(0);
        EXPECT_EQ(builder.length(), length);
        builder.trimEnd(3);
        builder += L"y";
        EXPECT_EQ(TextOf(builder), std::wstring(length - 3, L'x') + L"y");
        builder.trimEnd(~0U);
        EXPECT_TRUE(builder.isNull());
        builder += L"again";
        EXPECT_EQ(TextOf(builder), L"again");
        builder.Clear();
        EXPECT_TRUE(builder.isNull());
    }
}

}  // namespace
