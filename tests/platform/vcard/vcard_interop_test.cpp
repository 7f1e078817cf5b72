// Cards written by our writer, read by two parsers that share no code with
// ours — python3-vobject and ez-vcard — must give the same fields back.
//
// Each checker (check_vobject.py, CheckEzVcard.java) prints a canonical
// listing of every file in a folder; this test builds the same listing from
// the cards it wrote and compares them file by file, reporting the first
// line that differs.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <unistd.h>

#include "platform/vcard/vcard_reader.h"
#include "platform/vcard/vcard_writer.h"

namespace zelvo::vcard {
namespace {

namespace fs = std::filesystem;

std::string Esc(std::string_view s) {
    std::string out;
    for (char c : s) {
        switch (c) {
            case '\\': out += "\\\\"; break;
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            default: out.push_back(c);
        }
    }
    return out;
}

const char* Kind(long k) { return k == kKindWork ? "WORK" : "HOME"; }

std::string Canonical(const VCardContent& c) {
    std::string s = "FN\t" + Esc(c.FullName) + "\n";
    s += "N\t" + Esc(c.FirstName) + "\t" + Esc(c.MiddleName) + "\t" + Esc(c.SurName) + "\n";
    if (!c.Title.empty()) s += "TITLE\t" + Esc(c.Title) + "\n";
    if (c.Organization.Count() > 0) {
        s += "ORG";
        for (const auto& level : c.Organization.items()) s += "\t" + Esc(level);
        s += "\n";
    }
    // vobject drops the empty levels at the end of ORG ("Acme;" reads as
    // "Acme"). For the book they mean the same — the import stops at the
    // first empty level — so the listing leaves them out for both sides.
    for (std::size_t at = s.find("\nORG"); at != std::string::npos;) {
        std::size_t end = s.find('\n', at + 1);
        std::size_t keep = end;
        while (keep > at + 4 && s[keep - 1] == '\t') --keep;
        s.erase(keep, end - keep);
        break;
    }
    for (const auto& p : c.Phones.items()) s += std::string("TEL\t") + Kind(p.kind) + "\t" + Esc(p.number) + "\n";
    for (const auto& e : c.Emails.items()) s += std::string("EMAIL\t") + Kind(e.kind) + "\t" + Esc(e.address) + "\n";
    for (const auto& u : c.Urls.items()) s += std::string("URL\t") + Kind(u.kind) + "\t" + Esc(u.url) + "\n";
    for (const auto& a : c.Addresses.items()) {
        const auto& r = a.record;
        s += std::string("ADR\t") + Kind(r.Kind);
        for (const auto* f : {&r.PostOfficeBox, &r.Extended, &r.Street, &r.City, &r.Region, &r.PostIndex, &r.Country}) {
            s += "\t" + Esc(*f);
        }
        s += "\n";
    }
    if (!c.Photo.Data().empty()) {
        std::uint32_t sum = 0;
        for (unsigned char b : c.Photo.Data()) sum += b;
        s += "PHOTO\t" + NormalizeImageType(c.Photo.ImageType()) + "\t" + std::to_string(c.Photo.Data().size()) +
             "\t" + std::to_string(sum) + "\n";
    }
    return s;
}

// "== NAME" sections of a checker's output.
std::map<std::string, std::string> Sections(const std::string& out) {
    std::map<std::string, std::string> sections;
    std::istringstream in(out);
    std::string line, current;
    while (std::getline(in, line)) {
        if (line.starts_with("== ")) {
            current = line.substr(3);
            sections[current];
        } else if (!current.empty()) {
            if (line.starts_with("ORG")) {
                while (line.size() > 3 && line.back() == '\t') line.pop_back();
            }
            sections[current] += line + "\n";
        }
    }
    return sections;
}

std::string FirstDifference(const std::string& want, const std::string& got) {
    std::istringstream a(want), b(got);
    std::string la, lb;
    for (int n = 1;; ++n) {
        bool ha = static_cast<bool>(std::getline(a, la));
        bool hb = static_cast<bool>(std::getline(b, lb));
        if (!ha && !hb) return {};
        if (!ha || !hb || la != lb) {
            return "line " + std::to_string(n) + "\n  ours:   " + (ha ? la : "<none>") + "\n  theirs: " + (hb ? lb : "<none>");
        }
    }
}

std::string RunCommand(const std::string& command, int& status) {
    std::string out;
    FILE* p = ::popen(command.c_str(), "r");
    if (!p) {
        status = -1;
        return out;
    }
    char buf[65536];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) out.append(buf, n);
    status = ::pclose(p);
    return out;
}

// Cards that stress the writer beyond what the corpus holds.
std::vector<VCardContent> TrickyCards() {
    std::vector<VCardContent> cards;
    VCardContent a;
    a.FullName = "Петров-Водкин Кузьма Сергеевич";
    a.FirstName = "Петров-Водкин";
    a.MiddleName = "Кузьма";
    a.SurName = "Сергеевич";
    a.Title = "Художник; педагог, теоретик\nи писатель";
    a.Organization.Parse("Академия художеств,Живописное отделение,Мастерская 3", ",");
    a.Phones.Add(1, "+7 (812) 323-64-96", kKindWork, kPhoneVoice);
    a.Phones.Add(1, "+7 921 000-00-00", kKindHome, kPhoneVoice);
    a.Emails.Add(1, "k.petrov@example.ru", kKindHome, 0);
    a.Emails.Add(1, "office@academy.example", kKindWork, 0);
    a.Urls.Add(1, "https://example.ru/путь?a=1&b=2", kKindWork);
    a.Addresses.Add({"", "", "Университетская наб., 17, кв. 4", "Санкт-Петербург", "Ленинградская обл.,Россия",
                     "199034", "Россия", 1}, 0);
    std::string jpeg("\xFF\xD8\xFF\xE0", 4);
    for (int i = 0; i < 5000; ++i) jpeg.push_back(static_cast<char>((i * 37) & 0xFF));
    a.Photo.SetData(jpeg);
    a.Photo.SetImageType("JPEG");
    cards.push_back(a);

    VCardContent b;  // as the export leaves a card of a person without a job
    b.FullName = "Ωmega 日本語 ";
    b.FirstName = "O\\Brien";
    b.Organization.Parse("Org,", ",");
    cards.push_back(b);

    VCardContent c;
    c.FullName = std::string(200, 'W') + "ЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖ" + "日本語日本語日本語日本語日本語";
    c.Addresses.Add({"PO Box 1", "Suite 2", "1 Main St", "Springfield", "IL", "62701", "USA", 2}, 1);
    cards.push_back(c);
    return cards;
}

class Interop : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("zelvo-vcard-interop-" + std::to_string(::getpid()));
        fs::create_directories(dir_);
        int n = 0;
        auto add = [&](const VCardContent& c, std::string origin) {
            char name[32];
            std::snprintf(name, sizeof name, "%05d.vcf", n++);
            std::ofstream(dir_ / name, std::ios::binary) << WriteVCard(c);
            expected_[name] = Canonical(c);
            origin_[name] = std::move(origin);
        };
        for (const auto& c : TrickyCards()) add(c, "tricky card " + std::to_string(n + 1));
        fs::path corpus = fs::path(ZELVO_SHARED_DATA) / "vcard";
        if (fs::is_directory(corpus)) {
            std::vector<fs::path> files;
            for (const auto& e : fs::directory_iterator(corpus)) {
                if (e.path().extension() == ".vcf") files.push_back(e.path());
            }
            std::sort(files.begin(), files.end());
            for (const auto& f : files) {
                std::ifstream in(f, std::ios::binary);
                std::stringstream ss;
                ss << in.rdbuf();
                for (const auto& card : ReadVCards(ss.str(), f.filename().string()).cards) {
                    add(card.content, f.filename().string() + " card " + std::to_string(card.number));
                }
            }
        }
    }
    void TearDown() override { fs::remove_all(dir_); }

    void Compare(const std::string& checker, const std::string& output) {
        auto got = Sections(output);
        int mismatches = 0;
        for (const auto& [name, want] : expected_) {
            auto it = got.find(name);
            if (it == got.end()) {
                ADD_FAILURE() << checker << " did not list " << name << " (" << origin_[name] << ")";
                continue;
            }
            std::string diff = FirstDifference(want, it->second);
            if (!diff.empty() && ++mismatches <= 20) {
                ADD_FAILURE() << checker << " reads " << name << " (" << origin_[name] << ") differently at " << diff;
            }
        }
        EXPECT_EQ(mismatches, 0) << checker;
    }

    fs::path dir_;
    std::map<std::string, std::string> expected_, origin_;
};

TEST_F(Interop, PythonVobjectReadsWhatWeWrite) {
    if (!fs::exists("/usr/bin/python3")) GTEST_SKIP() << "no /usr/bin/python3";
    int status = 0;
    RunCommand("/usr/bin/python3 -c 'import vobject' 2>/dev/null", status);
    if (status != 0) GTEST_SKIP() << "python3-vobject is not installed (scripts/install-deps.sh installs it)";
    std::string out = RunCommand("/usr/bin/python3 " ZELVO_VCARD_CHECKERS "/check_vobject.py " + dir_.string(), status);
    ASSERT_EQ(status, 0) << out;
    Compare("vobject", out);
}

TEST_F(Interop, EzVcardReadsWhatWeWrite) {
    const fs::path ez = "/usr/share/java/ez-vcard.jar", vinnie = "/usr/share/java/vinnie.jar";
    int status = 0;
    RunCommand("java -version 2>/dev/null", status);
    if (status != 0) GTEST_SKIP() << "no java on PATH (scripts/install-deps.sh installs one)";
    if (!fs::exists(ez) || !fs::exists(vinnie)) {
        GTEST_SKIP() << "ez-vcard or vinnie jar missing under /usr/share/java";
    }
    std::string out = RunCommand("java -cp " + ez.string() + ":" + vinnie.string() + " " ZELVO_VCARD_CHECKERS
                          "/CheckEzVcard.java " + dir_.string() + " 2>&1",
                          status);
    ASSERT_EQ(status, 0) << out.substr(0, 4000);
    Compare("ez-vcard", out);
}

}  // namespace
}  // namespace zelvo::vcard
