// SPDX-License-Identifier: Apache-2.0
#include "Failures.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <utility>

namespace testing_support {

std::string describe(const TAVLib::PException& e)
{
    std::vector<std::string> parameters;
    for (unsigned int i = 0; i < TAVLib::PException::PARAMETERS; ++i) {
        parameters.push_back(e.getParameter(i));
    }
    while (!parameters.empty() && parameters.back() == "0") {
        parameters.pop_back();
    }
    return fmt::format("{}:{}:0x{:04X} act {} det 0x{:04X} msg {} ({})", e.getProducer(),
                       e.getModuleCode(), e.getLocationCode(), e.getActionCode(),
                       e.getExceptionDetail(), e.getMessageNumber(), fmt::join(parameters, ", "));
}

std::string thrownBy(const std::function<void()>& action)
{
    try {
        action();
    } catch (const TAVLib::PException& e) {
        return describe(e);
    }
    return "nothing";
}

TraceCapture::TraceCapture()
    : before(TAVLib::host::setTraceSink([this](const TAVLib::host::TraceLine& line) {
          const std::lock_guard<std::mutex> lock(mutex);
          captured.push_back(fmt::format("{}:{}:0x{:04X} level {}: {}", line.producer, line.module,
                                         line.location, line.level, line.text));
      }))
{
}

TraceCapture::~TraceCapture()
{
    TAVLib::host::setTraceSink(std::move(before));
}

std::vector<std::string> TraceCapture::lines() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return captured;
}

std::vector<std::string> TraceCapture::take()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return std::exchange(captured, {});
}

}
