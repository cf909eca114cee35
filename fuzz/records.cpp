// SPDX-License-Identifier: Apache-2.0
// Every class with an image: two images loaded one after the other, every field read, the image
// serialized again. The first byte of the input chooses the class, the second says how much of the
// rest is the first image.
#include <algorithm>

#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/inspect/fields/RecordClass.h>
#include <recordkit/sensor/RecordSensorCommon.h>
#include <recordkit/serial/PaddedImage.h>

#include "Fuzz.h"

using namespace recordkit::inspect;
using namespace TAVLib::RecordKit;

namespace {

void load(TAVLib::SerializableObject& object, const Bytes& image)
{
    fuzz::attempt([&] { TAVLib::setSerializedPadded(object, image); });
    const unsigned int size = object.getSerializedSize();
    Bytes out(size);
    fuzz::expect(object.getSerialized(out.data(), size) == size);
    if (size != 0) {
        fuzz::expect(object.getSerialized(out.data(), size - 1) == 0);
    }
}

/// Queries that the field tables do not make: indexes beyond the end.
void askBeyond(TAVLib::SerializableObject& object, unsigned char index)
{
    if (auto* const board = dynamic_cast<GSPBBoardInfo*>(&object)) {
        fuzz::attempt([&] { board->getGbEPortStatus(index); });
        fuzz::attempt([&] { board->getSASPortStatus(index); });
        fuzz::attempt([&] { board->getConnectedPCIBox(index); });
        fuzz::attempt([&] { board->getConnectedLogicalPCIBox(index); });
    }
    if (const auto* const box = dynamic_cast<PCIBOXInfo*>(&object)) {
        const int card = static_cast<signed char>(index);
        box->getConnectedId(card);
        box->isConnected(card);
        box->getPortNo(card);
        box->getPCISlotStatus(0, card);
        box->getPCISlotStatus(card, card);
    }
    if (auto* const sensor = dynamic_cast<RecordSensorCommon*>(&object)) {
        unsigned char bytes[64] = {};
        sensor->getIDStringBytes(bytes, index % sizeof bytes);
        fuzz::attempt([&] { sensor->setIDStringBytes(bytes, index % 20, index); });
        sensor->setChannelNumber(index);
        sensor->setSensorOwnerLUN(index);
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::dropTraces();
    if (size < 2) {
        return 0;
    }
    const auto classes = recordClasses();
    const RecordClass& recordClass = *classes[data[0] % classes.size()];
    const std::size_t split = 2 + std::min<std::size_t>(data[1], size - 2);
    const Bytes first(data + 2, data + split);
    const Bytes second(data + split, data + size);
    fuzz::attempt([&] { decodeRecord(recordClass, second); });
    if (recordClass.create == nullptr) {
        return 0;
    }
    const auto object = recordClass.create();
    load(*object, first);
    load(*object, second);
    askBeyond(*object, data[1]);
    return 0;
}
