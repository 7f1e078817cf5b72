#include "platform/core/error.h"

#include <gtest/gtest.h>

namespace zelvo {
namespace {

TEST(OnErrorResumeNext, RecordsTheFailureGoesOnAndClearsAtTheEnd) {
    {
        OnErrorResumeNext scope("Test.Routine");
        int v = scope.Resume([]() -> int { throw Error(3021, "No current record.", "DAO.Recordset"); }, 7);
        EXPECT_EQ(v, 7);
        EXPECT_EQ(Err().Number, 3021);
        EXPECT_EQ(Err().Description, "No current record.");
        EXPECT_TRUE(scope.Do([] {}));
        // A later success does not clear the error: only the end of the routine does.
        EXPECT_EQ(Err().Number, 3021);
    }
    EXPECT_EQ(Err().Number, 0);
    EXPECT_FALSE(Err());
}

TEST(OnErrorResumeNext, LetsOtherExceptionsThrough) {
    OnErrorResumeNext scope("Test.Routine");
    EXPECT_THROW(scope.Do([] { throw std::logic_error("bug"); }), std::logic_error);
}

TEST(ErrObject, RaiseThrowsTheRecordedError) {
    ErrObject e;
    e.Set(Error(3265, "Item not found in this collection.", "DAO.Fields"));
    try {
        e.Raise();
        FAIL();
    } catch (const Error& raised) {
        EXPECT_EQ(raised.number(), 3265);
        EXPECT_EQ(raised.source(), "DAO.Fields");
    }
}

}  // namespace
}  // namespace zelvo
