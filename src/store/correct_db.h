// CorrectDB: makes whatever book file there is — or none — fit today's
// layout of the book, and leaves it closed and hidden.
//
// It runs every time a card or the recipient dialog opens and whenever the
// host asks, so on a book that is already up to date it changes nothing but
// the texts of the two saved queries and the hidden attribute.
//
// In order:
//  1. Find the file: the book itself; else the book at its old place; else
//     "AddressBook.mdb" of earlier versions; else that one's old place —
//     a source found is compacted into the book's place (the source stays);
//     with no source a new, empty book is made. A book held exclusively by
//     another (3045) ends the routine silently; a file the engine does not
//     recognise (3343) is sent through CompressDB once. Other failures here
//     are reported ("zelvo.dll\Module1\CorrectDB" on open, else
//     "Module1.CorrectDb") and end the routine.
//  2–6. Tables, columns, defaults and counters of today's layout, each added
//     when missing; the three older layouts are moved into today's tables
//     (E-MailAdresses into Resources + ResourcesOwners, Projects keyed by
//     Personal ID, Organizations rows that carried a Personal ID). A failing
//     statement in these stages is passed over and the next one runs.
//  7. The saved queries OrgPrj and PersPrj, written or re-written.
//  8. The file is closed and marked hidden.
//
// Stages 2 to 7 run in one transaction of the book: a run that is killed or
// fails before its end leaves the book as it was, and the next run does the
// whole conversion again. A book converted from an earlier file is written
// beside the book's place and moved there by one rename, so a run killed
// during that copy leaves no half-written book either.
#pragma once

#include <functional>
#include <string>

#include "platform/dao/database.h"

namespace zelvo {

// Corrects the book at `Path`; an empty `Path` is replaced by DatabasePath()
// and the caller's variable gets that value.
void CorrectDB(std::string& Path);

// The helpers of the correction, named as the book's code names them.

// Deletes the file if it is there, hidden or not; failures are passed over.
void RemoveFile(const std::string& Path);

// Adds the column `Name` to `td` unless a column of that name and type (and,
// for Text, size) is there. A column of the name with another type or size
// stays as it is. Failures are passed over.
void AddField(dao::TableDef& td, const std::string& Name, int Type, int Size = 0);

// The field exists, is a Long and carries the auto-increment attribute.
bool IsCounterField(const dao::TableDef& td, const std::string& Name);

// The columns of Resources and their Counter; the columns of
// ResourcesOwners. Each appends `td` to the file when it is new.
void EnsureResourceColumns(dao::TableDef& td, const dao::Database& db);
void EnsureOwnerColumns(dao::TableDef& td, const dao::Database& db);

// Sets the text of the saved query `Name`, creating it when missing.
void EnsureSavedQuery(const dao::Database& db, const std::string& Name, const std::string& SQL);

// The steps of a correction, for tests that inject faults: the hook runs at
// each step before its action and may throw (a failing step) or end the
// process (a killed one).
enum class CorrectStep {
    Convert,           // before an earlier book is copied into the book's place
    Converted,         // the copy is written beside the book's place, not yet moved
    Stages,            // the book is open and its transaction begun
    ResourcesRenamed,  // the old e-mail table has become Resources, no owner rows yet
    Row,               // before each row that a conversion writes or deletes
    Columns,           // before the columns of today's tables are added
    OldOrganizations,  // before employers of the earliest layout become job titles
    Queries,           // before the saved queries are written
    Commit,            // before the transaction is committed
    Committed,         // the book is converted, not yet closed
    Hidden,            // after the book is marked hidden
};
using CorrectFaultHook = std::function<void(CorrectStep)>;
// Installs the hook (an empty one removes it); returns the previous one.
CorrectFaultHook SetCorrectFaultHook(CorrectFaultHook hook);

}  // namespace zelvo
