// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_REPORT_REPORTSOURCE_H
#define RECORDKIT_TOOL_REPORT_REPORTSOURCE_H

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <recordkit/inspect/report/ImageKind.h>
#include <recordkit/inspect/report/Report.h>

#include "../cli/Arguments.h"
#include "../print/Problems.h"
#include "../sel/EventFilter.h"
#include "../sel/LogProblems.h"
#include "../sel/SavedEvents.h"

namespace recordkit::tool {

/// Options: the roots, folders and files of a report, and which events it shows.
std::vector<Option> reportSourceOptions();

/// Reads what a report is about: without a path, the logs and the configuration of the system root;
/// folders with every file in them, and roots among them with the logs of all their boards; and
/// files of any kind, which their content tells.
class ReportSource {
public:
    explicit ReportSource(const Arguments& arguments);
    ReportSource(const ReportSource&) = delete;
    ReportSource& operator=(const ReportSource&) = delete;

    /// The report; valid as long as the object. Throws CommandError if nothing could be read.
    const Report& getReport() const { return report; }
    /// Which events were chosen, as the options say it; empty for all.
    std::string chosen() const;

    /// Says what is wrong with the events' choice; throws Reported if an input is damaged, or was
    /// left out.
    void finish();

private:
    struct File {
        std::string path;
        std::string root;
        bool isNamed; ///< by the user, not only found in a folder
    };
    struct SavedLog {
        std::string root;
        std::vector<Event> events;
    };

    void add(const std::string& path);
    void addRoot(const std::string& path);
    void addBoard(unsigned char board, const std::string& root);
    void addFolder(const std::string& folder, const std::string& outerRoot);
    void read(const File& file);
    std::vector<std::string> readAs(const Recognised& recognised, const File& file,
                                    const std::string& content, ReportInput& input);
    void addRepository(const std::string& path, const std::string& root);
    const SensorNames* namesFrom(const std::vector<std::string>& paths);
    void nameBoards(const std::string& root);
    void addSaved();
    void nameSaved(std::vector<Event>& events, const std::string& root);
    void explainImages();
    void applyRules(const std::vector<std::string>& paths, std::vector<Event>& events);
    void takeEvents();

    const Arguments& arguments;
    Report report;
    std::vector<Event> allEvents; ///< also those that a filter left out, if there is one
    std::vector<std::vector<Event>> logs;
    std::vector<File> files;
    std::vector<SavedFile> saved;                   ///< with events
    std::map<std::string, std::string> rootOfSaved; ///< by the name of the file
    std::set<std::string> known;                    ///< paths that need not be read again
    std::deque<SensorNames> allNames;
    std::map<std::string, const SensorNames*> namesOfRoot;
    Problems problems;
    LogProblems logProblems;
    std::optional<EventFilter> filter;
};

}

#endif
