// Helpers shared by the engine's tests.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/core/error.h"
#include "platform/dao/dbengine.h"
#include "support/book_fixture.h"
#include "support/error_number.h"
#include "support/temp_dir.h"

namespace zelvo::testing {

// A test over the small sample book, made afresh in a folder of its own.
class SampleBookTest : public ::testing::Test {
protected:
    void SetUp() override { db = CreateSampleBook(path); }
    TempDir dir;
    std::string path = dir.File("AddressBookW.mdb");
    dao::Database db;
};

// The engine error number `f` raises, or 0 when it raises none.
inline int ErrorOf(const std::function<void()>& f) { return ErrorNumberOf(f); }

// The error `f` raises as "number text", or "no error".
inline std::string Describe(const std::function<void()>& f) {
    try {
        f();
    } catch (const Error& e) {
        return std::to_string(e.number()) + " " + e.description();
    }
    return "no error";
}

// The bytes of a file.
inline std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// The names of the fields of a record set or a table definition: "a,b,c".
template <class T>
std::string FieldNames(const T& fieldsOwner) {
    std::string out;
    for (int i = 0; i < fieldsOwner.Fields().Count(); ++i)
        out += (i ? "," : "") + fieldsOwner.Fields().Item(i).Name();
    return out;
}

// The cursor of a record set as a short text: "pos=1 bof=0 eof=0".
inline std::string Cursor(const dao::Recordset& rs) {
    return "pos=" + std::to_string(rs.AbsolutePosition()) + " bof=" + std::to_string(rs.IsBOF()) +
           " eof=" + std::to_string(rs.IsEOF());
}

// One column of every row, walked from the first: "a,b,c".
inline std::string Column(dao::Recordset rs, const std::string& field) {
    std::string out;
    if (rs.AbsolutePosition() == -1 && rs.IsEOF()) return out;
    rs.MoveFirst();
    for (; !rs.IsEOF(); rs.MoveNext()) {
        if (!out.empty()) out += ",";
        out += rs(field).AsText();
    }
    return out;
}

// The whole result of a SELECT, one column joined: "a,b,c".
inline std::string Rows(const dao::Database& db, const std::string& sql, const std::string& field) {
    return Column(db.OpenRecordset(sql), field);
}

// Another process that runs `hold` (say, opening a book) and keeps what it
// made until this object ends. `error()` is the number `hold` raised, 0 when
// it succeeded. Fork it while this process has nothing open on the same
// file: a child shares its parent's open file descriptions and so the
// parent's claims on files.
class OtherProcess {
public:
    explicit OtherProcess(std::function<void()> hold) {
        int up[2], down[2];
        if (pipe(up) != 0 || pipe(down) != 0) throw std::runtime_error("pipe");
        pid_ = fork();
        if (pid_ < 0) throw std::runtime_error("fork");
        if (pid_ == 0) {
            close(up[0]);
            close(down[1]);
            int number = 0;
            try {
                hold();
            } catch (const Error& e) {
                number = e.number();
            } catch (...) {
                number = -1;
            }
            (void)!write(up[1], &number, sizeof number);
            char c;
            while (read(down[0], &c, 1) > 0) {}
            _exit(0);  // no destructors: what hold made dies with the process
        }
        close(up[1]);
        close(down[0]);
        toChild_ = down[1];
        if (read(up[0], &error_, sizeof error_) != sizeof error_) error_ = -1;
        close(up[0]);
    }
    ~OtherProcess() { End(); }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    int error() const { return error_; }
    // Lets the child go and waits for it.
    void End() {
        if (pid_ <= 0) return;
        close(toChild_);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
    }

private:
    pid_t pid_ = -1;
    int toChild_ = -1;
    int error_ = 0;
};

// A Database that a child process holds open on `path` (exclusively or shared).
inline std::unique_ptr<OtherProcess> HoldInOtherProcess(const std::string& path, bool exclusive) {
    return std::make_unique<OtherProcess>([path, exclusive] {
        static dao::Database held;  // lives until the child exits
        held = dao::Engine().OpenDatabase(path, exclusive);
    });
}

}  // namespace zelvo::testing
