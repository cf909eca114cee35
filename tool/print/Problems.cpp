// SPDX-License-Identifier: Apache-2.0
#include "Problems.h"

#include <algorithm>

#include <fmt/format.h>
#include <recordkit/platform/PException.h>

#include "Output.h"

namespace recordkit::tool {

void Problems::add(const std::string& input, const std::string& text, ExitStatus status)
{
    // Some texts begin with the input's name, and where in it.
    add(input, text, status, text.compare(0, input.size(), input) == 0);
}

void Problems::add(const std::string& input, const std::string& text, ExitStatus status,
                   bool isTextNamed)
{
    complain(isTextNamed ? text : input + ": " + text);
    all.push_back({input, text});
    worst = std::max(worst, status);
}

std::vector<std::string> Problems::of(const std::string& input) const
{
    std::vector<std::string> texts;
    for (const Problem& each : all) {
        const std::string name = input + ": ";
        const bool isNamed = each.text.compare(0, name.size(), name) == 0;
        if (each.input == input) {
            texts.push_back(isNamed ? each.text.substr(name.size()) : each.text);
        }
    }
    return texts;
}

void Problems::add(const Problems& reported)
{
    inputs += reported.inputs;
    bad += reported.bad;
    worst = std::max(worst, reported.worst);
}

void Problems::run(const std::string& input, const std::function<std::vector<std::string>()>& work)
{
    ++inputs;
    std::size_t count = 0;
    try {
        for (const std::string& problem : work()) {
            add(input, problem);
            ++count;
        }
    } catch (const CommandError& e) {
        add(input, e.what(), e.getStatus(), true);
        ++count;
    } catch (const Error& e) {
        add(input, e.what(), statusOf(e));
        ++count;
    } catch (const TAVLib::PException& e) {
        add(input, e.getMessage());
        ++count;
    }
    bad += count == 0 ? 0 : 1;
}

void Problems::finish() const
{
    if (inputs > 1 && bad != 0) {
        complain(fmt::format("{} of {} files {} {}", bad, inputs, bad == 1 ? "is" : "are",
                             worst == EXIT_FILE ? "unreadable or damaged" : "damaged"));
    }
    if (worst != EXIT_DONE) {
        throw Reported(worst);
    }
}

}
