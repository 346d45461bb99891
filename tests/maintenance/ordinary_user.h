// Root may do everything: for the length of this record a test that runs as root is somebody who may not.
#pragma once

#ifdef __linux__
#include <stdexcept>
#include <unistd.h>

struct OrdinaryUser {
    OrdinaryUser() { become(65534); }
    ~OrdinaryUser() { [[maybe_unused]] const int ignored = getuid() == 0 ? seteuid(0) : 0; }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static void become(uid_t user) {
        if (geteuid() == 0 && seteuid(user) != 0)
            throw std::runtime_error("root cannot become somebody else");
    }
};
#endif
