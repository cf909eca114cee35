// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/PException.h>

#include <utility>

#include "Catalogue.h"

namespace TAVLib {

class PException::State {
public:
    unsigned char producer;
    unsigned char module;
    unsigned short location;
    unsigned char action;
    unsigned short detail;
    int messageNumber;
    std::vector<std::string> parameters;
    std::string message;
};

PException::PException(unsigned char producer, unsigned char module, unsigned short location,
                       unsigned char action, unsigned short detail, int messageNumber, long p1,
                       long p2, long p3, long p4, long p5, long p6, long p7, long p8)
    : state(nullptr)
{
    const CatalogueEntry& entry = board::findMessage(messageNumber);
    std::vector<std::string> parameters;
    for (const long parameter : {p1, p2, p3, p4, p5, p6, p7, p8}) {
        const bool isText =
            parameters.size() < entry.kinds.size() && entry.kinds[parameters.size()] == 's';
        // Texts are copied now: most of them are gone when the exception is caught.
        parameters.push_back(isText ? reinterpret_cast<const char*>(parameter)
                                    : std::to_string(parameter));
    }
    std::string message = fillCatalogueText(entry.text, parameters);
    state =
        new State{producer, module, location, action, detail, messageNumber, parameters, message};
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
    return index < PARAMETERS ? state->parameters[index] : "";
}

const std::string& PException::getMessage() const
{
    return state->message;
}

}
