// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELSTORECHECK_H
#define RECORDKIT_SELFILE_SELSTORECHECK_H

#include <string>
#include <vector>

#include <recordkit/platform/Export.h>
#include <recordkit/selfile/SELStoreLock.h>

namespace TAVLib::RecordKit {

/// What an administrator must know about one board's event log after a power cut, and the repair of
/// an interrupted rotation.
///
/// Only std::bad_alloc is thrown; failures are reported as text.
class RECORDKIT_API SELStoreCheck {
public:
    /// One file of the set.
    struct File {
        int index; ///< 0 to 7
        int kind;  ///< for index 0: 0 the working file, 1 its backup
        std::string path;
        bool isMissing;
        long size;              ///< bytes; -1 when missing or unreadable
        unsigned int count;     ///< records up to the tail or to the damage
        std::string damage;     ///< as text; empty for a sound or a missing file
        unsigned short firstId; ///< this and the next are meaningful if count is not 0
        unsigned short lastId;
        bool hasTimes;          ///< whether a record has a timestamp: some OEM records have none
        unsigned int firstTime; ///< IPMI timestamps of the first and the last record with one
        unsigned int lastTime;
    };

    enum FindingKind {
        WORKING_FILE_MISSING,
        FILE_DAMAGED,       ///< wrong size, damaged tail, records after the tail, unreadable
        CHAIN_GAP,          ///< files after a missing one cannot be reached
        ROTATION_CUT_OFF,   ///< the backup contains events that the working file does not
        SHIFT_REQUEST_LEFT, ///< the shift request file exists
    };

    struct Finding {
        FindingKind kind;
        bool isDamage; ///< false: worth knowing, nothing is wrong
        std::string text;
    };

    /// Examines every file of the board once.
    explicit SELStoreCheck(unsigned char sb);

    /// Working file, backup, then the rotated files 1 to 7.
    const std::vector<File>& getFiles() const { return files; }
    const File& workingFile() const;
    const File& backup() const;
    /// One of the rotated files, 1 to 7; throws std::out_of_range for any other index.
    const File& rotated(int index) const;
    const std::vector<Finding>& getFindings() const { return findings; }

    /// Whether nothing is wrong.
    bool isSound() const;

    /// Finishes an interrupted rotation and closes gaps in the chain, using only renames.
    ///
    /// A backup with events that the working file does not contain moves into the chain: the files
    /// up to the first gap move up by one. The oldest file is dropped only if there is no gap, as
    /// the rotation would have done. Any other gap is closed by moving the older files down.
    /// If there is anything to do, it takes the board's lock, without waiting, and examines the
    /// files again: a rotation may have gone on since the object was constructed.
    ///
    /// `actions` gets a line for each action that was done or was not possible; returns false when
    /// a rename failed or another process holds the lock.
    ///
    /// The object describes the files as they were before; construct a new one to examine the
    /// result.
    bool recover(std::vector<std::string>& actions) const;
    /// The same for a caller that holds the board's lock.
    bool recover(const SELStoreLock& lock, std::vector<std::string>& actions) const;

private:
    bool hasNothingToRecover() const;
    bool moveFiles(std::vector<std::string>& actions) const;
    void addFile(int index, int kind);
    void findMissingWorkingFile();
    void findDamage();
    void findCutOffRotation();
    void findGap();
    void findShiftRequest();
    bool isBackupPartOfWorkingFile() const;
    std::vector<int> presentIndexes() const;

    unsigned char board;
    bool isCutOff = false;
    std::vector<File> files;
    std::vector<Finding> findings;
};

}

#endif
