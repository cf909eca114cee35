// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_INTEROP_SIMULATOR_H
#define RECORDKIT_TESTS_INTEROP_SIMULATOR_H

#include <string>

#include <sys/types.h>

#include "support/Process.h"

namespace testing_support {

/// Whether all of these programs are installed here.
bool hasPrograms(const Arguments& names);

/// A simulated management controller (openipmi's) on loopback for the lifetime of the object.
class Simulator {
public:
    /// Its files go into `folder`; `devices` are further lines for its description.
    explicit Simulator(const std::string& folder, const std::string& devices = "");
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    /// ipmitool asks again until the simulator has come up.
    Outcome ipmitool(const Arguments& arguments) const;
    /// freeipmi's listing of the event log; for a simulator that has come up.
    Outcome ipmiSel(const Arguments& arguments) const;

private:
    int port;
    pid_t child;
};

}

#endif
