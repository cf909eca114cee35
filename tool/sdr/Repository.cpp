// SPDX-License-Identifier: Apache-2.0
#include "Repository.h"

#include "../Files.h"

namespace recordkit::tool {

Repository readRepository(const Arguments& arguments)
{
    return readRepository(arguments.text("FILE"),
                          static_cast<SdrFormat>(arguments.number("--format")));
}

Repository readRepository(const std::string& path, SdrFormat format)
{
    Repository repository;
    repository.name = inputName(path);
    repository.file = parseSdrFile(readInput(path, LARGE_LIMIT), format);
    repository.problems.run(repository.name, [&] {
        std::vector<std::string> problems;
        repository.sensors = readSensors(repository.file, problems);
        return problems;
    });
    return repository;
}

std::vector<Option> repositoryOptions(const std::vector<Option>& own)
{
    std::vector<Option> options = {
        argument("FILE", "Records as ipmitool sdr dump saves them, or answers to Get SDR; - for "
                         "standard input")};
    options.insert(options.end(), own.begin(), own.end());
    // In the order of SdrFormat.
    options.push_back(choice("--format", "FORMAT", {"auto", "dump", "responses"},
                             "Form of the file: auto, dump or responses")
                          .by("auto"));
    return options;
}

}
