#include "maintenance/sha256.h"

#include "maintenance/ordinary_user.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#ifdef __linux__
#include <sys/stat.h>
#endif

// The examples of FIPS 180-4, and what other programs say of lengths around the ends of blocks.
TEST(Sha256, KnownTexts) {
    EXPECT_EQ(sha256Text(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256Text("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sha256Text("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(sha256Text(std::string(1000000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, LengthsAroundTheEndOfABlock) {
    EXPECT_EQ(sha256Text(std::string(55, 'a')),
              "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318");
    EXPECT_EQ(sha256Text(std::string(56, 'a')),
              "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a");
    EXPECT_EQ(sha256Text(std::string(64, 'a')),
              "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb");
    EXPECT_EQ(sha256Text(std::string(65, 'a')),
              "635361c48bb9eab14198e76ea8ab7f1a41685d6ad62aa9146d301d4f17eb0ae0");
}

TEST(Sha256, AFileHasTheHashOfItsBytes) {
    const TempDir dir;
    for (const size_t size : {0, 1, 65535, 65536, 65537, 300000}) {
        std::string content(size, '\0');
        for (size_t i = 0; i < size; i++) content[i] = static_cast<char>(i * 7 % 251);
        writeText(dir.file("a"), content);
        std::string hash;
        EXPECT_TRUE(sha256File(dir.file("a"), hash));
        EXPECT_EQ(hash, sha256Text(content)) << size;
    }
}

TEST(Sha256, AFileThatCannotBeReadHasNone) {
    const TempDir dir;
    std::string hash = "before";
    EXPECT_FALSE(sha256File(dir.file("a"), hash));
    EXPECT_FALSE(sha256File(dir.path.string(), hash));
    EXPECT_FALSE(sha256File("", hash));
    EXPECT_EQ(hash, "before");
}

#ifdef __linux__
TEST(Sha256, ALinkInACircleHasNone) {
    const TempDir dir;
    std::string hash = "before";
    std::filesystem::create_symlink("circle", dir.path / "circle");
    EXPECT_FALSE(sha256File(dir.file("circle"), hash));
    EXPECT_EQ(hash, "before");
}

TEST(Sha256, AFileThatMayNotBeReadHasNone) {
    const TempDir dir;
    writeText(dir.file("a"), "abc");
    std::filesystem::permissions(dir.file("a"), std::filesystem::perms::none);
    std::string hash = "before";
    const OrdinaryUser user;
    EXPECT_FALSE(sha256File(dir.file("a"), hash));
    EXPECT_EQ(hash, "before");
}

TEST(Sha256, PipesAndDevicesHaveNone) {
    const TempDir dir;
    const std::string path = dir.file("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string hash = "before";
    EXPECT_FALSE(sha256File("/dev/null", hash)); // which has an end
    std::filesystem::create_symlink("/dev/zero", dir.path / "endless");
    EXPECT_FALSE(sha256File(dir.file("endless"), hash));
    EXPECT_FALSE(sha256File(path, hash)); // which nobody will ever write to
    EXPECT_EQ(hash, "before");
}

TEST(Sha256, ALinkToAFileHasTheHashOfTheFile) {
    const TempDir dir;
    writeText(dir.file("a"), "abc");
    std::filesystem::create_symlink("a", dir.path / "link");
    std::string hash;
    EXPECT_TRUE(sha256File(dir.file("link"), hash));
    EXPECT_EQ(hash, sha256Text("abc"));
}

TEST(Sha256, AReadErrorIsNotTheEndOfTheFile) {
    std::string hash = "before";
    EXPECT_FALSE(sha256File("/proc/self/mem", hash)); // opens, and has nothing to read at its begin
    EXPECT_EQ(hash, "before");
}
#endif

#ifdef _WIN32
TEST(Sha256, DevicesHaveNone) {
    std::string hash = "before";
    EXPECT_FALSE(sha256File("NUL", hash));
    EXPECT_EQ(hash, "before");
}
#endif

TEST(HashEquals, LooksAtDigitsInEitherCase) {
    EXPECT_TRUE(hashEquals("00ffab", "00FFAB"));
    EXPECT_TRUE(hashEquals("00FFAB", "00ffab"));
    EXPECT_FALSE(hashEquals("00ffab", "00ffac"));
}

TEST(HashEquals, AnEmptyOrShorterTextEqualsNothing) {
    EXPECT_FALSE(hashEquals("", ""));
    EXPECT_FALSE(hashEquals("", "00"));
    EXPECT_FALSE(hashEquals("00", ""));
    EXPECT_FALSE(hashEquals("00", "000"));
    EXPECT_FALSE(hashEquals("000", "00"));
}
