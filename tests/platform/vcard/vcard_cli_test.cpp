// zelvo vcard show, run as a person runs it: every corpus file passes
// without a crash, and damage gives status 1 with the file and line named
// while the other files are still shown.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/vcard/vcard_reader.h"

namespace zelvo::vcard {
namespace {

namespace fs = std::filesystem;

const fs::path kZelvo = fs::path(ZELVO_BIN_DIR) / "zelvo";
const fs::path kCorpus = fs::path(ZELVO_SHARED_DATA) / "vcard";

struct Outcome {
    int status = -1;  // exit status; -1 when killed by a signal
    std::string out, err;
};

Outcome Show(const std::vector<std::string>& args) {
    static int n = 0;
    fs::path errFile = fs::temp_directory_path() / ("zelvo-cli-err-" + std::to_string(::getpid()) + "-" + std::to_string(n++));
    std::string cmd = "'" + kZelvo.string() + "' vcard show";
    for (const auto& a : args) cmd += " '" + a + "'";
    cmd += " 2>'" + errFile.string() + "'";
    Outcome o;
    FILE* p = ::popen(cmd.c_str(), "r");
    char buf[65536];
    std::size_t got;
    while ((got = std::fread(buf, 1, sizeof buf, p)) > 0) o.out.append(buf, got);
    int raw = ::pclose(p);
    o.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    std::ifstream in(errFile);
    std::stringstream ss;
    ss << in.rdbuf();
    o.err = ss.str();
    fs::remove(errFile);
    return o;
}

class Cli : public ::testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(kZelvo)) GTEST_SKIP() << "the zelvo program is not built at " << kZelvo;
    }
};

TEST_F(Cli, EveryCorpusFilePassesWithStatusOneExactlyWhenSomethingWasLost) {
    if (!fs::is_directory(kCorpus)) GTEST_SKIP() << "no corpus at " << kCorpus;
    for (const auto& e : fs::directory_iterator(kCorpus)) {
        if (e.path().extension() != ".vcf") continue;
        SCOPED_TRACE(e.path().filename().string());
        Outcome o = Show({e.path().string()});
        ASSERT_NE(o.status, -1) << "crashed";
        std::ifstream in(e.path(), std::ios::binary);
        std::stringstream ss;
        ss << in.rdbuf();
        ReadResult r = ReadVCards(ss.str(), e.path().string());
        EXPECT_EQ(o.status, r.HasErrors() ? 1 : 0) << o.err;
        EXPECT_NE(o.out.find(std::to_string(r.cards.size()) + (r.cards.size() == 1 ? " card\n" : " cards\n")),
                  std::string::npos);
    }
}

TEST_F(Cli, ABadFileIsNamedWithItsLineAndTheOthersAreStillShown) {
    fs::path dir = fs::temp_directory_path() / ("zelvo-cli-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    std::ofstream(dir / "notes.txt") << "\nshopping list\nmilk\n";
    std::ofstream(dir / "good.vcf") << "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Good Person\r\nEND:VCARD\r\n";
    Outcome o = Show({(dir / "notes.txt").string(), (dir / "good.vcf").string(), "--json"});
    EXPECT_EQ(o.status, 1);
    EXPECT_NE(o.err.find((dir / "notes.txt").string() + ":2: error: not a vCard file"), std::string::npos) << o.err;
    EXPECT_NE(o.out.find("\"FullName\":\"Good Person\""), std::string::npos) << o.out;
    fs::remove_all(dir);
}

TEST_F(Cli, TextListingShowsTheFieldsAnImportTakes) {
    fs::path file = fs::temp_directory_path() / ("zelvo-cli-card-" + std::to_string(::getpid()) + ".vcf");
    std::ofstream(file, std::ios::binary)
        << "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=WINDOWS-1251;ENCODING=QUOTED-PRINTABLE:=CF=E5=F2=F0=EE=E2;=C8=E2=E0=ED\r\n"
           "TEL;WORK;VOICE:+7 495 000\r\nEND:VCARD\r\n";
    Outcome o = Show({file.string()});
    EXPECT_EQ(o.status, 0) << o.err;
    EXPECT_NE(o.out.find("FirstName (family name): Петров"), std::string::npos) << o.out;
    EXPECT_NE(o.out.find("Phone 1 (work, voice): +7 495 000"), std::string::npos) << o.out;
    fs::remove(file);
}

}  // namespace
}  // namespace zelvo::vcard
