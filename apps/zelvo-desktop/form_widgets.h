// The pieces every window layout of the desktop is made of: the frame whose
// close button unloads the form, and widgets bound to a control model and
// named after it (tests find them by that name).
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTreeView>

#include "platform/ui/form.h"

namespace zelvo::desktop {

// The frame's close button is the form's: it unloads the window, which ends
// the wait of whoever opened it. The window state is the form's too: the
// desktop's minimize or maximize is told to it, and its changes are shown.
class FormWindow : public QMainWindow {
public:
    explicit FormWindow(ui::Form& form);
    ~FormWindow() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void ShowState();

    ui::Form& form_;
    int observer_ = 0;
};

template <typename W>
W* Named(W* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
}

// A list of rows with columns, bound to its model.
QTreeView* BoundReportView(ui::ListView& list, const char* name, QWidget* parent);
QLineEdit* BoundText(ui::TextBox& box, const char* name, QWidget* parent);
QLabel* BoundCaption(ui::Label& label, const char* name, QWidget* parent);
QPushButton* BoundButton(ui::CommandButton& button, const char* name, QWidget* parent);

}  // namespace zelvo::desktop
