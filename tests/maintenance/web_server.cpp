#include "maintenance/web_server.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

WebServer::WebServer(bool tls) {
    for (const char* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
        unsetenv(name);
    const std::string command = "exec python3 -B " ORLAVANE_TESTS "/maintenance/odd_server.py " +
                                dir.path.string() + (tls ? " tls" : "");
    process = popen(command.c_str(), "w"); // and it ends when this pipe does
    for (int i = 0; !std::filesystem::exists(dir.file("port")); i++) {
        if (i == 3000) throw std::runtime_error("the web server does not start");
        std::this_thread::sleep_for(10ms);
    }
}

WebServer::~WebServer() { pclose(process); }

std::string WebServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + readText(dir.file("port")) + path;
}

std::string WebServer::secureUrl(const std::string& path) const {
    return "https://127.0.0.1:" + readText(dir.file("tls-port")) + path;
}

void WebServer::publish(const std::string& name, const std::string& content) const {
    writeText(dir.file("www/" + name), content);
}
