// What the game asks of HTTP on every system.
#include "maintenance/files.h"
#include "maintenance/http_fixture.h"
#include "maintenance/update_task.h"

using testing::HasSubstr;

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

TEST_F(Http, TellsItsName) {
    ASSERT_TRUE(get(server.url("/body/1")).ok);
    const std::string request = server.requests();
    EXPECT_THAT(request, HasSubstr("GET /body/1 HTTP/1.1\n"));
    EXPECT_THAT(request, HasSubstr("User-Agent: Orlavane\n"));
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

TEST_F(Http, AStatedLengthBeyondTheLimitIsRefusedBeforeTheBody) {
    bool ok = true;
    for (const char* length : {"65537", "4294967297", "99999999999999999999999"}) {
        EXPECT_LT(seconds([&] { ok = get(server.url("/promise/") + length).ok; }), 8.0) << length;
        EXPECT_FALSE(ok) << length;
    }
    writeText(path, "earlier");
    EXPECT_LT(seconds([&] { ok = httpFetch(server.url("/promise/536870913"), nullptr, path); }), 8.0);
    EXPECT_FALSE(ok);
    EXPECT_FALSE(fileExists(path));
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
    options.fileLimit = 100; // is one for texts too
    EXPECT_TRUE(get(server.url("/body/100"), options).ok);
    EXPECT_FALSE(get(server.url("/body/101"), options).ok);
}

// --- Redirections

TEST_F(Http, IsLedElsewhere) {
    for (const char* status : {"301", "302", "303", "307"})
        EXPECT_EQ(get(server.url("/redirect/") + status + "/body/3").body, "xxx") << status;
    EXPECT_EQ(get(server.url("/redirect/302/") + server.url("/body/3")).body, "xxx");
}

TEST_F(Http, OtherStatusesWithAPlaceLeadNowhere) {
    for (const char* status : {"200", "201", "300", "304", "305", "404"})
        EXPECT_NE(get(server.url("/redirect/") + status + "/body/3").body, "xxx") << status;
}

TEST_F(Http, TenRedirectionsAreFollowed) { EXPECT_EQ(get(server.url("/hops/10")).body, "xxx"); }

TEST_F(Http, OnlyHttpIsSpokenWhereverARedirectionLeads) {
    writeText(path, "secret");
    for (const char* target :
         {"file:///etc/passwd", "ftp://127.0.0.1/x", "data:text/plain,x", "gopher://127.0.0.1/"})
        EXPECT_FALSE(get(server.url("/redirect/302/") + target).ok) << target;
    EXPECT_FALSE(get("file://" + path).ok);
    EXPECT_EQ(get("file://" + path).body, "");
}

// --- Broken answers

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

// --- Waiting

TEST_F(Http, WhoKeepsTalkingIsListenedToHoweverSlow) {
    HttpOptions impatient;
    impatient.timeoutMs = 1200;
    EXPECT_EQ(get(server.url("/drip/30/10"), impatient).body, std::string(30, 'x')); // three seconds
}

TEST_F(Http, WhoDripsOnAndOnIsLeftWhenTheTimeIsUp) {
    HttpOptions hurried;
    hurried.totalMs = 1500;
    for (const char* odd : {"/drip/300/10", "/slow_hops/9"}) {
        bool ok = true;
        EXPECT_LT(seconds([&] { ok = httpFetch(server.url(odd), nullptr, path, hurried); }), 15.0) << odd;
        EXPECT_FALSE(ok) << odd;
        EXPECT_FALSE(fileExists(path)) << odd;
    }
    EXPECT_EQ(HttpOptions().totalMs, 0); // a long download on a slow line is a good one
}

TEST_F(Http, TheTimeForAnAnswerHarmsNoneThatComesBefore) {
    HttpOptions unhurried;
    unhurried.totalMs = 60000;
    EXPECT_EQ(get(server.url("/drip/3/10"), unhurried).body, "xxx");
    EXPECT_EQ(get(server.url("/hops/10"), unhurried).body, "xxx");
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

// --- Files that cannot be written

TEST_F(Http, AFolderInThePlaceOfTheFileStays) {
    std::filesystem::create_directory(path);
    EXPECT_FALSE(httpFetch(server.url("/body/3"), nullptr, path));
    EXPECT_TRUE(std::filesystem::is_directory(path));
}
