#include "platform/core/variant.h"

#include <gtest/gtest.h>

#include "platform/core/number_text.h"

namespace zelvo {
namespace {

TEST(Variant, LooseConversionsFollowTheRuntime) {
    EXPECT_EQ(Variant(true).AsInteger(), -1);
    EXPECT_EQ(Variant(false).AsInteger(), 0);
    EXPECT_EQ(Variant().AsInteger(), 0);
    EXPECT_EQ(Variant(" 42 ").AsInteger(), 42);
    EXPECT_EQ(Variant("4x").AsInteger(), 0);
    EXPECT_EQ(Variant(2.5).AsInteger(), 2);  // banker's rounding, as CLng
    EXPECT_EQ(Variant(3.5).AsInteger(), 4);
    EXPECT_EQ(Variant().AsText(), "");
    EXPECT_EQ(Variant(true).AsText(), "True");
    EXPECT_EQ(Variant(std::int64_t{-7}).AsText(), "-7");
    EXPECT_EQ(Variant(1.25).AsText(), "1.25");
    EXPECT_EQ(Variant(3.0).AsText(), "3");
    EXPECT_EQ(Variant(Bytes{'a', 'b'}).AsText(), "ab");
}

// One reader of numbers in texts for every conversion: a sign in front is
// part of a number, a sign inside or anything after it makes no number.
TEST(Variant, TextsReadAsNumbersOnlyWhenTheWholeTextIsOne) {
    EXPECT_EQ(ParseNumber("+5"), 5.0);
    EXPECT_EQ(ParseNumber(" -1.5e2\t"), -150.0);
    EXPECT_EQ(ParseNumber(".5"), 0.5);
    EXPECT_EQ(ParseNumber("&HFF"), 255.0);
    EXPECT_EQ(ParseNumber("&o17"), 15.0);
    for (const char* no : {"1-2", "", " ", "+", "abc", "5x", "inf", "nan", "0x10", "--5", "&H", "&HZZ", "1e999"})
        EXPECT_FALSE(ParseNumber(no)) << no;
    EXPECT_EQ(Variant("+5").AsInteger(), 5);
    EXPECT_EQ(Variant("1-2").AsDouble(), 0.0);
}

TEST(Variant, KindsStayApartInComparison) {
    EXPECT_EQ(Variant(), Variant(Null{}));
    EXPECT_NE(Variant(0), Variant());
    EXPECT_NE(Variant(""), Variant());
    EXPECT_NE(Variant(-1), Variant(true));
    EXPECT_EQ(Variant("x").Debug(), "\"x\"");
}

}  // namespace
}  // namespace zelvo

#include "platform/core/value_conv.h"

namespace zelvo {
namespace {

// Null, 0 and the empty text read alike through ValueConv: the book relies
// on it wherever a parent, a room or a name may be either.
TEST(ValueConv, NullZeroAndEmptyReadAlike) {
    EXPECT_EQ(ValueConv::ToLong(Variant()), 0);
    EXPECT_EQ(ValueConv::ToLong(Variant(0)), 0);
    EXPECT_EQ(ValueConv::ToLong(Variant(std::int64_t{123456})), 123456);
    EXPECT_EQ(ValueConv::ToText(Variant()), "");
    EXPECT_EQ(ValueConv::ToText(Variant("")), "");
    EXPECT_EQ(ValueConv::ToText(Variant("Ива")), "Ива");
    EXPECT_FALSE(ValueConv::ToBool(Variant()));
    EXPECT_TRUE(ValueConv::ToBool(Variant(true)));
    EXPECT_TRUE(ValueConv::ToBool(Variant(-1)));
    EXPECT_FALSE(ValueConv::ToBool(Variant(false)));
}

TEST(ValueConv, WritesAnEmptyTextAsNullAndBooleansAsWords) {
    EXPECT_TRUE(ValueConv::TextToField("").IsNull());
    EXPECT_EQ(ValueConv::TextToField("x"), Variant("x"));
    EXPECT_EQ(ValueConv::LongToField(0), Variant(0));
    EXPECT_EQ(ValueConv::BoolToSql(true), "True");
    EXPECT_EQ(ValueConv::BoolToSql(false), "False");
}

}  // namespace
}  // namespace zelvo
