// The packed form a record set keeps its rows in gives back every value as
// it went in, whatever its kind, and keys compare and hash by value however
// many a row has.
#include <gtest/gtest.h>

#include "platform/dao/row_storage.h"

namespace zelvo::dao::detail {
namespace {

TEST(RowStorage, PackedValuesGiveBackEveryKindUnchanged) {
    std::vector<Variant> in = {Variant(),
                               Variant(std::int64_t{-9007199254740993}),
                               Variant(2.5),
                               Variant(true),
                               Variant(false),
                               Variant(std::string()),
                               Variant(std::string("Иванов \"И\"\0x", 19)),
                               Variant(Bytes{0, 255, 10}),
                               Variant(Bytes{})};
    PackedValues p = PackedValues::Of(in);
    ASSERT_EQ(p.size(), in.size());
    for (std::size_t i = 0; i < in.size(); ++i) EXPECT_EQ(p.Get(i), in[i]) << i << ": " << in[i].Debug();
    EXPECT_EQ(p.Unpack(), in);

    PackedValues copy = p;  // a copy stands on its own
    p = PackedValues::Of({Variant(std::int64_t{1})});
    EXPECT_EQ(copy.Get(6), in[6]);
}

TEST(RowStorage, ABuilderLeftShortFillsTheRestWithNull) {
    std::string scratch;
    PackedValues::Builder b(scratch, 3);
    b.Text("x");
    PackedValues p = b.Finish();
    EXPECT_EQ(p.Get(0), Variant(std::string("x")));
    EXPECT_TRUE(p.Get(1).IsNull());
    EXPECT_TRUE(p.Get(2).IsNull());
}

TEST(RowStorage, KeysCompareAndHashByValueInlineOrNot) {
    for (std::size_t n : {0u, 1u, 3u, 4u, 9u}) {
        RowKeys a, b;
        for (std::size_t i = 0; i < n; ++i) {
            a.push_back(static_cast<std::int64_t>(i * 7));
            b.push_back(static_cast<std::int64_t>(i * 7));
        }
        ASSERT_EQ(a.size(), n);
        EXPECT_TRUE(a == b);
        EXPECT_EQ(a.Hash(), b.Hash());
        for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(a[i], static_cast<std::int64_t>(i * 7));
        if (n) {
            b[n - 1] = -1;
            EXPECT_FALSE(a == b);
        }
    }
    RowKeys c(5, 42);
    EXPECT_EQ(c.size(), 5u);
    EXPECT_EQ(c[4], 42);
    c.assign(2, 1);
    EXPECT_EQ(c.size(), 2u);
    EXPECT_TRUE(c == RowKeys(2, 1));
}

}  // namespace
}  // namespace zelvo::dao::detail
