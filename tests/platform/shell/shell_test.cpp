// ShellPaths and the file steps: folders from the application folder, path
// pieces, copies and replacements, the hidden attribute, the error report.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "platform/shell/file_system.h"
#include "platform/shell/shell_paths.h"
#include "support/error_number.h"
#include "support/temp_dir.h"

namespace zelvo::shell {
namespace {

using zelvo::testing::ErrorNumberOf;
using zelvo::testing::TempDir;

std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(ShellPaths, FoldersComeFromTheApplicationFolder) {
    ShellPaths p;
    p.SetAppPath("/data/zelvo");
    EXPECT_EQ(p.GetDataFolder(), "/data/zelvo/");
    EXPECT_EQ(p.GetArchiveFolder(), "/data/zelvo/.archive/");
    EXPECT_EQ(p.GetSettingsFolder(), "/data/zelvo/.settings/");
    EXPECT_EQ(p.GetCurrentFolder(), "/data/zelvo/");
    p.SetCurrentFolder("/data/zelvo/A/B");
    EXPECT_EQ(p.GetCurrentFolder(), "/data/zelvo/A/B/");

    // No application folder: the program's folder stands in for it.
    SetProgramFolder("/opt/zelvo/bin");
    p.SetAppPath("");
    EXPECT_EQ(p.GetDataFolder(), "/opt/zelvo/bin/");
    EXPECT_EQ(p.GetOldDataPath("/data/zelvo/AddressBook.mdb"), "/opt/zelvo/bin/AddressBook.mdb");
    SetProgramFolder("");
    EXPECT_NE(ProgramFolder(), "/opt/zelvo/bin/");
    EXPECT_EQ(ProgramFolder().back(), '/');
}

TEST(ShellPaths, ArchivePathsAreWholeComponents) {
    ShellPaths p;
    p.SetAppPath("/d");
    EXPECT_TRUE(p.IsArchivePath("/d/.archive"));
    EXPECT_TRUE(p.IsArchivePath("/d/.archive/"));
    EXPECT_TRUE(p.IsArchivePath("/d/.archive/A/B"));
    EXPECT_FALSE(p.IsArchivePath("/d/.archive2/A"));
    EXPECT_FALSE(p.IsArchivePath("/d/A/.archive"));
    EXPECT_FALSE(p.IsArchivePath("/d"));
}

TEST(ShellPaths, PiecesOfPaths) {
    EXPECT_EQ(ShellPaths::AddSeparator("a"), "a/");
    EXPECT_EQ(ShellPaths::AddSeparator("a/"), "a/");
    EXPECT_EQ(ShellPaths::AddSeparator(""), "");
    EXPECT_EQ(ShellPaths::GetFolderOfPath("a/b/c.vcf"), "a/b/");
    EXPECT_EQ(ShellPaths::GetFileOfPath("a/b/c.vcf"), "c.vcf");
    EXPECT_EQ(ShellPaths::GetExtension("a.b/c"), "");
    EXPECT_EQ(ShellPaths::GetExtension("a/c.tar.gz"), "gz");
    EXPECT_EQ(ShellPaths::GetExtension(".profile"), "");
    EXPECT_EQ(ShellPaths::StripExtension("a/c.vcf"), "a/c");
    EXPECT_EQ(ShellPaths::StripExtension("a.b/c"), "a.b/c");
    EXPECT_EQ(ShellPaths::GetParentFolderName("/x/y/AddressBookW.mdb"), "/x/y");
    EXPECT_EQ(ShellPaths::GetParentFolderName("/AddressBookW.mdb"), "/");
    EXPECT_EQ(ShellPaths::GetParentFolderName("AddressBookW.mdb"), "");
    EXPECT_EQ(ShellPaths::GetFileName("/x/y/"), "y");
    EXPECT_EQ(ShellPaths::ToWinName("A/B: \"c\"?*. "), "A_B_ _c___");
    EXPECT_EQ(ShellPaths::ToWinName("Иванов <И.И.>"), "Иванов _И.И._");
    EXPECT_EQ(ShellPaths::ToWinName(" .."), "_");
}

TEST(ShellPaths, ReportGoesToTheLogOfTheSettingsFolder) {
    TempDir dir;
    ShellPaths p;
    p.SetAppPath(dir.path().string());
    int before = p.ReportCount();
    p.ReportError(Error(3343, "Unrecognized database format 'x'.", "DAO"), "Module1.CorrectDb");
    ErrObject e;
    e.Number = 53;
    e.Description = "File not found";
    p.ReportError(e, "ZELVO.dll.CompressDB");
    EXPECT_EQ(p.ReportCount(), before + 2);
    std::string log = Read(dir.File(".settings/zelvo.log"));
    EXPECT_NE(log.find("Module1.CorrectDb: error 3343: Unrecognized database format 'x'. (DAO)\n"), std::string::npos);
    EXPECT_NE(log.find("ZELVO.dll.CompressDB: error 53: File not found\n"), std::string::npos);

    // A log that cannot be written does not stop the report.
    std::ofstream(dir.File("blocked")) << "a file where the folder would be";
    p.SetAppPath(dir.File("blocked"));
    p.ReportError(e, "label");
    EXPECT_EQ(p.ReportCount(), before + 3);
}

TEST(FileSystem, CopyReplacesWholeAndKeepsAttributes) {
    TempDir dir;
    std::string a = dir.File("a"), b = dir.File("b");
    std::ofstream(a) << "new";
    std::ofstream(b) << "old";
    SetAttributes(a, kHidden);
    EXPECT_EQ(ErrorNumberOf([&] { CopyFile(a, b, false); }), 58);
    EXPECT_EQ(Read(b), "old");
    CopyFile(a, b, true);
    EXPECT_EQ(Read(b), "new");
    EXPECT_EQ(GetAttributes(b), kHidden);
    EXPECT_EQ(ErrorNumberOf([&] { CopyFile(dir.File("none"), b); }), 53);
    // Nothing of the copy's own is left in the folder.
    int files = 0;
    for (auto& e : std::filesystem::directory_iterator(dir.path())) files += e.is_regular_file();
    EXPECT_EQ(files, 2);
}

TEST(FileSystem, AttributesReadBack) {
    TempDir dir;
    std::string f = dir.File("f");
    std::ofstream(f) << "x";
    EXPECT_EQ(GetAttributes(f), 0);
    SetAttributes(f, kHidden);
    EXPECT_EQ(GetAttributes(f), kHidden);
    SetAttributes(f, kHidden | kReadOnly);
    EXPECT_EQ(GetAttributes(f), kHidden | kReadOnly);
    SetAttributes(f, 0);
    EXPECT_EQ(GetAttributes(f), 0);
    EXPECT_EQ(ErrorNumberOf([&] { GetAttributes(dir.File("none")); }), 53);
    EXPECT_EQ(ErrorNumberOf([&] { SetAttributes(dir.File("none"), 2); }), 53);
}

TEST(FileSystem, MovesAndReplacements) {
    TempDir dir;
    std::string a = dir.File("a"), b = dir.File("b");
    std::ofstream(a) << "A";
    std::ofstream(b) << "B";
    EXPECT_EQ(ErrorNumberOf([&] { MoveFile(a, b); }), 58);
    ReplaceFile(a, b);
    EXPECT_FALSE(FileExists(a));
    EXPECT_EQ(Read(b), "A");
    MoveFile(b, a);
    EXPECT_EQ(Read(a), "A");
    DeleteFile(a);
    EXPECT_EQ(ErrorNumberOf([&] { DeleteFile(a); }), 53);
    EXPECT_EQ(ErrorNumberOf([&] { MoveFile(a, b); }), 53);
    EXPECT_FALSE(FileExists(dir.path().string()));
    EXPECT_TRUE(FolderExists(dir.path().string()));
    CreateFolder(dir.File("x/y/z"));
    EXPECT_TRUE(FolderExists(dir.File("x/y/z")));
}

}  // namespace
}  // namespace zelvo::shell
