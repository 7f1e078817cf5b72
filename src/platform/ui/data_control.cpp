#include "platform/ui/data_control.h"

#include "platform/dao/dbengine.h"

namespace zelvo::ui {

void DataControl::Refresh() {
    if (recordset_.IsOpen()) recordset_.Close();
    recordset_ = dao::Recordset();
    if (!database_.IsOpen() || openName_ != DatabaseName) {
        if (database_.IsOpen()) database_.Close();
        database_ = dao::Engine().OpenDatabase(DatabaseName, false, false, Connect);
        openName_ = DatabaseName;
    }
    recordset_ = database_.OpenRecordset(RecordSource, RecordsetType);
    for (const auto& observer : observers_) observer();
}

}  // namespace zelvo::ui
