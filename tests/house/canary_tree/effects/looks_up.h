// Effect: the first line names a type that is not below, so it must be reported.
#pragma once

#include "engine/grain.h"
#include <sndfile.h>
#include <vector>

#include "platform/public.h"
