# The reading of genuine Jet files (libmdb beneath our reader) on damaged
# pages: a clean 3343 or the rows, never a crash. Seeded with the shared
# Jet files; an input is either a whole file or edits to the pages of one.
zelvo_fuzzer(jet_file
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/fuzz_jet_file.cpp
  LIBS zelvo_dao
  SEEDS ${ZELVO_SHARED_DATA}/jet/DateTestDatabase.mdb)
target_compile_definitions(fuzz_jet_file PRIVATE ZELVO_SHARED_DATA="${ZELVO_SHARED_DATA}")
