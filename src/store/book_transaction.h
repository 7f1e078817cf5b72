// One transaction of the book: the writes made through one Database between
// the opening of a BookTransaction and its Commit are kept together or not
// at all.
//
// The first transaction of a connection takes the write lock at once (BEGIN
// IMMEDIATE), so a book that somebody else is writing to is told at the
// start, before anything is changed, and the many writes inside cost one
// sync of the file instead of one each. A transaction opened while another
// is open on the same connection is a savepoint of it: undone alone when it
// fails, kept or undone with the outer one otherwise. Deleting an object
// that deletes others on the way can so be one transaction however the
// routines call each other.
//
// Everything that belongs to the transaction must be written through its
// Database (its connection). Another Database opened on the same file is a
// second connection that waits for the lock until the transaction ends.
#pragma once

#include <memory>
#include <string>

#include "platform/dao/database.h"

namespace zelvo {

class BookTransaction {
public:
    // Begins the transaction (or the savepoint). Raises the engine's error
    // when the book is locked for longer than a lock is waited for, or is
    // closed; nothing has been changed then.
    explicit BookTransaction(const dao::Database& db);
    // Without Commit, undoes everything written since the constructor.
    ~BookTransaction();
    BookTransaction(const BookTransaction&) = delete;
    BookTransaction& operator=(const BookTransaction&) = delete;

    // Keeps what was written. A nested transaction's writes are then kept
    // with the outer one's. Raises the engine's error when the commit fails;
    // the destructor then undoes the writes.
    void Commit();

private:
    std::shared_ptr<dao::detail::Connection> conn_;
    std::string savepoint_;  // empty for the outermost transaction
    bool open_ = false;
};

}  // namespace zelvo
