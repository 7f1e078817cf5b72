// FindFirst and its kin search the record set as it stands, in its own
// order: rows added through it stand last until Requery, rows that other
// holders added since it was read are not in it, and a failed search leaves
// the cursor where it was.
#include <gtest/gtest.h>

#include "dao_test_util.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Recordset;

class Find : public SampleBookTest {};

TEST_F(Find, ARowAddedThroughTheSetIsFoundAfterTheRowsItWasOpenedWith) {
    Recordset rs = db.OpenRecordset("Select * From PersonalData Order By FullName");
    rs.AddNew();
    rs.SetValue("FullName", "Aaron");  // sorts before "Archive Person", but stands last
    rs.Update();
    rs.FindFirst("[FullName] Like \"A*\"");
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs("FullName").AsText(), "Archive Person");
    rs.FindNext("[FullName] Like \"A*\"");
    EXPECT_EQ(rs("FullName").AsText(), "Aaron");
    rs.FindFirst("[FullName]=\"aaron\"");
    EXPECT_EQ(rs("FullName").AsText(), "Aaron");
    EXPECT_EQ(rs.AbsolutePosition(), 4);
    rs.Requery();  // now it takes its place in the order
    rs.FindFirst("[FullName] Like \"A*\"");
    EXPECT_EQ(rs("FullName").AsText(), "Aaron");
    EXPECT_EQ(rs.AbsolutePosition(), 1);
}

TEST_F(Find, RowsAnotherHolderAddedAreNotInTheSetUntilRequery) {
    Recordset rs = db.OpenRecordset("Select * From PersonalData Order By FullName");
    rs.MoveLast();
    Database other = dao::Engine().OpenDatabase(path);
    other.Execute("Insert Into PersonalData (FullName) Values (\"Aardvark\")");
    rs.FindFirst("[FullName] Like \"A*\"");
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs("FullName").AsText(), "Archive Person");
    rs.FindFirst("[FullName]=\"Aardvark\"");
    EXPECT_TRUE(rs.NoMatch());
    EXPECT_EQ(rs("FullName").AsText(), "Archive Person");
    rs.Requery();
    rs.FindFirst("[FullName]=\"Aardvark\"");
    EXPECT_FALSE(rs.NoMatch());
}

TEST_F(Find, SearchesStartWhereTheyShould) {
    Recordset rs = db.OpenRecordset("Select * From ResourcesOwners");
    rs.MoveLast();
    rs.FindNext("[Owner ID]=1");  // nothing after the last row
    EXPECT_TRUE(rs.NoMatch());
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    rs.FindPrevious("[Owner ID]=1");  // the current row itself is not searched
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    rs.MoveNext();
    rs.MoveNext();
    rs.MoveNext();
    ASSERT_TRUE(rs.IsEOF());
    rs.FindPrevious("[Owner ID]=1");  // from after the end: the last row is searched
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    rs.FindFirst("[Owner ID]=1 And [Resource ID]>1");
    EXPECT_EQ(rs("Resource ID"), Variant(2));
    rs.Delete();
    rs.FindNext("[Owner ID]=1");  // on from the deleted row's place
    EXPECT_EQ(rs("Resource ID"), Variant(4));
    rs.FindFirst("[Owner ID]=1");
    EXPECT_EQ(rs("Resource ID"), Variant(1));
    rs.FindNext("[Owner ID]=1");
    EXPECT_EQ(rs("Resource ID"), Variant(4));  // the deleted row is passed over
}

}  // namespace
}  // namespace zelvo::testing
