// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/PartitionInfo.h>

#include <algorithm>

namespace TAVLib::RecordKit {

PartitionInfo::~PartitionInfo() = default;

unsigned int PartitionInfo::getSerialized(unsigned char* buffer, unsigned int length) const
{
    const unsigned int size = getSerializedSize();
    if (size > length) {
        return 0;
    }
    std::copy_n(image, size, buffer);
    return size;
}

bool PartitionInfo::setSerialized(const unsigned char* data, unsigned int length)
{
    if (length > MAX_SIZE || length < HEADER_SIZE || data[NODE_COUNT] > MAX_NODES) {
        return false;
    }
    // Not limited to `length`: only the count byte says how many ids there are.
    std::copy_n(data, HEADER_SIZE + data[NODE_COUNT], image);
    return true;
}

void PartitionInfo::getNodeIds(std::vector<unsigned char>& ids)
{
    ids.assign(image + HEADER_SIZE, image + getSerializedSize());
}

}
