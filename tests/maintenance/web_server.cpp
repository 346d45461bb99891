#include "maintenance/web_server.h"

#include "environment.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

#ifdef _WIN32
// Started by whoever started the test: what runs under Wine starts no programs of the system around it.
WebServer::WebServer(bool) : folder(variable("ODD_SERVER_FOLDER")) {
    std::filesystem::remove(file("requests"));
}

WebServer::~WebServer() = default;
#else
WebServer::WebServer(bool tls) : folder(dir.path.string()) {
    for (const char* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
        unsetVariable(name);
    const std::string command =
        "exec python3 -B " ORLAVANE_TESTS "/maintenance/odd_server.py " + folder + (tls ? " tls" : "");
    process = popen(command.c_str(), "w"); // and it ends when this pipe does
    for (int i = 0; !std::filesystem::exists(file("port")); i++) {
        if (i == 3000) throw std::runtime_error("the web server does not start");
        std::this_thread::sleep_for(10ms);
    }
}

WebServer::~WebServer() { pclose(process); }
#endif

std::string WebServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + readText(file("port")) + path;
}

std::string WebServer::secureUrl(const std::string& path) const {
    return "https://127.0.0.1:" + readText(file("tls-port")) + path;
}

void WebServer::publish(const std::string& name, const std::string& content) const {
    writeText(file("www/" + name), content);
}
