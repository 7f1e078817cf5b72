// The error a call of the library raises to its host: a number in the
// numbering of the database engine and of the runtime the book was written
// for (3021 "No current record.", 438 "Object doesn't support this property
// or method", …), a description and the source that raised it.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "zelvo/export.h"

namespace zelvo {

// An error raised by a platform operation or by a routine that raises to its
// caller. `number()` follows the engine's and the runtime's numbering.
class ZELVO_EXPORT Error : public std::runtime_error {
public:
    Error(int number, std::string description, std::string source = {})
        : std::runtime_error(description), number_(number),
          description_(std::move(description)), source_(std::move(source)) {}

    int number() const noexcept { return number_; }
    const std::string& description() const noexcept { return description_; }
    const std::string& source() const noexcept { return source_; }

private:
    int number_;
    std::string description_;
    std::string source_;
};

}  // namespace zelvo
