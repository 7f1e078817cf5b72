// Saved queries: `QueryDef` and a database's `QueryDefs`. A saved query is
// kept as its Jet text and works as a table in other statements.
#pragma once

#include <memory>
#include <string>

#include "platform/dao/recordset.h"

namespace zelvo::dao {

namespace detail {
struct QueryDefNode;
class Connection;
}  // namespace detail

class QueryDef {
public:
    QueryDef() = default;

    std::string Name() const;
    void SetName(const std::string& name);
    // The Jet text, as it was given.
    std::string SQL() const;
    // Replaces the text; a saved query changes in the file at once.
    void SetSQL(const std::string& sql);
    Recordset OpenRecordset(int type = 2) const;
    explicit operator bool() const { return node_ != nullptr; }

    explicit QueryDef(std::shared_ptr<detail::QueryDefNode> node) : node_(std::move(node)) {}
    const std::shared_ptr<detail::QueryDefNode>& node() const { return node_; }

private:
    std::shared_ptr<detail::QueryDefNode> node_;
};

class QueryDefs {
public:
    int Count() const;
    QueryDef Item(int index) const;
    QueryDef Item(const std::string& name) const;  // 3265 unknown
    QueryDef operator()(const std::string& name) const { return Item(name); }
    // Saves a query made by CreateQueryDef. Appending the same saved query
    // again does nothing; another query of a taken name is 3012.
    void Append(const QueryDef& query);
    void Delete(const std::string& name);
    void Refresh() {}

    explicit QueryDefs(std::shared_ptr<detail::Connection> conn) : conn_(std::move(conn)) {}

private:
    std::shared_ptr<detail::Connection> conn_;
};

}  // namespace zelvo::dao
