// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_MODEL_MODEL_H
#define RECORDKIT_TESTS_MODEL_MODEL_H

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/Bytes.h"
#include "support/Failures.h"

namespace testing_support {

/// Random numbers that are the same on every platform: the engine's sequence is fixed by the
/// language, that of its distributions is not. Nor is the order of two operands: an expression
/// takes one number, or several in braces.
class Random {
public:
    explicit Random(unsigned int seed) : engine(seed) {}

    unsigned int below(unsigned int bound) { return static_cast<unsigned int>(engine() % bound); }
    int between(int low, int high)
    {
        return low + static_cast<int>(below(static_cast<unsigned int>(high - low) + 1));
    }
    bool oneIn(unsigned int n) { return below(n) == 0; }
    unsigned char byte() { return static_cast<unsigned char>(below(256)); }
    Bytes bytes(std::size_t length);
    long long oneOf(std::initializer_list<long long> values)
    {
        return values.begin()[below(static_cast<unsigned int>(values.size()))];
    }

private:
    std::mt19937 engine;
};

/// One operation of a sequence with its arguments. What they mean is its model's affair; one that
/// is missing counts as 0.
struct Step {
    int operation = 0;
    std::vector<long long> numbers;
    Bytes bytes;

    long long number(std::size_t index) const
    {
        return index < numbers.size() ? numbers[index] : 0;
    }
};

using Steps = std::vector<Step>;

/// The contents of a medium, by name.
using Medium = std::map<std::string, Bytes>;

/// The library or its model, from a fresh start.
class Subject {
public:
    virtual ~Subject() = default;

    /// All that a caller sees of an operation: result, exception, trace lines, what became of its
    /// own arguments, accesses to its device.
    virtual Lines perform(const Step& step) = 0;
    /// The medium's contents now.
    virtual const Medium& medium() = 0;
};

/// The library compared with a slow model of its rules.
struct Comparison {
    std::function<std::unique_ptr<Subject>()> library;
    std::function<std::unique_ptr<Subject>()> rules;
    std::function<Steps(Random&)> generate;
    /// Whether a step may change a medium, which is compared after such steps and at the end; all
    /// may where this is empty.
    std::function<bool(const Step&)> changesMedium = {};
    /// A step as a reader would write it in a test.
    std::function<std::string(const Step&)> print;
};

/// Where the two differ first in a sequence; empty when they do not.
std::string difference(const Comparison& comparison, const Steps& steps);

/// A sequence that still shows a difference, and does not without any one of its steps; its
/// arguments are made small as far as the difference remains.
Steps shortest(const Comparison& comparison, Steps steps);

/// Runs that many random sequences. The first difference fails the test with its shortest sequence;
/// a sequence that kills the process is shown unchanged.
void compare(const Comparison& comparison, unsigned int sequences, unsigned int firstSeed);

/// "41 42 43".
std::string hex(const Bytes& bytes);
inline std::string hex(const std::string& bytes)
{
    return hex(Bytes(bytes.begin(), bytes.end()));
}

/// "name(1, -2, {41 42});", as far as a step has numbers and bytes.
std::string callOf(const std::string& name, const Step& step);

inline Lines joined(Lines first, const Lines& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// How an access to a device fails, for the rules.
enum class FailureKind { DEVICE, OTHER };

/// What a failure of another type is noted as.
constexpr const char* OTHER_FAILURE = "another failure";

/// A failure by the rules; describes itself as `describe` does a PException.
struct Failure {
    std::string text;
};

/// A PException with a text and numbers as parameters; those that are 0 at the end are left out.
Failure failure(int module, int location, int action, int detail, int message,
                std::vector<std::string> parameters);

/// A trace line as TraceCapture notes it, with as much of the text as a message has room for.
std::string traceLine(int module, int location, int level, const std::string& text);

}

#endif
