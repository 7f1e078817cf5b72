#include "persons_window.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QListView>
#include <QMainWindow>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include "bindings.h"
#include "list_model.h"
#include "personswindow/frm_persons.h"

namespace zelvo::desktop {

namespace {

// The frame's close button is the form's: it unloads the window, which ends
// the wait of whoever opened it.
class FormWindow : public QMainWindow {
public:
    explicit FormWindow(ui::Form& form) : form_(form) {}

protected:
    void closeEvent(QCloseEvent* event) override {
        form_.Unload();
        event->accept();
    }

private:
    ui::Form& form_;
};

template <typename W>
W* Named(W* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
}

// A list of rows with columns (the tabs' lists), bound to its model.
QTreeView* ReportView(ui::ListView& list, const char* name, QWidget* parent) {
    auto* view = Named(new QTreeView(parent), name);
    auto* model = new ListViewModel(list, view);
    view->setModel(model);
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    model->BindSelection(view->selectionModel());
    return view;
}

QLineEdit* Text(ui::TextBox& box, const char* name, QWidget* parent) {
    auto* edit = Named(new QLineEdit(parent), name);
    BindTextBox(edit, box);
    return edit;
}

QLabel* Caption(ui::Label& label, const char* name, QWidget* parent) {
    auto* l = Named(new QLabel(parent), name);
    BindLabel(l, label);
    return l;
}

QPushButton* Button(ui::CommandButton& button, const char* name, QWidget* parent) {
    auto* b = Named(new QPushButton(parent), name);
    BindButton(b, button);
    return b;
}

}  // namespace

std::unique_ptr<QWidget> MakePersonsWindow(ui::Form& form) {
    auto& f = static_cast<frmPersons&>(form);
    auto window = std::make_unique<FormWindow>(form);
    window->setObjectName("frmPersons");
    window->resize(860, 560);

    auto* toolbar1 = Named(new QToolBar(window.get()), "Toolbar1");
    toolbar1->setMovable(false);
    BindToolbar(toolbar1, f.Toolbar1);
    window->addToolBar(Qt::TopToolBarArea, toolbar1);

    auto* central = new QWidget(window.get());
    auto* column = new QVBoxLayout(central);

    // The project bar and the project's path.
    auto* barRow = new QHBoxLayout;
    auto* tbPrj = Named(new QToolBar(central), "tbPrj");
    BindToolbar(tbPrj, f.tbPrj, Qt::ToolButtonIconOnly);
    barRow->addWidget(tbPrj);
    barRow->addWidget(Caption(f.txtPrjLabel, "txtPrjLabel", central));
    barRow->addWidget(Text(f.txtPrj, "txtPrj", central), 1);
    column->addLayout(barRow);

    auto* split = new QSplitter(Qt::Horizontal, central);
    // The persons: a plain list of names, as many as the book holds; the
    // view asks the model only for the rows it shows.
    auto* persons = Named(new QListView(split), "LvwUser");
    auto* personsModel = new ListViewModel(f.LvwUser, persons);
    persons->setModel(personsModel);
    persons->setUniformItemSizes(true);
    persons->setSelectionMode(QAbstractItemView::ExtendedSelection);
    personsModel->BindSelection(persons->selectionModel());

    auto* tabs = Named(new QTabWidget(split), "SSTab1");
    // Tab 0: the person's main data.
    auto* mainTab = new QWidget(tabs);
    auto* grid = new QFormLayout(mainTab);
    grid->addRow(Caption(f.Label1, "Label1", mainTab), Text(f.txtName, "txtName", mainTab));
    grid->addRow(Caption(f.Label2, "Label2", mainTab), Text(f.txtAddress, "txtAddress", mainTab));
    grid->addRow(Caption(f.Label3, "Label3", mainTab), Text(f.txtJob, "txtJob", mainTab));
    // The phones on one row: home, then work.
    auto* phones = new QHBoxLayout;
    phones->addWidget(Caption(f.Label5, "Label5", mainTab));
    phones->addWidget(Text(f.txtHomePhone, "txtHomePhone", mainTab), 1);
    phones->addWidget(Caption(f.Label6, "Label6", mainTab));
    phones->addWidget(Text(f.txtOrgPhone, "txtOrgPhone", mainTab), 1);
    grid->addRow(Caption(f.Label4, "Label4", mainTab), phones);
    auto* photo = Named(new QLabel(mainTab), "ScaledPicture");
    photo->setMinimumSize(93, 124);
    photo->setFrameShape(QFrame::StyledPanel);
    grid->addRow(photo);
    tabs->addTab(mainTab, {});

    // Tab 1: e-mail addresses and web pages, a button under each.
    auto* netTab = new QWidget(tabs);
    auto* net = new QVBoxLayout(netTab);
    net->addWidget(ReportView(f.lvwEmail, "lvwEmail", netTab));
    net->addWidget(Button(f.cmdLetter, "cmdLetter", netTab), 0, Qt::AlignRight);
    net->addWidget(ReportView(f.lvwWeb, "lvwWeb", netTab));
    net->addWidget(Button(f.cmdGoWeb, "cmdGoWeb", netTab), 0, Qt::AlignRight);
    tabs->addTab(netTab, {});

    // Tab 2: the person's projects and their toolbar.
    auto* prjTab = new QWidget(tabs);
    auto* prj = new QVBoxLayout(prjTab);
    auto* tbProp = Named(new QToolBar(prjTab), "TbPrjProp");
    BindToolbar(tbProp, f.TbPrjProp, Qt::ToolButtonTextBesideIcon);
    prj->addWidget(tbProp);
    prj->addWidget(ReportView(f.lvwPrj, "lvwPrj", prjTab));
    tabs->addTab(prjTab, {});
    BindTabs(tabs, f.SSTab1);

    split->addWidget(persons);
    split->addWidget(tabs);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    column->addWidget(split, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Button(f.cmdPersProp, "cmdPersProp", central));
    buttons->addStretch(1);
    buttons->addWidget(Button(f.cmdOK, "cmdOK", central));
    buttons->addWidget(Button(f.cmdCancel, "cmdCancel", central));
    column->addLayout(buttons);

    window->setCentralWidget(central);
    auto* status = Named(new QStatusBar(window.get()), "StatusBar1");
    window->setStatusBar(status);
    BindStatusBar(status, f.StatusBar1);
    return window;
}

}  // namespace zelvo::desktop
