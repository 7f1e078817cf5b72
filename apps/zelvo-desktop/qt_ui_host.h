// The UiHost of the desktop: real dialogs, and each window of the library
// drawn by its layout and run in a nested event loop until it is hidden or
// closed. The host holds no logic of the address book.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/ui/ui_host.h"

namespace zelvo::desktop {

class QtUiHost : public ui::UiHost {
public:
    // The layout of a window, by the window's name ("frmPersons").
    using WindowFactory = std::function<std::unique_ptr<QWidget>(ui::Form&)>;
    QtUiHost();

    int ShowMessageBox(const ui::MessageBoxRequest& request) override;
    std::optional<std::string> ShowInputBox(const ui::InputBoxRequest& request) override;
    std::string ShowOpenDialog(const ui::FileDialogRequest& request) override;
    std::string ShowSaveDialog(const ui::FileDialogRequest& request) override;
    void RunWindow(ui::Form& form) override;
    void DoEvents() override;
    // The folders of the side's root in the desktop's folder dialog; a
    // folder outside the root (or the root itself) is no project and counts
    // as cancelled.
    std::optional<ui::ProjectPickerAnswer> ShowProjectPicker(const ui::ProjectPickerRequest& request) override;

    // Screenshot mode: the first window is written as PNG to `path` once
    // it is painted, then closed by its frame.
    void SetScreenshot(const QString& path) { screenshot_ = path; }
    // Whether the screenshot was written (false before, or on failure).
    bool ScreenshotWritten() const { return screenshotWritten_; }

    // Called with each window's widget once it is shown (tests drive it).
    std::function<void(ui::Form&, QWidget&)> onWindowShown;

private:
    std::map<std::string, WindowFactory> factories_;
    QString screenshot_;
    bool screenshotWritten_ = false;
};

// "vCard (*.vcf)|*.vcf|All files|*.*" as Qt writes it:
// "vCard (*.vcf);;All files (*.*)".
QString QtFileFilter(const std::string& filter);

}  // namespace zelvo::desktop
