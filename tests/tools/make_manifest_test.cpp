// The publishing tool, and that the game reads what it writes.
#include "maintenance/build_info.h"
#include "maintenance/files.h"
#include "maintenance/manifest.h"
#include "maintenance/sha256.h"
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

using testing::HasSubstr;

class MakeManifest : public testing::Test {
protected:
    MakeManifest() { writeText(setup, "setup"); }

    // True after success. What it says is in `out` and `err`.
    bool run(const std::string& arguments) {
        const std::string command =
            std::string(MAKE_MANIFEST) + " " + arguments + " >" + dir.file("out") + " 2>" + dir.file("err");
        const bool ok = std::system(command.c_str()) == 0;
        out = readText(dir.file("out"));
        err = readText(dir.file("err"));
        return ok;
    }

    TempDir dir;
    std::string setup = dir.file("Orlavane-setup.exe");
    std::string path = dir.file("manifest.json");
    std::string out;
    std::string err;
};

TEST_F(MakeManifest, OffersTheFileUnderThisBuildsVersionAndDate) {
    ASSERT_TRUE(run(setup + " " + path)) << err;
    UpdateManifest manifest;
    ASSERT_TRUE(parseManifest(readText(path), manifest));
    EXPECT_EQ(manifest.version, gameVersion);
    EXPECT_EQ(manifest.date, gameBuildDate);
    EXPECT_EQ(manifest.sha256, sha256Text("setup"));
    EXPECT_EQ(manifest.file, "Orlavane-setup.exe");
    EXPECT_EQ(out, readText(path));
    EXPECT_FALSE(fileExists(path + ".new"));
}

TEST_F(MakeManifest, VersionAndDateMayBeGivenAndAnEarlierManifestIsReplaced) {
    writeText(path, "earlier");
    ASSERT_TRUE(run(setup + " " + path + " '1.0 beta' 2027-02-03")) << err;
    UpdateManifest manifest;
    ASSERT_TRUE(parseManifest(readText(path), manifest));
    EXPECT_EQ(manifest.version, "1.0 beta");
    EXPECT_EQ(manifest.date, "2027-02-03");
}

TEST_F(MakeManifest, RefusesWhatTheGameWouldNotUnderstand) {
    writeText(path, "earlier");
    for (const char* arguments : {"'say \"hi\"'", "sha256", "1 2027", "1 03.02.2027", "1 2027-2-03x", "1 ''"})
        EXPECT_FALSE(run(setup + " " + path + " " + arguments)) << arguments;
    EXPECT_THAT(err, HasSubstr("is no date"));
    EXPECT_FALSE(run(setup + " " + path + " sha256"));
    EXPECT_THAT(err, HasSubstr("cannot hold that version"));
    EXPECT_EQ(readText(path), "earlier");
}

TEST_F(MakeManifest, RefusesANameThatAnAddressDoesNotHoldAsItStands) {
    writeText(path, "earlier");
    for (const char* name : {"set#up", "set?up", "set%31up", "set up", "set\xc3\xbcp", "set+up", "set&up",
                             "set:up", "set\\up", "set\"up", "set~up", "set\nup"}) {
        writeText(dir.file(name), "setup");
        EXPECT_FALSE(run("'" + dir.file(name) + "' " + path)) << name;
        EXPECT_THAT(err, HasSubstr("has a name that not every game could fetch")) << name;
    }
    EXPECT_EQ(readText(path), "earlier");
    for (const char* name : {"Setup-0.3_beta.exe", "-", "AZaz09"}) {
        writeText(dir.file(name), "setup");
        EXPECT_TRUE(run(dir.file(name) + " " + path)) << err;
    }
}

TEST_F(MakeManifest, RefusesWhatCannotBeReadOrWritten) {
    EXPECT_FALSE(run(dir.file("missing") + " " + path));
    EXPECT_THAT(err, HasSubstr("missing cannot be read"));
    EXPECT_FALSE(run(dir.path.string() + " " + path));
    EXPECT_FALSE(fileExists(path));
    EXPECT_FALSE(run(setup + " " + dir.file("missing/manifest.json")));
    EXPECT_THAT(err, HasSubstr("manifest.json cannot be written"));
    EXPECT_FALSE(run(setup + " " + dir.path.string()));
}

TEST_F(MakeManifest, RefusesASetupProgramThatNoGameWouldFetch) {
    writeText(setup, "");
    std::filesystem::resize_file(setup, 512ull * 1024 * 1024 + 1); // a hole, which costs no room
    EXPECT_FALSE(run(setup + " " + path));
    EXPECT_THAT(err, HasSubstr("longer than the game will fetch"));
}

TEST_F(MakeManifest, SaysHowItIsUsed) {
    EXPECT_FALSE(run(""));
    EXPECT_THAT(err, HasSubstr("usage: make-manifest SETUP_PROGRAM MANIFEST [VERSION [DATE]]"));
    EXPECT_FALSE(run("a b c d e"));
}
