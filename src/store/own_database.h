// The book opened by a routine for itself, closed however the routine
// ends. Opening passes over a failure (the routine then finds it closed),
// as the routines that open the book beside a window's own do.
#pragma once

#include "platform/core/error.h"
#include "platform/dao/dbengine.h"
#include "store/library_state.h"

namespace zelvo {

struct OwnDatabase {
    dao::Database db;
    explicit OwnDatabase(const OnErrorResumeNext& on) {
        db = on.Resume([] { return DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); });
    }
    ~OwnDatabase() {
        try {
            if (db.IsOpen()) db.Close();
        } catch (const Error&) {
        }
    }
    OwnDatabase(const OwnDatabase&) = delete;
    OwnDatabase& operator=(const OwnDatabase&) = delete;
    bool IsOpen() const { return db.IsOpen(); }
};

}  // namespace zelvo
