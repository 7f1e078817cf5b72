// Runs the zelvo program of the build as a person would, and keeps its exit
// status, standard output and standard error.
#pragma once

#include <string>
#include <vector>

#include "support/run_program.h"

namespace zelvo::testing {

// `errFile` is where stderr is caught on its way.
inline Outcome RunZelvo(const std::vector<std::string>& args, const std::string& errFile) {
    return RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo", args, errFile);
}

}  // namespace zelvo::testing
