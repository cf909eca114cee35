// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_OPENSELFILE_H
#define RECORDKIT_SELFILE_OPENSELFILE_H

#include <string>

#include "SELSlotSearch.h"

namespace TAVLib::RecordKit {

/// A file of the store, open for reading until the end of the scope by the store's own operations,
/// which trace what fails.
class OpenSELFile : public SELSlotSource {
public:
    OpenSELFile(BMCSELDataFile& owner, const std::string& name);
    ~OpenSELFile() override;

    bool isOpen() const { return fd >= 0; }
    bool seek(unsigned long offset) override;
    long read(unsigned char* buffer, unsigned int size) override;
    long lookAt(unsigned long offset, const unsigned char*& bytes) override;

private:
    BMCSELDataFile& store;
    int fd;
    SELSlotBuffer slots;
};

}

#endif
