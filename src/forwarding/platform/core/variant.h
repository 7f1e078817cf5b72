// Variant is part of the public surface; its header lives in include/zelvo.
#pragma once

#include "zelvo/variant.h"
