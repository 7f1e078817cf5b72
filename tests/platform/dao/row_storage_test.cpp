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

TEST(RowStorage, ABuilderLeftShortFillsTheRestWithNullAndStagingKeepsNothing) {
    std::vector<PackedValues::Builder::Staged> staging;
    RowArena arena;
    PackedValues::Builder first(staging, 3);
    first.Text("a longer text than fits inline");
    first.Integer(7);
    first.Double(0.5);
    PackedValues a = first.Finish(&arena);

    // The next row reuses the staging, as a record set does row by row.
    PackedValues::Builder second(staging, 3);
    second.Text("x");
    PackedValues b = second.Finish(&arena);
    EXPECT_EQ(b.Get(0), Variant(std::string("x")));
    EXPECT_TRUE(b.Get(1).IsNull());
    EXPECT_TRUE(b.Get(2).IsNull());
    EXPECT_EQ(a.Unpack(), (std::vector<Variant>{Variant(std::string("a longer text than fits inline")),
                                                Variant(std::int64_t{7}), Variant(0.5)}));
}

TEST(RowStorage, ChunkedListKeepsItsRowsInPlaceAcrossChunks) {
    ChunkedList<PackedValues> list;
    std::vector<const PackedValues*> places;
    for (std::int64_t i = 0; i < 600; ++i) {
        list.push_back(PackedValues::Of({Variant(i)}));
        places.push_back(&list[std::size_t(i)]);
    }
    ASSERT_EQ(list.size(), 600u);
    for (std::size_t i = 0; i < 600; i += 97) {
        EXPECT_EQ(&list[i], places[i]) << "growing moved row " << i;
        EXPECT_EQ(list[i].Get(0), Variant(std::int64_t(i)));
    }
    list.pop_back();
    EXPECT_EQ(list.size(), 599u);
    EXPECT_EQ(list.emplace_back().size(), 0u) << "a slot given back comes back empty";
    list.clear();
    EXPECT_EQ(list.size(), 0u);
    list.push_back(PackedValues::Of({Variant(true)}));
    EXPECT_EQ(list[0].Get(0), Variant(true));
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
