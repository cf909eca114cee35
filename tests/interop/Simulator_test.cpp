// SPDX-License-Identifier: Apache-2.0
// openipmi's simulated controller on loopback: one event for every sensor type and offset, listed
// by ipmitool and by this project. Ours has words wherever ipmitool has them.
#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Bytes.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "tool/PeerNames.h"
#include "tool/sel/Event.h"
#include "tool/sel/EventImport.h"
#include "tool/tables/EventTypes.h"
#include "tool/tables/EventWords.h"

using namespace recordkit::tool;
using namespace testing_support;

namespace {

/// A UDP port that nobody uses now.
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

/// A simulated management controller for the lifetime of the object.
class Simulator {
public:
    explicit Simulator(const std::string& folder) : port(freePort())
    {
        writeFile(folder + "/lan.conf",
                  "name \"bmc1\"\nset_working_mc 0x20\nstartlan 1\n  addr 127.0.0.1 " +
                      std::to_string(port) +
                      "\n  priv_limit admin\n  allowed_auths_admin none md2 md5 straight\n"
                      "  guid a123456789abcdefa123456789abcdef\nendlan\n"
                      "user 2 true \"admin\" \"test\" admin 10 none md2 md5 straight\n");
        writeFile(folder + "/bmc.emu",
                  std::string("mc_setbmc 0x20\n"
                              "mc_add 0x20 0 no-device-sdrs 0x23 9 8 0x9f 0x1291 0xf02\n"
                              "sel_enable 0x20 1000 0x0a\nmc_enable 0x20\n"));
        child = ::fork();
        if (child == 0) {
            ::execlp("ipmi_sim", "ipmi_sim", "-n", "-p", "-c", (folder + "/lan.conf").c_str(), "-f",
                     (folder + "/bmc.emu").c_str(), "-s", folder.c_str(), nullptr);
            ::_exit(127);
        }
    }
    ~Simulator()
    {
        ::kill(child, SIGTERM);
        ::waitpid(child, nullptr, 0);
    }
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    /// ipmitool asks again until the simulator has come up.
    Outcome ipmitool(const Arguments& arguments) const
    {
        Arguments words = {
            "ipmitool", "-I",   "lan", "-H", "127.0.0.1", "-p", std::to_string(port), "-U", "admin",
            "-P",       "test", "-N",  "1",  "-R",        "30"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(words);
    }

private:
    int port;
    pid_t child = -1;
};

struct Sent {
    unsigned char sensorType;
    unsigned char eventType;
    unsigned char offset;
    bool isDeassertion;
};

/// Every offset of every sensor type and generic event, and both directions of the thresholds.
std::vector<Sent> everyEvent()
{
    std::vector<Sent> events;
    for (unsigned char offset = 0; offset < 16; ++offset) {
        for (unsigned char sensorType = 0x01; sensorType <= 0x2C; ++sensorType) {
            events.push_back({sensorType, SENSOR_SPECIFIC_EVENT, offset, false});
        }
        for (unsigned char eventType = 0x01; eventType <= LAST_GENERIC_EVENT; ++eventType) {
            events.push_back({0x01, eventType, offset, false});
        }
        if (offset < 12) {
            events.push_back({0x01, THRESHOLD_EVENT, offset, true});
        }
    }
    return events;
}

/// The file that `ipmitool sel add` takes.
std::string eventFile(const std::vector<Sent>& events)
{
    std::string text;
    for (const Sent& event : events) {
        char line[64];
        std::snprintf(line, sizeof line, "0x04 0x%02x 0x33 0x%02x 0x%02x 0xff 0xff\n",
                      event.sensorType, event.eventType | (event.isDeassertion ? 0x80 : 0),
                      event.offset);
        text += line;
    }
    return text;
}

/// The columns of ipmitool's listing by record id.
std::map<unsigned long, std::vector<std::string>> linesById(const std::string& listing)
{
    std::map<unsigned long, std::vector<std::string>> lines;
    std::istringstream stream(listing);
    for (std::string line; std::getline(stream, line);) {
        std::vector<std::string> columns;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '|');) {
            const std::size_t first = field.find_first_not_of(' ');
            columns.push_back(first == std::string::npos
                                  ? ""
                                  : field.substr(first, field.find_last_not_of(' ') - first + 1));
        }
        if (columns.size() >= 6) {
            lines[std::stoul(columns[0], nullptr, 16)] = columns;
        }
    }
    return lines;
}

}

TEST(Simulator, HasNoWordsForAnEventThatWeHaveNone)
{
    if (run({"sh", "-c", "command -v ipmi_sim && command -v ipmitool"}).status != 0) {
        GTEST_SKIP() << "ipmi_sim and ipmitool are not here";
    }
    const ScratchRoot root;
    const Simulator simulator(root.path());
    const std::vector<Sent> sent = everyEvent();
    writeFile(root.at("/events.txt"), eventFile(sent));
    ASSERT_EQ(simulator.ipmitool({"sel", "clear"}).status, 0);
    const Outcome added = simulator.ipmitool({"sel", "add", root.at("/events.txt")});
    ASSERT_EQ(added.status, 0) << added.err;
    const Outcome saved = simulator.ipmitool({"sel", "writeraw", root.at("/events.raw")});
    ASSERT_EQ(saved.status, 0) << saved.err;
    const auto theirs = linesById(simulator.ipmitool({"sel", "elist"}).out);

    const Bytes raw = readFile(root.at("/events.raw"));
    const auto ours =
        importEvents("events.raw", std::string(raw.begin(), raw.end()), ImportFormat::AUTO, {});
    // The simulator may begin with an event of its own for the clearing.
    ASSERT_GE(ours.size(), sent.size());
    const std::size_t before = ours.size() - sent.size();
    std::size_t compared = 0;
    for (std::size_t i = 0; i < sent.size(); ++i) {
        const Bytes image = imageOf(ours[before + i].message);
        const Event event = decodeEvent(0, {1, 0, 0, image.data()});
        ASSERT_EQ(event.sensorType, sent[i].sensorType);
        ASSERT_EQ(event.eventType, sent[i].eventType);
        ASSERT_EQ(event.offset, sent[i].offset);
        ASSERT_EQ(event.isDeassertion, sent[i].isDeassertion);
        const auto line = theirs.find(event.recordId);
        ASSERT_NE(line, theirs.end()) << event.recordId;
        EXPECT_EQ(line->second[5], event.isDeassertion ? "Deasserted" : "Asserted");
        const std::string& words = line->second[4];
        if (words.empty()) {
            continue;
        }
        ++compared;
        EXPECT_NE(eventWords(event.eventType, event.sensorType, event.offset), nullptr)
            << words << " at type " << int(event.eventType) << ", sensor type "
            << int(event.sensorType) << ", offset " << int(event.offset);
        if (event.eventType == THRESHOLD_EVENT) {
            EXPECT_TRUE(isSameEvent(words, event.eventType, event.sensorType, eventText(event)))
                << words << " is not " << eventText(event);
        }
    }
    EXPECT_GT(compared, 200U);
}
