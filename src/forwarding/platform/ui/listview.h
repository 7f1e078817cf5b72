// The list control is part of the public surface; its header lives in
// include/zelvo. The library's own code also reaches the pictures of its
// image lists, so they come along here.
#pragma once

#include "platform/imaging/picture.h"
#include "zelvo/listview.h"
