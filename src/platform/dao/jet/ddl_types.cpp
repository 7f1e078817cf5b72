#include "platform/dao/jet/ddl_types.h"

#include "platform/dao/jet/writer.h"

namespace zelvo::dao::jet {

namespace {

struct Entry {
    const char* name;
    DdlType type;
};

// Jet's own names and the synonyms its DDL accepts. Note that INTEGER is a
// Long (4 bytes) in Jet SQL; the 2-byte Integer is SHORT / SMALLINT.
constexpr Entry kTypes[] = {
    {"TEXT", {10, false, true}},        {"CHAR", {10, false, true}},        {"VARCHAR", {10, false, true}},
    {"CHARACTER", {10, false, true}},   {"STRING", {10, false, true}},      {"ALPHANUMERIC", {10, false, true}},
    {"NCHAR", {10, false, true}},       {"NVARCHAR", {10, false, true}},
    {"MEMO", {12, false, false}},       {"LONGTEXT", {12, false, false}},   {"LONGCHAR", {12, false, false}},
    {"NOTE", {12, false, false}},       {"NTEXT", {12, false, false}},
    {"LONG", {4, false, false}},        {"INTEGER", {4, false, false}},     {"INT", {4, false, false}},
    {"INTEGER4", {4, false, false}},
    {"SHORT", {3, false, false}},       {"SMALLINT", {3, false, false}},    {"INTEGER2", {3, false, false}},
    {"BYTE", {2, false, false}},        {"TINYINT", {2, false, false}},     {"INTEGER1", {2, false, false}},
    {"COUNTER", {4, true, false}},      {"AUTOINCREMENT", {4, true, false}}, {"IDENTITY", {4, true, false}},
    {"YESNO", {1, false, false}},       {"BIT", {1, false, false}},         {"LOGICAL", {1, false, false}},
    {"LOGICAL1", {1, false, false}},    {"BOOLEAN", {1, false, false}},
    {"LONGBINARY", {11, false, false}}, {"OLEOBJECT", {11, false, false}},  {"GENERAL", {11, false, false}},
    {"IMAGE", {11, false, false}},
    {"BINARY", {9, false, true}},       {"VARBINARY", {9, false, true}},
    {"DOUBLE", {7, false, false}},      {"FLOAT", {7, false, false}},       {"FLOAT8", {7, false, false}},
    {"NUMBER", {7, false, false}},
    {"SINGLE", {6, false, false}},      {"REAL", {6, false, false}},        {"FLOAT4", {6, false, false}},
    {"DATETIME", {8, false, false}},    {"DATE", {8, false, false}},        {"TIME", {8, false, false}},
    {"TIMESTAMP", {8, false, false}},
    {"CURRENCY", {5, false, false}},    {"MONEY", {5, false, false}},
    {"GUID", {15, false, false}},       {"UNIQUEIDENTIFIER", {15, false, false}},
    {"DECIMAL", {20, false, false}},    {"NUMERIC", {20, false, false}},
};

}  // namespace

DdlType LookupDdlType(std::string_view name) {
    for (const Entry& e : kTypes)
        if (SameName(name, e.name)) return e.type;
    return {};
}

}  // namespace zelvo::dao::jet
