// SPDX-License-Identifier: Apache-2.0
#include "Model.h"

#include <algorithm>
#include <csignal>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <unistd.h>

// Of the sanitizers' own library, where that is linked.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace testing_support {

namespace {

/// How often a sequence may be run on the way to its shortest form.
constexpr unsigned int MOST_ATTEMPTS = 4000;

/// Bytes around the first difference that are shown.
constexpr std::size_t SHOWN = 16;

std::string excerpt(const Bytes& bytes, std::size_t at)
{
    const std::size_t from = std::min(at, bytes.size());
    return hex(part(bytes, from, std::min(SHOWN, bytes.size() - from)));
}

/// Where two media differ first; empty when they do not.
std::string differenceOf(const Medium& library, const Medium& rules)
{
    for (const auto& [name, bytes] : rules) {
        const auto found = library.find(name);
        if (found == library.end()) {
            return name + " is there by the rules only";
        }
        const Bytes& other = found->second;
        if (other == bytes) {
            continue;
        }
        const auto place = std::mismatch(other.begin(), other.end(), bytes.begin(), bytes.end());
        const auto at = static_cast<std::size_t>(place.first - other.begin());
        return fmt::format("{} at {}: library ({} bytes) {}\n  {} at {}: rules   ({} bytes) {}",
                           name, at, other.size(), excerpt(other, at), name, at, bytes.size(),
                           excerpt(bytes, at));
    }
    for (const auto& [name, bytes] : library) {
        if (rules.count(name) == 0) {
            return fmt::format("{} ({} bytes) is there in the library only", name, bytes.size());
        }
    }
    return "";
}

/// The sequence that runs, for when it does not come back.
std::string running;

void showRunning()
{
    const char* at = running.data();
    std::size_t left = running.size();
    while (left > 0) {
        const ssize_t count = ::write(STDERR_FILENO, at, left);
        if (count <= 0) {
            return;
        }
        at += count;
        left -= static_cast<std::size_t>(count);
    }
}

/// Shows the sequence that runs when the process is about to die of a signal or a sanitizer.
class LastWords {
public:
    LastWords()
    {
        struct sigaction action = {};
        action.sa_handler = onSignal;
        for (const int signal : SIGNALS) {
            ::sigaction(signal, &action, &before[signal]);
        }
        if (__sanitizer_set_death_callback != nullptr) {
            __sanitizer_set_death_callback(showRunning);
        }
    }
    ~LastWords()
    {
        running.clear();
        for (const int signal : SIGNALS) {
            ::sigaction(signal, &before[signal], nullptr);
        }
    }
    LastWords(const LastWords&) = delete;
    LastWords& operator=(const LastWords&) = delete;

private:
    static constexpr int SIGNALS[] = {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV};
    static constexpr std::size_t MOST_SIGNALS = 32;

    /// The fault comes again with the handler from before.
    static void onSignal(int signal)
    {
        showRunning();
        ::sigaction(signal, &before[signal], nullptr);
    }

    static struct sigaction before[MOST_SIGNALS];
};

struct sigaction LastWords::before[] = {};

std::string textOf(const Comparison& comparison, const Steps& steps)
{
    std::string text;
    for (const Step& step : steps) {
        text += "  " + comparison.print(step) + "\n";
    }
    return text;
}

/// Tries smaller forms of a sequence as long as there are attempts left.
class Shrinking {
public:
    Shrinking(const Comparison& what, Steps from) : comparison(what), steps(std::move(from)) {}

    Steps result()
    {
        bool smaller = true;
        while (smaller) {
            smaller = dropSteps();
            smaller = shrinkArguments() || smaller;
        }
        return steps;
    }

private:
    /// Whether the candidate still differs: then it is the sequence from now on.
    bool take(const Steps& candidate)
    {
        if (attempts == MOST_ATTEMPTS) {
            return false;
        }
        ++attempts;
        if (difference(comparison, candidate).empty()) {
            return false;
        }
        steps = candidate;
        return true;
    }

    bool dropSteps()
    {
        bool smaller = false;
        for (std::size_t run = std::max<std::size_t>(steps.size() / 2, 1); run > 0; run /= 2) {
            for (std::size_t at = 0; at + run <= steps.size();) {
                Steps candidate = steps;
                const auto from = candidate.begin() + static_cast<long>(at);
                candidate.erase(from, from + static_cast<long>(run));
                if (take(candidate)) {
                    smaller = true;
                } else {
                    ++at;
                }
            }
        }
        return smaller;
    }

    bool shrinkArguments()
    {
        bool smaller = false;
        for (std::size_t i = 0; i < steps.size(); ++i) {
            for (std::size_t n = 0; n < steps[i].numbers.size(); ++n) {
                smaller = shrinkNumber(i, n) || smaller;
            }
            smaller = shrinkBytes(i) || smaller;
        }
        return smaller;
    }

    bool shrinkNumber(std::size_t i, std::size_t n)
    {
        bool smaller = false;
        const auto tryValue = [&](long long value) {
            const long long now = steps[i].numbers[n];
            if (value == now || std::abs(value) > std::abs(now)) {
                return false;
            }
            Steps candidate = steps;
            candidate[i].numbers[n] = value;
            return take(candidate);
        };
        smaller = tryValue(0);
        while (tryValue(steps[i].numbers[n] / 2)) {
            smaller = true;
        }
        const long long now = steps[i].numbers[n];
        return tryValue(now > 0 ? now - 1 : now + 1) || smaller;
    }

    bool shrinkBytes(std::size_t i)
    {
        bool smaller = false;
        for (std::size_t cut = steps[i].bytes.size(); cut > 0; cut /= 2) {
            while (steps[i].bytes.size() >= cut) {
                Steps candidate = steps;
                candidate[i].bytes.resize(steps[i].bytes.size() - cut);
                if (!take(candidate)) {
                    break;
                }
                smaller = true;
            }
        }
        for (std::size_t run = steps[i].bytes.size(); run > 0; run /= 2) {
            for (std::size_t at = 0; at < steps[i].bytes.size(); at += run) {
                Steps candidate = steps;
                const auto from = candidate[i].bytes.begin() + static_cast<long>(at);
                const auto to = from + static_cast<long>(std::min(run, steps[i].bytes.size() - at));
                if (std::all_of(from, to, [](unsigned char byte) { return byte == 0; })) {
                    continue;
                }
                std::fill(from, to, static_cast<unsigned char>(0));
                smaller = take(candidate) || smaller;
            }
        }
        return smaller;
    }

    const Comparison& comparison;
    Steps steps;
    unsigned int attempts = 0;
};

}

Bytes Random::bytes(std::size_t length)
{
    Bytes random(length);
    for (unsigned char& b : random) {
        b = byte();
    }
    return random;
}

std::string difference(const Comparison& comparison, const Steps& steps)
{
    running = "this sequence ran:\n" + textOf(comparison, steps);
    const std::unique_ptr<Subject> library = comparison.library();
    const std::unique_ptr<Subject> rules = comparison.rules();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Lines seen = library->perform(steps[i]);
        const Lines expected = rules->perform(steps[i]);
        if (seen != expected) {
            return fmt::format("step {}:\n  library: {}\n  rules:   {}", i + 1,
                               fmt::join(seen, "\n           "),
                               fmt::join(expected, "\n           "));
        }
        const bool isLast = i + 1 == steps.size();
        if (!isLast && comparison.changesMedium && !comparison.changesMedium(steps[i])) {
            continue;
        }
        const std::string left = differenceOf(library->medium(), rules->medium());
        if (!left.empty()) {
            return fmt::format("step {}:\n  {}", i + 1, left);
        }
    }
    return "";
}

Steps shortest(const Comparison& comparison, Steps steps)
{
    return Shrinking(comparison, std::move(steps)).result();
}

void compare(const Comparison& comparison, unsigned int sequences, unsigned int firstSeed)
{
    const LastWords lastWords;
    for (unsigned int i = 0; i < sequences; ++i) {
        Random random(firstSeed + i);
        const Steps steps = comparison.generate(random);
        if (difference(comparison, steps).empty()) {
            continue;
        }
        const Steps shown = shortest(comparison, steps);
        ADD_FAILURE() << "seed " << firstSeed + i << ", " << steps.size() << " steps, shortest:\n"
                      << textOf(comparison, shown) << difference(comparison, shown);
        return;
    }
}

std::string hex(const Bytes& bytes)
{
    constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 3);
    for (const unsigned char byte : bytes) {
        if (!text.empty()) {
            text += ' ';
        }
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 0x0F];
    }
    return text;
}

std::string callOf(const std::string& name, const Step& step)
{
    std::vector<std::string> arguments;
    for (const long long number : step.numbers) {
        arguments.push_back(std::to_string(number));
    }
    if (!step.bytes.empty()) {
        arguments.push_back("{" + hex(step.bytes) + "}");
    }
    return fmt::format("{}({});", name, fmt::join(arguments, ", "));
}

Failure failure(int module, int location, int action, int detail, int message,
                std::vector<std::string> parameters)
{
    while (!parameters.empty() && parameters.back() == "0") {
        parameters.pop_back();
    }
    return {fmt::format("1:{}:0x{:04X} act {} det 0x{:04X} msg {} ({})", module, location, action,
                        detail, message, fmt::join(parameters, ", "))};
}

std::string traceLine(int module, int location, int level, const std::string& text)
{
    constexpr std::size_t LONGEST_TEXT = 119;
    return fmt::format("1:{}:0x{:04X} level {}: {}", module, location, level,
                       text.substr(0, LONGEST_TEXT));
}

}
