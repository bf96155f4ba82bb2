#pragma once

// Grain: too late, this is not the first line.
#include "grain.h"

struct Grain {};
