// A record set: the rows of a table or of a Jet SELECT, with a current
// record, as DAO gives them.
//
// What the book's code relies on, kept exactly:
//  - On open the first record is current; an empty set has BOF and EOF True,
//    AbsolutePosition -1, and every move raises 3021 "No current record.".
//  - RecordCount counts the records reached so far; after MoveLast, all.
//  - AddNew fills defaults and numbers a Counter at once; after Update the
//    record that was current before AddNew is current again, and the new
//    record stands last until Requery.
//  - Delete leaves the deleted record current (reading it raises 3167);
//    MoveNext/MovePrevious go on from its place.
//  - FindFirst/FindNext/FindLast/FindPrevious take Jet criteria; on no match
//    NoMatch is True and the current record does not change.
//  - Fields are found by name without regard to case; a join names a field
//    Table.Field where the bare name would be ambiguous.
//  - A record set over a join is updatable field by field; a Distinct one is
//    read-only (3326).
//  - What other record sets or databases write is seen after Requery.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/core/variant.h"
#include "platform/dao/field.h"

namespace zelvo::dao {

namespace detail {
class RecordsetImpl;
}

// OpenRecordset types.
enum RecordsetType : int { dbOpenTable = 1, dbOpenDynaset = 2, dbOpenSnapshot = 4, dbOpenForwardOnly = 8 };
// EditMode values.
enum EditModeEnum : int { dbEditNone = 0, dbEditInProgress = 1, dbEditAdd = 2 };

class RecordsetFields {
public:
    int Count() const;
    Field Item(int index) const;                 // 3265 out of range
    Field Item(std::string_view name) const;     // 3265 unknown
    Field operator()(std::string_view name) const { return Item(name); }

    explicit RecordsetFields(std::shared_ptr<detail::RecordsetImpl> rs) : rs_(std::move(rs)) {}

private:
    std::shared_ptr<detail::RecordsetImpl> rs_;
};

class Recordset {
public:
    Recordset() = default;  // nothing: any use throws 3420

    std::int64_t AbsolutePosition() const;
    void SetAbsolutePosition(std::int64_t position);
    std::int64_t RecordCount() const;
    // DAO's BOF and EOF. (EOF is a macro of the C library, so both carry an
    // "Is" in front.)
    bool IsBOF() const;
    bool IsEOF() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    void FindFirst(std::string_view criteria);
    void FindNext(std::string_view criteria);
    void FindLast(std::string_view criteria);
    void FindPrevious(std::string_view criteria);
    bool NoMatch() const;

    RecordsetFields Fields() const;
    // rs("Name"): the value of a field of the current record.
    Variant operator()(std::string_view field) const;
    Variant Value(std::string_view field) const { return (*this)(field); }
    Variant Value(int index) const;
    // rs("Name") = value, during Edit or AddNew.
    void SetValue(std::string_view field, const Variant& value);
    void SetValue(int index, const Variant& value);

    void Edit();
    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete();
    void Requery();
    void Close();

    int EditMode() const;
    bool Updatable() const;
    bool IsOpen() const;
    explicit operator bool() const { return impl_ != nullptr; }

    explicit Recordset(std::shared_ptr<detail::RecordsetImpl> impl) : impl_(std::move(impl)) {}

private:
    detail::RecordsetImpl& I() const;
    std::shared_ptr<detail::RecordsetImpl> impl_;
};

}  // namespace zelvo::dao
