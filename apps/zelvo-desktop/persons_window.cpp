#include "persons_window.h"

#include <QCloseEvent>
#include <QEvent>
#include <QFormLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QShortcut>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QListView>
#include <QMainWindow>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include "bindings.h"
#include "form_widgets.h"
#include "list_model.h"
#include "personswindow/frm_persons.h"

namespace zelvo::desktop {

namespace {

int ShiftOf(const QKeyEvent* key) { return key->modifiers() & Qt::ShiftModifier ? vbShiftMask : 0; }

// The key codes the window's handlers know, from Qt's.
int KeyCodeOf(const QKeyEvent* key) {
    switch (key->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: return vbKeyReturn;
        case Qt::Key_Delete: return vbKeyDelete;
        case Qt::Key_F1: return vbKeyF1;
        case Qt::Key_F8: return vbKeyF8;
        case Qt::Key_F11: return vbKeyF11;
        default: return 0;
    }
}

// Hands the keys of a list to a handler of the window: Enter, and Delete
// and F8 with Shift. The other keys (arrows, typing) stay the list's.
class KeyForwarder : public QObject {
public:
    KeyForwarder(QObject* parent, std::function<void(int, int)> handler)
        : QObject(parent), handler_(std::move(handler)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            int code = KeyCodeOf(key), shift = ShiftOf(key);
            if (code == vbKeyReturn || ((code == vbKeyDelete || code == vbKeyF8) && shift)) {
                handler_(code, shift);
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void(int, int)> handler_;
};

void ForwardKeys(QWidget* widget, std::function<void(int, int)> handler) {
    widget->installEventFilter(new KeyForwarder(widget, std::move(handler)));
}

// The items of a menu model as a Qt menu, hidden ones left out; choosing
// one is the model's click.
void AddMenuItems(QMenu* menu, ui::Menu& model) {
    for (int i = 1; i <= model.Count(); ++i) {
        ui::Menu& item = model.Item(i);
        if (!item.Visible()) continue;
        if (item.IsSeparator()) {
            menu->addSeparator();
        } else if (item.Count() > 0) {
            AddMenuItems(menu->addMenu(QString::fromStdString(item.Caption())), item);
        } else {
            QAction* action = menu->addAction(QString::fromStdString(item.Caption()));
            action->setObjectName(QString::fromStdString(item.Name()));
            action->setEnabled(item.Enabled());
            action->setCheckable(item.Checked());
            action->setChecked(item.Checked());
            QObject::connect(action, &QAction::triggered, menu, [&item] { item.UserClick(); });
        }
    }
}

// Draws the summary's photo. The photo is read with the rest of the summary
// and its web list is the last thing filled, so each refill of that list
// brings the photo of the same person.
void FollowPhoto(QLabel* label, frmPersons& f) {
    auto show = [label, &f] {
        const auto& image = f.ScaledPicture.Image;
        if (!image || image->Empty()) {
            label->clear();
            return;
        }
        QImage q(image->Pixels.data(), image->Width, image->Height, image->Width * 3, QImage::Format_RGB888);
        label->setPixmap(QPixmap::fromImage(q.copy()));
    };
    show();
    int id = f.lvwWeb.Observe([show](const ui::ListViewChange&) { show(); });
    QObject::connect(label, &QObject::destroyed, [&f, id] { f.lvwWeb.Unobserve(id); });
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
    barRow->addWidget(BoundCaption(f.txtPrjLabel, "txtPrjLabel", central));
    barRow->addWidget(BoundText(f.txtPrj, "txtPrj", central), 1);
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
    QObject::connect(persons, &QAbstractItemView::doubleClicked, persons,
                     [&f](const QModelIndex& index) { f.LvwUser.UserDblClick(index.row() + 1); });
    ForwardKeys(persons, [&f](int code, int shift) { f.LvwUser_KeyDown(code, shift); });
    // The popup menu: the window says what it offers for the row under the
    // pointer, the host shows it there.
    persons->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(persons, &QWidget::customContextMenuRequested, persons, [&f, persons](const QPoint& at) {
        QModelIndex index = persons->indexAt(at);
        int shift = QGuiApplication::keyboardModifiers() & Qt::ShiftModifier ? vbShiftMask : 0;
        if (!f.LvwUser_MouseUp(vbRightButton, shift, index.isValid() ? index.row() + 1 : 0)) return;
        QMenu menu(persons);
        menu.setObjectName("mnPop");
        AddMenuItems(&menu, f.mnPop);
        menu.exec(persons->viewport()->mapToGlobal(at));
    });

    auto* tabs = Named(new QTabWidget(split), "SSTab1");
    // Tab 0: the person's main data.
    auto* mainTab = new QWidget(tabs);
    auto* grid = new QFormLayout(mainTab);
    grid->addRow(BoundCaption(f.Label1, "Label1", mainTab), BoundText(f.txtName, "txtName", mainTab));
    grid->addRow(BoundCaption(f.Label2, "Label2", mainTab), BoundText(f.txtAddress, "txtAddress", mainTab));
    grid->addRow(BoundCaption(f.Label3, "Label3", mainTab), BoundText(f.txtJob, "txtJob", mainTab));
    // The phones on one row: home, then work.
    auto* phones = new QHBoxLayout;
    phones->addWidget(BoundCaption(f.Label5, "Label5", mainTab));
    phones->addWidget(BoundText(f.txtHomePhone, "txtHomePhone", mainTab), 1);
    phones->addWidget(BoundCaption(f.Label6, "Label6", mainTab));
    phones->addWidget(BoundText(f.txtOrgPhone, "txtOrgPhone", mainTab), 1);
    grid->addRow(BoundCaption(f.Label4, "Label4", mainTab), phones);
    auto* photo = Named(new QLabel(mainTab), "ScaledPicture");
    photo->setMinimumSize(93, 124);
    photo->setFrameShape(QFrame::StyledPanel);
    photo->setAlignment(Qt::AlignCenter);
    FollowPhoto(photo, f);
    grid->addRow(photo);
    tabs->addTab(mainTab, {});

    // Tab 1: e-mail addresses and web pages, a button under each.
    auto* netTab = new QWidget(tabs);
    auto* net = new QVBoxLayout(netTab);
    QTreeView* mails = BoundReportView(f.lvwEmail, "lvwEmail", netTab);
    QObject::connect(mails, &QAbstractItemView::doubleClicked, mails,
                     [&f](const QModelIndex& index) { f.lvwEmail.UserDblClick(index.row() + 1); });
    ForwardKeys(mails, [&f](int code, int shift) { f.lvwEmail_KeyDown(code, shift); });
    net->addWidget(mails);
    net->addWidget(BoundButton(f.cmdLetter, "cmdLetter", netTab), 0, Qt::AlignRight);
    net->addWidget(BoundReportView(f.lvwWeb, "lvwWeb", netTab));
    net->addWidget(BoundButton(f.cmdGoWeb, "cmdGoWeb", netTab), 0, Qt::AlignRight);
    tabs->addTab(netTab, {});

    // Tab 2: the person's projects and their toolbar.
    auto* prjTab = new QWidget(tabs);
    auto* prj = new QVBoxLayout(prjTab);
    auto* tbProp = Named(new QToolBar(prjTab), "TbPrjProp");
    BindToolbar(tbProp, f.TbPrjProp, Qt::ToolButtonTextBesideIcon);
    prj->addWidget(tbProp);
    prj->addWidget(BoundReportView(f.lvwPrj, "lvwPrj", prjTab));
    // lvwPrj's clicks reach the window through the selection it binds.
    tabs->addTab(prjTab, {});
    BindTabs(tabs, f.SSTab1);

    split->addWidget(persons);
    split->addWidget(tabs);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    column->addWidget(split, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(BoundButton(f.cmdPersProp, "cmdPersProp", central));
    buttons->addStretch(1);
    buttons->addWidget(BoundButton(f.cmdOK, "cmdOK", central));
    buttons->addWidget(BoundButton(f.cmdCancel, "cmdCancel", central));
    column->addLayout(buttons);

    window->setCentralWidget(central);
    auto* status = Named(new QStatusBar(window.get()), "StatusBar1");
    window->setStatusBar(status);
    BindStatusBar(status, f.StatusBar1);
    // The window's keys, wherever the focus is.
    for (auto [qtKey, code] : {std::pair{Qt::Key_F1, vbKeyF1}, std::pair{Qt::Key_F11, vbKeyF11}}) {
        auto* shortcut = new QShortcut(QKeySequence(qtKey), window.get());
        QObject::connect(shortcut, &QShortcut::activated, window.get(), [&f, code = code] { f.Form_KeyDown(code, 0); });
    }
    return window;
}

}  // namespace zelvo::desktop
