// A field: one column of a table definition, or one value of a record set's
// current row. Either way it has DAO's properties; a record set's field also
// has a value.
//
// A field made by `TableDef::CreateField` is free until it is appended to a
// table's `Fields`; from then on, setting a property changes the table in
// the file (a new name renames the column).
#pragma once

#include <memory>
#include <string>

#include "platform/core/variant.h"
#include "platform/dao/field_props.h"

namespace zelvo::dao {

namespace detail {
struct FieldNode;
}

class Field {
public:
    Field() = default;  // nothing; any use throws 3420

    std::string Name() const;
    void SetName(const std::string& name);
    int Type() const;
    void SetType(int type);
    int Size() const;
    void SetSize(int size);
    int Attributes() const;
    void SetAttributes(int attributes);
    std::string DefaultValue() const;
    void SetDefaultValue(const std::string& value);
    bool Required() const;
    void SetRequired(bool required);
    bool AllowZeroLength() const;
    void SetAllowZeroLength(bool allow);

    // Record set fields only: the value in the current row (or in the edit
    // buffer during Edit/AddNew). 3021 with no current record; 3020 when
    // set without Edit or AddNew; 3163 for a text too long for the column.
    Variant Value() const;
    void SetValue(const Variant& value);

    explicit operator bool() const { return node_ != nullptr; }

    // For the engine.
    explicit Field(std::shared_ptr<detail::FieldNode> node) : node_(std::move(node)) {}
    const std::shared_ptr<detail::FieldNode>& node() const { return node_; }

private:
    detail::FieldNode& N() const;
    void Change(void (*apply)(FieldProps&, const void*), const void* arg);
    std::shared_ptr<detail::FieldNode> node_;
};

}  // namespace zelvo::dao
