// The data control as a host reads it: the records of its source after a
// refresh, and errors of the engine when the source cannot be opened.
#include <gtest/gtest.h>

#include "platform/dao/dbengine.h"
#include "platform/ui/data_control.h"
#include "support/error_number.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

TEST(DataControlTest, RecordsAreTheSourcesRowsByFieldNameAndSurviveACopy) {
    TempDir dir;
    std::string path = dir.File("book.mdb");
    {
        dao::Database db = dao::Engine().CreateDatabase(path);
        db.Execute("Create Table People (Id Long, Name Text(50))");
        db.Execute("Insert Into People (Id, Name) Values (1, \"Anna\")");
        db.Execute("Insert Into People (Id, Name) Values (2, Null)");
        db.Close();
    }
    ui::DataControl data;
    EXPECT_TRUE(data.Records().empty());  // before a Refresh
    data.DatabaseName = path;
    data.RecordSource = "Select Name, Id From People Order By Id";
    int refreshed = 0;
    data.Observe([&] { ++refreshed; });
    data.Refresh();
    using Record = ui::DataControl::Record;
    std::vector<Record> want{{{"Name", Variant("Anna")}, {"Id", Variant(std::int64_t{1})}},
                             {{"Name", Variant()}, {"Id", Variant(std::int64_t{2})}}};
    EXPECT_EQ(data.Records(), want);
    EXPECT_EQ(data.Records(), want);  // reading again starts from the first record
    EXPECT_EQ(refreshed, 1);

    // A copy has the properties and opens its own record set, leaving the
    // original's alone.
    ui::DataControl copy = data;
    EXPECT_TRUE(copy.Records().empty());
    copy.RecordSource = "Select Name From People Where Id = 1";
    copy.Refresh();
    EXPECT_EQ(copy.Records(), (std::vector<Record>{{{"Name", Variant("Anna")}}}));
    EXPECT_EQ(data.Records(), want);
    EXPECT_EQ(refreshed, 1);

    data.RecordSource = "Select Name From People Where Id = 3";
    data.Refresh();
    EXPECT_TRUE(data.Records().empty());
    data.RecordSource = "NoSuchTable";
    EXPECT_NE(ErrorNumberOf([&] { data.Refresh(); }), 0);
    EXPECT_TRUE(data.Records().empty());
}

}  // namespace
}  // namespace zelvo::testing
