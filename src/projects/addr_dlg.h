// AddrDLG: the persons list of a window that has no list logic of its own.
//
// The person card (and later the recipient picker) hands it a list of
// persons, a project bar with its text box and, when it has them, a list of
// the selected person's projects and a popup menu. It keeps the persons of
// the current filter in `RsPersonal`, runs the project bar (the ProjectBar
// the address book window uses too) and refills the list, so that a card
// steps through the same persons as the list it was opened from.
//
// It lives with the projects rather than with the persons list because it
// runs the project bar and the project list, and the persons list comes
// before the projects in the order of the library's folders.
//
// Every routine passes over a failing step: an empty filter or a book that
// cannot be read leaves an empty list and closed record sets.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"
#include "platform/ui/listview.h"
#include "platform/ui/menu.h"
#include "platform/ui/picture_box.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/toolbar.h"
#include "projects/project_bar.h"

namespace zelvo {

class AddrDLG {
public:
    // The controls are the owner's and outlive this object. `LvwProjects`
    // and `mnuPopArc` (the popup entry that follows the side) may be null.
    // Builds the bar's five keys and takes its clicks.
    AddrDLG(ui::ListView& LvwUser, ui::Toolbar& tbPrj, ui::TextBox& txtPrj, ui::Label& txtPrjLabel,
            ui::ListView* LvwProjects = nullptr, ui::Menu* mnuPopArc = nullptr);

    // ---- Set by the owner before DbInit
    dao::Database Database;  // the owner's open book
    std::string rProject;
    bool InsArcPrj = false;
    bool ShowPhotos = false;
    ui::PictureBox* picPhoto = nullptr;
    ui::PictureBox* ScaledPhoto = nullptr;

    // ---- Record sets, open after DbInit
    dao::Recordset RsPersonal;        // the persons of the current filter
    dao::Recordset DataPersonalFull;  // all of PersonalData
    dao::Recordset DataProjects;      // the project rows of the selected person

    // Opens the sets. With `AllPersons` RsPersonal is the whole table and
    // the bar is left as it stands. Without it: the members of rProject with
    // CurPrj pressed, or, with no project, the unsorted persons with NoPrj
    // pressed and rProject and InsArcPrj taken from the shell's current
    // folder. The Projects key shows the side.
    void DbInit(bool& AllPersons);

    // Refills LvwUser from RsPersonal (the last record is the top row), puts
    // both sets on the selected row's person, and fills the project list.
    void ReFill();

    // Puts RsPersonal on the record of `Item` (the list is filled from the
    // last record up, and never sorted) and DataPersonalFull on its person.
    void LvwUser_ItemClick(ui::ListItem& Item);

    // True when the bar is on the archive side.
    bool IsInsArcPrj() const;

    // Presses the key of the library's filter (PrjFilter) after a cancelled
    // choice.
    void Restore_tbPrj();

    // The project list of RsPersonal's current person; cleared without one.
    void FillLvwProjects();

    // One key of the project bar: AllMsg, NoPrj, CurPrj, Projects, Browse.
    void tbPrj_ButtonClick(const std::string& key);

private:
    // The bar changed the filter, project or side: the persons again.
    void BarRefill();
    void OpenPersons(const std::string& query);

    ui::ListView& LvwUser_;
    ui::Toolbar& tbPrj_;
    ui::TextBox& txtPrj_;
    ui::ListView* LvwProjects_;
    ProjectBar bar_;
};

}  // namespace zelvo
