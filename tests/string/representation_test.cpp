// Representations used directly, invalid multibyte text, and hostile ranges.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

TEST(Representations, FillOperationsCopyAndCount) {
    ZuSBString sb("unused");
    sb.fillIn("abcdef", true, 3, true);
    EXPECT_STREQ("abc", sb.getValue());
    sb.fillIn(sb.getValue() + 1, true, -1, true); // a copy of its own tail
    EXPECT_STREQ("bc", sb.getValue());
    ZU_IN_UTF8_LOCALE();
    ZuMBString mb(L"żółw");
    EXPECT_EQ(4, mb.getLength());
    EXPECT_EQ(8u, mb.getSize());
    wchar_t wide[] = L"ñandú";
    mb.fillWIn(wide, true, 3, true);
    EXPECT_STREQ("ñan", mb.getValue());
}

TEST(Representations, InvalidMultibyteTextIsEmpty) {
    ZU_IN_UTF8_LOCALE();
    ZuMBString bytes("ok\xff\xfe"), wide(L"a\xD800");
    EXPECT_TRUE(bytes.getLength() == 0 && !*bytes.getValue());
    EXPECT_TRUE(wide.getLength() == 0 && !*wide.getValue());
    bytes.fillIn(new char[3]{'\xc3', 'x', 0}, false); // released, not kept
    EXPECT_EQ(0, bytes.getLength());
    EXPECT_TRUE(ZuString("abc\xc3").isEmpty());
}

TEST(Representations, OtherClassOperandsDoNothing) {
    ZuSBString sb("abc");
    ZuMBString mb("abc");
    EXPECT_EQ(-1, sb.compare(mb, 0, -1, 0, -1));
    EXPECT_EQ(-1, mb.caseCompare(sb, 0, -1, 0, -1));
    EXPECT_EQ(-1, mb.getIndexOf(sb, 0, 0, -1));
    EXPECT_EQ(-1, sb.getLastIndexOf(mb, -1, 0, -1));
    mb.replace(sb, 0, 1, 0, 1);
    sb.substitute(mb, sb, 0, -1, 0, -1, 0, -1);
    EXPECT_TRUE(!std::strcmp("abc", mb.getValue()) && !std::strcmp("abc", sb.getValue()));
}

TEST(StringRanges, HostileArgumentsStayInsideTheText) {
    const int values[] = {INT_MIN, -7, -2, -1, 0, 1, 3, 5, 6, 100, INT_MAX};
    auto run = [&](const char* text) {
        CerrCapture quiet; // reversed ranges of compare write their message
        const ZuString base(text), other("lo");
        for (int a : values)
            for (int b : values) {
                ZuString s(base);
                const int length = s.getLength();
                for (int at : {s.getIndexOf(other, a, b, a), s.getLastIndexOf(other, a, b, a)})
                    ASSERT_TRUE(at >= -1 && at <= length);
                s.compare(other, a, b, b, a);
                s.caseCompare(other, b, a, a, b);
                s.equals(other, a, b, a, b) || s.startsWith(other, a, b) || s.endsWith(other, b, a);
                s.getSubString(a, b).getLength();
                s.replace(other, a, b, b, a).insert(other, a, b, a);
                s.substitute(ZuString("l"), other, a, b, 0, -1, b, a);
                s.substitute(other, ZuString("L"), b, a, a, b);
                s.remove(a, b).remove(other, a, b);
                ASSERT_GE(s.getLength(), 0);
                ASSERT_LT(std::strlen(s.getValue()), s.getSize());
            }
    };
    run("hello");
    ZU_IN_UTF8_LOCALE();
    run("héllo ω");
}
