// SPDX-License-Identifier: Apache-2.0
#include "Run.h"

#include <cstdio>
#include <exception>

#include <recordkit/platform/PException.h>

#include "CommandLine.h"
#include "Errors.h"

namespace recordkit::tool {

namespace {

int fail(ExitStatus status, const std::string& text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "recordkit: %s\n", text.c_str());
    return status;
}

int parseAndDo(const std::vector<std::string>& arguments)
{
    CommandLine commandLine;
    CLI::App& app = commandLine.getApp();
    try {
        // CLI11 consumes the vector from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& e) {
        // Help and version end up here too, with status 0.
        return app.exit(e) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    return EXIT_DONE;
}

}

int run(const std::vector<std::string>& arguments)
{
    try {
        const int status = parseAndDo(arguments);
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            return fail(EXIT_FILE, "standard output cannot be written");
        }
        return status;
    } catch (const Error& e) {
        return fail(statusOf(e), e.what());
    } catch (const TAVLib::PException& e) {
        return fail(EXIT_FILE, e.getMessage());
    } catch (const std::exception& e) {
        return fail(EXIT_FILE, e.what());
    }
}

}
