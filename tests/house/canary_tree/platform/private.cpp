// Sources of the platform may include what they need.
#include <sndfile.h>
