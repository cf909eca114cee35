// SPDX-License-Identifier: Apache-2.0
// Notes the messages of the EEPROM stores that go to the catalogue, and hands all on to the host's.
#include <cstdarg>

#include <recordkit/platform/MessageCatalogue.h>

#include "Asked.h"

// The linker gives the library's calls to the first, and the host's function as the second.
extern "C" int __wrap__Z11lmsg_getmsgiPcz(int messageNumber, char* buffer, ...);
extern "C" int __real__Z11lmsg_getmsgiPcz(int messageNumber, char* buffer, ...);

int __wrap__Z11lmsg_getmsgiPcz(int messageNumber, char* buffer, ...)
{
    va_list arguments;
    va_start(arguments, buffer);
    const char* const text = va_arg(arguments, const char*);
    const long first = va_arg(arguments, long);
    const long second = va_arg(arguments, long);
    va_end(arguments);
    testing_support::asked.push_back("message " + std::to_string(messageNumber) + " " + text);
    return __real__Z11lmsg_getmsgiPcz(messageNumber, buffer, text, first, second);
}
