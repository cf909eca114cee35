// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_FAULTS_FAULTFIXTURE_H
#define RECORDKIT_TESTS_FAULTS_FAULTFIXTURE_H

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "selfile/StoreFixture.h"
#include "support/Process.h"

namespace testing_support {

/// Everything that the operations work on, in a root that is made once and copied for each run.
class FaultWorld {
public:
    FaultWorld();

    /// Puts the root back as it was made.
    void reset() const;
    std::string at(const std::string& below) const { return root.at(below); }
    const std::string& path() const { return root.path(); }

    /// The files of the event log that do not have a temporary's name, with their events by id.
    std::multiset<unsigned int> events() const;
    /// All files below the root with their content.
    std::map<std::string, Bytes> files() const;

private:
    ScratchRoot root;
    std::map<std::string, Bytes> original;
};

/// The fault, the program's output, and what the program left.
struct FaultRun {
    Outcome outcome;
    long calls = 0;
    bool wasHit = false;
    long descriptorsLeft = 0;
    long inherited = 0; ///< files opened by the library without close-on-exec

    bool isTraced() const { return outcome.out.find("\ntrace ") != std::string::npos; }
};

/// Runs a program with a fault, given as RECORDKIT_FAULT of the shim.
FaultRun runWithFault(const FaultWorld& world, const Arguments& program, const std::string& fault);

/// Every fault of one kind of call, in order: an errno for each of the first `calls` calls, and
/// what a signal and a device with less room or less data do to those where that can happen.
std::vector<std::string> faultsOf(const std::string& call, long calls);

/// Whether a fault is a signal that came in.
bool isInterruption(const std::string& fault);

extern const std::vector<std::string> FAULTY_CALLS;

}

#endif
