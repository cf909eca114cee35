// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fields/Registry.h>
#include <recordkit/serial/HardwareInfo.h>
#include <recordkit/serial/PartitionInfo.h>

#include "Accessors.h"

namespace recordkit::inspect {

using namespace TAVLib::RecordKit;

namespace {

using H = HardwareInfo;
using P = PartitionInfo;

// clang-format off
constexpr Field HARDWARE_INFO[] = {
    {"tav0_installed", bitAt(H::TAV, 0), askFor<&H::isTAVInstalled, 0>},
    {"tav1_installed", bitAt(H::TAV, 1), askFor<&H::isTAVInstalled, 1>},
    {"gspb0_installed", bitAt(H::GSPB_AND_SASU, 0), askFor<&H::isGSPBInstalled, 0>},
    {"gspb1_installed", bitAt(H::GSPB_AND_SASU, 1), askFor<&H::isGSPBInstalled, 1>},
    {"sasu0_installed", bitAt(H::GSPB_AND_SASU, 2), askFor<&H::isSASUInstalled, 0>},
    {"sasu1_installed", bitAt(H::GSPB_AND_SASU, 3), askFor<&H::isSASUInstalled, 1>},
    {"sasu2_installed", bitAt(H::GSPB_AND_SASU, 4), askFor<&H::isSASUInstalled, 2>},
    {"sasu3_installed", bitAt(H::GSPB_AND_SASU, 5), askFor<&H::isSASUInstalled, 3>},
    {"sb0_installed", bitAt(H::SB, 0), askFor<&H::isSBInstalled, 0>},
    {"sb1_installed", bitAt(H::SB, 1), askFor<&H::isSBInstalled, 1>},
    {"sb2_installed", bitAt(H::SB, 2), askFor<&H::isSBInstalled, 2>},
    {"sb3_installed", bitAt(H::SB, 3), askFor<&H::isSBInstalled, 3>},
    {"iob0_installed", bitAt(H::IOB, 0), askFor<&H::isIOBInstalled, 0>},
    {"iob1_installed", bitAt(H::IOB, 1), askFor<&H::isIOBInstalled, 1>},
    {"pcibox0_connected", bitAt(H::PCI_BOX, 0), askFor<&H::isPCIBOXInstalled, 0>},
    {"pcibox1_connected", bitAt(H::PCI_BOX, 1), askFor<&H::isPCIBOXInstalled, 1>},
};

constexpr List NODES = {"n", P::HEADER_SIZE, 1, counted<&P::getNodeIds>};
constexpr Field PARTITION_INFO[] = {
    Field{"node_count", bytesAt(P::NODE_COUNT), count<&P::getNodeIds>}.says("n, the number of node ids"),
    Field{"node_id{}", bytesAt(0), number, asHex}.in(NODES),
};

constexpr RecordClass CLASSES[] = {
    describe<H>("HardwareInfo", {8, 8}, "which units of the cabinet are there", HARDWARE_INFO),
    describe<P>("PartitionInfo", {2, 14}, "node ids of a partition", PARTITION_INFO),
};
// clang-format on

}

constexpr RecordClasses SERIAL_CLASSES = CLASSES;

}
