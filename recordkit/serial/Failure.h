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

/// Traces that an image or buffer has `length` bytes where `needed` are required.
void traceLengthError(unsigned short where, const char* text, unsigned int length,
                      unsigned int needed);

/// Traces that the operation named in `text` failed.
void traceOperationError(unsigned short where, const char* text);

/// Traces the failure of a system call.
void traceSystemCallError(unsigned short where, const char* text, int error);

/// Traces a text that is not a catalogue message.
void traceLine(unsigned short where, unsigned char level, const char* text);

/// Traces that an element is missing.
void traceNotFound(unsigned short where, const char* text, const char* element);

/// Traces a text under a message; the message's other parameters are 0 or an empty text.
void traceText(unsigned short where, unsigned char level, int messageNumber, const char* text);

/// Traces that the value of a parameter is out of its range; the unit kind is the location.
void traceParameterError(unsigned char unitKind, const char* text, int value);

/// Throws that a record has `held` bytes where `needed` are required (detail 0x0B00).
[[noreturn]] void throwLengthError(unsigned short where, const char* text, long held, long needed);

/// Throws that an element is missing (detail 0x0B00, message 20010).
[[noreturn]] void throwNotFound(unsigned short where, const char* text, const char* element);

/// Throws that an index is outside a fixed table (detail 0x0B00, message 20034).
[[noreturn]] void throwIndexError(unsigned short where, const char* text, long index);

/// Throws that a record does not contain the requested field (detail 0x0B01).
[[noreturn]] void throwFieldError(unsigned short where, const char* text, const char* field,
                                  long value);

/// Traces a failure of the FRU classes (module 128, location 13, message 20004).
void traceFRUError(FailureLevel level, const char* text);

/// Throws a failure of the FRU classes (module 128, location 13, detail 1): a text, and a number
/// that it does not show.
[[noreturn]] void throwFRUText(int messageNumber, const char* text, long parameter = 0);

/// The same with a text that shows one number, by %d.
[[noreturn]] void throwFRUError(int messageNumber, const char* format, int value);

/// The codes of a failure of the EEPROM stores, besides its text.
struct EEPROMFailure {
    unsigned char action;
    unsigned short detail;
    FailureMessage message;
};

/// Throws a failure of the EEPROM stores (module 128, location 14).
[[noreturn]] void throwEEPROMError(const EEPROMFailure& failure, const char* text);

/// Traces a failure of the identification utilities (module 82, message 20003).
void traceUtilError(const char* text);

/// Throws that a unit or node cannot be mapped (module 82, detail 0x0701, message 20027).
[[noreturn]] void throwUtilError(const char* text, long value);

}

#endif
