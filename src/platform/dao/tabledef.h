// Table definitions: `TableDef`, its `Fields`, and a database's `TableDefs`.
//
// A `TableDef` from `Database::CreateTableDef` is free until appended to
// `TableDefs`; its fields are collected with `Fields().Append` first. A
// `TableDef` taken from `TableDefs` stands for the table in the file: adding,
// deleting or changing a field, or setting `Name`, changes the file at once.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dao/field.h"

namespace zelvo::dao {

namespace detail {
struct TableDefNode;
class Connection;
}  // namespace detail

class Fields {
public:
    int Count() const;
    Field Item(int index) const;                   // 3265 out of range
    Field Item(const std::string& name) const;     // 3265 unknown; names ignore case
    Field operator()(const std::string& name) const { return Item(name); }
    // Appends a field made by CreateField. 3191 when the name is taken.
    void Append(const Field& field);
    // 3265 unknown.
    void Delete(const std::string& name);
    void Refresh() {}

    explicit Fields(std::shared_ptr<detail::TableDefNode> table) : table_(std::move(table)) {}

private:
    std::shared_ptr<detail::TableDefNode> table_;
};

class TableDef {
public:
    TableDef() = default;

    std::string Name() const;
    // Renames the table when it is in the file (3010 when the name is taken).
    void SetName(const std::string& name);
    dao::Fields Fields() const;
    // A new field (type code, and size for Text), not yet appended.
    Field CreateField(const std::string& name = {}, int type = dbText, int size = 0) const;
    explicit operator bool() const { return node_ != nullptr; }

    explicit TableDef(std::shared_ptr<detail::TableDefNode> node) : node_(std::move(node)) {}
    const std::shared_ptr<detail::TableDefNode>& node() const { return node_; }

private:
    std::shared_ptr<detail::TableDefNode> node_;
};

class TableDefs {
public:
    int Count() const;
    TableDef Item(int index) const;
    TableDef Item(const std::string& name) const;  // 3265 unknown
    TableDef operator()(const std::string& name) const { return Item(name); }
    // Writes a new table to the file. 3010 when the name is taken; 3264
    // when it has no field.
    void Append(const TableDef& table);
    void Delete(const std::string& name);
    void Refresh() {}

    explicit TableDefs(std::shared_ptr<detail::Connection> conn) : conn_(std::move(conn)) {}

private:
    std::shared_ptr<detail::Connection> conn_;
};

}  // namespace zelvo::dao
