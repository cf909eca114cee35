// SPDX-License-Identifier: Apache-2.0
#include "Run.h"

#include <cstdio>
#include <exception>

#include <recordkit/platform/PException.h>

#include "Commands.h"
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
    CLI::App app("Event records, FRU images and stores of a management board", "recordkit");
    app.set_version_flag("--version", "recordkit " RECORDKIT_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 done, 1 data damaged, absent or refused, 2 wrong usage, 3 a file "
               "could not be read or written.\n"
               "Example:\n  recordkit --root board sel list --severity warning");
    Globals globals;
    globals.addTo(app);
    app.parse_complete_callback([&globals] { globals.apply(); });
    addSelCommands(app, globals);
    addSeverityCommand(app, globals);
    addFruCommands(app, globals);
    addCpuCommand(app, globals);
    addNodeCommand(app, globals);
    addDecodeCommand(app, globals);
    addSdrCommands(app, globals);
    addSpdCommands(app, globals);
    addEepromCommands(app, globals);
    try {
        // It takes them from the end.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& e) {
        // Help and version come this way too, with status 0.
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
    } catch (const CommandError& e) {
        return fail(e.getStatus(), e.what());
    } catch (const TAVLib::PException& e) {
        return fail(EXIT_FILE, e.getMessage());
    } catch (const std::exception& e) {
        return fail(EXIT_FILE, e.what());
    }
}

}
