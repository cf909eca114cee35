// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_BOARDLOG_H
#define RECORDKIT_INSPECT_LOG_BOARDLOG_H

#include <array>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/log/LogFile.h>

namespace recordkit::inspect {

/// A slot with an event.
struct LogSlot {
    std::size_t file = 0; ///< position in the log's files
    unsigned int slot = 0;
    unsigned int logNumber = 0; ///< 0 for an event that the store does not count
    EventState state = EventState::REGULAR;
    bool isCopy = false;                  ///< another file contains the same event
    const unsigned char* image = nullptr; ///< valid as long as the log

    /// Whether a listing shows it: each event once, or exactly what the store counts.
    bool isShown(bool isStrict) const { return isStrict ? logNumber != 0 : !isCopy; }
};

/// What is wrong with a log.
struct LogProblem {
    std::string path;             ///< of the file concerned
    std::string text;             ///< what is wrong with it
    std::size_t events = 0;       ///< events that the store does not count because of it
    bool isUninitialised = false; ///< the board has no files yet: there is nothing to repair
};

/// All events of a board that its files contain, also those that the store does not reach: after a
/// gap in the chain, in damaged files, in the backup that a rotation left when it was cut off.
///
/// The files are read once. In a sound log the events are exactly those that the store counts. In
/// any other log an event that several files contain is marked as a copy in all but one of them.
class BoardLog {
public:
    /// Positions of files that are not in the chain; a rotated file is at its index.
    static constexpr std::size_t WORKING = 0;
    static constexpr std::size_t BACKUP = SELFileLayout::OLDEST_FILE + 1;

    explicit BoardLog(unsigned char sb);
    BoardLog(const BoardLog&) = delete;
    BoardLog& operator=(const BoardLog&) = delete;

    /// Oldest first: rotated files, backup, working file; in each file slot by slot. An ordinary
    /// backup only repeats the working file, and has no slots here.
    const std::vector<LogSlot>& getSlots() const { return slots; }
    const std::vector<LogProblem>& getProblems() const { return problems; }
    /// The files of readLogFiles.
    const std::vector<LogFile>& getFiles() const { return files; }

    /// Events that the store counts, and all events without copies.
    std::size_t getCounted() const { return counted; }
    std::size_t getTotal() const;
    /// Whether the board has no file at all.
    bool isUninitialised() const;

    Event decode(const LogSlot& slot) const;

private:
    void addProblem(const LogFile& file, const std::string& text);
    void addChain();
    void addBackup();
    void addWorkingFile();
    void addSlots(std::size_t number, bool isReached);
    void markCopies();

    unsigned char board;
    std::vector<LogFile> files;
    std::vector<LogSlot> slots;
    std::vector<LogProblem> problems;
    std::array<std::size_t, BACKUP + 1> problemOf = {}; ///< why the store does not count a file
    unsigned int counted = 0;
};

}

#endif
