// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_PEXCEPTION_H
#define RECORDKIT_PLATFORM_PEXCEPTION_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// The one exception type of the firmware: thrown by value, caught by reference.
///
/// A message parameter is a number or the address of a text; the catalogue entry of `messageNumber`
/// says which (share/recordkit/messages.tsv, for the library's messages). Parameters after those of
/// the message, and all of a number without a message, are numbers. The constructor copies texts,
/// so they need not outlive the throw. Copies are independent of each other.
///
/// The library examines the action code and the detail of what its siblings throw, to report them;
/// their values are the thrower's.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API PException {
public:
    static constexpr unsigned int PARAMETERS = 8;

    PException(unsigned char producer, unsigned char module, unsigned short location,
               unsigned char action, unsigned short detail, int messageNumber, long p1, long p2,
               long p3, long p4, long p5, long p6, long p7, long p8);
    PException(const PException& other);
    PException& operator=(const PException& other);
    ~PException();

    unsigned char getActionCode() const;
    unsigned short getExceptionDetail() const;
    unsigned char getProducer() const;
    unsigned char getModuleCode() const;
    unsigned short getLocationCode() const;
    int getMessageNumber() const;

    /// Parameter 0 to 7: a text unchanged, a number in decimal; empty for any other index.
    std::string getParameter(unsigned int index) const;

    /// The catalogue message with the parameters filled in, whatever its length.
    const std::string& getMessage() const;

private:
    class State;
    State* state;
};

}

#endif
