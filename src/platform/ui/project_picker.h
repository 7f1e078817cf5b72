// ProjectPicker: the dialog that browses one folder tree of the project
// folders and gives the project chosen, used as the library always used it:
// set the application folder, the root, the title and the path to open on;
// Show; then read whether the person cancelled, and the project path and
// folder chosen. All windows share one (SharedProjectPicker), so it opens
// again where it was left. The dialog itself is the UiHost's.
#pragma once

#include <string>

namespace zelvo::ui {

class ProjectPicker {
public:
    void SetAppPath(const std::string& folder) { appPath_ = folder; }
    void SetRootFolder(const std::string& folder) { rootFolder_ = folder; }
    // "" shows the host's own title.
    void SetTitle(const std::string& title) { title_ = title; }
    // The project path to open on ("A\B"); "" the root.
    void SetPath(const std::string& path) { path_ = path; }

    // Asks the person through the current UiHost. Afterwards Cancelled()
    // tells whether anything was chosen. A choice becomes the path the next
    // Show opens on.
    void Show();

    bool Cancelled() const { return cancelled_; }
    // The project path chosen; "" after a cancel.
    const std::string& ProjectPath() const { return projectPath_; }
    // Its folder on the disk; "" after a cancel.
    const std::string& Folder() const { return folder_; }

private:
    std::string appPath_, rootFolder_, title_, path_;
    bool cancelled_ = true;
    std::string projectPath_, folder_;
};

// The one picker of the process.
ProjectPicker& SharedProjectPicker();

}  // namespace zelvo::ui
