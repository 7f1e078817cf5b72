// Runs a program of the build as a person or a script would, with its
// standard input empty, and gives its exit status, output and error output.
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

// `s` as one word for the shell.
inline std::string ShellQuote(const std::string& s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// Runs `program` with `args`; the error output goes through `errFile`.
// `env` is put before the command ("QT_QPA_PLATFORM=offscreen").
inline Outcome RunProgram(const std::string& program, const std::vector<std::string>& args,
                          const std::string& errFile, const std::string& env = {}) {
    std::string cmd = env.empty() ? "" : env + " ";
    cmd += ShellQuote(program);
    for (const auto& a : args) cmd += " " + ShellQuote(a);
    cmd += " 2>" + ShellQuote(errFile) + " </dev/null";
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
