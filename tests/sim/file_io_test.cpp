#include "sim/file_io.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

static std::vector<uint8_t> numbered(size_t size) {
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; i++) bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return bytes;
}

TEST(FileIo, WhatIsWrittenIsReadAgainAtAnySize) {
    const TempDir dir;
    constexpr size_t BLOCK = 64 * 1024;
    for (const size_t size : {size_t{0}, size_t{1}, BLOCK - 1, BLOCK, BLOCK + 1, 3 * BLOCK}) {
        const std::vector<uint8_t> bytes = numbered(size);
        ASSERT_TRUE(writeFile(dir.file("a"), bytes.data(), bytes.size()));
        std::vector<uint8_t> read = {1, 2, 3};
        ASSERT_TRUE(readFile(dir.file("a"), 4 * BLOCK, read));
        EXPECT_TRUE(read == bytes) << size;
    }
}

TEST(FileIo, ReadsNoFurtherThanTheLimit) {
    const TempDir dir;
    const std::vector<uint8_t> bytes = numbered(1000);
    ASSERT_TRUE(writeFile(dir.file("a"), bytes.data(), bytes.size()));
    std::vector<uint8_t> read;
    ASSERT_TRUE(readFile(dir.file("a"), 999, read));
    EXPECT_TRUE(std::equal(read.begin(), read.end(), bytes.begin(), bytes.end() - 1));
}

TEST(FileIo, AMissingFileAndAFolderCannotBeRead) {
    const TempDir dir;
    std::vector<uint8_t> read = {1, 2, 3};
    EXPECT_FALSE(readFile(dir.file("missing"), 100, read));
    EXPECT_TRUE(read.empty());
    EXPECT_FALSE(readFile(dir.path.string(), 100, read));
    EXPECT_TRUE(read.empty());
}

TEST(FileIo, AFolderAndAMissingFolderCannotBeWritten) {
    const TempDir dir;
    EXPECT_FALSE(writeFile(dir.path.string(), "x", 1));
    EXPECT_FALSE(writeFile(dir.file("missing/file"), "x", 1));
}

#ifdef __linux__
TEST(FileIo, ADiskThatIsFullIsNoticedForFewBytesAndForMany) {
    const std::vector<uint8_t> bytes(1 << 20);
    EXPECT_FALSE(writeFile("/dev/full", bytes.data(), bytes.size()));
    EXPECT_FALSE(writeFile("/dev/full", bytes.data(), 1));
}

TEST(FileIo, AnEndlessDeviceIsReadToTheLimit) {
    std::vector<uint8_t> read;
    EXPECT_TRUE(readFile("/dev/zero", 5000000, read));
    EXPECT_EQ(read.size(), 5000000u);
}
#endif
