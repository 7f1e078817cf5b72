#include "form_widgets.h"

#include <QCloseEvent>
#include <QEvent>

#include "bindings.h"
#include "list_model.h"

namespace zelvo::desktop {

FormWindow::FormWindow(ui::Form& form) : form_(form) {
    observer_ = form_.Observe([this] { ShowState(); });
}

FormWindow::~FormWindow() { form_.Unobserve(observer_); }

void FormWindow::closeEvent(QCloseEvent* event) {
    form_.Unload();
    event->accept();
}

void FormWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::WindowStateChange) {
        Qt::WindowStates s = windowState();
        form_.SetWindowState(s & Qt::WindowMinimized   ? ui::vbMinimized
                             : s & Qt::WindowMaximized ? ui::vbMaximized
                                                       : ui::vbNormal);
    }
    QMainWindow::changeEvent(event);
}

void FormWindow::ShowState() {
    Qt::WindowStates wanted = form_.WindowState() == ui::vbMinimized   ? Qt::WindowMinimized
                              : form_.WindowState() == ui::vbMaximized ? Qt::WindowMaximized
                                                                       : Qt::WindowNoState;
    if (windowState() != wanted) setWindowState(wanted);
}

QTreeView* BoundReportView(ui::ListView& list, const char* name, QWidget* parent) {
    auto* view = Named(new QTreeView(parent), name);
    auto* model = new ListViewModel(list, view);
    view->setModel(model);
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    model->BindSelection(view->selectionModel());
    return view;
}

QLineEdit* BoundText(ui::TextBox& box, const char* name, QWidget* parent) {
    auto* edit = Named(new QLineEdit(parent), name);
    BindTextBox(edit, box);
    return edit;
}

QLabel* BoundCaption(ui::Label& label, const char* name, QWidget* parent) {
    auto* l = Named(new QLabel(parent), name);
    BindLabel(l, label);
    return l;
}

QPushButton* BoundButton(ui::CommandButton& button, const char* name, QWidget* parent) {
    auto* b = Named(new QPushButton(parent), name);
    BindButton(b, button);
    return b;
}

}  // namespace zelvo::desktop
