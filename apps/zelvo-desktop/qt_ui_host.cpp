#include "qt_ui_host.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QTimer>
#include <iostream>

#include "card_window.h"
#include "persons_window.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/form.h"

namespace zelvo::desktop {

namespace {

QMessageBox::StandardButton QtButton(int result) {
    switch (result) {
        case ui::vbOK: return QMessageBox::Ok;
        case ui::vbCancel: return QMessageBox::Cancel;
        case ui::vbAbort: return QMessageBox::Abort;
        case ui::vbRetry: return QMessageBox::Retry;
        case ui::vbIgnore: return QMessageBox::Ignore;
        case ui::vbYes: return QMessageBox::Yes;
        case ui::vbNo: return QMessageBox::No;
        default: return QMessageBox::NoButton;
    }
}

QMessageBox::Icon QtIcon(int style) {
    switch (style & 0x70) {
        case ui::vbCritical: return QMessageBox::Critical;
        case ui::vbQuestion: return QMessageBox::Question;
        case ui::vbExclamation: return QMessageBox::Warning;
        case ui::vbInformation: return QMessageBox::Information;
        default: return QMessageBox::NoIcon;
    }
}

QWidget* ActiveWindow() { return QApplication::activeWindow(); }

// Where a file dialog opens: the proposed name in the initial folder.
QString StartPath(const ui::FileDialogRequest& r) {
    QString dir = QString::fromStdString(r.initialFolder);
    QString name = QString::fromStdString(r.fileName);
    if (name.isEmpty()) return dir;
    return dir.isEmpty() ? name : dir + "/" + name;
}

}  // namespace

QString QtFileFilter(const std::string& filter) {
    QStringList parts = QString::fromStdString(filter).split('|');
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ');
        out << (parts[i].contains('(') ? parts[i] : parts[i] + " (" + patterns + ")");
    }
    return out.join(";;");
}

QtUiHost::QtUiHost() {
    // One line a window of the library that the desktop can draw.
    factories_["frmPersons"] = [](ui::Form& form) { return MakePersonsWindow(form); };
    factories_["frmMain"] = [](ui::Form& form) { return MakeCardWindow(form); };
}

int QtUiHost::ShowMessageBox(const ui::MessageBoxRequest& request) {
    QMessageBox box(QtIcon(request.buttons), QString::fromStdString(request.title),
                    QString::fromStdString(request.prompt), QMessageBox::NoButton, ActiveWindow());
    std::vector<int> buttons = ui::MsgBoxButtons(request.buttons);
    for (int b : buttons) box.addButton(QtButton(b));
    box.setDefaultButton(QtButton(ui::MsgBoxDefaultButton(request.buttons)));
    int pressed = box.exec();
    for (int b : buttons)
        if (pressed == QtButton(b)) return b;
    // Closed by Escape or the frame: Cancel where there is one.
    for (int b : buttons)
        if (b == ui::vbCancel) return b;
    return buttons.back();
}

std::optional<std::string> QtUiHost::ShowInputBox(const ui::InputBoxRequest& request) {
    bool ok = false;
    QString text = QInputDialog::getText(ActiveWindow(), QString::fromStdString(request.title),
                                         QString::fromStdString(request.prompt), QLineEdit::Normal,
                                         QString::fromStdString(request.defaultText), &ok);
    if (!ok) return std::nullopt;
    return text.toStdString();
}

std::string QtUiHost::ShowOpenDialog(const ui::FileDialogRequest& r) {
    return QFileDialog::getOpenFileName(ActiveWindow(), QString::fromStdString(r.title), StartPath(r),
                                        QtFileFilter(r.filter))
        .toStdString();
}

std::string QtUiHost::ShowSaveDialog(const ui::FileDialogRequest& r) {
    QFileDialog dialog(ActiveWindow(), QString::fromStdString(r.title), StartPath(r), QtFileFilter(r.filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    if (!r.defaultExtension.empty()) dialog.setDefaultSuffix(QString::fromStdString(r.defaultExtension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().front().toStdString();
}

void QtUiHost::DoEvents() { QCoreApplication::processEvents(); }

std::optional<ui::ProjectPickerAnswer> QtUiHost::ShowProjectPicker(const ui::ProjectPickerRequest& request) {
    std::string start = request.path.empty() ? request.rootFolder
                                             : shell::FolderUnderRoot(request.rootFolder, request.path);
    QString title = request.title.empty() ? QStringLiteral("Choosing a project") : QString::fromStdString(request.title);
    QString chosen = QFileDialog::getExistingDirectory(ActiveWindow(), title, QString::fromStdString(start));
    if (chosen.isEmpty()) return std::nullopt;
    std::string path = shell::ProjectPathUnderRoot(request.rootFolder, chosen.toStdString());
    if (path.empty()) return std::nullopt;
    return ui::ProjectPickerAnswer{path, chosen.toStdString()};
}

void QtUiHost::RunWindow(ui::Form& form) {
    auto factory = factories_.find(form.Name());
    if (factory == factories_.end()) {
        // A window the desktop has no layout for cannot be worked in.
        std::cerr << "zelvo-desktop: no layout for the window " << form.Name() << "\n";
        ui::UiHost::RunWindow(form);
        return;
    }
    form.Show();
    std::unique_ptr<QWidget> window = factory->second(form);
    QEventLoop loop;
    int id = form.Observe([&] {
        window->setWindowTitle(QString::fromStdString(form.Caption()));
        if (!form.Visible()) loop.quit();
    });
    window->setWindowTitle(QString::fromStdString(form.Caption()));
    window->show();
    if (onWindowShown) onWindowShown(form, *window);
    if (!screenshot_.isEmpty()) {
        QString path = screenshot_;
        screenshot_.clear();
        // After the events of the first show have run, the window is laid
        // out; grab() paints it anew into the picture.
        QTimer::singleShot(0, window.get(), [this, path, &form, w = window.get()] {
            screenshotWritten_ = w->grab().save(path, "PNG");
            if (!screenshotWritten_) std::cerr << "zelvo-desktop: cannot write " << path.toStdString() << "\n";
            form.Unload();
        });
    }
    if (form.Visible()) loop.exec();
    form.Unobserve(id);
    // The widgets go before the window's models do.
    window.reset();
}

}  // namespace zelvo::desktop
