// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/Failure.h>

#include <algorithm>
#include <cstdio>

#include <recordkit/platform/MessageCatalogue.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/TavTrace.h>

namespace TAVLib {

namespace {

constexpr unsigned char PRODUCER = 1;
constexpr unsigned char DATA_OBJECT_MODULE = 83;
constexpr unsigned char UTIL_MODULE = 82;
constexpr unsigned short MAPPING_DETAIL = 0x0701;
constexpr unsigned char FRU_MODULE = 128;
constexpr unsigned char ARGUMENT_ERROR_ACTION = 1;
constexpr unsigned short FRU_DETAIL = 1;
constexpr unsigned short OUT_OF_RANGE_DETAIL = 0x0B00;
constexpr unsigned short FIELD_NOT_PRESENT_DETAIL = 0x0B01;

/// The maximum that lmsg_getmsg writes.
constexpr unsigned int MESSAGE_BUFFER_SIZE = 120;

void put(unsigned short where, unsigned char level, const char* message,
         unsigned char module = DATA_OBJECT_MODULE)
{
    trace::TavTrace(PRODUCER, module, where).putLog(level, message);
}

/// A text as a message parameter: its address; the catalogue knows that the parameter is a text.
long textParameter(const char* text)
{
    static_assert(sizeof(long) == sizeof(text), "a long parameter carries the address of a text");
    return reinterpret_cast<long>(text);
}

}

void traceLengthError(FailureLocation where, const char* text, unsigned int length,
                      unsigned int needed)
{
    char message[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(MESSAGE_LENGTH, message, text, static_cast<long>(length),
                static_cast<long>(needed));
    put(where, LEVEL_ERROR, message);
}

unsigned int copyImage(FailureLocation where, const char* text, const unsigned char* image,
                       unsigned int length, unsigned char* buffer, unsigned int size)
{
    if (length > size) {
        traceLengthError(where, text, size, length);
        return 0;
    }
    std::copy_n(image, length, buffer);
    return length;
}

void traceOperationError(FailureLocation where, const char* text)
{
    traceText(where, LEVEL_ERROR, MESSAGE_OPERATION_FAILED, text);
}

void traceSystemCallError(FailureLocation where, const char* text, int error)
{
    char message[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(MESSAGE_SYSTEM_CALL, message, text, static_cast<long>(error));
    put(where, LEVEL_ERROR, message);
}

void traceLine(FailureLocation where, unsigned char level, const char* text)
{
    put(where, level, text);
}

void traceNotFound(FailureLocation where, const char* text, const char* element)
{
    char message[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(MESSAGE_NOT_FOUND, message, text, element);
    put(where, LEVEL_ERROR, message);
}

void traceText(FailureLocation where, unsigned char level, int messageNumber, const char* text)
{
    char message[MESSAGE_BUFFER_SIZE];
    // Each message reads only the parameters that it declares, with the types that it declares.
    switch (messageNumber) {
    case MESSAGE_LENGTH:
        lmsg_getmsg(messageNumber, message, text, 0L, 0L);
        break;
    case MESSAGE_NOT_FOUND:
        lmsg_getmsg(messageNumber, message, text, "");
        break;
    case MESSAGE_SYSTEM_CALL:
    case MESSAGE_BAD_PARAMETER:
    case MESSAGE_INDEX:
        lmsg_getmsg(messageNumber, message, text, 0L);
        break;
    case MESSAGE_FIELD_NOT_PRESENT:
        lmsg_getmsg(messageNumber, message, text, "", 0L);
        break;
    default:
        lmsg_getmsg(messageNumber, message, text);
        break;
    }
    put(where, level, message);
}

void traceParameterError(unsigned char unitKind, const char* text, int value)
{
    char message[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(MESSAGE_BAD_PARAMETER, message, text, static_cast<long>(value));
    put(unitKind, LEVEL_PARAMETER, message);
}

void throwLengthError(FailureLocation where, const char* text, long held, long needed)
{
    throw PException(PRODUCER, DATA_OBJECT_MODULE, where, ARGUMENT_ERROR_ACTION,
                     OUT_OF_RANGE_DETAIL, MESSAGE_LENGTH, textParameter(text), held, needed, 0, 0,
                     0, 0, 0);
}

void throwNotFound(FailureLocation where, const char* text, const char* element)
{
    throw PException(PRODUCER, DATA_OBJECT_MODULE, where, ARGUMENT_ERROR_ACTION,
                     OUT_OF_RANGE_DETAIL, MESSAGE_NOT_FOUND, textParameter(text),
                     textParameter(element), 0, 0, 0, 0, 0, 0);
}

void throwIndexError(FailureLocation where, const char* text, long index)
{
    throw PException(PRODUCER, DATA_OBJECT_MODULE, where, ARGUMENT_ERROR_ACTION,
                     OUT_OF_RANGE_DETAIL, MESSAGE_INDEX, textParameter(text), index, 0, 0, 0, 0, 0,
                     0);
}

void throwFieldError(FailureLocation where, const char* text, const char* field, long value)
{
    throw PException(PRODUCER, DATA_OBJECT_MODULE, where, ARGUMENT_ERROR_ACTION,
                     FIELD_NOT_PRESENT_DETAIL, MESSAGE_FIELD_NOT_PRESENT, textParameter(text),
                     textParameter(field), value, 0, 0, 0, 0, 0);
}

void traceFRUError(FailureLevel level, const char* text)
{
    char message[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(MESSAGE_FRU, message, text);
    put(FRU_LOCATION, level, message, FRU_MODULE);
}

void throwFRUText(int messageNumber, const char* text, long parameter)
{
    throw PException(PRODUCER, FRU_MODULE, FRU_LOCATION, ARGUMENT_ERROR_ACTION, FRU_DETAIL,
                     messageNumber, textParameter(text), parameter, 0, 0, 0, 0, 0, 0);
}

void throwFRUError(int messageNumber, const char* format, int value)
{
    char text[MESSAGE_BUFFER_SIZE];
    std::snprintf(text, sizeof text, format, value);
    throwFRUText(messageNumber, text);
}

EEPROMText::EEPROMText(const char* format, va_list arguments)
{
    std::vsnprintf(text, sizeof text, format, arguments);
}

void throwEEPROMError(const EEPROMFailure& failure, const EEPROMText& text)
{
    if (!text.isEmpty()) {
        // The catalogue counts what it is asked for; the exception carries the text itself.
        char message[EEPROMText::SIZE];
        lmsg_getmsg(failure.message, message, text.get());
    }
    throw PException(PRODUCER, FRU_MODULE, EEPROM_LOCATION, failure.action, failure.detail,
                     failure.message, textParameter(text.get()), 0, 0, 0, 0, 0, 0, 0);
}

void traceUtilError(const char* text)
{
    char message[MESSAGE_BUFFER_SIZE];
    lmsg_getmsg(MESSAGE_TEXT, message, text);
    put(UTIL_LOCATION, LEVEL_ERROR, message, UTIL_MODULE);
}

void throwUtilError(const char* text, long value)
{
    throw PException(PRODUCER, UTIL_MODULE, UTIL_LOCATION, ARGUMENT_ERROR_ACTION, MAPPING_DETAIL,
                     MESSAGE_BAD_PARAMETER, textParameter(text), value, 0, 0, 0, 0, 0, 0);
}

}
