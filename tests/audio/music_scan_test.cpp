#include "audio/music_player.h"

#include "allocation_count.h"
#include "audio/tracks.h"
#include "maintenance/ordinary_user.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <random>

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
TEST_F(MusicScanTest, AFileThatMayNotBeReadEndsTheList) {
    for (const int number : {1, 2, 3}) write(number, "track");
    std::filesystem::permissions(dir.file("music2.mp3"), std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_TRUE(scan());
    EXPECT_EQ(player.tracks.size(), 1u);
}

TEST_F(MusicScanTest, NoFileStaysOpen) {
    for (const int number : {1, 2, 3}) write(number, "track");
    const auto openFiles = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const auto before = openFiles();
    EXPECT_TRUE(scan());
    EXPECT_EQ(openFiles(), before);
}

TEST_F(MusicScanTest, PipesDevicesAndLinksToNowhereEndTheList) {
    write(1, "one");
    write(3, "three");
    const std::string path = dir.file("music2.mp3");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); // nobody will ever write to it
    EXPECT_TRUE(scan());
    EXPECT_EQ(player.tracks.size(), 1u);

    const char* shorterThanItSays = "/sys/kernel/uevent_seqnum";
    for (const char* target : {"/dev/zero", "/nonexistent", "music2.mp3", shorterThanItSays}) {
        std::filesystem::remove(path);
        std::filesystem::create_symlink(target, path);
        EXPECT_TRUE(scan());
        EXPECT_EQ(player.tracks.size(), 1u) << target;
    }
}
#endif

TEST_F(MusicScanTest, AFileThatDoesNotFitIntoMemoryEndsTheList) {
    write(1, "one");
    write(2, std::string(3000000, 'x'));
    write(3, "three");
    const LittleMemory memory(2000000);
    EXPECT_TRUE(scan());
    EXPECT_EQ(log, "Music: 1 track(s)\n");
    EXPECT_EQ(player.tracks.size(), 1u);
}

TEST_F(MusicScanTest, AFileBeyondWhatTheDecoderCanCountEndsTheList) {
    write(1, "one");
    write(2, "");
    std::filesystem::resize_file(dir.file("music2.mp3"), 0x7FFFFFFF); // takes no room on the disk
    EXPECT_TRUE(scan());
    EXPECT_EQ(player.tracks.size(), 1u);
}

TEST_F(MusicScanTest, MemoryIsAskedForUpToWhatTheDecoderCanCount) {
    write(1, "");
    const auto requests = [&](uint64_t size) {
        std::filesystem::resize_file(dir.file("music1.mp3"), size);
        const LittleMemory memory(2000000);
        const uint64_t before = allocationCount();
        EXPECT_FALSE(scan());
        return allocationCount() - before;
    };
    requests(0x7FFFFFFF);
    const uint64_t longest = 0x7FFFFFFF - 64;
    EXPECT_EQ(requests(longest), requests(longest + 1) + 1);
}

// --- Where a track begins to be heard
// ----------------------------------------------------------------------------------------------

class MusicStartTest : public MusicScanTest {
protected:
    static Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

    // The track as the scan leaves it, and as it would be without the note.
    void expectTheSameSound(const Bytes& file, const std::string& what) {
        write(1, {file.begin(), file.end()});
        player = {};
        scan();
        MusicPlayer plain;
        plain.tracks = {trackOf(file), trackOf(MUSIC)}; // the second shows where the first one ends
        player.tracks.push_back(trackOf(MUSIC));
        for (MusicPlayer* each : {&player, &plain}) musicSetMode(*each, MUSIC_GAME);
        std::vector<float> sound(2 * 20000);
        std::vector<float> expected(sound.size());
        musicMix(player, sound.data(), 20000, 1.0f);
        musicMix(plain, expected.data(), 20000, 1.0f);
        EXPECT_EQ(sound, expected) << what;
        EXPECT_EQ(player.filePos, plain.filePos) << what;
        EXPECT_EQ(player.trackIndex, plain.trackIndex) << what;
        EXPECT_EQ(player.openCount, plain.openCount) << what;
    }

    const Bytes MUSIC = noiseFrames({.layer = 1}, 12);
    const Bytes RUBBISH = Bytes(100000, 0x55);
};

TEST_F(MusicStartTest, LiesNotFarBeforeTheFirstSound) {
    const Bytes file = joined({bytesOf("ID3"), RUBBISH, MUSIC});
    write(1, {file.begin(), file.end()});
    write(2, {MUSIC.begin(), MUSIC.end()});
    scan();
    EXPECT_LE(player.tracks[0].start, RUBBISH.size() + 3);
    EXPECT_GT(player.tracks[0].start, RUBBISH.size() - 5000);
    EXPECT_EQ(player.tracks[1].start, 0u);
}

TEST_F(MusicStartTest, LiesALongestFrameBeforeTheEndOfTheFirstSound) {
    const size_t frame = frameSize({.layer = 1});
    for (const size_t end : {4095, 4096, 4097, 50000}) {
        const Bytes file = joined({Bytes(end - frame, 0x55), MUSIC});
        write(1, {file.begin(), file.end()});
        scan();
        EXPECT_EQ(player.tracks[0].start, end <= 4096 ? 0 : end - 4096);
    }
}

TEST_F(MusicStartTest, LiesBehindFramesThatCannotBeDecoded) {
    const FrameHeader shortest = {.bitrateIndex = 1};
    Bytes broken = headerBytes(shortest);
    broken.resize(frameSize(shortest), 0x7E);
    const Bytes many = joined(std::vector<Bytes>(300, broken));
    const Bytes file = joined({many, MUSIC});
    expectTheSameSound(file, "broken frames");
    EXPECT_LE(player.tracks[0].start, many.size());
    EXPECT_GT(player.tracks[0].start, many.size() - 4096);
}

TEST_F(MusicStartTest, IsTheEndWhereNothingIsToBeHeard) {
    write(1, {RUBBISH.begin(), RUBBISH.end()});
    write(2, "");
    write(3, "\xff");
    write(4, std::string(30000, '\xff')); // the begin of a header at every byte
    scan();
    ASSERT_EQ(player.tracks.size(), 4u);
    for (const MusicTrack& t : player.tracks) EXPECT_EQ(t.start, t.size);
}

TEST_F(MusicStartTest, ChangesNothingThatIsHeard) {
    const Bytes tag = joined({bytesOf("ID3\4"), Bytes(9000, 0)});
    const Bytes falseFrame = silentFrame({.version = 2, .layer = 3}); // that is followed by no other
    const Bytes freeFormat = joined({headerBytes({.bitrateIndex = 0}), Bytes(596)});
    expectTheSameSound(MUSIC, "music");
    expectTheSameSound(joined({tag, MUSIC}), "a tag");
    expectTheSameSound(joined({RUBBISH, MUSIC, RUBBISH, MUSIC}), "rubbish before and between");
    expectTheSameSound(joined({RUBBISH, falseFrame, RUBBISH, MUSIC}), "a frame alone");
    expectTheSameSound(joined({RUBBISH, falseFrame, falseFrame, RUBBISH, MUSIC}), "two frames alone");
    expectTheSameSound(joined({RUBBISH, freeFormat, freeFormat, freeFormat, freeFormat}), "free format");
    expectTheSameSound(joined({RUBBISH, MUSIC, {0xFF}}), "a byte behind");
    expectTheSameSound(joined({RUBBISH, noiseFrame({.layer = 1}, 1)}), "one frame at the end");
    expectTheSameSound(RUBBISH, "nothing");
}

TEST_F(MusicStartTest, ChangesNothingThatIsHeardOfTheLongestFrames) {
    for (const int version : {1, 2, 25})
        for (int layer = 1; layer <= 3; layer++)
            for (int rateIndex = 0; rateIndex < 3; rateIndex++) {
                const FrameHeader longest = {
                    .version = version, .layer = layer, .bitrateIndex = 14, .rateIndex = rateIndex};
                expectTheSameSound(joined({RUBBISH, silentFrames(longest, 5)}),
                                   std::to_string(frameSize(longest)));
            }
}

#ifdef __linux__ // where lame is
// The frames of layer 3 need bytes of those before them: cut in the middle, the first ones give no sound but
// are remembered.
TEST_F(MusicStartTest, ChangesNothingThatIsHeardOfATrackThatBeginsInTheMiddle) {
    const Bytes whole = lameTrack(44100, 2, 1.0f, "-V 4");
    for (size_t cut = 0; cut < 6000; cut += 97) {
        const Bytes rest(whole.begin() + static_cast<ptrdiff_t>(cut), whole.end());
        expectTheSameSound(rest, "cut at " + std::to_string(cut));
        expectTheSameSound(joined({RUBBISH, rest}), "rubbish and cut at " + std::to_string(cut));
    }
}
#endif

TEST_F(MusicStartTest, ChangesNothingThatIsHeardOfRandomBytes) {
    std::mt19937 random(14);
    for (int i = 0; i < 300; i++) {
        Bytes file(random() % 20000);
        for (uint8_t& byte : file) byte = random() % 3 == 0 ? 0xFF : static_cast<uint8_t>(random());
        if (i % 2 == 0) file = joined({file, MUSIC});
        expectTheSameSound(file, std::to_string(i));
    }
}

TEST_F(MusicStartTest, ARescanStopsThePlayer) {
    write(1, {MUSIC.begin(), MUSIC.end()});
    scan();
    musicSetMode(player, MUSIC_GAME);
    ASSERT_TRUE(player.active);
    std::filesystem::remove(dir.file("music1.mp3"));
    EXPECT_FALSE(scan());
    EXPECT_FALSE(player.active);
    std::vector<float> sound(2 * 1000);
    musicMix(player, sound.data(), 1000, 1.0f);
    EXPECT_EQ(sound, std::vector<float>(sound.size()));
}
