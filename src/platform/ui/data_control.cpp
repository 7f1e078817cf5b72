#include "platform/ui/data_control.h"

#include "platform/dao/dbengine.h"

namespace zelvo::ui {

struct DataControl::State {
    dao::Database database;
    std::string openName;
    dao::Recordset recordset;
};

DataControl::DataControl() : state_(std::make_unique<State>()) {}
DataControl::~DataControl() = default;
DataControl::DataControl(const DataControl& other)
    : DatabaseName(other.DatabaseName), Connect(other.Connect), RecordSource(other.RecordSource),
      RecordsetType(other.RecordsetType), state_(std::make_unique<State>()) {}
DataControl& DataControl::operator=(const DataControl& other) {
    if (this != &other) *this = DataControl(other);
    return *this;
}
DataControl::DataControl(DataControl&&) noexcept = default;
DataControl& DataControl::operator=(DataControl&&) noexcept = default;

dao::Recordset& DataControl::Recordset() { return state_->recordset; }
const dao::Database& DataControl::Database() const { return state_->database; }

void DataControl::Refresh() {
    State& s = *state_;
    if (s.recordset.IsOpen()) s.recordset.Close();
    s.recordset = dao::Recordset();
    if (!s.database.IsOpen() || s.openName != DatabaseName) {
        if (s.database.IsOpen()) s.database.Close();
        s.database = dao::Engine().OpenDatabase(DatabaseName, false, false, Connect);
        s.openName = DatabaseName;
    }
    s.recordset = s.database.OpenRecordset(RecordSource, RecordsetType);
    for (const auto& observer : observers_) observer();
}

std::vector<DataControl::Record> DataControl::Records() {
    std::vector<Record> records;
    dao::Recordset& rs = state_->recordset;
    // Empty is BOF and EOF at once; EOF alone is a set already read to its
    // end, which is read again from the first record.
    if (!rs.IsOpen() || (rs.IsBOF() && rs.IsEOF())) return records;
    auto fields = rs.Fields();
    for (rs.MoveFirst(); !rs.IsEOF(); rs.MoveNext()) {
        Record& r = records.emplace_back();
        for (int i = 0; i < fields.Count(); ++i) r.emplace_back(fields.Item(i).Name(), rs.Value(i));
    }
    return records;
}

}  // namespace zelvo::ui
