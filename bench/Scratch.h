// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_BENCH_SCRATCH_H
#define RECORDKIT_BENCH_SCRATCH_H

#include <string>
#include <vector>

namespace bench {

using Bytes = std::vector<unsigned char>;

/// A system event as a controller sends it: a temperature at its upper critical threshold.
const Bytes& record();

/// The complete 138-byte image of that event with this record id.
Bytes slot(unsigned int id);

/// A scratch folder that is the system root for its lifetime.
class Root {
public:
    Root();
    ~Root();
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    /// Board 0's files, and a plain file for the floors.
    std::string working() const { return path + "/tmp/sb0_bmc_sel0"; }
    std::string rotated(int index) const
    {
        return path + "/var/tav/fmem/ipmi/sb0_bmc_sel" + std::to_string(index);
    }
    std::string plain() const { return path + "/plain"; }

private:
    std::string path;
};

/// Writes an event file of 800 slots, of which `count` contain events.
void writeEventFile(const std::string& name, unsigned int count);

}

#endif
