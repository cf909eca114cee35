// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_USERACCESS_H
#define RECORDKIT_HARDWARE_USERACCESS_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Answer to Get User Access (IPMI v2.0, section 22.27).
///
/// | byte | width | meaning                                                                     |
/// |------|-------|-----------------------------------------------------------------------------|
/// | 0    | 1     | maximum number of users                                                     |
/// | 1    | 1     | number of users that are enabled                                            |
/// | 2    | 1     | number of users with a fixed name                                           |
/// | 3    | 1     | bits 3..0: privilege level, bit 4: messaging enabled, bit 5: authentication |
/// |      |       | enabled                                                                     |
///
/// The counts are the whole bytes, reserved bits included.
class RECORDKIT_API UserAccess : public FixedSizeSerializableObject {
public:
    enum Offset { MAX_USERS = 0, ENABLED_USERS = 1, FIXED_NAMES = 2, ACCESS = 3, SIZE = 4 };

    unsigned char getMaxUsrNum() const { return image[MAX_USERS]; }
    unsigned char getEnabledUsrCount() const { return image[ENABLED_USERS]; }
    unsigned char getFixedNameUsrCount() const { return image[FIXED_NAMES]; }
    unsigned char getPrivilegeLevel() const { return get_bit(image[ACCESS], 0, 4); }
    bool isMessagingEnabled() const { return get_bit(image[ACCESS], 4, 1) != 0; }
    bool isAuthEnabled() const { return get_bit(image[ACCESS], 5, 1) != 0; }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
