// The game's HTTP against a real server on the loopback interface.
#include "maintenance/files.h"
#include "maintenance/full_disk.h"
#include "maintenance/ordinary_user.h"
#include "maintenance/platform.h"
#include "maintenance/update.h"
#include "maintenance/web_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

using testing::HasSubstr;
using testing::Not;

struct Fetched {
    bool ok;
    std::string body;
};

static Fetched get(const std::string& url, const HttpOptions& options = {}) {
    Fetched fetched;
    fetched.ok = httpFetch(url, &fetched.body, "", options);
    return fetched;
}

static double seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class Http : public testing::Test {
protected:
    WebServer server;
    TempDir dir;
    std::string path = dir.file("fetched");
};

TEST_F(Http, FetchesATextAndAFile) {
    server.publish("a.txt", "hello");
    EXPECT_EQ(get(server.url("/a.txt")).body, "hello");
    EXPECT_TRUE(httpFetch(server.url("/a.txt"), nullptr, path));
    EXPECT_EQ(readText(path), "hello");

    std::string both;
    EXPECT_TRUE(httpFetch(server.url("/body/40000"), &both, path));
    EXPECT_EQ(both, std::string(40000, 'x'));
    EXPECT_EQ(readText(path), both);
}

TEST_F(Http, AnEmptyAnswerIsAnAnswer) {
    const Fetched fetched = get(server.url("/body/0"));
    EXPECT_TRUE(fetched.ok);
    EXPECT_EQ(fetched.body, "");
    EXPECT_TRUE(httpFetch(server.url("/body/0"), nullptr, path));
    EXPECT_EQ(readText(path), "");
}

TEST_F(Http, ATextBeginsEmpty) {
    std::string text = "before";
    EXPECT_TRUE(httpGetText(server.url("/body/2"), text));
    EXPECT_EQ(text, "xx");
    EXPECT_FALSE(httpGetText(server.url("/status/404"), text));
    EXPECT_EQ(text, "");
}

TEST_F(Http, TellsItsNameAndWantsNothingFromACache) {
    ASSERT_TRUE(get(server.url("/body/1")).ok);
    const std::string request = server.requests();
    EXPECT_THAT(request, HasSubstr("GET /body/1 HTTP/1.1\n"));
    EXPECT_THAT(request, HasSubstr("User-Agent: Orlavane\n"));
    EXPECT_THAT(request, HasSubstr("Cache-Control: no-cache\n"));
    EXPECT_THAT(request, HasSubstr("Pragma: no-cache"));
}

TEST_F(Http, OnlyStatus200IsAnAnswerAndOfOthersNothingIsRead) {
    for (const char* status : {"201", "204", "206", "300", "304", "403", "404", "500", "503"}) {
        const Fetched fetched = get(server.url("/status/") + status);
        EXPECT_FALSE(fetched.ok) << status;
        EXPECT_EQ(fetched.body, "") << status;
    }
}

TEST_F(Http, WhereTheStatusIsNot200AnEarlierFileStays) {
    writeText(path, "earlier");
    EXPECT_FALSE(httpFetch(server.url("/status/404"), nullptr, path));
    EXPECT_EQ(readText(path), "earlier");
}

TEST_F(Http, ATextHasAtMost65536Bytes) {
    const Fetched largest = get(server.url("/body/65536"));
    EXPECT_TRUE(largest.ok);
    EXPECT_EQ(largest.body.size(), 65536u);
    EXPECT_FALSE(get(server.url("/body/65537")).ok);
}

TEST_F(Http, AFloodEndsAtTheLimit) {
    const Fetched fetched = get(server.url("/flood"));
    EXPECT_FALSE(fetched.ok);
    EXPECT_LE(fetched.body.size(), 65536u + 16384u);
    HttpOptions small;
    small.fileLimit = 1 << 20;
    EXPECT_FALSE(httpFetch(server.url("/flood"), nullptr, path, small));
    EXPECT_FALSE(fileExists(path));
}

TEST_F(Http, AFileMayBeLongerThanATextUpToItsOwnLimit) {
    EXPECT_EQ(HttpOptions().fileLimit, 536870912u);
    HttpOptions options;
    options.fileLimit = 100000;
    EXPECT_TRUE(httpFetch(server.url("/body/100000"), nullptr, path, options));
    EXPECT_EQ(std::filesystem::file_size(path), 100000u);
    EXPECT_FALSE(httpFetch(server.url("/body/100001"), nullptr, path, options));
    EXPECT_FALSE(fileExists(path));
}

// --- Redirections

TEST_F(Http, IsLedElsewhere) {
    for (const char* status : {"301", "302", "303", "307", "308"})
        EXPECT_EQ(get(server.url("/redirect/") + status + "/body/3").body, "xxx") << status;
    EXPECT_EQ(get(server.url("/redirect/302/") + server.url("/body/3")).body, "xxx");
}

TEST_F(Http, OtherStatusesWithAPlaceLeadNowhere) {
    for (const char* status : {"200", "201", "300", "304", "305", "404"})
        EXPECT_NE(get(server.url("/redirect/") + status + "/body/3").body, "xxx") << status;
}

TEST_F(Http, TenRedirectionsAreFollowedAndNotMore) {
    EXPECT_EQ(get(server.url("/hops/10")).body, "xxx");
    EXPECT_FALSE(get(server.url("/hops/11")).ok);
}

TEST_F(Http, ALoopEnds) {
    EXPECT_FALSE(get(server.url("/loop/0")).ok);
    EXPECT_THAT(server.requests(), HasSubstr("/loop/10 "));
    EXPECT_THAT(server.requests(), Not(HasSubstr("/loop/11 ")));
}

TEST_F(Http, OnlyHttpIsSpokenWhereverARedirectionLeads) {
    writeText(path, "secret");
    for (const char* target :
         {"file:///etc/passwd", "ftp://127.0.0.1/x", "data:text/plain,x", "gopher://127.0.0.1/"})
        EXPECT_FALSE(get(server.url("/redirect/302/") + target).ok) << target;
    EXPECT_FALSE(get("file://" + path).ok);
    EXPECT_EQ(get("file://" + path).body, "");
}

// --- Secure connections

class SecureHttp : public testing::Test {
protected:
    SecureHttp() { trusting.certificates = server.certificate(); }

    WebServer server{true};
    HttpOptions trusting;
};

TEST_F(SecureHttp, AnswersOnlyWithACertificateThatIsTrusted) {
    EXPECT_EQ(get(server.secureUrl("/body/3"), trusting).body, "xxx");
    EXPECT_FALSE(get(server.secureUrl("/body/3")).ok);
}

TEST_F(SecureHttp, ACertificateIsForItsAddressOnly) {
    std::string url = server.secureUrl("/body/3");
    EXPECT_FALSE(get(url.replace(url.find("127.0.0.1"), 9, "localhost"), trusting).ok);
}

TEST_F(SecureHttp, LeadsNeverToTheOpenServer) {
    EXPECT_FALSE(get(server.secureUrl("/unsafe/body/3"), trusting).ok);
    EXPECT_THAT(server.requests(), Not(HasSubstr("GET /body/3")));
}

TEST_F(SecureHttp, TheOpenServerMayLeadToTheSecureOneButNotBack) {
    EXPECT_EQ(get(server.url("/safe/body/3"), trusting).body, "xxx");
    EXPECT_FALSE(get(server.url("/safe/unsafe/body/4"), trusting).ok);
    EXPECT_THAT(server.requests(), Not(HasSubstr("GET /body/4")));
}

TEST_F(SecureHttp, WhoHangsUpIsNoAnswer) {
    for (int i = 0; i < 5; i++) EXPECT_FALSE(get(server.secureUrl("/leave"), trusting).ok);
    EXPECT_FALSE(get(server.url("/leave")).ok);
}

TEST_F(SecureHttp, WhoSpeaksNoTlsIsNoAnswer) {
    std::string url = server.url("/body/3");
    EXPECT_FALSE(get(url.insert(4, "s"), trusting).ok);
}

// --- Broken answers

TEST_F(Http, AnAnswerShorterThanPromisedIsNone) {
    EXPECT_FALSE(get(server.url("/cut")).ok);
    EXPECT_FALSE(get(server.url("/chunks")).ok);
    EXPECT_FALSE(httpFetch(server.url("/cut"), nullptr, path));
    EXPECT_FALSE(fileExists(path));
}

TEST_F(Http, AnAnswerEndsWhereItsLengthSays) {
    EXPECT_EQ(get(server.url("/long")).body, "xxxxxxxxxx");
    EXPECT_EQ(get(server.url("/unbounded")).body, "hello");
}

TEST_F(Http, ALengthThatIsNoneIsNoHarm) {
    for (const char* length : {"-1", "nonsense", "99999999999999999999999", "20,30"}) {
        const Fetched fetched = get(server.url("/length/") + length);
        EXPECT_TRUE(!fetched.ok || fetched.body == std::string(20, 'x')) << length;
    }
}

TEST_F(Http, InterimAnswersAndTrailersAreNoAnswers) {
    EXPECT_EQ(get(server.url("/continue")).body, "hello");
    EXPECT_TRUE(httpFetch(server.url("/continue"), nullptr, path));
    EXPECT_EQ(readText(path), "hello");
}

TEST_F(Http, WhatIsNoHttpIsNoAnswer) { EXPECT_FALSE(get(server.url("/noise")).ok); }

TEST_F(Http, AHeaderWithoutEndIsNoAnswer) { EXPECT_FALSE(get(server.url("/headers")).ok); }

// --- Waiting

TEST_F(Http, SilenceEndsTheWait) {
    HttpOptions impatient;
    impatient.timeoutMs = 300;
    for (const char* odd : {"/silence", "/pause"}) {
        bool ok = true;
        EXPECT_LT(seconds([&] { ok = httpFetch(server.url(odd), nullptr, path, impatient); }), 5.0) << odd;
        EXPECT_FALSE(ok) << odd;
        EXPECT_FALSE(fileExists(path)) << odd;
    }
}

TEST_F(Http, TheGameWaitsTenSeconds) {
    bool ok = true;
    const double waited = seconds([&] { ok = get(server.url("/silence")).ok; });
    EXPECT_FALSE(ok);
    EXPECT_GE(waited, 10.0);
    EXPECT_LT(waited, 20.0);
}

TEST_F(Http, WhoKeepsTalkingIsListenedToHoweverSlow) {
    HttpOptions impatient;
    impatient.timeoutMs = 1200;
    EXPECT_EQ(get(server.url("/drip/3/1"), impatient).body, "xxx");
}

TEST_F(Http, NobodyThereIsNoAnswer) {
    HttpOptions impatient;
    impatient.timeoutMs = 2000;
    EXPECT_FALSE(get("http://127.0.0.1:1/", impatient).ok);
    EXPECT_FALSE(get("http://no-such-name.invalid/manifest", impatient).ok);
}

// --- Addresses and proxies

TEST_F(Http, AnAddressThatIsNoneIsRefused) {
    for (const std::string& url :
         {std::string(), std::string("nonsense"), std::string("127.0.0.1/x"), std::string("http://"),
          std::string("http:// /"), server.url("/body/1\n"), server.url(std::string("/body/1\0x", 9))})
        EXPECT_FALSE(get(url).ok) << url;
    EXPECT_EQ(server.requests(), "");
}

TEST_F(Http, NamesWithBlanksAndForeignLettersAreFound) {
    server.publish("Orlavane s\xc3\xa9tup.exe", "content");
    EXPECT_EQ(get(server.url("/Orlavane s\xc3\xa9tup.exe")).body, "content");
    EXPECT_EQ(get(server.url("/Orlavane%20s%C3%A9tup.exe")).body, "content");
}

TEST_F(Http, GoesThroughTheProxyOfTheSystem) {
    setenv("http_proxy", server.url("").c_str(), 1);
    get("http://somewhere.invalid/manifest");
    EXPECT_THAT(server.requests(), HasSubstr("GET http://somewhere.invalid/manifest HTTP/1.1"));
    setenv("no_proxy", "127.0.0.1", 1);
    EXPECT_EQ(get(server.url("/body/3")).body, "xxx");
    unsetenv("http_proxy");
    unsetenv("no_proxy");
}

// --- Files that cannot be written

TEST_F(Http, AFullDiskLeavesNoFileBehind) {
    const FullDisk disk(50000);
    EXPECT_FALSE(httpFetch(server.url("/body/200000"), nullptr, path));
    EXPECT_FALSE(fileExists(path));
    EXPECT_FALSE(httpFetch(server.url("/body/50001"), nullptr, path)); // found out when the file is closed
    EXPECT_FALSE(fileExists(path));
    EXPECT_TRUE(httpFetch(server.url("/body/50000"), nullptr, path));
}

TEST_F(Http, AFolderThatCannotBeWrittenIsRefused) {
    EXPECT_FALSE(httpFetch(server.url("/body/3"), nullptr, dir.file("missing/fetched")));
    std::filesystem::permissions(dir.path, std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        EXPECT_FALSE(httpFetch(server.url("/body/3"), nullptr, path));
    }
    std::filesystem::permissions(dir.path, std::filesystem::perms(0755));
    EXPECT_FALSE(fileExists(path));
}

TEST_F(Http, AFolderInThePlaceOfTheFileStays) {
    std::filesystem::create_directory(path);
    EXPECT_FALSE(httpFetch(server.url("/body/3"), nullptr, path));
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST_F(Http, ALinkInThePlaceOfTheFileIsReplacedAndNotFollowed) {
    writeText(dir.file("mine"), "precious");
    std::filesystem::create_symlink(dir.file("mine"), path);
    EXPECT_TRUE(httpFetch(server.url("/body/3"), nullptr, path));
    EXPECT_FALSE(std::filesystem::is_symlink(path));
    EXPECT_EQ(readText(path), "xxx");
    EXPECT_EQ(readText(dir.file("mine")), "precious");
}

TEST_F(Http, ADeviceInThePlaceOfTheFileStays) {
    EXPECT_FALSE(httpFetch(server.url("/body/3"), nullptr, "/dev/null"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Http, OthersCannotReadOrWriteWhatIsFetched) {
    ASSERT_TRUE(httpFetch(server.url("/body/3"), nullptr, path));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
}
