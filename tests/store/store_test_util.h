// Helpers of the store's tests: a test book folder with the library-wide
// state pointed at it, and the state of books rendered as short texts.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "platform/dao/dbengine.h"
#include "platform/shell/shell_paths.h"
#include "store/library_state.h"
#include "support/temp_dir.h"

namespace zelvo::testing {

// A folder with two parts: "app" is AppPath (the data folder), "program"
// stands for the folder of the running program, where earlier versions kept
// their book. Both are put back when the test ends.
class StoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(app());
        std::filesystem::create_directories(program());
        savedAppPath_ = AppPath;
        AppPath = app();
        shell::SetProgramFolder(program());
    }
    void TearDown() override {
        AppPath = savedAppPath_;
        shell::SetProgramFolder("");
    }

    std::string app() const { return dir_.File("app"); }
    std::string program() const { return dir_.File("program"); }
    std::string book() const { return app() + "/AddressBookW.mdb"; }
    std::string InApp(const std::string& name) const { return app() + "/" + name; }
    std::string InProgram(const std::string& name) const { return program() + "/" + name; }
    int Reports() const { return ShellPaths().ReportCount(); }

    TempDir dir_;

private:
    std::string savedAppPath_;
};

inline std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// Every table with its columns, one line each, tables in name order:
// "Photo: Personal ID Long, Photo LongBinary, Photo ID Counter"; then the
// saved queries with their text. Columns stand in the table's order, or in
// name order with `sortColumns`.
std::string SchemaText(const dao::Database& db, bool sortColumns = false);

// The rows of a SELECT, fields joined by '|', rows by ';'.
std::string RowsText(const dao::Database& db, const std::string& sql);

// Rows of `table` in the book at `path`; -1 when it does not open.
long CountRows(const std::string& path, const std::string& table);

}  // namespace zelvo::testing
