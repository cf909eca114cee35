// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SDR_REPOSITORY_H
#define RECORDKIT_TOOL_SDR_REPOSITORY_H

#include <string>
#include <vector>

#include <recordkit/inspect/sensor/Sensor.h>

#include "../cli/Arguments.h"
#include "../print/Problems.h"

namespace recordkit::tool {

/// The records of a file, and the sensors that could be read.
struct Repository {
    std::string name;
    inspect::SdrFile file;
    std::vector<inspect::Sensor> sensors;
    Problems problems; ///< reported already
};

/// That of the input FILE.
Repository readRepository(const Arguments& arguments);
Repository readRepository(const std::string& path, inspect::SdrFormat format);

/// The options of every sub-command on a repository, and its own ones.
std::vector<Option> repositoryOptions(const std::vector<Option>& own = {});

}

#endif
