// The engine's errors, with the numbers and texts of the database engine the
// book's code was written against, so that code which tests `Err().Number`
// (3021 no current record, 3265 item not found, 3343 not a database of ours …)
// behaves the same here.
#pragma once

#include <string>
#include <string_view>

#include "platform/core/error.h"

namespace zelvo::dao {

// Error numbers used by the engine.
enum DaoErrorNumber : int {
    kInvalidArgument = 3001,
    kTableExists = 3010,
    kObjectExists = 3012,
    kSelectNotExecutable = 3065,
    kTooManyCounters = 3090,
    kFieldNotUpdatable = 3164,
    kNoFieldDefined = 3264,
    kTableMissing = 3376,
    kUpdateWithoutEdit = 3020,
    kNoCurrentRecord = 3021,
    kDuplicateValues = 3022,
    kFileNotFound = 3024,
    kDiskFull = 3026,
    kReadOnly = 3027,
    kDiskError = 3043,
    kNotValidPath = 3044,
    kFileInUse = 3045,
    kCannotOpenFile = 3051,
    kTooFewParameters = 3061,
    kNotUpdatableQuery = 3073,
    kInputTableNotFound = 3078,
    kFieldTooSmall = 3163,
    kRecordDeleted = 3167,
    kWriteConflict = 3197,
    kDatabaseExists = 3204,
    kCurrentlyLocked = 3218,
    kInvalidOperation = 3219,
    kLockedByUser = 3260,
    kItemNotFound = 3265,
    kFieldInIndex = 3280,
    kRequiredNull = 3314,
    kZeroLengthString = 3315,
    kRecordsetNotUpdatable = 3326,
    kUnrecognizedFormat = 3343,
    kOpenedExclusively = 3356,
    kFieldExists = 3191,
    kObjectInvalid = 3420,
    kTypeConversion = 3421,
};

// The error `number` with its text; `a` and `b` fill the text's first and
// second place (a file, a field, a user, a machine).
Error DaoError(int number, std::string_view a = {}, std::string_view b = {});

// The text of `number`, with its places filled.
std::string DaoErrorText(int number, std::string_view a = {}, std::string_view b = {});

}  // namespace zelvo::dao
