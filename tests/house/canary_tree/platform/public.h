// Sound: a public header, which no third party may reach.
#pragma once

#include <sndfile.h>
#include <unistd.h>

struct Sound {};
