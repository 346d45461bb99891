// What is our own work on Linux, and elsewhere the system's.
#include "environment.h"
#include "maintenance/files.h"
#include "maintenance/full_disk.h"
#include "maintenance/http_fixture.h"
#include "maintenance/ordinary_user.h"

#include <arpa/inet.h>
#include <malloc.h>
#include <sys/socket.h>
#include <unistd.h>

using testing::HasSubstr;
using testing::Not;

TEST_F(Http, WantsNothingFromACache) {
    ASSERT_TRUE(get(server.url("/body/1")).ok);
    EXPECT_THAT(server.requests(), HasSubstr("Cache-Control: no-cache\n"));
    EXPECT_THAT(server.requests(), HasSubstr("Pragma: no-cache"));
}

// --- Redirections

TEST_F(Http, IsLedElsewhereForGood) { EXPECT_EQ(get(server.url("/redirect/308/body/3")).body, "xxx"); }

TEST_F(Http, ElevenRedirectionsAreTooMany) { EXPECT_FALSE(get(server.url("/hops/11")).ok); }

TEST_F(Http, ALoopEnds) {
    EXPECT_FALSE(get(server.url("/loop/0")).ok);
    EXPECT_THAT(server.requests(), HasSubstr("/loop/10 "));
    EXPECT_THAT(server.requests(), Not(HasSubstr("/loop/11 ")));
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

TEST_F(SecureHttp, WhatAProxySaysIsNotTheAnswer) {
    setVariable("https_proxy", server.url(""));
    EXPECT_EQ(get(server.secureUrl("/body/3"), trusting).body, "xxx");
    EXPECT_FALSE(get(server.secureUrl("/status/404"), trusting).ok);
    unsetVariable("https_proxy");
    EXPECT_THAT(server.requests(), HasSubstr("CONNECT 127.0.0.1:"));
}

// --- Broken answers

TEST_F(Http, AnAnswerShorterThanPromisedIsNone) {
    EXPECT_FALSE(get(server.url("/cut")).ok);
    EXPECT_FALSE(get(server.url("/chunks")).ok);
    for (const char* odd : {"/cut", "/short/1", "/short/20000", "/chunks"}) {
        EXPECT_FALSE(httpFetch(server.url(odd), nullptr, path)) << odd;
        EXPECT_FALSE(fileExists(path)) << odd;
    }
}

TEST_F(Http, AnAnswerEndsWhereItsLengthSays) {
    EXPECT_EQ(get(server.url("/long")).body, "xxxxxxxxxx");
    EXPECT_EQ(get(server.url("/unbounded")).body, "hello");
}

TEST_F(Http, LinesMayEndWithoutACarriageReturn) {
    EXPECT_EQ(get(server.url("/bare/200")).body, "xxx");
    EXPECT_FALSE(get(server.url("/bare/404")).ok);
    EXPECT_FALSE(httpFetch(server.url("/bare/200"), nullptr, dir.file("missing/fetched")));
}

TEST_F(Http, SingleBytesEndAtTheLimitToo) {
    HttpOptions small;
    small.fileLimit = 4;
    EXPECT_EQ(get(server.url("/trickle/4"), small).body, "xxxx");
    EXPECT_FALSE(get(server.url("/trickle/5"), small).ok);
}

TEST_F(Http, WhatIsNoHttpIsNoAnswer) { EXPECT_FALSE(get(server.url("/noise")).ok); }

TEST_F(Http, AHeaderHasAtMost256Kilobytes) {
    EXPECT_EQ(get(server.url("/header/262144")).body, "xxx");
    EXPECT_FALSE(get(server.url("/header/262145")).ok);
    EXPECT_FALSE(get(server.url("/headers")).ok); // without end
}

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

TEST_F(Http, AHeaderMayBeSlowToo) {
    HttpOptions impatient;
    impatient.timeoutMs = 2000;
    EXPECT_TRUE(get(server.url("/drip_head/40"), impatient).ok);
}

TEST_F(Http, AHeaderThatDripsIsLeftWhenTheTimeIsUp) {
    HttpOptions hurried;
    hurried.totalMs = 1500;
    bool ok = true;
    EXPECT_LT(seconds([&] { ok = get(server.url("/drip_head/300"), hurried).ok; }), 15.0);
    EXPECT_FALSE(ok);
}

// A port of this machine where nobody is let in: the queue in front of it is full.
struct FullQueue {
    std::vector<int> sockets;
    int port = 0;

    FullQueue() {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        sockets.push_back(socket(AF_INET, SOCK_STREAM, 0));
        bind(sockets[0], any, size);
        listen(sockets[0], 0);
        getsockname(sockets[0], any, &size);
        port = ntohs(address.sin_port);
        for (int i = 0; i < 4; i++) {
            sockets.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
            [[maybe_unused]] const int under_way = connect(sockets.back(), any, size);
        }
    }
    ~FullQueue() {
        for (const int socket : sockets) close(socket);
    }
    FullQueue(const FullQueue&) = delete;
    FullQueue& operator=(const FullQueue&) = delete;
};

TEST_F(Http, ADoorThatStaysShutIsLeftWhenTheTimeIsUp) {
    const FullQueue queue;
    HttpOptions impatient;
    impatient.timeoutMs = 300;
    impatient.totalMs = 20000;
    bool ok = true;
    const double waited =
        seconds([&] { ok = get("http://127.0.0.1:" + std::to_string(queue.port) + "/", impatient).ok; });
    EXPECT_FALSE(ok);
    EXPECT_GE(waited, 0.2);
    EXPECT_LT(waited, 10.0);
}

TEST_F(Http, TheGameWaitsTenSeconds) {
    EXPECT_EQ(HttpOptions().timeoutMs, 10000);
    bool ok = true;
    const double waited = seconds([&] { ok = get(server.url("/silence")).ok; });
    EXPECT_FALSE(ok);
    EXPECT_GE(waited, 10.0);
    EXPECT_LT(waited, 20.0);
}

// --- Addresses and proxies

TEST_F(Http, GoesThroughTheProxyOfTheSystem) {
    setVariable("http_proxy", server.url(""));
    get("http://somewhere.invalid/manifest");
    EXPECT_THAT(server.requests(), HasSubstr("GET http://somewhere.invalid/manifest HTTP/1.1"));
    setVariable("no_proxy", "127.0.0.1");
    EXPECT_EQ(get(server.url("/body/3")).body, "xxx");
    unsetVariable("http_proxy");
    unsetVariable("no_proxy");
}

TEST_F(Http, AnAddressThatIsRefusedLeavesNothingInMemory) {
    const std::string url = "ftp://somewhere.invalid/" + std::string(1000, 'x');
    EXPECT_FALSE(get(url).ok); // the library is loaded now
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 100; i++) EXPECT_FALSE(get(url).ok);
    EXPECT_LT(mallinfo2().uordblks, before + 20000);
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
