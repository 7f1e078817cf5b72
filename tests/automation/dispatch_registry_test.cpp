// The registry of public classes: creating by name, members reached through
// the object handle, objects passed in and given back.
#include <gtest/gtest.h>

#include "automation/dispatch_table.h"
#include "support/error_number.h"
#include "zelvo/addressbook.h"
#include "zelvo/dispatch.h"

namespace zelvo::testing {
namespace {

TEST(RegistryTest, PublicClassesAreCreatedByNameAndUnknownNamesGet429) {
    for (std::string_view name : {"cAddressbook", "CADDRESSBOOK", "Zelvolib.cAddressbook", "zelvolib.caddressbook"}) {
        auto obj = CreateObject(name);
        ASSERT_NE(obj, nullptr) << name;
        EXPECT_EQ(obj->Class().Name(), "cAddressbook");
    }
    EXPECT_EQ(FindPublicClass("cAddressbook"), &cAddressbookClass());
    for (std::string_view bad : {"", "Zelvolib.", "NoSuchClass", "Zelvolib.NoSuchClass", "cAddressbookX", "Other.cAddressbook"}) {
        EXPECT_EQ(FindPublicClass(bad), nullptr) << bad;
        EXPECT_EQ(ErrorNumberOf([&] { CreateObject(bad); }), 429) << bad;
    }
    // Every registered class is creatable and lists its members.
    for (const DispClass* cls : PublicClasses()) {
        EXPECT_FALSE(cls->Members().empty()) << cls->Name();
        EXPECT_EQ(FindPublicClass(cls->Name()), cls);
    }
}

TEST(RegistryTest, ACreatedObjectKeepsItsStateBetweenLateBoundCalls) {
    auto book = CreateObject("cAddressbook");
    book->SetProperty("AppPath", Variant("/tmp/somewhere"));
    std::vector<DispArg> flags{Variant("1")};
    book->Invoke("Flags", flags);
    EXPECT_EQ(book->GetProperty("appPath").value, Variant("/tmp/somewhere"));
    EXPECT_EQ(book->GetProperty("Flags").value, Variant(std::int64_t{1}));
    // The handle reaches the same C++ object a host holding it directly would.
    auto& typed = static_cast<DispatchHandle<cAddressbook>&>(*book).Object();
    EXPECT_EQ(typed.Flags, 1);
    EXPECT_EQ(ErrorNumberOf([&] { book->GetProperty("CorrectDB"); }), 438);
}

// Two small classes, registered only here, that pass objects both ways.
struct Counter {
    std::int32_t count = 0;
};
struct Tally {
    std::shared_ptr<Counter> last;
};

const DispClass& CounterClass() {
    using T = DispType;
    static const DispClass cls = MakeDispClass<Counter>(
        "Counter", {
                       {{"Count", DispKind::Property, {}, T::Long, true, "how many"},
                        nullptr,
                        [](const Counter& c) { return Variant(std::int64_t{c.count}); }},
                   });
    return cls;
}

const DispClass& TallyClass() {
    using T = DispType;
    static const DispClass cls = MakeDispClass<Tally>(
        "Tally",
        {
            {{"Add", DispKind::Method, {{"Into", T::Object}, {"By", T::Long}}, std::nullopt, false, "adds By"},
             [](Tally& t, std::vector<Variant>& v, std::vector<DispObject>& o) {
                 Counter* c = ObjectArg<Counter>(o[0]);
                 c->count += static_cast<std::int32_t>(v[1].integer());
                 return Variant();
             }},
            {{"NewCounter", DispKind::Method, {}, T::Object, false, "a fresh counter", "Counter"},
             [](Tally& t, std::vector<Variant>&, std::vector<DispObject>&) {
                 t.last = std::make_shared<Counter>();
                 return ObjectResult(CounterClass(), t.last);
             }},
        },
        false);
    return cls;
}

TEST(RegistryTest, MembersTakeAndGiveObjectsOfPublicClasses) {
    EXPECT_FALSE(TallyClass().Creatable());
    EXPECT_EQ(ErrorNumberOf([] { TallyClass().Create(); }), 429);
    DispatchHandle<Tally> tally(TallyClass(), std::make_shared<Tally>());

    std::vector<DispArg> none;
    DispResult made = tally.Invoke("NewCounter", none);
    std::shared_ptr<DispatchObject> counter = made.Object();
    ASSERT_NE(counter, nullptr);
    EXPECT_FALSE(made.value);
    EXPECT_EQ(counter->Class().Name(), "Counter");

    std::vector<DispArg> add{counter, Variant("5")};
    tally.Invoke("Add", add);
    tally.Invoke("Add", add);
    EXPECT_EQ(counter->GetProperty("Count").value, Variant(std::int64_t{10}));
    EXPECT_EQ(tally.Object().last->count, 10);  // the result shares the object, not a copy

    // The object outlives the member that made it.
    tally.Object().last.reset();
    EXPECT_EQ(counter->GetProperty("Count").value, Variant(std::int64_t{10}));

    // Wrong objects and read-only properties.
    auto book = CreateObject("cAddressbook");
    std::vector<DispArg> wrongClass{book, Variant("1")};
    EXPECT_EQ(ErrorNumberOf([&] { tally.Invoke("Add", wrongClass); }), 13);
    ui::ListView list;
    std::vector<DispArg> control{&list, Variant("1")};
    EXPECT_EQ(ErrorNumberOf([&] { tally.Invoke("Add", control); }), 13);
    std::vector<DispArg> value{Variant("x"), Variant("1")};
    EXPECT_EQ(ErrorNumberOf([&] { tally.Invoke("Add", value); }), 424);
    EXPECT_EQ(ErrorNumberOf([&] { counter->SetProperty("Count", Variant("3")); }), 383);
    std::vector<DispArg> bookAsList{book, &list};
    EXPECT_EQ(ErrorNumberOf([&] { book->Invoke("Navigate", bookAsList); }), 13);
}

}  // namespace
}  // namespace zelvo::testing
