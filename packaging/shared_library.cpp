// The shared library has no code of its own: it is the static libraries of
// the tree linked whole. This file only gives the target a source.
