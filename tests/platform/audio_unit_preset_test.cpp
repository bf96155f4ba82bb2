#include "platform/audio_unit/audio_unit_preset.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(DefaultFullState, HoldsWhoItIsAndEveryParameterInAddressOrder) {
    const auto parameter = [](AUParameterAddress address) {
        return std::make_shared<AUParameter>(AUParameter::Facts{"", "", address});
    };
    const auto tree = AUParameterTree::createTreeWithChildren({parameter(258), parameter(3)});
    tree->implementorValueProvider = [](const AUParameter& asked) {
        return asked.address() == 3 ? 1.0f : -2.5f;
    };
    const auto state =
        defaultFullState({fourCC("aumf"), fourCC("zeph"), fourCC("Zeph")}, tree.get());
    const int bytes[] = {0, 0, 0, 3, 0x3f, 0x80, 0, 0, 0, 0, 1, 2, 0xc0, 0x20, 0, 0};
    PropertyData data;
    for (const int byte : bytes) data.push_back(static_cast<std::byte>(byte));
    const PropertyDictionary expected{{"type", 0x61756d66},
                                      {"subtype", 0x7a657068},
                                      {"manufacturer", 0x5a657068},
                                      {"version", 0},
                                      {"data", data}};
    EXPECT_EQ(state, expected);
    EXPECT_EQ(defaultFullState({}, nullptr).at("data"), PropertyValue(PropertyData()));
}

} // namespace
} // namespace zephyra
