#include "zelvo/dispatch.h"

#include "personslist/persons_book.h"
#include "support/error_number.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

TEST(CoerceTest, ValuesBecomeTheParametersTypeAsTheRuntimeConverts) {
    EXPECT_EQ(CoerceTo(Variant("12"), DispType::Long), Variant(std::int64_t{12}));
    EXPECT_EQ(CoerceTo(Variant(" -7 "), DispType::Long), Variant(std::int64_t{-7}));
    EXPECT_EQ(CoerceTo(Variant("2.5"), DispType::Long), Variant(std::int64_t{2}));  // halves to even
    EXPECT_EQ(CoerceTo(Variant("3.5"), DispType::Long), Variant(std::int64_t{4}));
    EXPECT_EQ(CoerceTo(Variant("&H1F"), DispType::Long), Variant(std::int64_t{31}));
    EXPECT_EQ(CoerceTo(Variant(true), DispType::Long), Variant(std::int64_t{-1}));
    EXPECT_EQ(CoerceTo(Variant("true"), DispType::Boolean), Variant(true));
    EXPECT_EQ(CoerceTo(Variant("0"), DispType::Boolean), Variant(false));
    EXPECT_EQ(CoerceTo(Variant(std::int64_t{5}), DispType::String), Variant("5"));
    EXPECT_EQ(CoerceTo(Variant(true), DispType::String), Variant("True"));
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant("x"), DispType::Long); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant(""), DispType::Long); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant("0x10"), DispType::Long); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant("3000000000"), DispType::Long); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant("40000"), DispType::Integer); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant("yes"), DispType::Boolean); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { CoerceTo(Variant(), DispType::String); }), 94);
}

TEST(DispatchTest, PropertiesAreReachedByNameWithoutRegardToCase) {
    cAddressbook book;
    EXPECT_EQ(GetProperty(book, "flags2"), Variant(std::int64_t{31}));
    SetProperty(book, "RPROJECT", Variant("A\\B"));
    SetProperty(book, "InsArcPrj", Variant("True"));
    SetProperty(book, "Flags", Variant("1"));
    EXPECT_EQ(book.rProject, "A\\B");
    EXPECT_TRUE(book.InsArcPrj);
    EXPECT_EQ(book.Flags, 1);
    std::vector<DispArg> set{Variant("7")};
    Invoke(book, "tagOffset", set);
    EXPECT_EQ(book.tagOffset, 7);
    std::vector<DispArg> none;
    EXPECT_EQ(Invoke(book, "tagOffset", none), Variant(std::int64_t{7}));
    EXPECT_EQ(ErrorNumberOf([&] { SetProperty(book, "Flags", Variant("many")); }), 13);
    EXPECT_EQ(book.Flags, 1);
    EXPECT_EQ(ErrorNumberOf([&] { SetProperty(book, "Navigate", Variant("x")); }), 438);
    EXPECT_EQ(ErrorNumberOf([&] { GetProperty(book, "Nope"); }), 438);
}

TEST(DispatchTest, WrongCallsGetTheRuntimesNumbers) {
    cAddressbook book;
    ui::ListView list;
    std::vector<DispArg> none;
    EXPECT_EQ(ErrorNumberOf([&] { Invoke(book, "NoSuchMember", none); }), 438);
    EXPECT_EQ(ErrorNumberOf([&] { Invoke(book, "CorrectDB", none); }), 449);
    std::vector<DispArg> two{Variant(""), Variant("")};
    EXPECT_EQ(ErrorNumberOf([&] { Invoke(book, "CorrectDB", two); }), 450);
    std::vector<DispArg> valueForList{Variant("list"), Variant("data")};
    EXPECT_EQ(ErrorNumberOf([&] { Invoke(book, "Navigate", valueForList); }), 424);
    std::vector<DispArg> missingData{&list};
    EXPECT_EQ(ErrorNumberOf([&] { Invoke(book, "Navigate", missingData); }), 449);
    ui::DataControl data;
    std::vector<DispArg> swapped{&data, &list};
    EXPECT_EQ(ErrorNumberOf([&] { Invoke(book, "Navigate", swapped); }), 13);
}

class DispatchBookTest : public PersonsBookTest {};

TEST_F(DispatchBookTest, ByReferenceArgumentsComeBackAndDefaultsFillIn) {
    db_.Close();
    cAddressbook book;
    book.AppPath = dir_.path().string();

    std::vector<DispArg> path{Variant("")};
    EXPECT_TRUE(Invoke(book, "correctdb", path).IsNull());
    EXPECT_EQ(path[0].value, Variant(DatabasePath()));

    std::vector<DispArg> none;
    EXPECT_EQ(Invoke(book, "GetDatabasename", none), Variant(DatabasePath()));

    SetProperty(book, "rProject", Variant("AB"));
    ui::ListView list;
    list.ColumnHeaders().Add("Name");
    ui::DataControl personal;
    std::vector<DispArg> args{&list, &personal};
    Invoke(book, "Navigate", args);
    ASSERT_EQ(list.ListItems().Count(), 1);
    EXPECT_EQ(list.ListItems().Item(1).Icon(), Variant("User"));

    list.ListItems().Clear();
    std::vector<DispArg> withIcon{&list, &personal, DispArg(), Variant("Person")};
    Invoke(book, "Navigate", withIcon);
    EXPECT_EQ(list.ListItems().Item(1).SmallIcon(), Variant("Person"));
    EXPECT_EQ(withIcon[3].value, Variant("Person"));
}

}  // namespace
}  // namespace zelvo::testing
