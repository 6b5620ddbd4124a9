#include "displays/Displays.h"

#include <gtest/gtest.h>

using namespace tarnwick;

TEST(Displays, ConfigKeyIgnoresOrder) {
    Display a{1, "Built-in Display", {0, 0, 1512, 982}, {}, true};
    Display b{2, "Monitor 27", {1512, 0, 2560, 1440}, {}, false};
    EXPECT_EQ(Displays::configKey({a, b}), "Built-in Display@1512x982 + Monitor 27@2560x1440");
    EXPECT_EQ(Displays::configKey({b, a}), Displays::configKey({a, b}));
}
