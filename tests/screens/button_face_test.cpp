// What buttons look like, in every state under every hand.
#include "screens/model/button_face.h"

#include <gtest/gtest.h>

namespace zephyra {

TEST(ButtonFace, ItsSignIsReadInEveryState) {
    for (const ButtonLight light : {ButtonLight::off, ButtonLight::on, ButtonLight::armed,
                                    ButtonLight::alive, ButtonLight::fading})
        for (int bits = 0; bits < 64; ++bits) {
            const auto bit = [bits](int i) { return (bits >> i & 1) != 0; };
            const ButtonFace face{light, bit(0), bit(1), bit(2)};
            const ButtonColors colors = buttonColors(face, {bit(3), bit(4), bit(5)});
            const Color under = colors.fill.alpha > 0.0f ? colors.fill : palette::kGround;
            EXPECT_GE(palette::contrast(colors.sign, under), 4.5)
                << static_cast<int>(light) << " " << bits;
            EXPECT_EQ(colors.frame == palette::kBright, bit(5));
        }
}

} // namespace zephyra
