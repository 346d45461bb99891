// A real web server on the loopback interface for the length of a test; odd_server.py tells what it can do.
#pragma once

#include "temp_dir.h"

#include <cstdio>

class WebServer {
public:
    explicit WebServer(bool tls = false);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    std::string url(const std::string& path) const;       // with a "/" at its begin
    std::string secureUrl(const std::string& path) const; // of the same server behind its own certificate
    std::string certificate() const { return file("certificate.pem"); }

    void publish(const std::string& name, const std::string& content) const;
    // The heads of all requests that have come so far.
    std::string requests() const { return readText(file("requests")); }

private:
    std::string file(const std::string& name) const { return folder + "/" + name; }

    TempDir dir;
    std::string folder;
    std::FILE* process = nullptr;
};
