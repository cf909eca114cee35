// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/ImageKind.h>

#include <algorithm>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/report/EventSigns.h>
#include <recordkit/inspect/report/ImageSigns.h>
#include <recordkit/platform/PException.h>

namespace recordkit::inspect {

namespace {

struct KindName {
    ImageKind kind;
    const char* name;
};

// clang-format off
constexpr KindName NAMES[] = {
    {ImageKind::EVENT_LOG, "event log"},
    {ImageKind::EVENT_RECORDS, "event records"},
    {ImageKind::FRU, "FRU image"},
    {ImageKind::SPD, "SPD image"},
    {ImageKind::SDR, "sensor repository"},
    {ImageKind::CPU_ROM, "processor ROM"},
    {ImageKind::SETTING_INDEX, "setting index"},
    {ImageKind::EFI_INDEX, "EFI backup index"},
    {ImageKind::RECORD, "record"},
    {ImageKind::TEXT, "text"},
    {ImageKind::ERASED, "erased"},
    {ImageKind::EMPTY, "empty file"},
    {ImageKind::UNKNOWN, "not recognised"},
};
// clang-format on

struct Sign {
    ImageKind kind;
    bool (*isTrue)(ByteView content);
};

/// In the order of the header's table.
constexpr Sign CERTAIN[] = {
    {ImageKind::FRU, isFruImage},       {ImageKind::CPU_ROM, isProcessorRom},
    {ImageKind::SPD, isSpdData},        {ImageKind::SETTING_INDEX, isSettingIndex},
    {ImageKind::EFI_INDEX, isEfiIndex}, {ImageKind::EVENT_LOG, isEventLog},
    {ImageKind::SDR, isRepository},     {ImageKind::EVENT_RECORDS, areEventRecords},
};
constexpr Sign DAMAGED[] = {
    {ImageKind::FRU, isDamagedFruImage},
    {ImageKind::EFI_INDEX, isDamagedEfiIndex},
    {ImageKind::SPD, isDamagedSpdData},
    {ImageKind::SDR, isDamagedRepository},
    {ImageKind::EVENT_RECORDS, areDamagedEventRecords},
    {ImageKind::FRU, hasFruHeader},
};

template <std::size_t Count> ImageKind firstOf(const Sign (&signs)[Count], ByteView content)
{
    for (const Sign& sign : signs) {
        if (sign.isTrue(content)) {
            return sign.kind;
        }
    }
    return ImageKind::UNKNOWN;
}

bool isPlainText(ByteView content)
{
    return std::all_of(content.begin(), content.end(),
                       [](unsigned char byte) {
                           const bool isBlank = byte >= '\t' && byte <= '\r';
                           return (byte >= 0x20 || isBlank) && byte != 0x7F;
                       }) &&
           isUtf8(content);
}

bool isSpdDump(const std::string& text)
{
    constexpr std::size_t MOST_DUMP = 65536;
    if (text.size() > MOST_DUMP) {
        return false;
    }
    try {
        const Bytes bytes = parseImage("", text);
        return isSpdData(bytes) || isDamagedSpdData(bytes);
    } catch (const DataError&) {
        return false;
    }
}

ImageKind kindOfText(const std::string& text)
{
    if (isEventText(text)) {
        return ImageKind::EVENT_RECORDS;
    }
    return isSpdDump(text) ? ImageKind::SPD : ImageKind::TEXT;
}

bool takesAll(const RecordClass& recordClass, ByteView content)
{
    const ImageSizes& sizes = recordClass.sizes;
    if (content.size() < sizes.least || content.size() > sizes.most) {
        return false;
    }
    try {
        return takenSize(recordClass, content) == content.size();
    } catch (const DataError&) {
        return false;
    } catch (const TAVLib::PException&) {
        return false;
    }
}

/// The class that a file's name begins with, if the content can be an image of it.
const RecordClass* classByName(const std::string& path, ByteView content)
{
    const std::string name = path.substr(path.find_last_of('/') + 1);
    const std::string first = name.substr(0, name.find('.'));
    if (first.size() == name.size()) {
        return nullptr;
    }
    for (const RecordClass* const each : recordClasses()) {
        if (first == each->name) {
            return takesAll(*each, content) ? each : nullptr;
        }
    }
    return nullptr;
}

bool isErased(ByteView content)
{
    return (content[0] == 0x00 || content[0] == 0xFF) &&
           std::all_of(content.begin(), content.end(),
                       [&content](unsigned char byte) { return byte == content[0]; });
}

}

const char* imageKindName(ImageKind kind)
{
    const auto found = std::find_if(std::begin(NAMES), std::end(NAMES),
                                    [kind](const KindName& each) { return each.kind == kind; });
    return found->name;
}

Recognised recognise(const std::string& name, ByteView content)
{
    if (content.empty()) {
        return {ImageKind::EMPTY};
    }
    const bool isText = isPlainText(content);
    const ImageKind certain = isText ? ImageKind::UNKNOWN : firstOf(CERTAIN, content);
    if (certain != ImageKind::UNKNOWN) {
        return {certain};
    }
    if (const RecordClass* const recordClass = classByName(name, content)) {
        return {ImageKind::RECORD, recordClass};
    }
    if (isText) {
        return {kindOfText(content.text())};
    }
    if (isErased(content)) {
        return {ImageKind::ERASED};
    }
    return {firstOf(DAMAGED, content)};
}

}
