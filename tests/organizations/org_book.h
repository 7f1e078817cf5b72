// An empty book of today's layout in a folder of its own, the library
// pointed at it, a scripted host for the prompts and messages, and short
// ways to put office objects into it and to read back what is left.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/core/value_conv.h"
#include "platform/shell/shell_paths.h"
#include "platform/ui/scripted_host.h"
#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"
#include "zelvo/enums.h"

namespace zelvo::testing {

class OrgBookTest : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = AppPath;
        AppPath = dir_.path().string();
        ShellPaths().SetAppPath(AppPath);
        db_ = dao::Engine().CreateDatabase(DatabasePath());
        CreateBookSchema(db_);
    }
    void TearDown() override {
        if (db_.IsOpen()) db_.Close();
        AppPath = saved_;
        ShellPaths().SetAppPath(saved_);
    }

    std::int32_t Insert(const std::string& sql, const std::string& table, const std::string& id) {
        db_.Execute(sql);
        return ValueConv::ToLong(db_.OpenRecordset("Select Max([" + id + "]) As m From " + table)("m"));
    }
    static std::string Q(const std::string& s) { return "\"" + s + "\""; }
    static std::string N(std::int32_t v) { return std::to_string(v); }

    // A unit; parent 0 makes an organization. An empty name is Null.
    std::int32_t Unit(const std::string& name, std::int32_t parent = 0) {
        return Insert("Insert Into Organizations (Organization, [Parent ID]) Values (" + (name.empty() ? "Null" : Q(name)) +
                          ", " + N(parent) + ")",
                      "Organizations", "Organization ID");
    }
    std::int32_t Job(std::int32_t unit, const std::string& name) {
        return Insert("Insert Into JobTitles ([Organization ID], JobTitle) Values (" + N(unit) + ", " + Q(name) + ")",
                      "JobTitles", "Job ID");
    }
    std::int32_t Person(const std::string& name) {
        return Insert("Insert Into PersonalData (FullName) Values (" + Q(name) + ")", "PersonalData", "Personal ID");
    }
    std::int32_t Employee(std::int32_t job, std::int32_t person, std::int32_t room = 0) {
        return Insert("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (" + N(job) + ", " +
                          N(person) + ", " + N(room) + ")",
                      "Employees", "Employee ID");
    }
    std::int32_t Room(std::int32_t org, const std::string& name, std::int32_t parent = 0, bool container = false) {
        return Insert("Insert Into Rooms ([Organization ID], RoomName, [rParent ID], IsContainer) Values (" + N(org) +
                          ", " + Q(name) + ", " + N(parent) + ", " + (container ? "True" : "False") + ")",
                      "Rooms", "Room ID");
    }
    // A resource bound to each owner (id, type) given.
    std::int32_t Resource(const std::string& text, std::vector<std::pair<std::int32_t, std::int32_t>> owners,
                          std::int32_t type = rsPhone) {
        std::int32_t id = Insert("Insert Into Resources (ResourceString, ResourceType) Values (" + Q(text) + ", " +
                                     N(type) + ")",
                                 "Resources", "Resource ID");
        for (auto [owner, ownerType] : owners)
            db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (" + N(id) + ", " +
                        N(owner) + ", " + N(ownerType) + ")");
        return id;
    }
    void ProjectRow(std::int32_t owner, std::int32_t type, const std::string& project, bool archive = false) {
        db_.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (" + N(owner) + ", " +
                    N(type) + ", " + Q(project) + ", " + (archive ? "True" : "False") + ")");
    }

    // Appends a chain of `depth` rows below `top`, each the child of the one
    // before, in one transaction straight on the file (row by row through
    // the engine would take minutes). Returns the last row's identity.
    std::int32_t Chain(const std::string& insertWithParent, std::int32_t top, int depth) {
        sqlite3* raw = nullptr;
        EXPECT_EQ(sqlite3_open(DatabasePath().c_str(), &raw), SQLITE_OK);
        sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* st = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(raw, insertWithParent.c_str(), -1, &st, nullptr), SQLITE_OK);
        std::int64_t last = top;
        for (int i = 0; i < depth; ++i) {
            sqlite3_bind_int64(st, 1, last);
            EXPECT_EQ(sqlite3_step(st), SQLITE_DONE);
            sqlite3_reset(st);
            last = sqlite3_last_insert_rowid(raw);
        }
        sqlite3_finalize(st);
        sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(raw);
        return static_cast<std::int32_t>(last);
    }

    int Count(const std::string& sql) {
        int n = 0;
        for (auto rs = db_.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) ++n;
        return n;
    }
    // The values of one column, sorted.
    std::vector<std::int32_t> Ids(const std::string& sql, const std::string& column) {
        std::vector<std::int32_t> ids;
        for (auto rs = db_.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) ids.push_back(ValueConv::ToLong(rs(column)));
        std::sort(ids.begin(), ids.end());
        return ids;
    }
    // Every link row as "resource:owner:type", sorted.
    std::vector<std::string> Links() {
        std::vector<std::string> rows;
        for (auto rs = db_.OpenRecordset("Select * From ResourcesOwners"); !rs.IsEOF(); rs.MoveNext())
            rows.push_back(N(ValueConv::ToLong(rs("Resource ID"))) + ":" + N(ValueConv::ToLong(rs("Owner ID"))) + ":" +
                           N(ValueConv::ToLong(rs("OwnerType"))));
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    std::int32_t RoomOf(std::int32_t employee) {
        return ValueConv::ToLong(
            db_.OpenRecordset("Select * From Employees Where [Employee ID]=" + N(employee))("Room ID"));
    }

    TempDir dir_;
    dao::Database db_;
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scoped_{host_};
    std::string saved_;
};

}  // namespace zelvo::testing
