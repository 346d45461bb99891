// Cities that live for hundreds of days: what they reach, and that they come out the same to the last bit
// with every compiler.
#include "sim/build_tools.h"
#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/expect_exactly.h"
#include "sim/grown_cities.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"
#include "sim/towns.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

TEST(WholeCity, AMetropolisWinsAllMissionsInOrderOnItsOwnMoney) {
    struct Win {
        int day;
        int population;
    };
    std::vector<Win> wins;
    double leastMoney = 150000.0;
    const City city = townAtDay(metropolisScript(), 200, [&](const City& today) {
        if (today.missionIndex > static_cast<int>(wins.size())) {
            EXPECT_EQ(today.missionIndex, static_cast<int>(wins.size()) + 1) << "one mission a day";
            EXPECT_EQ(today.events[today.allMissionsDone ? 1 : 0].id, STATUS_MISSION_COMPLETE);
            wins.push_back({today.day, today.population});
        }
        leastMoney = std::min(leastMoney, today.money);
        ASSERT_EQ(brokenInvariant(today), "") << "day " << today.day;
    });
    ASSERT_EQ(wins.size(), 6u);
    EXPECT_EQ(wins[0].day, 1);
    EXPECT_GE(wins[1].population, 80);
    EXPECT_GE(wins[3].population, 500);
    EXPECT_GE(wins[4].population, 1200);
    EXPECT_GE(wins[5].population, 5000);
    EXPECT_EQ(city.allMissionsDone, 1);
    EXPECT_EQ(city.bankrupt, 0);
    EXPECT_GT(leastMoney, 0.0);
}

TEST(WholeCity, StandsStillAfterTheLastMissionUntilItsPlayerBuildsOn) {
    std::string script = metropolisScript();
    script.resize(script.find("keep 1"));
    City city = townAtDay(script, 164);
    ASSERT_EQ(city.allMissionsDone, 1);
    dailyTick(city);
    EXPECT_EQ(city.day, 164);
    city.keepPlaying = 1;
    dailyTick(city);
    EXPECT_EQ(city.day, 165);
}

TEST(WholeCity, LivesOnAfterALoadAsItWouldHaveWithout) {
    const TempDir directory;
    const std::string path = directory.file("metropolis.ovw");
    City city = townAtDay(metropolisScript(), 100);
    City loaded;
    ASSERT_TRUE(saveCity(city, path));
    ASSERT_TRUE(loadCity(loaded, path));
    for (int day = 0; day < 60; day++) {
        dailyTick(city);
        dailyTick(loaded);
    }
    const CityHashes expected = cityHashes(city);
    const CityHashes hashes = cityHashes(loaded);
    EXPECT_EQ(hashes.land, expected.land);
    EXPECT_EQ(hashes.buildings, expected.buildings);
    EXPECT_EQ(hashes.services, expected.services);
    EXPECT_EQ(hashes.traffic, expected.traffic);
    EXPECT_EQ(hashes.economy, expected.economy);
}

static void expectHashesAtDays(const std::string& script, const std::map<int, CityHashes>& pins) {
    townAtDay(script, pins.rbegin()->first, [&pins](const City& city) {
        const auto pin = pins.find(city.day);
        if (pin == pins.end()) return;
        SCOPED_TRACE("day " + std::to_string(city.day));
        expectHashes(city, pin->second);
    });
}

TEST(WholeCity, TheDemoTownIsTheSameOnEverySystem) {
    expectHashesAtDays(
        demoTownScript(),
        {{60,
          {11412633279759906393u, 9920970670057441438u, 13797177104191338423u, 2202460435032208731u,
           9382144365603566588u, 6805350864684785707u, 17211004999601762422u}},
         {200,
          {14181218799131998372u, 11906251435795720677u, 1838064471364185327u, 6434234541070433942u,
           13666469253368066211u, 13562501717417882598u, 17211004999601762422u}},
         {400,
          {14181218799131998372u, 14342878876599872412u, 8221068624455542321u, 10879353003492335108u,
           14203785408649882754u, 16801827132762860165u, 17211004999601762422u}}});
}

TEST(WholeCity, TheMetropolisIsTheSameOnEverySystem) {
    expectHashesAtDays(
        metropolisScript(),
        {{60,
          {6922063462717089932u, 12195695437096212629u, 7160388133587712316u, 1476335173052568416u,
           1906759831195807473u, 8583329452652257458u, 344260478909015508u}},
         {200,
          {1773169828335940333u, 12266144746613781603u, 15501789017391359452u, 1987994843437701283u,
           13171774138744084505u, 5223411353515248986u, 17211004999601762422u}},
         {400,
          {11976352891453540257u, 459936191788231975u, 14449366390290519937u, 12395747437552402088u,
           14898163411358340663u, 6760540167752906304u, 17211004999601762422u}}});
}

TEST(WholeCity, AMapFullOfCityIsTheSameOnEverySystem) {
    expectHashes(gridCity(9, 15, 60),
                 {13871638891238602810u, 3075035302224731567u, 12389585967232582908u, 5259507180357336495u,
                  9874313557738478009u, 11947234532265914118u, 16898572470305587143u});
}

TEST(WholeCity, ACopyLivesOnAsTheCityItWasMadeFromAndApartFromIt) {
    City city = townOf5000();
    const City asItWas = city;
    City copy;
    generateMap(copy, 7);
    dailyTick(copy); // so that what its days remember is of another land
    copy = city;

    bulldozeRect(copy, 0, 0, GRID_SIZE - 1, GRID_SIZE - 1);
    dailyTick(copy);
    EXPECT_EQ(cityHashes(city), cityHashes(asItWas));
    City fresh = asItWas;
    fresh.memory = DayMemory();
    for (int day = 0; day < 3; day++) {
        dailyTick(city);
        dailyTick(fresh);
    }
    EXPECT_EQ(cityHashes(city), cityHashes(fresh));
}
