// zelvo sql: runs one statement of the book's own SQL dialect.
#include <iostream>

#include "command.h"

namespace zelvo::cli {

namespace {

int RunSql(std::span<const std::string> args) {
    std::cerr << "zelvo sql: not built yet\n";
    return kExitFailure;
}

}  // namespace

extern const Command kSqlCommand{
    "sql", "run one statement of the book's SQL and print the rows",
    "Usage: zelvo sql [--db FILE] [--create] [--json] \"STATEMENT\"\n", RunSql};

}  // namespace zelvo::cli
