// Compiles, because somebody else brings what the header forgot.
#include <vector>

#include "lonely.h"
