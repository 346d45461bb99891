#include "audio/music_player.h"

#include "temp_dir.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

class MusicScanTest : public testing::Test {
protected:
    void write(int number, const std::string& text) {
        writeText(dir.file("music" + std::to_string(number) + ".mp3"), text);
    }
    bool scan() {
        log.clear();
        return musicScan(player, dir.file(""), &log);
    }
    std::string track(size_t index) const {
        const MusicTrack& t = player.tracks[index];
        return {t.bytes.begin(), t.bytes.begin() + static_cast<ptrdiff_t>(t.size)};
    }

    TempDir dir;
    MusicPlayer player;
    std::string log;
};

TEST_F(MusicScanTest, TheTracksAreReadWholeAndInOrder) {
    write(1, "one");
    write(2, std::string(300000, 'x'));
    EXPECT_TRUE(scan());
    EXPECT_EQ(log, "Music: 2 track(s)\n");
    ASSERT_EQ(player.tracks.size(), 2u);
    EXPECT_EQ(track(0), "one");
    EXPECT_EQ(track(1), std::string(300000, 'x'));
}

TEST_F(MusicScanTest, ZerosStandBehindATrackAndAreNotCounted) {
    write(1, "abc");
    scan();
    EXPECT_EQ(player.tracks[0].size, 3u);
    ASSERT_EQ(player.tracks[0].bytes.size(), 3 + TRACK_TAIL);
    for (size_t i = 3; i < 3 + TRACK_TAIL; i++) EXPECT_EQ(player.tracks[0].bytes[i], 0);
}

TEST_F(MusicScanTest, WithoutTracksTheLogSaysSo) {
    EXPECT_FALSE(scan());
    EXPECT_EQ(log, "No music files found; playing without music\n");
    EXPECT_FALSE(musicScan(player, "/nonexistent/", nullptr));
    EXPECT_FALSE(musicScan(player, "", nullptr));
}

TEST_F(MusicScanTest, WithoutTheFirstTrackTheSecondIsNotTried) {
    write(2, "two");
    EXPECT_FALSE(scan());
    EXPECT_EQ(log, "No music files found; playing without music\n");
    EXPECT_TRUE(player.tracks.empty());
}

TEST_F(MusicScanTest, AGapEndsTheList) {
    for (const int number : {1, 2, 4, 5}) write(number, "track");
    scan();
    EXPECT_EQ(player.tracks.size(), 2u);
}

TEST_F(MusicScanTest, TheSeventeenthTrackIsNeverRead) {
    for (int number = 1; number <= 17; number++) write(number, std::to_string(number));
    EXPECT_TRUE(scan());
    EXPECT_EQ(log, "Music: 16 track(s)\n");
    ASSERT_EQ(player.tracks.size(), 16u);
    EXPECT_EQ(track(15), "16");
}

TEST_F(MusicScanTest, NumbersHaveNoPadding) {
    writeText(dir.file("music01.mp3"), "x");
    writeText(dir.file("music.mp3"), "x");
#ifndef _WIN32 // where names are the same in capitals
    writeText(dir.file("Music1.mp3"), "x");
#endif
    EXPECT_FALSE(scan());
}

TEST_F(MusicScanTest, ThePathStandsBeforeTheNameAsItIs) {
    writeText(dir.file("my-music1.mp3"), "x");
    EXPECT_TRUE(musicScan(player, dir.file("my-"), nullptr));
}

TEST_F(MusicScanTest, AScanReplacesWhatWasLoaded) {
    write(1, "old");
    write(2, "old");
    scan();
    std::filesystem::remove(dir.file("music2.mp3"));
    write(1, "new");
    scan();
    ASSERT_EQ(player.tracks.size(), 1u);
    EXPECT_EQ(track(0), "new");
}

TEST_F(MusicScanTest, AnEmptyFileIsATrack) {
    write(1, "");
    write(2, "two");
    EXPECT_TRUE(scan());
    ASSERT_EQ(player.tracks.size(), 2u);
    EXPECT_EQ(player.tracks[0].size, 0u);
}

TEST_F(MusicScanTest, AFolderEndsTheList) {
    write(1, "one");
    write(3, "three");
    std::filesystem::create_directory(dir.file("music2.mp3"));
    EXPECT_TRUE(scan());
    EXPECT_EQ(player.tracks.size(), 1u);
}

#ifndef _WIN32
TEST_F(MusicScanTest, PipesDevicesAndLinksToNowhereEndTheList) {
    write(1, "one");
    write(3, "three");
    const std::string path = dir.file("music2.mp3");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); // nobody will ever write to it
    EXPECT_TRUE(scan());
    EXPECT_EQ(player.tracks.size(), 1u);

    for (const char* target : {"/dev/zero", "/nonexistent", "music2.mp3"}) {
        std::filesystem::remove(path);
        std::filesystem::create_symlink(target, path);
        EXPECT_TRUE(scan());
        EXPECT_EQ(player.tracks.size(), 1u) << target;
    }
}
#endif

TEST_F(MusicScanTest, AFileBeyondWhatTheDecoderCanCountEndsTheList) {
    write(1, "one");
    write(2, "");
    std::filesystem::resize_file(dir.file("music2.mp3"), 0x7FFFFFFF); // takes no room on the disk
    EXPECT_TRUE(scan());
    EXPECT_EQ(player.tracks.size(), 1u);
}
