// A book of project rows of every kind of object, in a folder of its own,
// with a cAddressbook pointed at it and a scripted host that records the
// messages.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/core/value_conv.h"
#include "platform/shell/shell_paths.h"
#include "platform/ui/scripted_host.h"
#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {

class ProjectsBookTest : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = AppPath;
        AppPath = dir_.path().string();
        ShellPaths().SetAppPath(AppPath);
        dao::Database db = dao::Engine().CreateDatabase(DatabasePath());
        CreateBookSchema(db);
        db.Close();
        book_.AppPath = dir_.path().string();
        AppPath = "/somewhere/else";  // each member must take its object's
    }
    void TearDown() override {
        AppPath = saved_;
        ShellPaths().SetAppPath(saved_);
    }

    // Adds rows "owner:type:path:side" (side A for the archive, L for live).
    void Add(std::int32_t owner, std::int32_t type, const std::string& path, bool archive = false) {
        dao::Database db = dao::Engine().OpenDatabase(dir_.File("AddressBookW.mdb"));
        db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (" +
                   std::to_string(owner) + ", " + std::to_string(type) + ", " + Quote(path) + ", " +
                   (archive ? "True" : "False") + ")");
        db.Close();
    }
    static std::string Quote(const std::string& s) {
        std::string q = "\"";
        for (char c : s) q += c == '"' ? std::string("\"\"") : std::string(1, c);
        return q + "\"";
    }

    // Every row of Projects as "owner:type:path:L|A", sorted.
    std::vector<std::string> Rows() {
        dao::Database db = dao::Engine().OpenDatabase(dir_.File("AddressBookW.mdb"));
        std::vector<std::string> rows;
        for (auto rs = db.OpenRecordset("Select * From Projects"); !rs.IsEOF(); rs.MoveNext())
            rows.push_back(std::to_string(ValueConv::ToLong(rs("Owner ID"))) + ":" +
                           std::to_string(ValueConv::ToLong(rs("OwnerType"))) + ":" +
                           ValueConv::ToText(rs("Project")) + ":" + (ValueConv::ToBool(rs("InsArcPrj")) ? "A" : "L"));
        db.Close();
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    // The rows a Jet SELECT gives, as "owner:type:path".
    std::vector<std::string> Select(const std::string& sql) {
        dao::Database db = dao::Engine().OpenDatabase(dir_.File("AddressBookW.mdb"));
        std::vector<std::string> rows;
        for (auto rs = db.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext())
            rows.push_back(std::to_string(ValueConv::ToLong(rs("Owner ID"))) + ":" +
                           std::to_string(ValueConv::ToLong(rs("OwnerType"))) + ":" +
                           ValueConv::ToText(rs("Project")));
        db.Close();
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    TempDir dir_;
    cAddressbook book_;
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scoped_{host_};
    std::string saved_;
};

}  // namespace zelvo::testing
