// Changes to the structure of a book: tables, fields and saved queries.
//
// The field definitions in MSysFields are the truth; the SQLite table is made
// from them. A change that SQLite cannot make in place — a Counter added to a
// table that has rows, a field dropped or given other properties — rebuilds
// the table from the new definitions and copies the rows across in their
// order, inside one transaction: either the whole change is there or none
// of it.
//
// A saved query never stands in the way of such a change: its text is kept
// as written, and while it names a table or field the book lacks it has no
// view and fails only when it is used (3078, 3061), as in Jet. Internal to
// the engine.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/connection.h"

namespace zelvo::dao::detail {

// 3010 when a table or query of that name exists; 3264 with no fields.
// Each of `keys` (field names) gets a unique index: a second row with the
// same values in them is refused with 3022. Keys outlive later changes of
// the table; a field in one cannot be dropped (3280).
void CreateTable(Connection& c, const std::string& name, const std::vector<FieldProps>& fields,
                 const std::vector<std::vector<std::string>>& keys = {});
// 3265 when there is no such table.
void DropTable(Connection& c, const std::string& name);
void RenameTable(Connection& c, const std::string& from, const std::string& to);

// 3191 when the table has a field of that name.
void AddField(Connection& c, const std::string& table, const FieldProps& field);
// 3265 when there is no such field.
void DropField(Connection& c, const std::string& table, const std::string& field);
// Gives the field `field` the definition `props` (its name included).
void AlterField(Connection& c, const std::string& table, const std::string& field, const FieldProps& props);

// 3012 when an object of that name exists; a syntax error as the translator
// reports it. A text that names what the book lacks is saved all the same.
void CreateQuery(Connection& c, const std::string& name, const std::string& jetSql);
void SetQuerySql(Connection& c, const std::string& name, const std::string& jetSql);
void DropQuery(Connection& c, const std::string& name);
void RenameQuery(Connection& c, const std::string& from, const std::string& to);

}  // namespace zelvo::dao::detail
