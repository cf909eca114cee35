// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/PException.h>

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

PException::PException(unsigned char producerClass, unsigned char moduleCode,
                       unsigned short locationCode, unsigned char actionCode,
                       unsigned short detailCode, int number, long p1, long p2, long p3, long p4,
                       long p5, long p6, long p7, long p8)
    : producer(producerClass), module(moduleCode), location(locationCode), action(actionCode),
      detail(detailCode), messageNumber(number)
{
    const host::CatalogueMessage& entry = host::findMessage(number);
    const std::string kinds = entry.kinds;
    const long given[PARAMETERS] = {p1, p2, p3, p4, p5, p6, p7, p8};
    for (unsigned int i = 0; i < PARAMETERS; ++i) {
        parameters[i] = toText(i < kinds.size() ? kinds[i] : 'n', given[i]);
    }
    message = host::fillMessage(
        entry, std::vector<std::string>(parameters.begin(), parameters.begin() + kinds.size()));
}

std::string PException::getParameter(unsigned int index) const
{
    return index < PARAMETERS ? parameters[index] : std::string();
}

}
