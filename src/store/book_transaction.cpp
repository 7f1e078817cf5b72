#include "store/book_transaction.h"

#include <sqlite3.h>

#include "platform/dao/connection.h"
#include "platform/dao/dao_error.h"

namespace zelvo {

namespace {

// Savepoints of one connection nest strictly, and SQLite resolves a name to
// the innermost savepoint that has it, so one name serves every depth.
constexpr const char* kSavepoint = "book_transaction";

bool InTransaction(dao::detail::Connection& c) { return sqlite3_get_autocommit(c.db()) == 0; }

}  // namespace

BookTransaction::BookTransaction(const dao::Database& db) : conn_(db.connection()) {
    if (!conn_ || conn_->closed()) throw dao::DaoError(dao::kObjectInvalid);
    conn_->BeforeWrite();
    if (InTransaction(*conn_)) {
        conn_->ExecRaw(std::string("SAVEPOINT ") + kSavepoint);
        savepoint_ = kSavepoint;
    } else {
        conn_->ExecRaw("BEGIN IMMEDIATE");
    }
    open_ = true;
}

BookTransaction::~BookTransaction() {
    if (!open_ || conn_->closed()) return;
    // SQLite ends a transaction by itself after some failures (a full disk,
    // an I/O error); then there is nothing left to undo.
    if (InTransaction(*conn_)) {
        if (savepoint_.empty()) {
            sqlite3_exec(conn_->db(), "ROLLBACK", nullptr, nullptr, nullptr);
        } else {
            const std::string name = savepoint_;
            sqlite3_exec(conn_->db(), ("ROLLBACK TO " + name).c_str(), nullptr, nullptr, nullptr);
            sqlite3_exec(conn_->db(), ("RELEASE " + name).c_str(), nullptr, nullptr, nullptr);
        }
    }
    // What the connection knows of the schema may have been undone too.
    conn_->SchemaChanged();
}

void BookTransaction::Commit() {
    if (!open_) return;
    if (conn_->closed()) throw dao::DaoError(dao::kObjectInvalid);
    // After a failure that ended the transaction, what ran since is
    // committed already.
    if (InTransaction(*conn_)) conn_->ExecRaw((savepoint_.empty() ? std::string("COMMIT") : "RELEASE " + savepoint_));
    open_ = false;
    conn_->SchemaChanged();
}

}  // namespace zelvo
