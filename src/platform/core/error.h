// The library's error model.
//
// The routines of the address book fail in three styles: resume-next (a
// failing platform call records the error and the routine goes on), report
// (the routine catches and reports with a label) and message (a check shows a
// text first). All three rest on two things defined here:
//
//  * `Error`, the exception a platform operation throws: a number in the
//    numbering of the database engine and the runtime the book was written
//    for (3021 "No current record." and so on), a text and a source.
//  * `Err()`, the thread-local error object a resume-next routine inspects,
//    and `OnErrorResumeNext`, the scope that gives a routine that style.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "zelvo/error.h"

namespace zelvo {

// The state of the last error, as a resume-next routine sees it.
struct ErrObject {
    int Number = 0;
    std::string Description;
    std::string Source;

    void Clear() { *this = ErrObject{}; }
    void Set(const Error& e) {
        Number = e.number();
        Description = e.description();
        Source = e.source();
    }
    // Throws the recorded error as an `Error` (VB's Err.Raise).
    [[noreturn]] void Raise() const { throw Error(Number, Description, Source); }
    explicit operator bool() const { return Number != 0; }
};

// The error object of the calling thread.
ErrObject& Err();

// True when ZELVO_TRACE=1 is set: every swallowed error is then written to
// stderr with its source. It changes no behaviour.
bool TraceEnabled();

// Records `e` in Err() and, when tracing, writes it to stderr with `where`.
void RecordSwallowed(const Error& e, const char* where);

// Gives the enclosing routine the resume-next style: inside the scope, calls
// wrapped in `Resume(...)` that throw record the error and yield a neutral
// value; when the scope ends, Err() is cleared, as the original routines did
// at their end.
class OnErrorResumeNext {
public:
    explicit OnErrorResumeNext(const char* routine) : routine_(routine) {}
    ~OnErrorResumeNext() { Err().Clear(); }
    OnErrorResumeNext(const OnErrorResumeNext&) = delete;
    OnErrorResumeNext& operator=(const OnErrorResumeNext&) = delete;

    // Runs `f`; when it throws an `Error`, records it and returns `fallback`.
    template <class F, class T = std::invoke_result_t<F>>
    T Resume(F&& f, T fallback = T{}) const {
        try {
            return std::forward<F>(f)();
        } catch (const Error& e) {
            RecordSwallowed(e, routine_);
            return fallback;
        }
    }

    // Runs `f` for its effect; returns false when it failed.
    template <class F>
    bool Do(F&& f) const {
        try {
            std::forward<F>(f)();
            return true;
        } catch (const Error& e) {
            RecordSwallowed(e, routine_);
            return false;
        }
    }

    const char* routine() const { return routine_; }

private:
    const char* routine_;
};

}  // namespace zelvo
