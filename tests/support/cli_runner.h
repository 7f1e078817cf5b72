// Runs the zelvo program of the build as a person would, and keeps its exit
// status, standard output and standard error.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zelvo::testing {

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string Quote(const std::string& s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// `errFile` is where stderr is caught on its way.
inline Outcome RunZelvo(const std::vector<std::string>& args, const std::string& errFile) {
    std::string cmd = Quote(std::string(ZELVO_BIN_DIR) + "/zelvo");
    for (const auto& a : args) cmd += " " + Quote(a);
    cmd += " 2>" + Quote(errFile) + " </dev/null";
    Outcome r;
    FILE* p = popen(cmd.c_str(), "r");
    if (!p) return r;
    char buf[4096];
    for (size_t n; (n = fread(buf, 1, sizeof buf, p)) > 0;) r.out.append(buf, n);
    int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    std::ifstream e(errFile);
    std::stringstream ss;
    ss << e.rdbuf();
    r.err = ss.str();
    return r;
}

}  // namespace zelvo::testing
