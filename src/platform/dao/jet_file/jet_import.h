// Converts a genuine Jet database file into a book: what the engine's
// compaction does when its source is a file of the original engine.
#pragma once

#include <string>

namespace zelvo::dao::jetfile {

// Writes a new book at `destination` (which must not exist) holding every
// user table of the Jet file `source`: its name, its columns with their
// types mapped as JetFileReader tells, every row with Null kept Null, and
// each Counter going on from the highest number in it. The source is only
// read.
//
// On failure nothing is left at `destination` and the error goes to the
// caller: 3024 when the source is missing, 3343 when it is no Jet 3 or Jet 4
// file that can be read whole (the description says why), and the engine's
// own error when a table, column or value does not fit a book — its
// description then names the table, and the row, that would not go in.
void ImportJetFile(const std::string& source, const std::string& destination);

}  // namespace zelvo::dao::jetfile
