// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_INSPECT_FIELDS_HEADERTABLE_H
#define RECORDKIT_TESTS_INSPECT_FIELDS_HEADERTABLE_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include <recordkit/inspect/fields/RecordClass.h>

namespace testing_support {

/// What a class's header says about an image, in the notation that CONTRIBUTING.md describes.
struct DocumentedImage {
    struct Item {
        recordkit::inspect::Place place;
        std::string text; ///< the row, to recognise it in another image
    };
    std::vector<Item> items;                        ///< what has a meaning
    std::vector<recordkit::inspect::Place> carried; ///< what has none
    std::set<unsigned int> bytes;                   ///< all that a row mentions
    /// What "up to" says, and the bytes that the row has in this image, by the row's meaning.
    std::map<std::string, std::pair<unsigned int, unsigned int>> most;
};

/// The byte tables of the headers below some folders.
class HeaderTables {
public:
    HeaderTables();

    /// Whether there is a table for a class.
    bool contains(const std::string& name) const { return tables.count(name) != 0; }
    std::set<std::string> names() const;
    /// Classes whose table another class's table continues.
    std::set<std::string> bases() const;
    /// The rows of a class, for an image of that size with these fields: where a row defines a
    /// letter, the field at its place has the value.
    DocumentedImage of(const std::string& name, const recordkit::inspect::DecodedFields& fields,
                       std::size_t size) const;

private:
    struct Row {
        std::string byte;
        std::string width;
        std::string meaning;
    };
    struct Table {
        std::vector<Row> rows;
        std::vector<Row> block; ///< of the blocks that the rows mention
    };

    /// An image while its rows are added.
    struct Image {
        const recordkit::inspect::DecodedFields& fields;
        unsigned int size;
        DocumentedImage documented;
    };

    void read(const std::string& path);
    unsigned int add(const Table& table, const std::vector<Row>& rows, unsigned int start,
                     Image& image) const;
    static void addRow(const Row& row, const recordkit::inspect::Place& place, Image& image);
    static void addRest(Image& image);

    std::map<std::string, Table> tables;
};

}

#endif
