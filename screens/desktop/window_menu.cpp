#include "screens/desktop/window_menu.h"

#include "screens/draw/brush.h"

#include <memory>
#include <utility>

namespace zephyra {

namespace {

constexpr double kRowUnits = 26.0, kTextUnits = 13.0;

class MenuLook final : public juce::LookAndFeel_V4 {
public:
    explicit MenuLook(double scale) : scale_(scale) {
        using Menu = juce::PopupMenu;
        setColour(Menu::backgroundColourId, brush::colour(palette::kRaised));
        setColour(Menu::textColourId, brush::colour(palette::kText));
        setColour(Menu::highlightedBackgroundColourId, brush::colour(palette::kPressed));
        setColour(Menu::highlightedTextColourId, brush::colour(palette::kBright));
    }
    void drawPopupMenuBackground(juce::Graphics& graphics, int width, int height) override {
        graphics.fillAll(brush::colour(palette::kRaised));
        graphics.setColour(brush::colour(palette::kTrack)); // an edge as quiet as a tip's
        graphics.drawRect(0, 0, width, height);
    }
    juce::Font getPopupMenuFont() override { return brush::regular(kTextUnits * scale_); }

private:
    double scale_;
};

} // namespace

void showWindowMenu(juce::Component& window, double scale, const Box& box,
                    std::vector<MenuRow> rows) {
    auto look = std::make_shared<MenuLook>(scale);
    juce::PopupMenu menu;
    menu.setLookAndFeel(look.get());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].text.empty())
            menu.addSeparator();
        else
            menu.addItem(static_cast<int>(i) + 1, brush::drawn(rows[i].text), rows[i].isEnabled,
                         rows[i].isTicked);
    }
    const auto options = juce::PopupMenu::Options()
                             .withParentComponent(&window)
                             .withTargetScreenArea(window.localAreaToGlobal(brush::rectangle(box)))
                             .withStandardItemHeight(juce::roundToInt(kRowUnits * scale));
    menu.showMenuAsync(options, [rows = std::move(rows), look,
                                 alive = juce::Component::SafePointer(&window)](int chosen) {
        const auto row = static_cast<std::size_t>(chosen) - 1;
        if (alive && chosen > 0 && row < rows.size() && rows[row].chosen) rows[row].chosen();
    });
}

} // namespace zephyra
