# The vCard reader on arbitrary bytes, seeded with the real cards of the
# shared corpus: no crash, no leak, no unbounded allocation, and whatever it
# reads must survive the writer and a second read.
zelvo_fuzzer(vcard_reader
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_vcard_reader.cpp
  LIBS zelvo_vcarddoc
  SEEDS ${ZELVO_SHARED_DATA}/vcard)
