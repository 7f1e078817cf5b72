// The end-to-end tests of `zelvo ui`: a sample book in an application
// folder of its own, a script written to a file and run by the program of
// the build, and the lines it printed.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/cli_runner.h"
#include "support/temp_dir.h"

namespace zelvo::testing {

inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream ss(text);
    for (std::string l; std::getline(ss, l);) lines.push_back(l);
    return lines;
}

inline bool Has(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

class UiScriptTest : public ::testing::Test {
protected:
    // The sample book: 1 "Иванов Иван" in "A" and "A\B", 2 "Smith" in
    // "AB", 3 with no project, 4 "Archive Person" archived in "Old".
    void SetUp() override {
        std::filesystem::create_directories(App());
        std::string saved = AppPath;
        AppPath = App();
        dao::Database db = CreateSampleBook(DatabasePath());
        db.Close();
        AppPath = saved;
    }

    std::string App() const { return dir_.File("app"); }

    // `zelvo ui --app-path APP --script FILE ARGS…` with `script` in FILE.
    Outcome Ui(const std::string& script, std::vector<std::string> args) {
        std::ofstream(dir_.File("script.txt")) << script;
        std::vector<std::string> all = {"ui", "--app-path", App(), "--script", dir_.File("script.txt")};
        all.insert(all.end(), args.begin(), args.end());
        return RunZelvo(all, dir_.File("stderr.txt"));
    }

    // One statement of the book's SQL through `zelvo sql`.
    void Sql(const std::string& statement) {
        Outcome r = RunZelvo({"sql", "--db", App() + "/AddressBookW.mdb", statement}, dir_.File("stderr.txt"));
        ASSERT_EQ(r.status, 0) << r.err;
    }

    TempDir dir_;
};

}  // namespace zelvo::testing
