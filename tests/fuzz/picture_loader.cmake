# PictureLoader over arbitrary bytes: every decoder behind it, and the encoder
# on what decodes. Seeds: the shared images, and hand-made tiny files of each
# format in seeds/fuzz_picture_loader/ (scripts/fuzz.sh adds that folder).
# libFuzzer takes folders only; the large shared images are cut to its
# length limit when loaded, which is still a useful seed.
zelvo_fuzzer(picture_loader
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/fuzz_picture_loader.cpp
  LIBS zelvo_photos
  SEEDS ${ZELVO_SHARED_DATA}/images)
