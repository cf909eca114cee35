// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/Failure.h>

#include <cstdio>

#include <recordkit/platform/MessageCatalogue.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/TavTrace.h>

namespace TAVLib {

namespace {

constexpr unsigned char PRODUCER = 1;
constexpr unsigned char UTIL_MODULE = 82;
constexpr unsigned char DATA_OBJECT_MODULE = 83;
constexpr unsigned char FRU_MODULE = 128;
constexpr unsigned char ARGUMENT_ERROR_ACTION = 1;
constexpr unsigned short FRU_DETAIL = 1;
constexpr unsigned short MAPPING_DETAIL = 0x0701;
constexpr unsigned short OUT_OF_RANGE_DETAIL = 0x0B00;
constexpr unsigned short FIELD_NOT_PRESENT_DETAIL = 0x0B01;

/// The maximum that lmsg_getmsg writes.
constexpr unsigned int MESSAGE_BUFFER_SIZE = 120;

/// Who reports; the last two are an exception's.
struct Source {
    unsigned char module;
    unsigned short location;
    unsigned char action = ARGUMENT_ERROR_ACTION;
    unsigned short detail = OUT_OF_RANGE_DETAIL;
};

void put(const Source& source, unsigned char level, const char* line)
{
    trace::TavTrace(PRODUCER, source.module, source.location).putLog(level, line);
}

// Each message reads only the parameters that it declares, with the types that it declares: numbers
// by the first function, a second text by the other.

void traceMessage(const Source& source, unsigned char level, int message, const char* text,
                  long second = 0, long third = 0)
{
    char line[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(message, line, text, second, third);
    put(source, level, line);
}

void traceTexts(const Source& source, unsigned char level, int message, const char* text,
                const char* second)
{
    char line[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(message, line, text, second, 0L);
    put(source, level, line);
}

/// A text as a parameter of an exception: its address; the catalogue knows that it is a text.
long textParameter(const char* text)
{
    static_assert(sizeof(long) == sizeof(text), "a long parameter carries the address of a text");
    return reinterpret_cast<long>(text);
}

[[noreturn]] void raise(const Source& source, int message, const char* text, long second = 0,
                        long third = 0)
{
    throw PException(PRODUCER, source.module, source.location, source.action, source.detail,
                     message, textParameter(text), second, third, 0, 0, 0, 0, 0);
}

}

void traceLengthError(unsigned short where, const char* text, unsigned int length,
                      unsigned int needed)
{
    traceMessage({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_LENGTH, text,
                 static_cast<long>(length), static_cast<long>(needed));
}

void traceOperationError(unsigned short where, const char* text)
{
    traceMessage({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_OPERATION_FAILED, text);
}

void traceSystemCallError(unsigned short where, const char* text, int error)
{
    traceMessage({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_SYSTEM_CALL, text, error);
}

void traceLine(unsigned short where, unsigned char level, const char* text)
{
    put({DATA_OBJECT_MODULE, where}, level, text);
}

void traceNotFound(unsigned short where, const char* text, const char* element)
{
    traceTexts({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_NOT_FOUND, text, element);
}

void traceText(unsigned short where, unsigned char level, int messageNumber, const char* text)
{
    if (messageNumber == MESSAGE_NOT_FOUND || messageNumber == MESSAGE_FIELD_NOT_PRESENT) {
        traceTexts({DATA_OBJECT_MODULE, where}, level, messageNumber, text, "");
    } else {
        traceMessage({DATA_OBJECT_MODULE, where}, level, messageNumber, text);
    }
}

void traceParameterError(unsigned char unitKind, const char* text, int value)
{
    traceMessage({DATA_OBJECT_MODULE, unitKind}, LEVEL_PARAMETER, MESSAGE_BAD_PARAMETER, text,
                 value);
}

void throwLengthError(unsigned short where, const char* text, long held, long needed)
{
    raise({DATA_OBJECT_MODULE, where}, MESSAGE_LENGTH, text, held, needed);
}

void throwNotFound(unsigned short where, const char* text, const char* element)
{
    raise({DATA_OBJECT_MODULE, where}, MESSAGE_NOT_FOUND, text, textParameter(element));
}

void throwIndexError(unsigned short where, const char* text, long index)
{
    raise({DATA_OBJECT_MODULE, where}, MESSAGE_INDEX, text, index);
}

void throwFieldError(unsigned short where, const char* text, const char* field, long value)
{
    raise({DATA_OBJECT_MODULE, where, ARGUMENT_ERROR_ACTION, FIELD_NOT_PRESENT_DETAIL},
          MESSAGE_FIELD_NOT_PRESENT, text, textParameter(field), value);
}

void traceFRUError(FailureLevel level, const char* text)
{
    traceMessage({FRU_MODULE, FRU_LOCATION}, level, MESSAGE_FRU, text);
}

void throwFRUText(int messageNumber, const char* text, long parameter)
{
    raise({FRU_MODULE, FRU_LOCATION, ARGUMENT_ERROR_ACTION, FRU_DETAIL}, messageNumber, text,
          parameter);
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
    raise({FRU_MODULE, EEPROM_LOCATION, failure.action, failure.detail}, failure.message, text);
}

void traceUtilError(const char* text)
{
    traceMessage({UTIL_MODULE, UTIL_LOCATION}, LEVEL_ERROR, MESSAGE_TEXT, text);
}

void throwUtilError(const char* text, long value)
{
    raise({UTIL_MODULE, UTIL_LOCATION, ARGUMENT_ERROR_ACTION, MAPPING_DETAIL},
          MESSAGE_BAD_PARAMETER, text, value);
}

}
