// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/Failure.h>

#include <cstdio>

#include <recordkit/platform/MessageCatalogue.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/TavTrace.h>

namespace TAVLib {

namespace {

constexpr unsigned char PRODUCER = 1;

/// The maximum that lmsg_getmsg writes.
constexpr unsigned int MESSAGE_BUFFER_SIZE = 120;

void put(const FailureSource& source, unsigned char level, const char* line)
{
    trace::TavTrace(PRODUCER, source.module, source.location).putLog(level, line);
}

/// A text as a parameter of an exception: its address; the catalogue knows that it is a text.
long textParameter(const char* text)
{
    static_assert(sizeof(long) == sizeof(text), "a long parameter carries the address of a text");
    return reinterpret_cast<long>(text);
}

}

void traceNumbers(const FailureSource& source, unsigned char level, int message, const char* text,
                  long second, long third)
{
    char line[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(message, line, text, second, third);
    put(source, level, line);
}

void traceTexts(const FailureSource& source, unsigned char level, int message, const char* text,
                const char* second)
{
    char line[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(message, line, text, second, 0L);
    put(source, level, line);
}

void throwNumbers(const FailureSource& source, int message, const char* text, long second,
                  long third)
{
    throw PException(PRODUCER, source.module, source.location, source.action, source.detail,
                     message, textParameter(text), second, third, 0, 0, 0, 0, 0);
}

void throwTexts(const FailureSource& source, int message, const char* text, const char* second,
                long third)
{
    throwNumbers(source, message, text, textParameter(second), third);
}

void traceLine(unsigned short where, unsigned char level, const char* text)
{
    put({DATA_OBJECT_MODULE, where}, level, text);
}

void traceText(unsigned short where, unsigned char level, int messageNumber, const char* text)
{
    if (messageNumber == MESSAGE_NOT_FOUND || messageNumber == MESSAGE_FIELD_NOT_PRESENT) {
        traceTexts({DATA_OBJECT_MODULE, where}, level, messageNumber, text, "");
    } else {
        traceNumbers({DATA_OBJECT_MODULE, where}, level, messageNumber, text);
    }
}

void throwFRUError(int messageNumber, const char* format, int value)
{
    char text[MESSAGE_BUFFER_SIZE];
    std::snprintf(text, sizeof text, format, value);
    throwFRUText(messageNumber, text);
}

void throwEEPROMError(const EEPROMFailure& failure, const char* text)
{
    if (*text != '\0') {
        // The catalogue counts what it is asked for; the exception carries the text itself.
        char line[MESSAGE_BUFFER_SIZE];
        lmsg_getmsg(failure.message, line, text);
    }
    throwNumbers({FRU_MODULE, EEPROM_LOCATION, failure.detail, failure.action}, failure.message,
                 text);
}

}
