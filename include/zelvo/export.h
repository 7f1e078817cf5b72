// What the shared library shows. It is built with hidden visibility, so only
// the classes and functions marked ZELVO_EXPORT are reachable from a host;
// everything else stays internal to the library.
#pragma once

#define ZELVO_EXPORT __attribute__((visibility("default")))
