// CompressDB: compacts the book in place, with a backup, behind a small
// progress window.
//
// Three files stand in the book's folder, each with the book's file name:
//   AddressBookW.mdb     the book; replaced by its compacted copy, hidden
//   ~AddressBookW.mdb    a copy made first; overwritten at each run
//   ~~AddressBookW.mdb   the compacted copy while it is made
//
// The compacted copy takes the book's place by one atomic rename, so that at
// every instant a whole book stands at the book's path: a compaction killed
// at any point leaves the old book or the new one, never neither. (The
// progress labels still read "Removing old copies ..." and then "Moving the
// base ...", as people know them.)
//
// A book that someone still holds open is not compacted and stays as it is;
// so does one that the engine cannot compact. Neither is reported. Failures
// of the file steps are reported with "ZELVO.dll.CompressDB".
#pragma once

#include <functional>
#include <string>

namespace zelvo {

// The progress window: a caption, one label, and an animation when its file
// is there. A host shows it as it likes; it is always on top.
class frmCompress {
public:
    std::string Caption;        // "Address Book"
    std::string Label1;         // the step's text
    std::string AnimationFile;  // "Compress.avi" beside the program
    bool AnimationOpen = false; // the animation file was there and is playing
    bool Visible = false;
    bool TopMost = false;

    // Load: texts through the language lookup, on top of all windows.
    void Form_Load();
    // The label for one of the steps "Cap1" … "Cap5".
    void SetStep(const std::string& capKey);
    // Opens the animation when its file exists.
    void OpenAnimation();
    void Show();
    void Unload();
};

// Told of every change of a progress window that is up (load, label, show,
// unload). A host draws the window from it; the command line prints the
// labels. Returns the previous observer; an empty one tells nobody.
using CompressFormObserver = std::function<void(const frmCompress&)>;
CompressFormObserver SetCompressFormObserver(CompressFormObserver observer);

// Compacts the book at `Path` ("" for DatabasePath()). A missing file: nothing
// happens.
void CompressDB(const std::string& Path = {});

// The progress window with the label "Cap3" and the animation, shown, for
// CorrectDB's conversions. It stays up until the caller unloads it.
frmCompress ShowCompressForm();

// The steps of a compaction, for tests that inject faults: the hook runs at
// each step before its action and may throw (a failing step) or end the
// process (a killed one).
enum class CompressStep {
    Backup,            // before the backup copy
    RemoveTemporary,   // before the old temporary file is deleted
    Compact,           // before the compaction
    Compacted,         // the compacted copy is written, the book untouched
    Replace,           // before the copy takes the book's place
    Replaced,          // the copy stands at the book's path
    Hidden,            // after the new book is marked hidden
};
using CompressFaultHook = std::function<void(CompressStep)>;
// Installs the hook (an empty one removes it); returns the previous one.
CompressFaultHook SetCompressFaultHook(CompressFaultHook hook);

}  // namespace zelvo
