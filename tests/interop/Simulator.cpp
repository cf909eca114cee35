// SPDX-License-Identifier: Apache-2.0
#include "Simulator.h"

#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include "support/ScratchRoot.h"

namespace testing_support {

namespace {

/// A UDP port that is free now.
int freePort()
{
    const int fd = ::socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool isBound = ::bind(fd, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                         ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(fd);
    return isBound ? ntohs(address.sin_port) : 0;
}

}

bool hasPrograms(const Arguments& names)
{
    return std::all_of(names.begin(), names.end(), [](const std::string& name) {
        return run({"sh", "-c", "command -v " + name}).status == 0;
    });
}

Simulator::Simulator(const std::string& folder, const std::string& devices)
    : port(freePort()), child(-1)
{
    writeFile(folder + "/lan.conf",
              "name \"bmc1\"\nset_working_mc 0x20\nstartlan 1\n  addr 127.0.0.1 " +
                  std::to_string(port) +
                  "\n  priv_limit admin\n  allowed_auths_admin none md2 md5 straight\n"
                  "  guid a123456789abcdefa123456789abcdef\nendlan\n"
                  "user 2 true \"admin\" \"test\" admin 10 none md2 md5 straight\n");
    writeFile(folder + "/bmc.emu", "mc_setbmc 0x20\n"
                                   "mc_add 0x20 0 no-device-sdrs 0x23 9 8 0x9f 0x1291 0xf02\n"
                                   "sel_enable 0x20 20000 0x0a\n" +
                                       devices + "mc_enable 0x20\n");
    child = ::fork();
    if (child == 0) {
        ::execlp("ipmi_sim", "ipmi_sim", "-n", "-p", "-c", (folder + "/lan.conf").c_str(), "-f",
                 (folder + "/bmc.emu").c_str(), "-s", folder.c_str(), nullptr);
        ::_exit(127);
    }
}

Simulator::~Simulator()
{
    ::kill(child, SIGTERM);
    ::waitpid(child, nullptr, 0);
}

Outcome Simulator::ipmitool(const Arguments& arguments) const
{
    Arguments words = {"ipmitool", "-I",    "lan", "-H",   "127.0.0.1", "-p", std::to_string(port),
                       "-U",       "admin", "-P",  "test", "-N",        "1",  "-R",
                       "30"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(words);
}

Outcome Simulator::ipmiSel(const Arguments& arguments) const
{
    Arguments words = {"ipmi-sel",
                       "-D",
                       "LAN",
                       "-h",
                       "127.0.0.1:" + std::to_string(port),
                       "-u",
                       "admin",
                       "-p",
                       "test",
                       "-l",
                       "ADMIN",
                       "--ignore-sdr-cache"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(words);
}

}
