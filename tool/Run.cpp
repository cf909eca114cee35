// SPDX-License-Identifier: Apache-2.0
#include "Run.h"

#include <cstdio>
#include <exception>

#include "Commands.h"
#include "Errors.h"
#include "cli/CommandLine.h"
#include "print/Output.h"

namespace recordkit::tool {

namespace {

int fail(ExitStatus status, const std::string& text)
{
    complain(text);
    return status;
}

int runCommand(const std::vector<std::string>& arguments)
{
    try {
        return runCommandLine(arguments, groups(), commands());
    } catch (const Reported& e) {
        return e.getStatus();
    } catch (const Error& e) {
        return fail(statusOf(e), e.what());
    } catch (const TAVLib::PException& e) {
        return fail(EXIT_FILE, e.getMessage());
    } catch (const std::exception& e) {
        return fail(EXIT_FILE, e.what());
    }
}

}

int run(const std::vector<std::string>& arguments)
{
    const int status = runCommand(arguments);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        return fail(EXIT_FILE, "standard output cannot be written");
    }
    return status;
}

}
