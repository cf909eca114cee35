// SPDX-License-Identifier: Apache-2.0
// The byte tables of the headers, compared with the field tables: offsets, widths and bits.
#include "HeaderTable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "Samples.h"
#include "support/Failures.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr int SAMPLES = 60;

const HeaderTables& headers()
{
    static const HeaderTables tables;
    return tables;
}

/// Every place that a field names.
std::vector<Place> placesOf(const DecodedField& field)
{
    std::vector<Place> places = field.also;
    if (field.place.width != 0) {
        places.push_back(field.place);
    }
    return places;
}

bool isInside(const Place& inner, const Place& outer)
{
    return inner.offset >= outer.offset && inner.end() <= outer.end() && inner.high <= outer.high &&
           inner.low >= outer.low;
}

/// Whether a place consists of complete items.
bool isMadeOfItems(const Place& place, const DocumentedImage& documented)
{
    for (unsigned int byte = place.offset; byte < place.end(); ++byte) {
        for (unsigned int bit = place.low; bit <= place.high; ++bit) {
            if (std::none_of(documented.items.begin(), documented.items.end(),
                             [&](const DocumentedImage::Item& item) {
                                 return item.place.contains(byte, bit) &&
                                        isInside(item.place, place);
                             })) {
                return false;
            }
        }
    }
    return true;
}

/// Whether a field names exactly this place.
bool isReadBy(const DecodedFields& fields, const Place& place)
{
    return std::any_of(fields.begin(), fields.end(), [&](const DecodedField& field) {
        const std::vector<Place> places = placesOf(field);
        return std::find(places.begin(), places.end(), place) != places.end();
    });
}

/// The fields of one class's images, compared with what its header says about each.
class Comparison {
public:
    void add(const DecodedFields& fields, const DocumentedImage& documented)
    {
        for (const DecodedField& field : fields) {
            for (const Place& place : placesOf(field)) {
                EXPECT_TRUE(isMadeOfItems(place, documented))
                    << field.name << " at " << place.text() << " is not in the header";
            }
        }
        std::map<std::string, std::set<bool>> ofThisImage;
        for (const DocumentedImage::Item& item : documented.items) {
            ofThisImage[item.text].insert(isReadBy(fields, item.place));
        }
        for (const auto& [text, answers] : ofThisImage) {
            EXPECT_EQ(answers.size(), 1U) << "only a part of \"" << text << "\" is a field";
            isRead[text] = isRead[text] || *answers.rbegin();
        }
        for (const auto& [meaning, widths] : documented.most) {
            limits[meaning] = widths.first;
            longest[meaning] = std::max(longest[meaning], widths.second);
        }
    }

    /// What only all images together show: some records have fields that others do not.
    void finish() const
    {
        EXPECT_FALSE(isRead.empty());
        for (const auto& [text, isSo] : isRead) {
            EXPECT_TRUE(isSo) << "the header's \"" << text << "\" is not a field";
        }
        EXPECT_EQ(longest, limits) << "the longest image has as many bytes as \"up to\" says";
    }

private:
    std::map<std::string, bool> isRead; ///< by row
    std::map<std::string, unsigned int> longest;
    std::map<std::string, unsigned int> limits;
};

/// Whether a header declares a data object that is not an interface: these have an image.
bool isDataObject(const std::filesystem::path& path)
{
    std::ifstream file(path);
    std::stringstream content;
    content << file.rdbuf();
    const std::string text = content.str();
    const std::size_t at = text.find("class RECORDKIT_API ");
    if (at == std::string::npos || text.find(" = 0;") != std::string::npos) {
        return false;
    }
    const std::string declaration = text.substr(at, text.find('{', at) - at);
    return declaration.find("public SerializableObject") != std::string::npos ||
           declaration.find("public FixedSizeSerializableObject") != std::string::npos;
}

}

TEST(HeaderTables, AgreeWithTheFieldTables)
{
    const TraceCapture trace;
    for (const RecordClass* const each : recordClasses()) {
        SCOPED_TRACE(each->name);
        ASSERT_TRUE(headers().contains(each->name));
        Comparison comparison;
        Samples samples(*each);
        for (int i = 0; i < SAMPLES; ++i) {
            const Bytes image = samples.next();
            const DecodedFields fields = decodeRecord(*each, image);
            comparison.add(fields, headers().of(each->name, fields, keptSize(*each, image)));
        }
        comparison.finish();
    }
}

TEST(HeaderTables, MentionEveryByteOfAnImage)
{
    const TraceCapture trace;
    for (const RecordClass* const each : recordClasses()) {
        SCOPED_TRACE(each->name);
        Samples samples(*each);
        for (int i = 0; i < SAMPLES; ++i) {
            const Bytes image = samples.next();
            const std::size_t size = keptSize(*each, image);
            const DocumentedImage documented =
                headers().of(each->name, decodeRecord(*each, image), size);
            EXPECT_EQ(documented.bytes.size(), size);
            EXPECT_EQ(*documented.bytes.rbegin(), size - 1);
            for (const Place& carried : documented.carried) {
                for (const DocumentedImage::Item& item : documented.items) {
                    EXPECT_TRUE(item.place.offset >= carried.end() ||
                                item.place.end() <= carried.offset)
                        << item.text;
                }
            }
        }
    }
}

TEST(HeaderTables, BelongToClassesThatAreListed)
{
    std::set<std::string> listed;
    for (const RecordClass* const each : recordClasses()) {
        EXPECT_TRUE(listed.insert(each->name).second) << each->name << " is listed twice";
    }
    listed.merge(headers().bases());
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(RECORDKIT_SOURCE "/recordkit")) {
        if (entry.path().extension() != ".h") {
            continue;
        }
        const std::string name = entry.path().stem().string();
        if (isDataObject(entry.path()) || headers().contains(name)) {
            EXPECT_TRUE(headers().contains(name)) << name << " has no byte table";
            EXPECT_EQ(listed.count(name), 1U) << name << " has no field table";
        }
    }
}
