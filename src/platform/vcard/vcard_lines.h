// Splits vCard text into logical lines: physical lines end at CR, LF,
// CRLF or CR CR LF (mixed freely); a physical line that starts with a blank or a tab
// continues the one before, minus that one blank (folding as 2.1, 3.0 and
// 4.0 writers do it). Empty lines are passed over.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::vcard {

class LineSource {
public:
    explicit LineSource(std::string_view text) : text_(text) {}

    // The next logical line and the number (from 1) of its first physical
    // line. The view stays valid until the next call. False at the end.
    bool Next(std::string_view& line, long& lineNo);

    // The next physical line as it stands (no unfolding), or false at the
    // end. Does not consume it.
    bool PeekPhysical(std::string_view& line) const;

    // Consumes the physical line PeekPhysical showed.
    void SkipPhysical();

    // The number of the last physical line consumed.
    long lastLine() const { return lineNo_; }

private:
    // The physical line at `from`; `next` receives the start of the one after.
    std::string_view PhysicalAt(std::size_t from, std::size_t& next) const;

    std::string_view text_;
    std::size_t pos_ = 0;
    long lineNo_ = 0;
    std::string buf_;
    // Position of the next LF at or after the last search; files with CR
    // line ends only would otherwise be scanned to their end for every line.
    mutable std::size_t nextLf_ = 0;
    mutable bool lfKnown_ = false;
};

}  // namespace zelvo::vcard
