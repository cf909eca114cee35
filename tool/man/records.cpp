// SPDX-License-Identifier: Apache-2.0
// Writes what the field tables say:
//
//   recordkit-records page FILE             docs/records.md
//   recordkit-records man TEMPLATE FILE     a manual page; its line .\" FIELDS becomes the fields
#include <cstdio>
#include <exception>

#include <fmt/format.h>

#include <recordkit/inspect/event/EventFields.h>
#include <recordkit/inspect/fields/RecordClass.h>

#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "Roff.h"

namespace {

using namespace recordkit::tool;

/// Whether the elements of a list have several fields, so that each is a block.
bool isInBlock(const Field& field)
{
    const List* const list = field.list;
    return list != nullptr && (list->last != nullptr || field.place.width != list->size);
}

/// "3 x " or "n x " for the fields of a list.
std::string countText(const Field& field, const RecordClass& recordClass)
{
    if (field.list == nullptr || isInBlock(field)) {
        return "";
    }
    if (field.list->letter != nullptr) {
        return fmt::format("{} x ", field.list->letter);
    }
    const auto object = recordClass.create();
    return fmt::format("{} x ", field.list->count({*object, {}}, 0));
}

/// " + 2g" for each list that moves an offset.
std::string termsText(const List* list)
{
    return list == nullptr
               ? ""
               : termsText(list->after) +
                     (list->size == 1 ? " + " : fmt::format(" + {}", list->size)) + list->letter;
}

std::string offsetText(const Field& field)
{
    if (field.place.width == 0) {
        return "-";
    }
    const bool isMoved = field.list != nullptr && !isInBlock(field);
    const unsigned int start = field.place.offset + (isMoved ? field.list->start : 0);
    const List* const before = isMoved ? field.list->after : field.after;
    const bool isOfBlock =
        isInBlock(field) || (field.list != nullptr && field.list->within != nullptr);
    return (isOfBlock ? "block " : "") + std::to_string(start) + termsText(before);
}

std::string widthText(const Field& field, const RecordClass& recordClass)
{
    return (field.isCut ? "up to " : countText(field, recordClass)) +
           std::to_string(field.place.width);
}

/// The name of a field, with N and M for its numbers.
std::string nameText(const Field& field)
{
    return fmt::format(fmt::runtime(field.name), "N", "M");
}

/// What a field is, unless its name says it; what else decides its value; which records contain it.
std::string meaningText(const Field& field)
{
    std::vector<std::string> parts;
    if (field.text != nullptr) {
        parts.push_back(field.text);
    }
    if (field.list != nullptr && field.list->firstNumber != 0) {
        parts.push_back(fmt::format("N from {}", field.list->firstNumber));
    }
    std::vector<std::string> places;
    for (unsigned int i = 0; i < field.alsoCount; ++i) {
        places.push_back(field.also[i].text());
    }
    if (!places.empty()) {
        parts.push_back(fmt::format("also depends on {}byte {}", isInBlock(field) ? "block " : "",
                                    fmt::join(places, ", ")));
    }
    if (field.condition != nullptr) {
        parts.push_back(std::string("only ") + field.condition->text);
    }
    return fmt::format("{}", fmt::join(parts, "; "));
}

/// Where the blocks of a class are, if it has any.
std::string blockText(const RecordClass& recordClass)
{
    for (const FieldTable& table : recordClass.tables) {
        for (const Field& field : table) {
            if (isInBlock(field)) {
                const List& list = *field.list;
                const List* const last = list.last;
                const std::string rest =
                    last == nullptr ? "" : fmt::format(" + {}{}", last->size, last->letter);
                return fmt::format("\nFrom byte {}{} on there are {} blocks of {}{} bytes.\n",
                                   list.start, termsText(list.after), list.letter, list.size, rest);
            }
        }
    }
    return "";
}

std::string classText(const RecordClass& recordClass)
{
    std::string text =
        fmt::format("\n## {}\n\nContents: {}. Size in bytes: {}.\n\n"
                    "| field | byte | width | bits | meaning |\n|---|---|---|---|---|\n",
                    recordClass.name, recordClass.description, recordClass.sizes.text());
    for (const FieldTable& table : recordClass.tables) {
        for (const Field& field : table) {
            text += fmt::format("| `{}` | {} | {} | {} | {} |\n", nameText(field),
                                offsetText(field), widthText(field, recordClass),
                                field.place.bitsText(), meaningText(field));
        }
    }
    return text + blockText(recordClass);
}

std::string page()
{
    std::string text = R"(<!-- SPDX-License-Identifier: Apache-2.0 -->
# Records

Every field of every class of records, as `recordkit decode CLASS FILE` shows it. This page is made from
the field tables in `recordkit/inspect/fields/`; `recordkit-records page FILE` of a build writes it.

Bytes count from 0. A width of 3 x 2 stands for a list of three elements of two bytes, with N from 0 in
their names; letters are numbers that the image contains. Bytes that no row names are carried
unchanged.
)";
    for (const RecordClass* const each : recordClasses()) {
        text += classText(*each);
    }
    return text;
}

std::string manualFields(const RecordClass& recordClass)
{
    std::string text;
    for (const FieldTable& table : recordClass.tables) {
        for (const Field& field : table) {
            const std::string extent = field.place.isBits() ? " bit " + field.place.bitsText()
                                                            : ", " + widthText(field, recordClass);
            text += fmt::format("{}{} ({}{})", text.empty() ? "" : ", ", nameText(field),
                                offsetText(field), extent);
        }
    }
    return fmt::format(".TP\n.BR {} \" (size {})\"\n{}.\n", roff(recordClass.name),
                       roff(recordClass.sizes.text()), roff(text));
}

const char* conditionOf(FilledBy filledBy)
{
    switch (filledBy) {
    case FilledBy::REPOSITORY:
        return "; only with sensor data records (\\-\\-sdr)";
    case FilledBy::COMPARISON:
        return "; only of\n.B sel diff";
    case FilledBy::EVERY_EVENT:
        break;
    }
    return "";
}

/// The fields in a manual page: of events, and of the classes of records.
std::string manualSection()
{
    std::string text = ".SS Events\nIn JSON and CSV; null (JSON) or empty (CSV) where the record "
                       "type has no such field.\n";
    for (const EventField& field : EventFields()) {
        text += fmt::format(".TP\n.B {}\n{}{}.\n", roff(field.name), roff(field.text),
                            conditionOf(field.filledBy));
    }
    text += ".SS Records\nOf an image that\n.B decode\nshows: each field with its first byte, and "
            "its bits or its width. Widths such as n x 2 are lists, N and M their numbers.\n";
    for (const RecordClass* const each : recordClasses()) {
        text += manualFields(*each);
    }
    return text;
}

void write(const std::vector<std::string>& words)
{
    const std::string placeholder = ".\\\" FIELDS\n";
    if (words.size() == 2 && words[0] == "page") {
        writeOutput(words[1], page());
        return;
    }
    if (words.size() != 3 || words[0] != "man") {
        throw usageError("usage: recordkit-records page FILE | man TEMPLATE FILE");
    }
    const std::string manual = readInput(words[1], LARGE_LIMIT);
    if (manual.find(placeholder) == std::string::npos) {
        throw dataError(words[1] + ": there is no line for the fields");
    }
    writeOutput(words[2], replaceAll(manual, placeholder, manualSection()));
}

}

int main(int argc, char** argv)
{
    try {
        write({argv + 1, argv + argc});
    } catch (const Error& e) {
        std::fprintf(stderr, "recordkit-records: %s\n", e.what());
        return statusOf(e);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "recordkit-records: %s\n", e.what());
        return EXIT_FILE;
    }
    return EXIT_DONE;
}
