// A large book for benchmarks: the twelve tables of today's layout filled
// with generated persons, each with an e-mail address and a phone, one
// project row and one job.
#pragma once

#include <string>

namespace zelvo::bench {

struct SyntheticBookShape {
    int persons = 100000;
    // Persons 1..projectSize are in the project "Big"; the others are spread
    // over projects "P1", "P2", … of projectSize members each.
    int projectSize = 10000;
    int organizations = 100;  // each with 10 job titles
};

// Creates the book at `path` (replacing any file there). The schema is made
// through the engine; the rows go in through SQLite in one transaction, so
// that making the book costs seconds, not minutes.
void CreateSyntheticBook(const std::string& path, const SyntheticBookShape& shape = {});

// A temporary folder for a benchmark's files, removed at exit.
std::string BenchFolder();

// The e-mail address and the full name the generator gave person `id`.
std::string SyntheticEmail(int id);
std::string SyntheticFullName(int id);

}  // namespace zelvo::bench
