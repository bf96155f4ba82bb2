// textOfJson: JSON as the program prints it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace zephyra {

/// json indented, with a line end. JSON is UTF-8: a text that is not, as names of files may be,
/// has \xHH for its odd bytes (platform/text/odd_bytes.h). MAIN.
std::string textOfJson(nlohmann::ordered_json json);

} // namespace zephyra
