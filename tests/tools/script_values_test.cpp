#include "script_values.h"
#include "sim/map_generation.h"
#include "tools/script_run.h"

#include <gtest/gtest.h>

static ScriptValues valuesOf(std::initializer_list<const char*> settings) {
    ScriptValues values;
    std::string reason;
    for (const char* setting : settings) EXPECT_TRUE(addScriptValue(values, setting, reason)) << reason;
    return values;
}

static std::string fill(const ScriptValues& values, const std::string& line) {
    std::string filled;
    std::string unknown;
    return fillLine(values, line, filled, unknown) ? filled : "no " + unknown;
}

TEST(ScriptValues, ANameInBracesIsFilledWhereverItStands) {
    const ScriptValues values = valuesOf({"x=12", "place=3 4", "_2=", "e=a=b"});
    EXPECT_EQ(fill(values, "zone {x} {x}{x} homes"), "zone 12 1212 homes");
    EXPECT_EQ(fill(values, "build {place} 8{_2}"), "build 3 4 8");
    EXPECT_EQ(fill(values, "{e}"), "a=b");
    EXPECT_EQ(fill(valuesOf({"x={y}"}), "{x}"), "{y}");
}

TEST(ScriptValues, OtherBracesStayAsTheyAre) {
    const ScriptValues values = valuesOf({"x=12"});
    for (const char* line : {"{}", "{ x}", "{2x}", "{x", "x}", "{x-y}"}) EXPECT_EQ(fill(values, line), line);
    EXPECT_EQ(fill(values, "{{x}}"), "{12}");
}

TEST(ScriptValues, ANameInACommentNeedsNoValue) { EXPECT_EQ(fill({}, "tick 1 # {days}"), "tick 1 "); }

TEST(ScriptValues, SettingsThatSayNothingAreRefused) {
    for (const char* setting : {"", "x", "=1", "2x=1", "x y=1", "x=#", "x=1\n2", "x=1\r", "town=other"}) {
        ScriptValues values = valuesOf({"town=one"});
        std::string reason;
        EXPECT_FALSE(addScriptValue(values, setting, reason)) << setting;
        EXPECT_NE(reason, "");
        EXPECT_EQ(values.size(), 1u);
    }
}

TEST(ScriptValues, ANameWithoutAValueEndsTheScriptWithItsLine) {
    City city;
    generateMap(city, 0);
    std::istringstream in("tick {days}\ntick {dayz}\ntick 1\n");
    std::ostringstream out;
    std::ostringstream err;
    const ScriptExtras extras{.values = valuesOf({"days=2"})};
    EXPECT_EQ(runScript(city, "town.txt", in, out, err, extras), SCRIPT_REFUSED);
    EXPECT_EQ(out.str(), "tick 2\n");
    EXPECT_EQ(err.str(), "town.txt:2: '{dayz}' has no value\n");
}
