// BindLiterals: the one way a shape's literals reach SQLite.
#include <sqlite3.h>

#include "platform/dao/jet/jet_sql.h"

namespace zelvo::dao::jet {

int BindLiterals(sqlite3_stmt* statement, const Shape& shape, int offset) {
    const int count = sqlite3_bind_parameter_count(statement);
    for (int i = 0; i < static_cast<int>(shape.literals.size()); ++i) {
        const int index = offset + i + 1;
        if (index > count) break;  // a literal written into the text has no parameter
        const Variant& v = shape.literals[i];
        int rc;
        switch (v.kind()) {
        case Variant::Kind::Null: rc = sqlite3_bind_null(statement, index); break;
        case Variant::Kind::Integer: rc = sqlite3_bind_int64(statement, index, v.integer()); break;
        case Variant::Kind::Double: rc = sqlite3_bind_double(statement, index, v.real()); break;
        case Variant::Kind::Boolean: rc = sqlite3_bind_int(statement, index, v.boolean() ? -1 : 0); break;
        case Variant::Kind::Bytes:
            rc = sqlite3_bind_blob(statement, index, v.bytes().data(), static_cast<int>(v.bytes().size()),
                                   SQLITE_TRANSIENT);
            break;
        default:
            rc = sqlite3_bind_text(statement, index, v.text().data(), static_cast<int>(v.text().size()),
                                   SQLITE_TRANSIENT);
            break;
        }
        if (rc != SQLITE_OK) return rc;
    }
    return SQLITE_OK;
}

}  // namespace zelvo::dao::jet
