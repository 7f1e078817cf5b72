#include "projects/folder_events.h"

#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/file_system.h"
#include "projects/project_sql.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

constexpr const char* kFolderCopyLabel = "ZELVO.DLL\\cAddressbook.FolderCopy";

// The rows of the project and its subprojects on one side, as a WHERE text.
// The side comes first: it is the cheap test and rules out half the rows
// before any path is compared.
std::string SubtreeCondition(const std::string& path, bool InsArcPrj) {
    return "( (Projects.InsArcPrj=" + ValueConv::BoolToSql(InsArcPrj) + ") and (" + ProjectCondition(path, InsCurPrj) +
           ") )";
}

// The new path of a row of the subtree of `from`: `to` in place of the
// leading part. The condition found the row because its path begins with
// `from` (case ignored), so the part to keep starts right after it. An
// empty `from` replaces nothing, and an empty result is stored as Null, as
// every text the book writes.
std::string NewPathExpr(const std::string& column, const std::string& from, const std::string& to) {
    if (from.empty()) return column;
    std::string expr = QuoteSqlText(to) + " & Mid(" + column + "," + "Len(" + QuoteSqlText(from) + ")+1)";
    if (to.empty()) expr = "IIf(" + expr + "=\"\",Null," + expr + ")";
    return expr;
}

// A statement on the book of DatabasePath(), or nothing when there is no
// book. The book is closed however the statement ends.
void ExecuteOnBook(const std::string& sql) {
    std::string path = DatabasePath();
    if (!shell::FileExists(path)) return;
    dao::Database db = DBEngine().OpenDatabase(path, false, false, "Access");
    try {
        db.Execute(sql);
    } catch (...) {
        db.Close();
        throw;
    }
    db.Close();
}

}  // namespace

void rProjectMoved(const std::string& fromPrj, bool fromInsArcPrj, const std::string& toPrj, bool toInsArcPrj) {
    ExecuteOnBook("UPDATE Projects SET Projects.Project = " + NewPathExpr("Projects.Project", fromPrj, toPrj) +
                  ", Projects.InsArcPrj = " + ValueConv::BoolToSql(toInsArcPrj) + " WHERE " +
                  SubtreeCondition(fromPrj, fromInsArcPrj) + ";");
}

void rProjectDeleted(const std::string& rProject, bool InsArcPrj, int Shift) {
    if (Shift == 0) return;
    ExecuteOnBook("DELETE FROM Projects WHERE " + SubtreeCondition(rProject, InsArcPrj) + ";");
}

void rProjectCopied(const std::string& rProjectFrom, const std::string& rProjectTo, bool InsArcPrjFrom,
                    bool InsArcPrjTo) {
    // The destination's rows are tested as they stood before the copy: the
    // engine reads all that it inserts before the first row goes in. The
    // test is a join on the destination's rows, which the engine indexes
    // once for the statement, rather than a search of them for each row.
    std::string newPath = NewPathExpr("Projects.Project", rProjectFrom, rProjectTo);
    std::string to = ValueConv::BoolToSql(InsArcPrjTo);
    try {
        ExecuteOnBook("INSERT INTO Projects ([Owner ID], OwnerType, Project, InsArcPrj) "
                      "SELECT Projects.[Owner ID], Projects.OwnerType, " +
                      newPath + ", " + to +
                      " FROM Projects LEFT JOIN Projects AS D ON (D.InsArcPrj=" + to +
                      " AND D.[Owner ID]=Projects.[Owner ID] AND D.OwnerType=Projects.OwnerType AND D.Project=" +
                      newPath + ") WHERE " + SubtreeCondition(rProjectFrom, InsArcPrjFrom) +
                      " AND D.[Owner ID] Is Null;");
    } catch (const Error& e) {
        ShellPaths().ReportError(e, kFolderCopyLabel);
        Err().Clear();
    }
}

}  // namespace zelvo
