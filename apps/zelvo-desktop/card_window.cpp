#include "card_window.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include "bindings.h"
#include "form_widgets.h"
#include "personcard/frm_main.h"

namespace zelvo::desktop {

namespace {

// A list with its buttons on the right, top aligned.
QWidget* ListWithButtons(QWidget* list, std::initializer_list<QPushButton*> buttons, QWidget* parent) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(list, 1);
    auto* column = new QVBoxLayout;
    for (QPushButton* b : buttons) column->addWidget(b);
    column->addStretch(1);
    layout->addLayout(column);
    return row;
}

QWidget* BusinessTab(frmMain& f, QWidget* parent) {
    auto* tab = new QWidget(parent);
    auto* column = new QVBoxLayout(tab);
    column->addWidget(BoundReportView(f.LvwOrg, "LvwOrg", tab));
    auto* job = new QFormLayout;
    job->addRow(BoundCaption(f.Label11, "Label11", tab), BoundText(f.txtOrg, "txtOrg", tab));
    job->addRow(BoundCaption(f.Label12, "Label12", tab), BoundText(f.txtSubDivision, "txtSubDivision", tab));
    job->addRow(BoundCaption(f.Label13, "Label13", tab), BoundText(f.txtTitle, "txtTitle", tab));
    job->addRow(BoundCaption(f.Label14, "Label14", tab), BoundText(f.txtRoom, "txtRoom", tab));
    column->addLayout(job);
    column->addWidget(BoundCaption(f.Label15, "Label15", tab));
    column->addWidget(ListWithButtons(BoundReportView(f.lvwEmailOrg, "lvwEmailOrg", tab),
                                      {BoundButton(f.cmdOrgLetter, "cmdOrgLetter", tab)}, tab));
    column->addWidget(BoundReportView(f.lvwOrgPhones, "lvwOrgPhones", tab));
    column->addWidget(ListWithButtons(BoundReportView(f.LvwOrgWeb, "LvwOrgWeb", tab),
                                      {BoundButton(f.cmdGoOrgWeb, "cmdGoOrgWeb", tab)}, tab));
    column->addWidget(BoundReportView(f.LvwICQorg, "LvwICQorg", tab));
    return tab;
}

QWidget* HomeTab(frmMain& f, QWidget* parent) {
    auto* tab = new QWidget(parent);
    auto* column = new QVBoxLayout(tab);
    column->addWidget(BoundReportView(f.lvwHome, "lvwHome", tab));
    auto* address = new QFormLayout;
    address->addRow(BoundCaption(f.Label4, "Label4", tab), BoundText(f.txtCountry, "txtCountry", tab));
    address->addRow(BoundCaption(f.Label6, "Label6", tab), BoundText(f.txtPostIndex, "txtPostIndex", tab));
    address->addRow(BoundCaption(f.Label8, "Label8", tab), BoundText(f.txtRegion, "txtRegion", tab));
    address->addRow(BoundCaption(f.Label9, "Label9", tab), BoundText(f.txtCity, "txtCity", tab));
    address->addRow(BoundText(f.txtAddrHome, "txtAddrHome", tab));
    column->addLayout(address);
    column->addWidget(BoundCaption(f.Label1, "Label1", tab));
    column->addWidget(ListWithButtons(BoundReportView(f.lvwEmail, "lvwEmail", tab),
                                      {BoundButton(f.cmdLetter, "cmdLetter", tab),
                                       BoundButton(f.cmdDelete, "cmdDelete", tab)},
                                      tab));
    column->addWidget(BoundReportView(f.lvwHomePhones, "lvwHomePhones", tab));
    column->addWidget(ListWithButtons(BoundReportView(f.lvwHomeWeb, "lvwHomeWeb", tab),
                                      {BoundButton(f.cmdGoHomeWeb, "cmdGoHomeWeb", tab),
                                       BoundButton(f.cmdDeleteHomeWeb, "cmdDeleteHomeWeb", tab)},
                                      tab));
    column->addWidget(ListWithButtons(BoundReportView(f.LvwICQ, "LvwICQ", tab),
                                      {BoundButton(f.cmdDeleteICQ, "cmdDeleteICQ", tab)}, tab));
    return tab;
}

QWidget* ProjectsTab(frmMain& f, QWidget* parent) {
    auto* tab = new QWidget(parent);
    auto* column = new QVBoxLayout(tab);
    auto* toolbar = Named(new QToolBar(tab), "Toolbar1");
    BindToolbar(toolbar, f.Toolbar1, Qt::ToolButtonTextBesideIcon);
    column->addWidget(toolbar);
    column->addWidget(BoundReportView(f.LvwProjects, "LvwProjects", tab));
    return tab;
}

}  // namespace

std::unique_ptr<QWidget> MakeCardWindow(ui::Form& form) {
    auto& f = static_cast<frmMain&>(form);
    auto window = std::make_unique<FormWindow>(form);
    window->setObjectName("frmMain");
    window->resize(640, 600);
    auto* central = new QWidget(window.get());
    auto* column = new QVBoxLayout(central);

    // The head: the names on the left, the photo and the card's commands
    // on the right.
    auto* head = new QHBoxLayout;
    auto* names = Named(new QWidget(central), "FrameNames");
    auto* grid = new QFormLayout(names);
    grid->addRow(BoundCaption(f.lblFam, "lblFam", names), BoundText(f.txtFamily, "txtFamily", names));
    grid->addRow(BoundCaption(f.lblName, "lblName", names), BoundText(f.txtName, "txtName", names));
    grid->addRow(BoundCaption(f.lblPar, "lblPar", names), BoundText(f.txtMiddleName, "txtMiddleName", names));
    auto* combo = Named(new QComboBox(names), "Combo1");
    BindComboBox(combo, f.Combo1);
    grid->addRow(BoundCaption(f.lblFullName, "lblFullName", names), combo);
    head->addWidget(names, 1);

    auto* photo = Named(new QLabel(central), "ScaledPicture");
    photo->setFixedSize(93, 124);
    photo->setAlignment(Qt::AlignCenter);
    photo->setWordWrap(true);
    photo->setFrameShape(QFrame::StyledPanel);
    ShowPictureBox(photo, f.ScaledPicture, QString::fromStdString(f.txtPhoto.Caption()));
    head->addWidget(photo);
    auto* commands = new QVBoxLayout;
    for (auto [button, name] : {std::pair{&f.cmdAddPhoto, "cmdAddPhoto"}, {&f.cmdDeletePhoto, "cmdDeletePhoto"},
                                {&f.cmdPack, "cmdPack"}, {&f.cmdExportToVCF, "cmdExportToVCF"},
                                {&f.cmdHelp, "cmdHelp"}}) {
        QPushButton* b = BoundButton(*button, name, central);
        commands->addWidget(b);
        // A picture box tells no one of a new picture: the photo is drawn
        // again after the two buttons that change it have done their work.
        if (button == &f.cmdAddPhoto || button == &f.cmdDeletePhoto)
            QObject::connect(b, &QPushButton::clicked, photo, [&f, photo] {
                photo->clear();
                ShowPictureBox(photo, f.ScaledPicture, QString::fromStdString(f.txtPhoto.Caption()));
            });
    }
    commands->addStretch(1);
    head->addLayout(commands);
    column->addLayout(head);

    auto* tabs = Named(new QTabWidget(central), "SSTab1");
    tabs->addTab(BusinessTab(f, tabs), {});
    tabs->addTab(HomeTab(f, tabs), {});
    tabs->addTab(ProjectsTab(f, tabs), {});
    BindTabs(tabs, f.SSTab1);
    column->addWidget(tabs, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(BoundButton(f.cmdOK, "cmdOK", central));
    buttons->addWidget(BoundButton(f.cmdCancel, "cmdCancel", central));
    column->addLayout(buttons);

    window->setCentralWidget(central);
    return window;
}

}  // namespace zelvo::desktop
