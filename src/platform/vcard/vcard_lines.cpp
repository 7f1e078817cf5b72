#include "platform/vcard/vcard_lines.h"

#include <cstring>

namespace zelvo::vcard {

std::string_view LineSource::PhysicalAt(std::size_t from, std::size_t& next) const {
    const char* data = text_.data();
    const std::size_t size = text_.size();
    if (!lfKnown_ || nextLf_ < from) {
        const void* lf = std::memchr(data + from, '\n', size - from);
        nextLf_ = lf ? static_cast<std::size_t>(static_cast<const char*>(lf) - data) : size;
        lfKnown_ = true;
    }
    std::size_t end = nextLf_;
    const void* cr = std::memchr(data + from, '\r', end - from);
    if (cr) {
        std::size_t at = static_cast<std::size_t>(static_cast<const char*>(cr) - data);
        next = at + 1;
        if (next < size && data[next] == '\n') {
            next += 1;
        } else if (next + 1 < size && data[next] == '\r' && data[next + 1] == '\n') {
            next += 2;  // CR CR LF, as one phone writes every line end
        }
        return text_.substr(from, at - from);
    }
    next = end < size ? end + 1 : size;
    return text_.substr(from, end - from);
}

bool LineSource::Next(std::string_view& line, long& lineNo) {
    const std::size_t size = text_.size();
    while (pos_ < size) {
        std::size_t next;
        std::string_view first = PhysicalAt(pos_, next);
        pos_ = next;
        ++lineNo_;
        // A stray blank before a property (some writers indent BEGIN) is not
        // a fold here: nothing precedes it.
        while (!first.empty() && (first.front() == ' ' || first.front() == '\t')) first.remove_prefix(1);
        if (first.empty()) continue;
        lineNo = lineNo_;
        bool merged = false;
        while (pos_ < size && (text_[pos_] == ' ' || text_[pos_] == '\t')) {
            std::size_t after;
            std::string_view cont = PhysicalAt(pos_, after);
            if (!merged) {
                buf_.assign(first);
                merged = true;
            }
            buf_.append(cont.substr(1));
            pos_ = after;
            ++lineNo_;
        }
        line = merged ? std::string_view(buf_) : first;
        return true;
    }
    return false;
}

bool LineSource::PeekPhysical(std::string_view& line) const {
    if (pos_ >= text_.size()) return false;
    std::size_t next;
    line = PhysicalAt(pos_, next);
    return true;
}

void LineSource::SkipPhysical() {
    if (pos_ >= text_.size()) return;
    std::size_t next;
    PhysicalAt(pos_, next);
    pos_ = next;
    ++lineNo_;
}

}  // namespace zelvo::vcard
