// The data control is part of the public surface; its header lives in
// include/zelvo. The library's own code also works with its record set and
// book, so the engine's types come along here.
#pragma once

#include "platform/dao/database.h"
#include "zelvo/data_control.h"
