// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecordReader.h>

#include <iterator>

namespace recordkit::inspect {

namespace {

using Kind = MultiRecordRow::Kind;

constexpr unsigned char TYPE = 0xC0;
constexpr unsigned int MANUFACTURER = 0x00315A;
constexpr unsigned int RECORD_ID = 3;
constexpr unsigned int FORMAT = 4;

constexpr MultiRecordRow HEADER[] = {
    number("manufacturer", 0, 3),
    number("record-id", RECORD_ID),
    number("format", FORMAT),
};

constexpr MultiRecordWord SITE_TYPES[] = {
    {0, "board"},
    {1, "power entry module"},
    {2, "shelf FRU information"},
    {3, "shelf manager"},
    {4, "fan tray"},
    {5, "fan filter tray"},
    {6, "alarm"},
    {7, "AMC module"},
    {8, "PMC"},
    {9, "rear transition module"},
};
constexpr MultiRecordWord RESOURCE_TYPES[] = {
    {0, "on the carrier"},
    {1, "AMC module"},
};
constexpr MultiRecordWord CLOCK_RESOURCE_TYPES[] = {
    {0, "on the carrier"},
    {1, "AMC module"},
    {2, "backplane"},
};

constexpr MultiRecordRow amperes(const char* name, unsigned int offset, unsigned int width)
{
    return number(name, offset, width).per(10).in("A");
}

/// One GUID after another.
void readGuids(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow GUID[] = {bytesOf("", 0, 16).as(Kind::GUID)};
    const unsigned int count = reader.readCount("guid");
    reader.readList("guid", count, 16, [&] { reader.read(GUID); });
}

void readBackplaneLinks(MultiRecordReader& reader)
{
    static constexpr MultiRecordWord CHANNEL_TYPES[] = {
        {0x07, "PICMG 2.9"},
        {0x08, "single port fabric"},
        {0x09, "double port fabric"},
        {0x0A, "full channel fabric"},
        {0x0B, "base interface"},
        {0x0C, "update channel"},
        {0x0D, "shelf manager cross-connect"},
    };
    static constexpr MultiRecordRow SLOT[] = {
        number("channel-type", 0).named(CHANNEL_TYPES),
        number("address", 1),
    };
    static constexpr MultiRecordRow CHANNEL[] = {
        number("remote-slot", 0, 3).bits(7, 0),
        number("remote-channel", 0, 3).bits(12, 8),
        number("local-channel", 0, 3).bits(17, 13),
    };
    reader.readAll("slot", [&] {
        reader.read(SLOT);
        const unsigned int count = reader.readCount("channel");
        reader.readList("channel", count, 3, [&] { reader.read(CHANNEL); });
    });
}

void readAddressTable(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow SHELF[] = {
        bytesOf("shelf-address-type", 0, 1),
        bytesOf("shelf-address", 1, 20),
    };
    static constexpr MultiRecordRow ENTRY[] = {
        number("address", 0),
        number("site-number", 1),
        number("site-type", 2).named(SITE_TYPES),
    };
    reader.read(SHELF);
    const unsigned int count = reader.readCount("entry");
    reader.readList("entry", count, 3, [&] { reader.read(ENTRY); });
}

void readPowerDistribution(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow FEED[] = {
        amperes("max-external-current", 0, 2),
        amperes("max-internal-current", 2, 2).none(0xFFFF),
        number("min-voltage", 4).per(2).in("V"),
    };
    static constexpr MultiRecordRow FRU[] = {
        number("address", 0),
        number("id", 1),
    };
    const unsigned int feeds = reader.readCount("feed");
    reader.readList("feed", feeds, 6, [&] {
        reader.read(FEED);
        const unsigned int count = reader.readCount("fru");
        reader.readList("fru", count, 2, [&] { reader.read(FRU); });
    });
}

void readShelfActivation(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow SHELF[] = {number("readiness", 0).in("s")};
    static constexpr MultiRecordRow FRU[] = {
        number("address", 0),
        number("id", 1),
        number("max-power", 2, 2).in("W"),
        number("delay", 4).bits(5, 0).per(10).in("s"),
        flag("activation", 4, 6),
        flag("deactivation", 4, 7),
    };
    reader.read(SHELF);
    const unsigned int count = reader.readCount("fru");
    reader.readList("fru", count, 5, [&] { reader.read(FRU); });
}

void readShelfManagerIp(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow ADDRESS[] = {bytesOf("address", 0, 4).as(Kind::ADDRESS)};
    static constexpr MultiRecordRow NETWORK[] = {
        bytesOf("gateway", 0, 4).as(Kind::ADDRESS),
        bytesOf("mask", 4, 4).as(Kind::ADDRESS),
    };
    reader.read(ADDRESS);
    if (reader.first(FORMAT) != 0) {
        reader.read(NETWORK);
    }
}

void readBoardLinks(MultiRecordReader& reader)
{
    static constexpr MultiRecordWord INTERFACES[] = {
        {0, "base"},
        {1, "fabric"},
        {2, "update channel"},
    };
    static constexpr MultiRecordWord TYPES[] = {
        {1, "PICMG 3.0 base interface"}, {2, "PICMG 3.1 Ethernet"},    {3, "PICMG 3.2 InfiniBand"},
        {4, "PICMG 3.3 StarFabric"},     {5, "PICMG 3.4 PCI Express"},
    };
    static constexpr MultiRecordRow LINK[] = {
        number("channel", 0, 4).bits(5, 0),
        number("interface", 0, 4).bits(7, 6).named(INTERFACES),
        number("ports", 0, 4).bits(11, 8),
        number("type", 0, 4).bits(19, 12).named(TYPES),
        number("extension", 0, 4).bits(23, 20),
        number("group", 0, 4).bits(31, 24),
    };
    readGuids(reader);
    reader.readAll("link", [&] { reader.read(LINK); });
}

void readRadialIpmb(MultiRecordReader& reader)
{
    static constexpr MultiRecordWord BUSES[] = {
        {1, "IPMB-A"},
        {2, "IPMB-B"},
        {3, "IPMB-A and IPMB-B"},
    };
    static constexpr MultiRecordRow CONNECTOR[] = {
        number("connector-definer", 0, 3),
        number("connector-version", 3, 2),
    };
    static constexpr MultiRecordRow HUB[] = {
        number("address", 0),
        number("buses", 1).bits(1, 0).named(BUSES),
    };
    static constexpr MultiRecordRow LINK[] = {
        number("address", 0),
        number("entry", 1),
    };
    reader.read(CONNECTOR);
    const unsigned int hubs = reader.readCount("hub");
    reader.readList("hub", hubs, 3, [&] {
        reader.read(HUB);
        const unsigned int count = reader.readCount("link");
        reader.readList("link", count, 2, [&] { reader.read(LINK); });
    });
}

void readModuleCurrent(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow MODULE[] = {amperes("current", 0, 1)};
    reader.read(MODULE);
}

void readCarrierActivation(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow CARRIER[] = {
        amperes("max-internal-current", 0, 2),
        number("readiness", 2).in("s"),
    };
    static constexpr MultiRecordRow MODULE[] = {
        number("address", 0),
        amperes("max-current", 1, 1),
        bytesOf("reserved", 2, 1),
    };
    reader.read(CARRIER);
    const unsigned int count = reader.readCount("module");
    reader.readList("module", count, 3, [&] { reader.read(MODULE); });
}

void readCarrierLinks(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow RESOURCE[] = {
        number("id", 0).bits(3, 0),
        number("type", 0).bits(7, 7).named(RESOURCE_TYPES),
    };
    static constexpr MultiRecordRow PORT[] = {
        number("remote-id", 0, 3).bits(3, 0),
        number("remote-type", 0, 3).bits(7, 7).named(RESOURCE_TYPES),
        number("remote", 0, 3).bits(12, 8),
        number("local", 0, 3).bits(17, 13),
    };
    reader.readAll("resource", [&] {
        reader.read(RESOURCE);
        const unsigned int count = reader.readCount("port");
        reader.readList("port", count, 3, [&] { reader.read(PORT); });
    });
}

void readAmcLinks(MultiRecordReader& reader)
{
    constexpr unsigned int UNUSED_LANE = 0x1F;
    static constexpr MultiRecordWord TYPES[] = {
        {2, "AMC.1 PCI Express"},
        {3, "AMC.1 PCI Express Advanced Switching"},
        {4, "AMC.1 PCI Express Advanced Switching"},
        {5, "AMC.2 Ethernet"},
        {6, "AMC.4 Serial RapidIO"},
        {7, "AMC.3 storage"},
    };
    static constexpr MultiRecordWord MATCHES[] = {
        {0, "exact"},
        {1, "10b"},
        {2, "01b"},
    };
    static constexpr MultiRecordRow DEVICE[] = {
        number("device-id", 0).bits(3, 0),
        number("device-type", 0).bits(7, 7).named(RESOURCE_TYPES),
    };
    static constexpr MultiRecordRow CHANNEL[] = {
        number("lane0-port", 0, 3).bits(4, 0).none(UNUSED_LANE),
        number("lane1-port", 0, 3).bits(9, 5).none(UNUSED_LANE),
        number("lane2-port", 0, 3).bits(14, 10).none(UNUSED_LANE),
        number("lane3-port", 0, 3).bits(19, 15).none(UNUSED_LANE),
    };
    static constexpr MultiRecordRow LINK[] = {
        number("channel", 0, 5).bits(7, 0),
        number("lanes", 0, 5).bits(11, 8),
        number("type", 0, 5).bits(19, 12).named(TYPES),
        number("extension", 0, 5).bits(23, 20),
        number("group", 0, 5).bits(31, 24),
        number("match", 0, 5).bits(33, 32).named(MATCHES),
    };
    readGuids(reader);
    reader.read(DEVICE);
    const unsigned int channels = reader.readCount("channel");
    reader.readList("channel", channels, 3, [&] { reader.read(CHANNEL); });
    reader.readAll("link", [&] { reader.read(LINK); });
}

void readCarrier(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow CARRIER[] = {
        number("version-major", 0).bits(3, 0),
        number("version-minor", 0).bits(7, 4),
    };
    static constexpr MultiRecordRow SITE[] = {number("", 0)};
    reader.read(CARRIER);
    const unsigned int sites = reader.readCount("site");
    reader.readList("site", sites, 1, [&] { reader.read(SITE); });
}

void readFanGeography(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow FAN[] = {
        number("address", 0),
        number("id", 1),
        number("site-number", 2),
        number("site-type", 3).named(SITE_TYPES),
    };
    const unsigned int fans = reader.readCount("fan");
    reader.readList("fan", fans, 4, [&] { reader.read(FAN); });
}

void readCarrierClockLinks(MultiRecordReader& reader)
{
    static constexpr MultiRecordRow RESOURCE[] = {
        number("id", 0).bits(3, 0),
        number("type", 0).bits(7, 6).named(CLOCK_RESOURCE_TYPES),
    };
    static constexpr MultiRecordRow CHANNEL[] = {
        number("local", 0),
        number("remote", 1),
        number("remote-id", 2).bits(3, 0),
        number("remote-type", 2).bits(7, 6).named(CLOCK_RESOURCE_TYPES),
    };
    const unsigned int resources = reader.readCount("resource");
    reader.readList("resource", resources, 2, [&] {
        reader.read(RESOURCE);
        const unsigned int count = reader.readCount("channel");
        reader.readList("channel", count, 3, [&] { reader.read(CHANNEL); });
    });
}

void readClockConfiguration(MultiRecordReader& reader)
{
    static constexpr MultiRecordWord ACTIVATIONS[] = {
        {0, "by the carrier"},
        {1, "by the application"},
    };
    static constexpr MultiRecordWord FAMILIES[] = {
        {0, "unspecified"},
        {1, "SONET, SDH or PDH"},
        {2, "reserved for PCI Express"},
    };
    static constexpr MultiRecordRow DEVICE[] = {
        number("device-id", 0).bits(3, 0),
        number("device-type", 0).bits(7, 6).named(CLOCK_RESOURCE_TYPES),
    };
    static constexpr MultiRecordRow CLOCK[] = {
        number("id", 0),
        number("activation", 1).bits(0, 0).named(ACTIVATIONS),
        number("indirect-count", 2),
        number("direct-count", 3),
    };
    static constexpr MultiRecordRow INDIRECT[] = {
        flag("source", 0, 0),
        flag("pll", 0, 1),
        number("depends-on", 1),
    };
    static constexpr MultiRecordRow DIRECT[] = {
        flag("source", 0, 0),
        flag("pll", 0, 1),
        number("family", 1).named(FAMILIES),
        number("accuracy", 2),
        number("frequency", 3, 4).in("Hz"),
        number("min-frequency", 7, 4).in("Hz"),
        number("max-frequency", 11, 4).in("Hz"),
    };
    reader.read(DEVICE);
    const unsigned int clocks = reader.readCount("clock");
    reader.readList("clock", clocks, 4, [&] {
        const unsigned int indirect = reader.peek(2);
        const unsigned int direct = reader.peek(3);
        reader.read(CLOCK);
        reader.readList("indirect", indirect, 2, [&] { reader.read(INDIRECT); });
        reader.readList("direct", direct, 15, [&] { reader.read(DIRECT); });
    });
}

struct PicmgRecord {
    unsigned char id;
    unsigned char lastFormat; ///< that is known
    const char* name;
    void (*read)(MultiRecordReader& reader);
};

constexpr PicmgRecord RECORDS[] = {
    {0x04, 0, "backplane-links", readBackplaneLinks},
    {0x10, 0, "address-table", readAddressTable},
    {0x11, 0, "power-distribution", readPowerDistribution},
    {0x12, 0, "shelf-activation", readShelfActivation},
    {0x13, 1, "shelf-manager-ip", readShelfManagerIp},
    {0x14, 0, "board-links", readBoardLinks},
    {0x15, 0, "radial-ipmb", readRadialIpmb},
    {0x16, 0, "module-current", readModuleCurrent},
    {0x17, 0, "carrier-activation", readCarrierActivation},
    {0x18, 0, "carrier-links", readCarrierLinks},
    {0x19, 0, "amc-links", readAmcLinks},
    {0x1A, 0, "carrier", readCarrier},
    {0x1B, 0, "fan-geography", readFanGeography},
    {0x2C, 0, "carrier-clock-links", readCarrierClockLinks},
    {0x2D, 0, "clock-configuration", readClockConfiguration},
};
static_assert(std::size(RECORDS) == 15);

}

bool readPicmgRecord(MultiRecordReader& reader)
{
    if (reader.type() != TYPE || !reader.has(FORMAT) || reader.peek(0, 3) != MANUFACTURER) {
        return false;
    }
    reader.read(HEADER);
    for (const PicmgRecord& record : RECORDS) {
        if (record.id == reader.first(RECORD_ID) && reader.first(FORMAT) <= record.lastFormat) {
            reader.call(record.name);
            record.read(reader);
            return true;
        }
    }
    reader.call("picmg");
    reader.readBytes("data");
    return true;
}

std::optional<MultiRecordStart> picmgRecordStart(const std::string& kind)
{
    for (const PicmgRecord& record : RECORDS) {
        if (record.name == kind) {
            return startOf(TYPE, MANUFACTURER, {record.id, record.lastFormat});
        }
    }
    return std::nullopt;
}

std::vector<std::string> picmgRecordKinds()
{
    std::vector<std::string> kinds;
    for (const PicmgRecord& record : RECORDS) {
        kinds.emplace_back(record.name);
    }
    return kinds;
}

}
