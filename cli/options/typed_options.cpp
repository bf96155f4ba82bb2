#include "cli/options/typed_options.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <map>

namespace zephyra {

namespace {

/// Which needs no value: one that it has must stand in the same word.
TypedOption typedFlag(const std::string& name, const std::string& value) {
    const bool isBare = value.empty() || value == "true";
    return {.name = isBare ? name : name + "=" + value};
}

} // namespace

std::vector<TypedOption> typedOptions(const CLI::App& command) {
    std::vector<TypedOption> typed;
    std::map<const CLI::Option*, std::size_t> taken;
    for (const CLI::Option* option : command.parse_order()) {
        if (option->get_positional()) continue;
        const std::string name = option->get_name();
        const std::string& value = option->results().at(taken[option]++);
        const bool isFlag = option->get_items_expected_min() == 0;
        typed.push_back(isFlag ? typedFlag(name, value) : TypedOption{name, value});
    }
    return typed;
}

} // namespace zephyra
