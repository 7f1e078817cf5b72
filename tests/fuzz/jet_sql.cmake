# The Jet SQL translator on arbitrary text: statements, criteria, Like
# patterns and the collation must give a result or a zelvo::Error, never a crash.
zelvo_fuzzer(jet_sql
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/fuzz_jet_sql.cpp
  LIBS zelvo_jetsql
  SEEDS ${CMAKE_CURRENT_LIST_DIR}/seeds/fuzz_jet_sql)
