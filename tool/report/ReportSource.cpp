// SPDX-License-Identifier: Apache-2.0
#include "ReportSource.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include <recordkit/host/HostRoot.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/event/AssertedEvents.h>
#include <recordkit/inspect/event/EventRules.h>
#include <recordkit/inspect/log/NewEvents.h>
#include <recordkit/inspect/log/Timeline.h>
#include <recordkit/platform/SystemRoot.h>

#include "../Errors.h"
#include "../Files.h"
#include "../Zone.h"
#include "../cli/Globals.h"
#include "../eeprom/SettingStore.h"
#include "../print/Output.h"
#include "../print/Progress.h"
#include "../sel/EventNames.h"
#include "../sel/Store.h"

namespace recordkit::tool {

namespace fs = std::filesystem;
using TAVLib::RecordKit::EFIBackupEEPROMIndex;
using TAVLib::RecordKit::SELStoreCheck;

namespace {

constexpr const char* PATHS = "PATH";
constexpr const char* EEPROM_KIND = "EEPROM";
constexpr const char* UNREADABLE_KIND = "not readable";
constexpr const char* ROOT_KIND = "root";

/// How many boards a root can have: a board's number is one byte.
constexpr int MOST_BOARDS = 256;

/// A path in the form in which the same file always has the same one.
std::string normal(const std::string& path)
{
    std::string text = fs::path(path).lexically_normal();
    if (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    return text;
}

/// A path or text that the library made, with the root as the user wrote it.
std::string givenPath(const std::string& text, const std::string& root)
{
    return withReplaced(text, TAVLib::systemRoot(), root);
}

/// Whether a folder has what replaces the system's root: folders for logs, or the configuration.
bool isRoot(const std::string& folder)
{
    for (const char* const part : {"/var/tav", "/etc/tav", "/etc/default/config"}) {
        if (fs::is_directory(folder + part)) {
            return true;
        }
    }
    return false;
}

/// "eeprom11.bin", as folders of images have them.
bool isEepromName(const std::string& path)
{
    const std::string name = fs::path(path).filename();
    const std::string begin = "eeprom";
    const std::string end = ".bin";
    return name.size() > begin.size() + end.size() && name.compare(0, begin.size(), begin) == 0 &&
           name.compare(name.size() - end.size(), end.size(), end) == 0;
}

/// What a folder contains, sorted; what is found before an error.
std::vector<fs::directory_entry> entriesOf(const std::string& folder, std::error_code& error)
{
    std::vector<fs::directory_entry> entries;
    const fs::directory_iterator end;
    do {
        entries.clear();
        error.clear();
        for (auto each = fs::directory_iterator(folder, error); !error && each != end;
             each.increment(error)) {
            entries.push_back(*each);
        }
    } while (error == std::errc::interrupted);
    std::sort(entries.begin(), entries.end());
    return entries;
}

/// The boards of the system root that have any event file, whatever boards the machine has.
std::vector<unsigned char> boardsWithFiles()
{
    std::set<std::string> names;
    for (const std::string& file : {workingFile(0), backupFile(0)}) {
        std::error_code none; // who looks through the folder says what cannot be read
        for (const fs::directory_entry& entry : entriesOf(fs::path(file).parent_path(), none)) {
            names.insert(entry.path().filename());
        }
    }
    std::vector<unsigned char> boards;
    for (int each = 0; each < MOST_BOARDS; ++each) {
        const auto board = static_cast<unsigned char>(each);
        std::string stem = fs::path(workingFile(board)).filename();
        stem.pop_back(); // the index
        const auto first = names.lower_bound(stem);
        if (first != names.end() && first->compare(0, stem.size(), stem) == 0) {
            boards.push_back(board);
        }
    }
    return boards;
}

EFIBackupEEPROMIndex efiIndex(ByteView content)
{
    EFIBackupEEPROMIndex index;
    const ByteView bytes = content.part(0, EFIBackupEEPROMIndex::INDEX_SIZE);
    std::copy(bytes.begin(), bytes.end(), index.getIndexData());
    index.expandClrFlags();
    return index;
}

}

std::vector<Option> reportSourceOptions()
{
    std::vector<Option> all = {
        argument(PATHS, "Roots, folders and files of any kind that recordkit reads (default: the "
                        "logs and the sensors of the system root)")
            .optional()
            .many()};
    for (const std::vector<Option>& more : {eventNameOptions(), eventFilterOptions()}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

ReportSource::ReportSource(const Arguments& given) : arguments(given)
{
    const std::vector<std::string>& paths = arguments.texts(PATHS);
    const std::string usualRoot = TAVLib::host::givenSystemRoot();
    if (paths.empty()) {
        requireLogs();
        if (usualRoot.empty()) {
            addRoot(usualRoot);
        } else {
            add(usualRoot);
        }
    }
    for (const std::string& path : paths) {
        add(normal(path));
    }
    Progress progress(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        progress.show(i);
        // Processors are named by tables of their root.
        chooseRoot(files[i].root.empty() ? usualRoot : files[i].root);
        read(files[i]);
    }
    chooseRoot(usualRoot);
    addSaved();
    explainImages();
    for (ReportInput& input : report.inputs) {
        input.problems = problems.of(inputName(input.place.path));
    }
    takeEvents();
}

void ReportSource::add(const std::string& path)
{
    std::error_code error;
    if (!fs::is_directory(path, error)) {
        files.push_back({path, "", true});
    } else {
        addFolder(path, "");
    }
}

void ReportSource::addRoot(const std::string& path)
{
    chooseRoot(path);
    const std::string name = path.empty() ? "/" : path;
    report.inputs.push_back({{name, path}, ROOT_KIND, false, {}});
    nameBoards(path);
    const std::size_t others = report.logs.size();
    for (const unsigned char board : boardsWithFiles()) {
        addBoard(board, path);
    }
    if (report.logs.size() == others) {
        problems.add(inputName(name), "no board has an event log");
    }
    known.insert(givenPath(settingIndexFile(), path));
    known.insert(path + SeverityMap::MODE_FILE); // has its part in severities
}

void ReportSource::nameBoards(const std::string& root)
{
    std::vector<std::string> paths;
    for (const std::string& path : EventNames::repositories(arguments, EventNames::BOARDS)) {
        const bool isOfRoot = !arguments.has("--sdr");
        paths.push_back(isOfRoot ? givenPath(path, root) : path);
        addRepository(paths.back(), isOfRoot ? root : "");
    }
    namesOfRoot[root] = namesFrom(paths);
}

void ReportSource::addBoard(unsigned char board, const std::string& root)
{
    const SELStoreCheck check(board);
    ReportLog log;
    log.name = "board " + std::to_string(board);
    log.root = root;
    log.board = board;
    log.status = readLogStatus(board);
    log.files = check.getFiles();
    log.findings = check.getFindings();
    log.names = namesOfRoot[root];
    for (SELStoreCheck::File& file : log.files) {
        file.path = givenPath(file.path, root);
        known.insert(file.path);
    }
    for (SELStoreCheck::Finding& finding : log.findings) {
        finding.text = givenPath(finding.text, root);
    }
    std::vector<LogProblem> found;
    std::vector<Event>& events = logs.emplace_back(NewEvents(board).take(found));
    for (Event& event : events) {
        event.log = static_cast<unsigned int>(report.logs.size());
    }
    if (log.names != nullptr) {
        nameSensors(events, *log.names);
    }
    applyRules(EventNames::ruleFiles(arguments, EventNames::BOARDS), events);
    for (LogProblem& problem : found) {
        problem.path = givenPath(problem.path, root);
        problem.text = givenPath(problem.text, root);
    }
    logProblems.add(board, found);
    logProblems.report(LogProblems::SHOWN);
    report.logs.push_back(std::move(log));
}

void ReportSource::addFolder(const std::string& folder, const std::string& outerRoot)
{
    if (isRoot(folder)) {
        addRoot(folder);
    }
    const std::string root = isRoot(folder) ? folder : outerRoot;
    std::error_code error;
    for (const fs::directory_entry& entry : entriesOf(folder, error)) {
        std::error_code none;
        if (entry.is_directory(none) && !entry.is_symlink(none)) {
            addFolder(entry.path(), root);
        } else {
            files.push_back({entry.path(), root, false});
        }
    }
    if (error) {
        problems.add(inputName(folder), "cannot be read: " + error.message(), EXIT_FILE);
        report.inputs.push_back({{folder, root}, UNREADABLE_KIND, true, {}});
    }
}

void ReportSource::read(const File& file)
{
    if (!known.insert(file.path).second) {
        return;
    }
    const std::string name = inputName(file.path);
    ReportInput input = {{file.path, file.root}, UNREADABLE_KIND, true, {}};
    problems.run(name, [&] {
        if (!file.isNamed && !fs::is_regular_file(file.path)) {
            throw fileError(name + ": not a regular file");
        }
        const std::string content = readInput(file.path, LARGE_LIMIT);
        const Recognised recognised = recognise(file.path, ByteView(content));
        input.kind = imageKindName(recognised.kind);
        return readAs(recognised, file, content, input);
    });
    report.inputs.push_back(std::move(input));
}

std::vector<std::string> ReportSource::readAs(const Recognised& recognised, const File& file,
                                              const std::string& content, ReportInput& input)
{
    const ReportPlace place = {file.path, file.root};
    std::vector<std::string> found;
    switch (recognised.kind) {
    case ImageKind::EVENT_LOG:
    case ImageKind::EVENT_RECORDS:
        saved.push_back({file.path, content});
        rootOfSaved[inputName(file.path)] = file.root;
        break;
    case ImageKind::FRU:
        report.fru.push_back({place, content, parseFruImage(content)});
        found = report.fru.back().image.allProblems();
        break;
    case ImageKind::SPD:
        report.memory.push_back({place, parseSpd(parseImage(inputName(file.path), content))});
        found = spdProblems(report.memory.back().spd);
        break;
    case ImageKind::SDR:
        report.repositories.push_back({place, parseSdrFile(ByteView(content)), {}});
        report.repositories.back().sensors = readSensors(report.repositories.back().file, found);
        break;
    case ImageKind::CPU_ROM:
        report.processors.push_back({place, readCpuRom(content, 0), content.size()});
        found = report.processors.back().rom.problems;
        break;
    case ImageKind::SETTING_INDEX:
        report.settings.push_back(
            {place, parseSettingIndex(*settingIndexIn(content)), readSettingIndexFile()});
        found = indexProblems(report.settings.back().entries);
        break;
    case ImageKind::EFI_INDEX:
        report.efi.push_back({place, efiIndex(ByteView(content))});
        if (!report.efi.back().index.isChecksum()) {
            found.emplace_back("the checksum of the index record is wrong");
        }
        break;
    case ImageKind::RECORD:
        report.records.push_back({place, recognised.recordClass,
                                  decodeRecord(*recognised.recordClass, ByteView(content))});
        break;
    case ImageKind::ERASED:
        break;
    case ImageKind::TEXT:
    case ImageKind::EMPTY:
        if (file.isNamed) {
            return {std::string(imageKindName(recognised.kind)) + ", expected an image; left out"};
        }
        break; // beside the images of a folder there are lists and notes
    case ImageKind::UNKNOWN:
        return {}; // until the other files are known
    }
    input.isLeftOut = false;
    return found;
}

void ReportSource::addRepository(const std::string& path, const std::string& root)
{
    if (known.insert(path).second) {
        ReportInput input = {{path, root}, imageKindName(ImageKind::SDR), true, {}};
        problems.run(inputName(path), [&] {
            std::vector<std::string> found;
            report.repositories.push_back(
                {{path, root}, parseSdrFile(ByteView(readInput(path, LARGE_LIMIT))), {}});
            ReportRepository& repository = report.repositories.back();
            repository.sensors = readSensors(repository.file, found);
            input.isLeftOut = false;
            return found;
        });
        report.inputs.push_back(std::move(input));
    }
}

const SensorNames* ReportSource::namesFrom(const std::vector<std::string>& paths)
{
    SensorNames& names = allNames.emplace_back();
    for (const ReportRepository& repository : report.repositories) {
        if (std::find(paths.begin(), paths.end(), repository.place.path) != paths.end()) {
            addNames(repository.sensors, names);
        }
    }
    return paths.empty() ? nullptr : &names;
}

void ReportSource::applyRules(const std::vector<std::string>& paths, std::vector<Event>& events)
{
    for (const std::string& path : paths) {
        std::vector<std::string> wrong;
        const EventRules rules(readInput(path, RULES_LIMIT), wrong);
        rules.apply(events);
        for (const std::string& problem : wrong) {
            problems.add(inputName(path), problem);
        }
    }
}

void ReportSource::addSaved()
{
    for (const std::string& path : EventNames::repositories(arguments, EventNames::SAVED_FILES)) {
        addRepository(path, "");
    }
    std::vector<std::string> repositories =
        EventNames::repositories(arguments, EventNames::SAVED_FILES);
    for (const ReportRepository& each : report.repositories) {
        if (each.place.root.empty() && !arguments.has("--sdr")) {
            repositories.push_back(each.place.path);
        }
    }
    std::map<unsigned int, SavedLog> byLog;
    for (Event& event : readSavedEvents(saved, problems)) {
        SavedLog& log = byLog[event.log];
        log.root = rootOfSaved[event.source];
        log.events.push_back(std::move(event));
    }
    const SensorNames* const outside = namesFrom(repositories);
    for (auto& each : byLog) {
        SavedLog& found = each.second;
        ReportLog log;
        log.name = found.events.back().source;
        log.root = found.root;
        log.names = found.root.empty() ? outside : namesOfRoot[found.root];
        for (Event& event : found.events) {
            event.log = static_cast<unsigned int>(report.logs.size());
        }
        if (log.names != nullptr) {
            nameSensors(found.events, *log.names);
        }
        applyRules(EventNames::ruleFiles(arguments, EventNames::SAVED_FILES), found.events);
        logs.push_back(std::move(found.events));
        report.logs.push_back(std::move(log));
    }
    for (ReportInput& input : report.inputs) {
        const std::string name = inputName(input.place.path);
        const bool isSaved = rootOfSaved.count(name) != 0;
        const bool hasEvents = std::any_of(logs.begin(), logs.end(), [&name](const auto& events) {
            return std::any_of(events.begin(), events.end(),
                               [&name](const Event& event) { return event.source == name; });
        });
        input.isLeftOut = input.isLeftOut || (isSaved && !hasEvents);
    }
}

/// EEPROMs whose index is beside them have no mark of their own.
void ReportSource::explainImages()
{
    std::set<std::string> folders;
    const auto addFolderOf = [&folders](const auto& items) {
        for (const auto& each : items) {
            folders.insert(fs::path(each.place.path).parent_path());
        }
    };
    addFolderOf(report.settings);
    addFolderOf(report.efi);
    for (ReportInput& input : report.inputs) {
        if (input.kind != imageKindName(ImageKind::UNKNOWN)) {
            continue;
        }
        if (isEepromName(input.place.path) &&
            folders.count(fs::path(input.place.path).parent_path()) != 0) {
            input.kind = EEPROM_KIND;
            input.isLeftOut = false;
        } else {
            problems.add(inputName(input.place.path), "not recognised; left out");
        }
    }
}

void ReportSource::takeEvents()
{
    if (report.logs.empty() && report.inputs.empty()) {
        throw dataError("nothing to report");
    }
    report.events = mergeByTime(std::move(logs));
    markAsserted(report.events);
    const bool hasNames = std::any_of(report.logs.begin(), report.logs.end(),
                                      [](const ReportLog& log) { return log.names != nullptr; });
    filter.emplace(arguments, hasNames);
    if (!chosen().empty()) {
        std::vector<Event> kept = filter->choose(report.events);
        report.leftOut = report.events.size() - kept.size();
        allEvents = std::exchange(report.events, std::move(kept));
    }
    // A choice of events does not hide what is still asserted.
    report.summary = summarise(report.events, chosen().empty() ? report.events : allEvents);
    countLogs(report);
}

std::string ReportSource::chosen() const
{
    std::string text;
    for (const Option& option : eventFilterOptions()) {
        if (arguments.has(option.name)) {
            text += (text.empty() ? "" : ", ") + option.name.substr(2);
            text += option.takesValue() ? " " + arguments.text(option.name) : "";
        }
    }
    return text;
}

void ReportSource::finish()
{
    filter->report();
    problems.finish();
    logProblems.finish(LogProblems::SHOWN);
}

}
