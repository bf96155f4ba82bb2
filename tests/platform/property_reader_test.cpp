#include "platform/lists/property_reader.h"

#include <cmath>
#include <gmock/gmock.h>

namespace zephyra {
namespace {

TEST(PropertyReader, TakesWhatFitsAndNamesKeyAndTypesOfTheRest) {
    StateFindings findings;
    const PropertyDictionary values{{"one", 1},
                                    {"two", 2},
                                    {"half", 0.5},
                                    {"text", "x"},
                                    {"yes", true},
                                    {"nan", std::nan("")},
                                    {"list", PropertyArray{1}},
                                    {"later", "kept"}};
    PropertyReader reader(values, findings, "Pad", StandIn::usual);
    EXPECT_EQ(reader.real("half"), 0.5);
    EXPECT_EQ(reader.real("two"), 2.0);
    EXPECT_EQ(reader.whole("two"), 2);
    EXPECT_EQ(reader.boolean("yes"), true);
    EXPECT_EQ(reader.boolean("one"), true);
    EXPECT_EQ(reader.text("text"), "x");
    EXPECT_EQ(reader.array("list"), values.at("list").as<PropertyArray>());
    EXPECT_FALSE(reader.real("missing") || reader.boolean("missing") || reader.data("missing"));
    EXPECT_TRUE(findings.empty());
    EXPECT_FALSE(reader.real("nan") || reader.real("yes") || reader.whole("half") ||
                 reader.boolean("two") || reader.dictionary("list"));
    for (const StateFinding& finding : findings) EXPECT_EQ(finding.standIn, StandIn::usual);
    std::vector<std::string> lines;
    for (const StateFinding& finding : findings) lines.push_back(lineOf(finding));
    EXPECT_THAT(lines, testing::ElementsAre(
                           "Pad.nan: a value of type real is ignored; a finite real is needed",
                           "Pad.yes: a value of type boolean is ignored; a finite real is needed",
                           "Pad.half: a value of type real is ignored; a whole number is needed",
                           "Pad.two: a value of type whole number is ignored; a boolean is needed",
                           "Pad.list: a value of type array is ignored; a dictionary is needed"));
    EXPECT_EQ(reader.unknown(), (PropertyDictionary{{"later", "kept"}}));
}

} // namespace
} // namespace zephyra
