#include "maintenance/manifest.h"

#include <gtest/gtest.h>

static const std::string HASH = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

static std::string manifestText(const std::string& sha256, const std::string& file) {
    return R"({"version": "0.3", "date": "2026-12-01", "sha256": ")" + sha256 + R"(", "file": ")" + file +
           "\"}";
}

static std::string field(const std::string& text, const std::string& key) {
    std::string out = "unchanged";
    const bool found = manifestField(text, key, out);
    EXPECT_EQ(found, out != "unchanged");
    return out;
}

TEST(ManifestField, IsTheQuotedTextBehindTheColonBehindTheKey) {
    EXPECT_EQ(field(R"({"a": "1", "b" : "2"})", "a"), "1");
    EXPECT_EQ(field(R"({"a": "1", "b" : "2"})", "b"), "2");
    EXPECT_EQ(field("\"a\"\n:\t\"over\nlines\"", "a"), "over\nlines");
    EXPECT_EQ(field(R"("a":"")", "a"), "");
}

TEST(ManifestField, TheKeyMustStandInQuotes) {
    EXPECT_EQ(field(R"(a: "1")", "a"), "unchanged");
    EXPECT_EQ(field(R"("ab": "1")", "a"), "unchanged");
    EXPECT_EQ(field(R"("ab": "1", "a": "2")", "a"), "2");
}

TEST(ManifestField, TheFirstHitCountsEvenWhereItIsAValue) {
    EXPECT_EQ(field(R"("version": "date", "x": "y", "date": "2026")", "date"), "y");
    EXPECT_EQ(field(R"("a": "1", "a": "2")", "a"), "1");
}

TEST(ManifestField, ItIsNoParserAndSkipsWhatStandsBetween) {
    EXPECT_EQ(field(R"("a" nonsense : more 12 "1")", "a"), "1");
    EXPECT_EQ(field(R"("a": 12, "b": "1")", "a"), "b");
}

TEST(ManifestField, ABackslashIsAnOrdinaryCharacter) {
    EXPECT_EQ(field(R"("a": "x\"y")", "a"), "x\\");
    EXPECT_EQ(field(R"("a": "\u0041\n")", "a"), R"(\u0041\n)");
}

TEST(ManifestField, IsNotFoundWhereAnyPartIsMissing) {
    for (const char* text :
         {"", "\"", "\"a", "\"a\"", "\"a\":", "\"a\": \"", "\"a\": \"1", "\"a\" \"1\"", "a"})
        EXPECT_EQ(field(text, "a"), "unchanged") << text;
}

TEST(ManifestField, ZeroBytesAreOrdinary) {
    EXPECT_EQ(field(std::string("\0\"a\":\0\"1\0\"", 10), "a"), std::string("1\0", 2));
}

TEST(Manifest, HasFourFields) {
    UpdateManifest m;
    ASSERT_TRUE(parseManifest(manifestText(HASH, "setup.exe"), m));
    EXPECT_EQ(m.version, "0.3");
    EXPECT_EQ(m.date, "2026-12-01");
    EXPECT_EQ(m.sha256, HASH);
    EXPECT_EQ(m.file, "setup.exe");
}

TEST(Manifest, VersionAndDateMayBeAbsentAndAreThenEmpty) {
    UpdateManifest m = {"0.1", "2020-01-01", "", ""};
    ASSERT_TRUE(parseManifest("\"sha256\": \"" + HASH + R"(", "file": "a")", m));
    EXPECT_EQ(m.version, "");
    EXPECT_EQ(m.date, "");
    EXPECT_EQ(m.file, "a");
}

TEST(Manifest, TheHashHas64HexadecimalDigitsInEitherCase) {
    UpdateManifest m;
    EXPECT_TRUE(parseManifest(manifestText(std::string(64, 'F'), "a"), m));
    EXPECT_TRUE(parseManifest(manifestText("0123456789abcdefABCDEF" + std::string(42, 'a'), "a"), m));
    for (const char beside : {'/', ':', '@', 'G', '`', 'g'}) // what counts, in the order of the bytes
        EXPECT_FALSE(parseManifest(manifestText(HASH.substr(1) + beside, "a"), m)) << beside;
    for (const std::string& hash :
         {std::string(63, '0'), std::string(65, '0'), std::string(), HASH.substr(1) + "g",
          HASH.substr(1) + " ", "0x" + HASH.substr(2), "-" + HASH.substr(1), HASH.substr(1) + "\xc3"})
        EXPECT_FALSE(parseManifest(manifestText(hash, "a"), m)) << hash;
}

TEST(Manifest, TheFileCannotNameAPath) {
    UpdateManifest m;
    for (const char* file :
         {"", "../x.exe", "C:x.exe", "/x", "x/", "\\x", "a\\b", "x.exe:stream", "http://x"})
        EXPECT_FALSE(parseManifest(manifestText(HASH, file), m)) << file;
    for (const char* file : {"x", "..", "Orlavane setup.exe", "a b'$(c).exe"})
        EXPECT_TRUE(parseManifest(manifestText(HASH, file), m)) << file;
}

TEST(Manifest, WithoutHashOrFileThereIsNone) {
    UpdateManifest m;
    EXPECT_FALSE(parseManifest("", m));
    EXPECT_FALSE(parseManifest("{}", m));
    EXPECT_FALSE(parseManifest("\"sha256\": \"" + HASH + "\"", m));
    EXPECT_FALSE(parseManifest(R"("file": "a")", m));
    EXPECT_FALSE(parseManifest("<html>404 \"sha256\": not found \"file\"</html>", m));
}

TEST(Manifest, ARefusedOneChangesNothing) {
    UpdateManifest m = {"v", "d", "s", "f"};
    EXPECT_FALSE(parseManifest(manifestText(HASH, "a/b"), m));
    EXPECT_FALSE(parseManifest(manifestText("12", "a"), m));
    EXPECT_EQ(m.version + m.date + m.sha256 + m.file, "vdsf");
}

TEST(Manifest, CutAtAnyByteItIsRefused) {
    const std::string text = manifestText(HASH, "setup.exe");
    for (size_t size = 0; size < text.size() - 1; size++) { // the last brace is of no concern
        UpdateManifest m;
        EXPECT_FALSE(parseManifest(text.substr(0, size), m)) << size;
    }
}

TEST(FormatManifest, IsReadBackAsItWas) {
    std::string text;
    ASSERT_TRUE(formatManifest({"0.3", "2026-12-01", HASH, "Orlavane-setup.exe"}, text));
    EXPECT_EQ(text, "{\n  \"version\": \"0.3\",\n  \"date\": \"2026-12-01\",\n  \"sha256\": \"" + HASH +
                        "\",\n  \"file\": \"Orlavane-setup.exe\"\n}\n");
    UpdateManifest m;
    ASSERT_TRUE(parseManifest(text, m));
    EXPECT_EQ(m.version + m.date + m.sha256 + m.file, "0.32026-12-01" + HASH + "Orlavane-setup.exe");
}

TEST(FormatManifest, ThereIsNoneForWhatTheReaderWouldNotSee) {
    std::string text = "unchanged";
    for (const UpdateManifest& m :
         {UpdateManifest{"0\"3", "", HASH, "a"}, UpdateManifest{"sha256", "2026", HASH, "a"},
          UpdateManifest{"file", "", HASH, "a"}, UpdateManifest{"", "", "12", "a"},
          UpdateManifest{"", "", HASH, "a/b"}, UpdateManifest{"", "", HASH, ""}})
        EXPECT_FALSE(formatManifest(m, text));
    EXPECT_EQ(text, "unchanged");
}
