// The definition of one column as the book's code sees it: the properties of
// a DAO field (type code, size, attributes, default, required, zero length).
#pragma once

#include <string>

namespace zelvo::dao {

// DAO's type codes for the types the book uses (and a few neighbours).
enum FieldType : int {
    dbBoolean = 1,
    dbByte = 2,
    dbInteger = 3,
    dbLong = 4,
    dbCurrency = 5,
    dbSingle = 6,
    dbDouble = 7,
    dbDate = 8,
    dbText = 10,
    dbLongBinary = 11,
    dbMemo = 12,
};

// Field attributes.
enum FieldAttribute : int {
    dbFixedField = 1,
    dbVariableField = 2,
    dbAutoIncrField = 16,
    dbUpdatableField = 32,
};

struct FieldProps {
    std::string name;
    int type = dbText;
    int size = 0;         // Text: its maximum length in characters; others: the type's size
    int attributes = 0;   // dbAutoIncrField for a Counter
    std::string defaultValue;  // as DAO keeps it: an expression text, e.g. "0" or "\"x\""
    bool required = false;
    bool allowZeroLength = false;

    bool IsCounter() const { return type == dbLong && (attributes & dbAutoIncrField) != 0; }
    bool IsText() const { return type == dbText || type == dbMemo; }
};

// The size DAO reports for a type that has a fixed size (Long 4, Yes/No 1 …);
// 0 for Long Binary and Memo.
inline int FixedSizeOf(int type) {
    switch (type) {
    case dbBoolean: case dbByte: return 1;
    case dbInteger: return 2;
    case dbLong: case dbSingle: return 4;
    case dbCurrency: case dbDouble: case dbDate: return 8;
    default: return 0;
    }
}

}  // namespace zelvo::dao
