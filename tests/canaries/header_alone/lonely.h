// Lonely: a public header that compiles only behind another include.
#pragma once

struct Lonely {
    std::vector<int> numbers;
};
