// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_PARTITIONINFO_H
#define RECORDKIT_SERIAL_PARTITIONINFO_H

#include <vector>

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// The node ids that make up one partition.
///
/// | byte | width | meaning                            |
/// |------|-------|------------------------------------|
/// | 0    | 1     | carried unchanged                  |
/// | 1    | 1     | n, the number of node ids, 0 to 12 |
/// | 2    | n x 1 | node ids                           |
class RECORDKIT_API PartitionInfo : public SerializableObject {
public:
    enum Offset { NODE_COUNT = 1, HEADER_SIZE = 2 };
    static constexpr unsigned int MAX_NODES = 12;
    static constexpr unsigned int MAX_SIZE = HEADER_SIZE + MAX_NODES;

    ~PartitionInfo() override;

    unsigned int getSerialized(unsigned char* buffer, unsigned int length) const override;
    unsigned int getSerializedSize() const override { return HEADER_SIZE + image[NODE_COUNT]; }

    /// Accepts 2 to 14 bytes with a count of at most 12; false and an unchanged object otherwise.
    ///
    /// `length` is not compared with the count, because callers rely on only the count deciding how
    /// much of an image is read. `data` must therefore reach data[1] + 2 bytes (at most 14),
    /// whatever `length` says.
    bool setSerialized(const unsigned char* data, unsigned int length) override;

    /// Replaces the contents of `ids` with the node ids, in image order.
    void getNodeIds(std::vector<unsigned char>& ids);

private:
    unsigned char image[MAX_SIZE] = {};
};

}

#endif
