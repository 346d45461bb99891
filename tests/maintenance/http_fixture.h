// The game's HTTP against a real server on the loopback interface.
#pragma once

#include "maintenance/platform.h"
#include "maintenance/web_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>

struct Fetched {
    bool ok;
    std::string body;
};

inline Fetched get(const std::string& url, const HttpOptions& options = {}) {
    Fetched fetched;
    fetched.ok = httpFetch(url, &fetched.body, "", options);
    return fetched;
}

inline double seconds(const std::function<void()>& work) {
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
