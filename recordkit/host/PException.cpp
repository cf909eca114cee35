// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/PException.h>

#include <array>
#include <utility>
#include <vector>

#include "Catalogue.h"

namespace TAVLib {

namespace {

/// A parameter as text, by its kind in the catalogue.
std::string toText(char kind, long parameter)
{
    if (kind != 's') {
        return std::to_string(parameter);
    }
    const char* const text = reinterpret_cast<const char*>(parameter);
    return text == nullptr ? std::string() : text;
}

}

class PException::State {
public:
    using Given = std::array<long, PARAMETERS>;

    State(unsigned char producerClass, unsigned char moduleCode, unsigned short locationCode,
          unsigned char actionCode, unsigned short detailCode, int number, const Given& given)
        : producer(producerClass), module(moduleCode), location(locationCode), action(actionCode),
          detail(detailCode), messageNumber(number)
    {
        const CatalogueEntry& entry = host::findMessage(number);
        const std::string& kinds = entry.kinds;
        for (unsigned int i = 0; i < PARAMETERS; ++i) {
            parameters[i] = toText(i < kinds.size() ? kinds[i] : 'n', given[i]);
        }
        message = fillCatalogueText(
            entry.text,
            std::vector<std::string>(parameters.begin(),
                                     parameters.begin() + static_cast<long>(kinds.size())));
    }

    unsigned char producer;
    unsigned char module;
    unsigned short location;
    unsigned char action;
    unsigned short detail;
    int messageNumber;
    std::array<std::string, PARAMETERS> parameters;
    std::string message;
};

PException::PException(unsigned char producer, unsigned char module, unsigned short location,
                       unsigned char action, unsigned short detail, int messageNumber, long p1,
                       long p2, long p3, long p4, long p5, long p6, long p7, long p8)
    : state(new State(producer, module, location, action, detail, messageNumber,
                      {p1, p2, p3, p4, p5, p6, p7, p8}))
{
}

PException::PException(const PException& other) : state(new State(*other.state))
{
}

PException& PException::operator=(const PException& other)
{
    PException copy(other);
    std::swap(state, copy.state);
    return *this;
}

PException::~PException()
{
    delete state;
}

unsigned char PException::getActionCode() const
{
    return state->action;
}

unsigned short PException::getExceptionDetail() const
{
    return state->detail;
}

unsigned char PException::getProducer() const
{
    return state->producer;
}

unsigned char PException::getModuleCode() const
{
    return state->module;
}

unsigned short PException::getLocationCode() const
{
    return state->location;
}

int PException::getMessageNumber() const
{
    return state->messageNumber;
}

std::string PException::getParameter(unsigned int index) const
{
    return index < PARAMETERS ? state->parameters[index] : std::string();
}

const std::string& PException::getMessage() const
{
    return state->message;
}

}
