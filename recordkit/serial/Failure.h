// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_FAILURE_H
#define RECORDKIT_SERIAL_FAILURE_H

namespace TAVLib {

/// Location codes: the class that reports, its number in the high byte. Functions take them as the
/// number that they are, because a base class keeps that of the class derived from it.
enum FailureLocation : unsigned short {
    SB_BOARD_INFO_LOCATION = 0x0500,
    IOU_BOARD_INFO_LOCATION = 0x0600,
    RECORD_SENSOR_COMMON_LOCATION = 0x0700,
    IOU_PORT_CONFIGURATION_LOCATION = 0x0800,
    UTIL_LOCATION = 0x0800, ///< in the module of the identification utilities
    SEL_ENTRY_LOCATION = 0x0900,
    OEM_SEL_ENTRY_LOCATION = 0x0A00,
    PCI_BOX_INFO_LOCATION = 0x0D00,
    GSPB_BOARD_INFO_LOCATION = 0x0F00,
    BMC_SEL_DATA_FILE_LOCATION = 0x1000,
    DEVICE_ID_LOCATION = 0x1200,
    BMC_SEL_ENTRY_LOCATION = 0x1300,
    BMC_SEL_ENTRY_MESSAGE_LOCATION = 0x1400,
    SEL_ENTRY_LONG_TEXT_LOCATION = 0x1500,
    BMC_LOG_LOCATION = 0x1600,
    SASU_BOARD_INFO_LOCATION = 0x1800,
    FRU_LOCATION = 13,    ///< in the module of the FRU classes and the EEPROM stores
    EEPROM_LOCATION = 14, ///< in the same module
};

/// Numbers of the catalogue messages that the library writes.
enum FailureMessage : int {
    MESSAGE_TEXT = 20003,              ///< text
    MESSAGE_FRU = 20004,               ///< text
    MESSAGE_LENGTH = 20008,            ///< text, length or index, limit
    MESSAGE_NOT_FOUND = 20010,         ///< text, text
    MESSAGE_SYSTEM_CALL = 20011,       ///< text, errno
    MESSAGE_REFUSED = 20019,           ///< text
    MESSAGE_NOT_VALID = 20020,         ///< text
    MESSAGE_BAD_PARAMETER = 20027,     ///< text, value
    MESSAGE_FIELD_NOT_PRESENT = 20030, ///< text, field, value
    MESSAGE_OPERATION_FAILED = 20031,  ///< text
    MESSAGE_MISMATCH = 20032,          ///< text
    MESSAGE_INDEX = 20034,             ///< text, index
};

/// Trace levels.
enum FailureLevel : unsigned char { LEVEL_ERROR = 0, LEVEL_DEVICE = 100, LEVEL_PARAMETER = 200 };

/// Module codes.
enum FailureModule : unsigned char {
    UTIL_MODULE = 82,
    DATA_OBJECT_MODULE = 83,
    FRU_MODULE = 128, ///< the FRU classes and the EEPROM stores
};

/// Details of exceptions.
enum FailureDetail : unsigned short {
    FRU_DETAIL = 1,
    MAPPING_DETAIL = 0x0701,
    OUT_OF_RANGE_DETAIL = 0x0B00,
    FIELD_NOT_PRESENT_DETAIL = 0x0B01,
};

/// Who reports; action and detail are an exception's.
struct FailureSource {
    unsigned char module;
    unsigned short location;
    unsigned short detail = OUT_OF_RANGE_DETAIL;
    unsigned char action = 1;
};

// What all reports are made by. A message reads only the parameters that it declares, with the
// types that it declares: numbers are for the first of two functions, a second text for the other.

void traceNumbers(const FailureSource& source, unsigned char level, int message, const char* text,
                  long second = 0, long third = 0);
void traceTexts(const FailureSource& source, unsigned char level, int message, const char* text,
                const char* second);
[[noreturn]] void throwNumbers(const FailureSource& source, int message, const char* text,
                               long second = 0, long third = 0);
[[noreturn]] void throwTexts(const FailureSource& source, int message, const char* text,
                             const char* second, long third = 0);

/// Traces that an image or buffer has `length` bytes where `needed` are required.
inline void traceLengthError(unsigned short where, const char* text, unsigned int length,
                             unsigned int needed)
{
    traceNumbers({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_LENGTH, text,
                 static_cast<long>(length), static_cast<long>(needed));
}

/// Traces that the operation named in `text` failed.
inline void traceOperationError(unsigned short where, const char* text)
{
    traceNumbers({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_OPERATION_FAILED, text);
}

/// Traces the failure of a system call.
inline void traceSystemCallError(unsigned short where, const char* text, int error)
{
    traceNumbers({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_SYSTEM_CALL, text, error);
}

/// Traces that an element is missing.
inline void traceNotFound(unsigned short where, const char* text, const char* element)
{
    traceTexts({DATA_OBJECT_MODULE, where}, LEVEL_ERROR, MESSAGE_NOT_FOUND, text, element);
}

/// Traces that the value of a parameter is out of its range; the unit kind is the location.
inline void traceParameterError(unsigned char unitKind, const char* text, int value)
{
    traceNumbers({DATA_OBJECT_MODULE, unitKind}, LEVEL_PARAMETER, MESSAGE_BAD_PARAMETER, text,
                 value);
}

/// Traces a text that is not a catalogue message.
void traceLine(unsigned short where, unsigned char level, const char* text);

/// Traces a text under a message; the message's other parameters are 0 or an empty text.
void traceText(unsigned short where, unsigned char level, int messageNumber, const char* text);

/// Throws that a record has `held` bytes where `needed` are required.
[[noreturn]] inline void throwLengthError(unsigned short where, const char* text, long held,
                                          long needed)
{
    throwNumbers({DATA_OBJECT_MODULE, where}, MESSAGE_LENGTH, text, held, needed);
}

/// Throws that an element is missing.
[[noreturn]] inline void throwNotFound(unsigned short where, const char* text, const char* element)
{
    throwTexts({DATA_OBJECT_MODULE, where}, MESSAGE_NOT_FOUND, text, element);
}

/// Throws that an index is outside a fixed table.
[[noreturn]] inline void throwIndexError(unsigned short where, const char* text, long index)
{
    throwNumbers({DATA_OBJECT_MODULE, where}, MESSAGE_INDEX, text, index);
}

/// Throws that a record does not contain the requested field.
[[noreturn]] inline void throwFieldError(unsigned short where, const char* text, const char* field,
                                         long value)
{
    throwTexts({DATA_OBJECT_MODULE, where, FIELD_NOT_PRESENT_DETAIL}, MESSAGE_FIELD_NOT_PRESENT,
               text, field, value);
}

/// Traces a failure of the FRU classes.
inline void traceFRUError(FailureLevel level, const char* text)
{
    traceNumbers({FRU_MODULE, FRU_LOCATION}, level, MESSAGE_FRU, text);
}

/// Throws a failure of the FRU classes: a text, and a number that it does not show.
[[noreturn]] inline void throwFRUText(int messageNumber, const char* text, long parameter = 0)
{
    throwNumbers({FRU_MODULE, FRU_LOCATION, FRU_DETAIL}, messageNumber, text, parameter);
}

/// The same with a text that shows one number, by %d.
[[noreturn]] void throwFRUError(int messageNumber, const char* format, int value);

/// The codes of a failure of the EEPROM stores, besides its text.
struct EEPROMFailure {
    unsigned char action;
    unsigned short detail;
    FailureMessage message;
};

/// Throws a failure of the EEPROM stores.
[[noreturn]] void throwEEPROMError(const EEPROMFailure& failure, const char* text);

/// Traces a failure of the identification utilities.
inline void traceUtilError(const char* text)
{
    traceNumbers({UTIL_MODULE, UTIL_LOCATION}, LEVEL_ERROR, MESSAGE_TEXT, text);
}

/// Throws that a unit or node cannot be mapped.
[[noreturn]] inline void throwUtilError(const char* text, long value)
{
    throwNumbers({UTIL_MODULE, UTIL_LOCATION, MAPPING_DETAIL}, MESSAGE_BAD_PARAMETER, text, value);
}

}

#endif
