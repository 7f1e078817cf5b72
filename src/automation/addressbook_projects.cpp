// The project members of cAddressbook: membership and the host's folder
// events. The work is done in projects/; these are the doors to it.
#include "platform/core/error.h"
#include "projects/folder_events.h"
#include "projects/membership.h"
#include "store/library_state.h"
#include "zelvo/addressbook.h"

namespace zelvo {

void cAddressbook::MovePerson(std::int32_t Personal_ID, std::string& rProjectTo, ui::DataControl* DataProjects) {
    std::int32_t type = oPersonal_ID;
    MoveABObject(Personal_ID, type, rProjectTo, DataProjects);
}

void cAddressbook::MoveABObject(std::int32_t Object_ID, std::int32_t& ObjectType, std::string& rProjectTo,
                                ui::DataControl*) {
    EnterCall();
    zelvo::MoveABObject(Object_ID, ObjectType, rProject, rProjectTo);
}

void cAddressbook::MoveABObject2(std::int32_t Object_ID, std::int32_t& ObjectType, std::string& rProjectFrom,
                                 bool& InsArcPrjFrom, std::string& rProjectTo, bool& InsArcPrjTo, ui::DataControl*) {
    EnterCall();
    zelvo::MoveABObject2(Object_ID, ObjectType, rProjectFrom, InsArcPrjFrom, rProjectTo, InsArcPrjTo, rProject);
}

bool cAddressbook::DeleteObjfromPrj(ui::DataControl*, std::string& rProject_, bool& InsArcPrj_, std::int32_t Object_ID,
                                    std::int32_t ObjectType) {
    EnterCall();
    return zelvo::DeleteObjfromPrj(rProject_, InsArcPrj_, Object_ID, ObjectType);
}

void cAddressbook::PrjArcPrjSingleProject(std::int32_t Object_ID, std::int32_t ObjectType, ui::DataControl*,
                                          std::string& rProject_, bool& InsArcPrj_) {
    EnterCall();
    zelvo::PrjArcPrjSingleProject(Object_ID, ObjectType, rProject_, InsArcPrj_);
}

void cAddressbook::PrjArcPrj(std::int32_t Personal_ID, ui::DataControl* DataPersonal, ui::DataControl* DataProjects,
                             bool& InsArcPrj_) {
    PrjArcPrj2(Personal_ID, oPersonal_ID, DataPersonal, DataProjects, InsArcPrj_);
}

void cAddressbook::PrjArcPrj2(std::int32_t Object_ID, std::int32_t ObjectType, ui::DataControl*, ui::DataControl*,
                              bool& InsArcPrj_) {
    EnterCall();
    zelvo::PrjArcPrj2(Object_ID, ObjectType, InsArcPrj_);
}

void cAddressbook::FolderMoved(ui::DataControl*, std::string& fromPrj, bool& fromInsArcPrj, std::string& toPrj,
                               bool& toInsArcPrj) {
    rProjectMoved(fromPrj, fromInsArcPrj, toPrj, toInsArcPrj);
}

void cAddressbook::rProjectMoved(const std::string& fromPrj, bool fromInsArcPrj, const std::string& toPrj,
                                 bool toInsArcPrj) {
    EnterCall();
    zelvo::rProjectMoved(fromPrj, fromInsArcPrj, toPrj, toInsArcPrj);
}

void cAddressbook::FolderDeleted(ui::DataControl*, ui::DataControl*, ui::DataControl*, std::int16_t) {}

void cAddressbook::FolderDeleted2(ui::DataControl*, ui::DataControl*, ui::DataControl*, ui::DataControl*,
                                  std::string& rProject_, std::int16_t Shift) {
    rProjectDeleted(rProject_, InsArcPrj, Shift);
}

void cAddressbook::rProjectDeleted(const std::string& rProject_, bool InsArcPrj_, std::int16_t Shift) {
    EnterCall();
    zelvo::rProjectDeleted(rProject_, InsArcPrj_, Shift);
}

void cAddressbook::FolderCopy(ui::DataControl*, ui::DataControl*, std::string& rProjectFrom, std::string& rProjectTo,
                              bool& InsArcPrjFrom, bool& InsArcPrjTo) {
    OnErrorResumeNext er("cAddressbook.FolderCopy");
    er.Do([&] { rProjectCopied(rProjectFrom, rProjectTo, InsArcPrjFrom, InsArcPrjTo); });
}

void cAddressbook::rProjectCopied(const std::string& rProjectFrom, const std::string& rProjectTo, bool InsArcPrjFrom,
                                  bool InsArcPrjTo) {
    EnterCall();
    zelvo::rProjectCopied(rProjectFrom, rProjectTo, InsArcPrjFrom, InsArcPrjTo);
}

}  // namespace zelvo
