#include "form_widgets.h"

#include <QCloseEvent>

#include "bindings.h"
#include "list_model.h"

namespace zelvo::desktop {

void FormWindow::closeEvent(QCloseEvent* event) {
    form_.Unload();
    event->accept();
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
