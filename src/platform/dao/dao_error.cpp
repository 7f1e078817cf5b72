#include "platform/dao/dao_error.h"

#include <string>

namespace zelvo::dao {

namespace {

// "%1" and "%2" stand for the places of a text.
const char* Template(int number) {
    switch (number) {
        case kInvalidArgument: return "Invalid argument.";
        case kTableExists: return "Table '%1' already exists.";
        case kObjectExists: return "Object '%1' already exists.";
        case kUpdateWithoutEdit:
            return "You tried to call Update or CancelUpdate or attempted to update a Field in a "
                   "recordset without first calling AddNew or Edit.";
        case kNoCurrentRecord: return "No current record.";
        case kDuplicateValues:
            return "The changes you requested to the table were not successful because they would "
                   "create duplicate values in the index, primary key, or relationship. Change the "
                   "data in the field or fields that contain duplicate data, remove the index, or "
                   "redefine the index to permit duplicate entries and try again.";
        case kFileNotFound: return "Could not find file '%1'.";
        case kReadOnly: return "Cannot update. Database or object is read-only.";
        case kNotValidPath:
            return "'%1' is not a valid path. Make sure that the path name is spelled correctly "
                   "and that you are connected to the server on which the file resides.";
        case kFileInUse: return "Could not use '%1'; file already in use.";
        case kCannotOpenFile:
            return "The Microsoft Jet database engine cannot open the file '%1'. It is already "
                   "opened exclusively by another user, or you need permission to view its data.";
        case kTooFewParameters: return "Too few parameters. Expected %1.";
        case kNotUpdatableQuery: return "Operation must use an updatable query.";
        case kInputTableNotFound:
            return "The Microsoft Jet database engine cannot find the input table or query '%1'. "
                   "Make sure it exists and that its name is spelled correctly.";
        case kFieldTooSmall:
            return "The field is too small to accept the amount of data you attempted to add. "
                   "Try inserting or pasting less data.";
        case kRecordDeleted: return "Record is deleted.";
        case kWriteConflict:
            return "The Microsoft Jet database engine stopped the process because you and another "
                   "user are attempting to change the same data at the same time.";
        case kDatabaseExists: return "Database already exists.";
        case kCurrentlyLocked: return "Could not update; currently locked.";
        case kInvalidOperation: return "Invalid operation.";
        case kLockedByUser:
            return "Could not update; currently locked by user '%1' on machine '%2'.";
        case kItemNotFound: return "Item not found in this collection.";
        case kRequiredNull:
            return "The field '%1' cannot contain a Null value because the Required property for "
                   "this field is set to True. Enter a value in this field.";
        case kZeroLengthString: return "Field '%1' cannot be a zero-length string.";
        case kRecordsetNotUpdatable: return "This Recordset is not updatable.";
        case kUnrecognizedFormat: return "Unrecognized database format '%1'.";
        case kOpenedExclusively:
            return "You attempted to open a database that is already opened exclusively by user "
                   "'%1' on machine '%2'. Try again when the database is available.";
        case kFieldExists: return "Field '%1' already exists in table '%2'.";
        case kObjectInvalid: return "Object is invalid or no longer set.";
        case kSelectNotExecutable: return "Cannot execute a select query.";
        case kTooManyCounters: return "Resultant table not allowed to have more than one AutoNumber field.";
        case kFieldNotUpdatable: return "Field cannot be updated.";
        case kNoFieldDefined: return "No field defined--cannot append TableDef or Index.";
        case kTableMissing: return "Table '%1' does not exist.";
        case kDiskFull: return "Not enough space on disk.";
        case kDiskError: return "Disk or network error.";
        case kFieldInIndex: return "Cannot delete a field that is part of an index or is needed by the system.";
        case kTypeConversion: return "Data type conversion error.";
        default: return "Reserved error (%1); there is no message for this error.";
    }
}

void Fill(std::string& text, std::string_view place, std::string_view value) {
    auto at = text.find(place);
    if (at != std::string::npos) text.replace(at, place.size(), value);
}

}  // namespace

std::string DaoErrorText(int number, std::string_view a, std::string_view b) {
    std::string text = Template(number);
    Fill(text, "%1", a);
    Fill(text, "%2", b);
    return text;
}

Error DaoError(int number, std::string_view a, std::string_view b) {
    return Error(number, DaoErrorText(number, a, b), "DAO.Engine");
}

}  // namespace zelvo::dao
