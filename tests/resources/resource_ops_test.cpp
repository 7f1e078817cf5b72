// Adding, editing and removing resources, with rows shared by owners.
#include "resources/resource_ops.h"

#include "personslist/persons_book.h"
#include "platform/ui/scripted_host.h"
#include "resources/resource_queries.h"

namespace zelvo::testing {
namespace {

class ResourceOpsTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        rsResources_ = db_.OpenRecordset("Resources", dao::dbOpenTable);
        rsOwners_ = db_.OpenRecordset("ResourcesOwners", dao::dbOpenTable);
    }

    // The texts a query gives, in record order.
    std::vector<std::string> Texts(const std::string& sql) {
        std::vector<std::string> texts;
        for (auto rs = db_.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext())
            texts.push_back(ValueConv::ToText(rs("ResourceString")));
        return texts;
    }
    int Count(const std::string& sql) {
        int n = 0;
        for (auto rs = db_.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) ++n;
        return n;
    }
    // One row bound to two owners, as the vCard import leaves it.
    int SharedMail(const std::string& text, int ownerA, int ownerB) {
        db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"" + text + "\", 2)");
        int id = ValueConv::ToLong(db_.OpenRecordset("Select Max([Resource ID]) As m From Resources")("m"));
        for (int owner : {ownerA, ownerB})
            db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (" +
                        std::to_string(id) + ", " + std::to_string(owner) + ", 0)");
        // The window's record sets see rows written elsewhere after a Requery.
        rsResources_.Requery();
        rsOwners_.Requery();
        return id;
    }

    dao::Recordset rsResources_, rsOwners_;
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scoped_{host_};
};

TEST_F(ResourceOpsTest, AddStoresTheTextAsTypedUnderTheCounterReadDuringAddNew) {
    std::int32_t id = AddResource(rsResources_, rsOwners_, "  new@example.org ", RsEmail, 3, oPersonal_ID);
    ASSERT_GT(id, 4);
    EXPECT_EQ(Texts(SqlEmails(3, oPersonal_ID)), std::vector<std::string>{"  new@example.org "});
    EXPECT_EQ(ValueConv::ToLong(db_.OpenRecordset(SqlResourceByID(id))("ResourceType")), RsEmail);

    // Blank text: nothing written at all.
    int before = Count("Select * From Resources");
    EXPECT_EQ(AddResource(rsResources_, rsOwners_, "   ", RsEmail, 3, oPersonal_ID), 0);
    EXPECT_EQ(Count("Select * From Resources"), before);
    EXPECT_EQ(Count(SqlOwnerLinks(3, oPersonal_ID)), 1);
}

TEST_F(ResourceOpsTest, TwoPersonsWithTheSameNumberHaveTwoRows) {
    std::int32_t a = AddResource(rsResources_, rsOwners_, "555", rsPhone, 2, oPersonal_ID);
    std::int32_t b = AddResource(rsResources_, rsOwners_, "555", rsPhone, 3, oPersonal_ID);
    ASSERT_NE(a, b);
    EXPECT_EQ(DeleteRes2(rsResources_, rsOwners_, a, 2, oPersonal_ID), 1);
    EXPECT_EQ(Count(SqlResourceByID(a)), 0);
    EXPECT_EQ(Texts(SqlHomePhones(3, 0)), std::vector<std::string>{"555"});
}

TEST_F(ResourceOpsTest, SharedRowEditShowsForBothRemovalKeepsItLastLinkTakesIt) {
    int id = SharedMail("both@example.org", 3, 4);

    // Edit on person 3's list: the row changes, so person 4 sees it too.
    dao::Recordset list3 = db_.OpenRecordset(SqlEmails(3, oPersonal_ID));
    bool cancel = false;
    ResourceAfterLabelEdit(list3, rsResources_, cancel, "renamed@example.org");
    EXPECT_FALSE(cancel);
    EXPECT_EQ(Texts(SqlEmails(4, oPersonal_ID)), std::vector<std::string>{"renamed@example.org"});

    // An edit to blanks is cancelled and writes nothing.
    ResourceAfterLabelEdit(list3, rsResources_, cancel, "  ");
    EXPECT_TRUE(cancel);
    EXPECT_EQ(Texts(SqlEmails(3, oPersonal_ID)), std::vector<std::string>{"renamed@example.org"});

    EXPECT_EQ(DeleteRes2(rsResources_, rsOwners_, id, 3, oPersonal_ID), 1);
    EXPECT_TRUE(Texts(SqlEmails(3, oPersonal_ID)).empty());
    EXPECT_EQ(Texts(SqlEmails(4, oPersonal_ID)), std::vector<std::string>{"renamed@example.org"});

    EXPECT_EQ(DeleteRes2(rsResources_, rsOwners_, id, 4, oPersonal_ID), 1);
    EXPECT_EQ(Count(SqlResourceByID(id)), 0);
    EXPECT_TRUE(host_.Log().empty());
}

TEST_F(ResourceOpsTest, RemovingALinkThatIsGoneTellsThePersonAndChangesNothing) {
    int before = Count("Select * From ResourcesOwners");
    EXPECT_EQ(DeleteRes2(rsResources_, rsOwners_, 1, 2, oPersonal_ID), 0);  // resource 1 is person 1's
    EXPECT_EQ(Count("Select * From ResourcesOwners"), before);
    ASSERT_EQ(host_.Log().size(), 1u);
    EXPECT_EQ(host_.Log()[0].prompt, "Resource was not found in database!");
    EXPECT_EQ(host_.Log()[0].buttons, ui::vbExclamation);
}

TEST_F(ResourceOpsTest, DeletePersonResourcesTakesNullTypedLinksAndKeepsSharedRows) {
    int shared = SharedMail("shared@example.org", 1, 2);
    db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"old link\", 0)");
    int old = ValueConv::ToLong(db_.OpenRecordset("Select Max([Resource ID]) As m From Resources")("m"));
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID]) Values (" + std::to_string(old) + ", 1)");
    // Another owner with the same number but another type is not the person.
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (4, 1, 8)");

    EXPECT_EQ(Count(SqlPersonLinks(1)), 5);
    EXPECT_EQ(Count(SqlOwnerLinks(1, oPersonal_ID)), 4);  // the Null-typed link is only a person's here
    EXPECT_TRUE(DeletePersonResources(1));

    EXPECT_EQ(Count(SqlPersonLinks(1)), 0);
    EXPECT_EQ(Count(SqlResourceByID(1)), 0);
    EXPECT_EQ(Count(SqlResourceByID(2)), 0);
    EXPECT_EQ(Count(SqlResourceByID(old)), 0);
    EXPECT_EQ(Count(SqlResourceByID(shared)), 1);  // person 2 still links to it
    EXPECT_EQ(Count(SqlResourceByID(4)), 1);       // the node (type 8) still links to it
    EXPECT_EQ(Texts(SqlEmails(2, oPersonal_ID)), (std::vector<std::string>{"smith@example.com", "shared@example.org"}));
    EXPECT_FALSE(DeletePersonResources(0));
}

TEST_F(ResourceOpsTest, DeleteOwnerResourcesTakesEveryLinkOfThatOwnerOnly) {
    AddResource(rsResources_, rsOwners_, "room phone", rsPhone, 7, oRoom_ID);
    AddResource(rsResources_, rsOwners_, "room page", rsWebPage, 7, oRoom_ID);
    AddResource(rsResources_, rsOwners_, "other", rsPhone, 7, oJob_ID);
    EXPECT_TRUE(DeleteOwnerResources(7, oRoom_ID, rsResources_));
    EXPECT_EQ(Count(SqlOwnerLinks(7, oRoom_ID)), 0);
    EXPECT_EQ(Count("Select * From Resources Where ResourceString Like \"room*\""), 0);
    EXPECT_EQ(Count(SqlOwnerLinks(7, oJob_ID)), 1);
    EXPECT_FALSE(DeleteOwnerResources(0, oRoom_ID, rsResources_));
}

TEST_F(ResourceOpsTest, HomePhonesBringTheAddressNodesResourcesOfAnyKind) {
    // Persons 2 and 3 live at node 9, which has a phone and (by hand) a mail address.
    AddResource(rsResources_, rsOwners_, "node phone", rsPhone, 9, oAddress_ID);
    AddResource(rsResources_, rsOwners_, "node@mail", RsEmail, 9, oAddress_ID);
    std::int32_t own = AddResource(rsResources_, rsOwners_, "own phone", rsPhone, 2, oPersonal_ID);
    AddResource(rsResources_, rsOwners_, "own mail", RsEmail, 2, oPersonal_ID);

    EXPECT_EQ(Texts(SqlHomePhones(2, 9)), (std::vector<std::string>{"node phone", "node@mail", "own phone"}));
    EXPECT_EQ(Texts(SqlHomePhones(3, 9)), (std::vector<std::string>{"node phone", "node@mail"}));
    EXPECT_EQ(Texts(SqlHomePhones(2, 0)), std::vector<std::string>{"own phone"});
    (void)own;

    // Removed from person 3's card (the row's owner is the node): gone for both.
    dao::Recordset card3 = db_.OpenRecordset(SqlHomePhones(3, 9));
    std::int32_t nodePhone = ValueConv::ToLong(card3("Resource ID"));
    EXPECT_EQ(DeleteRes2(rsResources_, rsOwners_, nodePhone, ValueConv::ToLong(card3("Owner ID")),
                         ValueConv::ToLong(card3("OwnerType"))),
              1);
    EXPECT_EQ(Texts(SqlHomePhones(2, 9)), (std::vector<std::string>{"node@mail", "own phone"}));
}

TEST_F(ResourceOpsTest, JobResourcesReadEmployeeRoomAndJobButNotTheOrganization) {
    AddResource(rsResources_, rsOwners_, "employee", rsPhone, 5, oEmployees_ID);
    AddResource(rsResources_, rsOwners_, "room", rsPhone, 6, oRoom_ID);
    AddResource(rsResources_, rsOwners_, "job", rsPhone, 7, oJob_ID);
    AddResource(rsResources_, rsOwners_, "organization", rsPhone, 7, oOrganization_ID);
    AddResource(rsResources_, rsOwners_, "job mail", RsEmail, 7, oJob_ID);
    EXPECT_EQ(Texts(SqlJobPhones(5, 6, 7)), (std::vector<std::string>{"employee", "room", "job"}));
    EXPECT_EQ(Texts(SqlJobEmails(5, 6, 7)), std::vector<std::string>{"job mail"});
}

TEST_F(ResourceOpsTest, OwnerHasResourceSeesWhatAnotherDatabaseJustWrote) {
    EXPECT_FALSE(OwnerHasResource(3, oPersonal_ID, rsICQ));
    AddResource(rsResources_, rsOwners_, "12345", rsICQ, 3, oPersonal_ID);
    EXPECT_TRUE(OwnerHasResource(3, oPersonal_ID, rsICQ));
    EXPECT_FALSE(OwnerHasResource(3, oOrganization_ID, rsICQ));
}

TEST_F(ResourceOpsTest, RecordByIdZeroAlsoMatchesANullKey) {
    EXPECT_EQ(SqlRecordByID("Rooms", "Room ID", 0), "Select * from [Rooms]  Where [Room ID]=0 or [Room ID] Is Null ;");
    EXPECT_TRUE(FindResource(3, rsResources_));
    EXPECT_EQ(ValueConv::ToText(rsResources_("ResourceString")), "smith@example.com");
    EXPECT_FALSE(FindResource(999, rsResources_));
}

}  // namespace
}  // namespace zelvo::testing
