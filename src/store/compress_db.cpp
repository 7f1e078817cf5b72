#include "store/compress_db.h"

#include <sys/stat.h>

#include "hostservices/lng_text.h"
#include "platform/core/error.h"
#include "platform/dao/dbengine.h"
#include "platform/dao/file_holder.h"
#include "platform/shell/file_system.h"
#include "store/correct_db.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

constexpr const char* kLabel = "ZELVO.dll.CompressDB";

CompressFormObserver& Observer() {
    static CompressFormObserver observer;
    return observer;
}

CompressFaultHook& FaultHook() {
    static CompressFaultHook hook;
    return hook;
}

void Tell(const frmCompress& form) {
    if (Observer()) Observer()(form);
}

void Fault(CompressStep step) {
    if (FaultHook()) FaultHook()(step);
}

// What identifies the state of the book's file: a write by anyone changes
// its size or time, a replacement its inode.
struct Fingerprint {
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};

    static Fingerprint Of(const std::string& path) {
        Fingerprint f;
        struct stat st{};
        if (::stat(path.c_str(), &st) == 0) {
            f.inode = st.st_ino;
            f.size = st.st_size;
            f.modified = st.st_mtim;
        }
        return f;
    }
    bool operator==(const Fingerprint& o) const {
        return inode == o.inode && size == o.size && modified.tv_sec == o.modified.tv_sec &&
               modified.tv_nsec == o.modified.tv_nsec;
    }
};

// The temporary copy and what SQLite may have left beside it.
void RemoveTemporary(const std::string& temp) {
    if (shell::FileExists(temp)) shell::DeleteFile(temp);
    for (const char* suffix : dao::kSideFileSuffixes)
        if (shell::FileExists(temp + suffix)) shell::DeleteFile(temp + suffix);
}

}  // namespace

void frmCompress::Form_Load() {
    Caption = LngText("frmCompress.LocalizeControls", "Caption", "Address Book");
    Label1 = LngText("frmCompress.LocalizeControls", "label1", "Compression base ...");
    TopMost = true;
    AnimationFile = shell::ShellPaths::AddSeparator(AppPath.empty() ? shell::ProgramFolder() : AppPath) +
                    "Compress.avi";
    AnimationOpen = false;
    Tell(*this);
}

void frmCompress::SetStep(const std::string& capKey) {
    if (capKey == "Cap1") Label1 = LngText("Module1.CompressDB", "Cap1", "Creating a database backup ...");
    else if (capKey == "Cap2") Label1 = LngText("Module1.CompressDB", "Cap2", "Preparations for the compression of the base ...");
    else if (capKey == "Cap3") Label1 = LngText("Module1.CompressDB", "Cap3", "Compression base ...");
    else if (capKey == "Cap4") Label1 = LngText("Module1.CompressDB", "Cap4", "Removing old copies ...");
    else if (capKey == "Cap5") Label1 = LngText("Module1.CompressDB", "Cap5", "Moving the base ...");
    Tell(*this);
}

void frmCompress::OpenAnimation() {
    AnimationOpen = shell::FileExists(AnimationFile);
    Tell(*this);
}

void frmCompress::Show() {
    Visible = true;
    Tell(*this);
}

void frmCompress::Unload() {
    if (!Visible && !AnimationOpen) return;
    Visible = false;
    AnimationOpen = false;
    Tell(*this);
}

CompressFormObserver SetCompressFormObserver(CompressFormObserver observer) {
    return std::exchange(Observer(), std::move(observer));
}

CompressFaultHook SetCompressFaultHook(CompressFaultHook hook) {
    return std::exchange(FaultHook(), std::move(hook));
}

frmCompress ShowCompressForm() {
    frmCompress form;
    form.Form_Load();
    form.SetStep("Cap3");
    form.OpenAnimation();
    form.Show();
    return form;
}

void CompressDB(const std::string& PathIn) {
    const std::string Path = PathIn.empty() ? DatabasePath() : PathIn;
    if (!shell::FileExists(Path)) return;
    frmCompress form;
    try {
        const std::string name = shell::ShellPaths::GetFileName(Path);
        const std::string folder = shell::ShellPaths::AddSeparator(shell::ShellPaths::GetParentFolderName(Path));
        const std::string backup = folder + "~" + name;
        const std::string temp = folder + "~~" + name;

        form.Form_Load();
        form.SetStep("Cap1");
        form.OpenAnimation();
        form.Show();
        Fault(CompressStep::Backup);
        shell::CopyFile(Path, backup, true);

        form.SetStep("Cap2");
        Fault(CompressStep::RemoveTemporary);
        RemoveTemporary(temp);

        form.SetStep("Cap3");
        Fault(CompressStep::Compact);
        const Fingerprint before = Fingerprint::Of(Path);
        bool compacted = true;
        try {
            DBEngine().CompactDatabase(Path, temp, {}, dao::dbVersion40);
        } catch (const Error& e) {
            // Someone still has the book open, or it is no book of ours: the
            // book stays as it was, and that is not worth a message.
            RecordSwallowed(e, kLabel);
            compacted = false;
        }
        if (!compacted || !shell::FileExists(temp)) {
            Err().Clear();
            form.Unload();
            return;
        }
        Fault(CompressStep::Compacted);

        // From here to the replacement the book is held alone, so nobody can
        // open it and write what the copy would not have. If someone opened
        // or wrote it since the compaction, the copy is stale: drop it.
        dao::FileHolder alone;
        if (alone.Claim(Path, dao::FileHolder::Mode::Exclusive) != dao::FileHolder::Result::Held ||
            !(Fingerprint::Of(Path) == before)) {
            RemoveTemporary(temp);
            form.Unload();
            return;
        }

        // The old book is not deleted first: the copy replaces it in one
        // rename, so a whole book stands at Path at every moment.
        form.SetStep("Cap4");
        shell::SetAttributes(temp, shell::kHidden);
        form.SetStep("Cap5");
        Fault(CompressStep::Replace);
        shell::ReplaceFile(temp, Path);
        alone.Release();
        Fault(CompressStep::Replaced);
        shell::SetAttributes(Path, shell::kHidden);
        Fault(CompressStep::Hidden);
        form.Unload();
    } catch (const Error& e) {
        ShellPaths().ReportError(e, kLabel);
        Err().Clear();
        form.Unload();
    }
}

}  // namespace zelvo
