// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_BMCSELDATAFILE_H
#define RECORDKIT_SELFILE_BMCSELDATAFILE_H

#include <string>
#include <vector>

#include <recordkit/sel/BMCSELEntryMessage.h>

/// The event logs of the system boards, kept in files of 800 slots (see SELFileLayout.h).
///
/// | index  | kind | path below the system root               | role                           |
/// |--------|------|------------------------------------------|--------------------------------|
/// | 0      | 0    | /tmp/sb\<N\>_bmc_sel0                    | working file, takes new events |
/// | 0      | 1    | /var/tav/fmem/ipmi/sb\<N\>_bmc_sel0      | backup of the working file     |
/// | 1 to 7 | any  | /var/tav/fmem/ipmi/sb\<N\>_bmc_sel1 to 7 | rotated files, 7 the oldest    |
///
/// The class keeps no state between calls: each call opens the files it needs and closes them.
/// Folders are never created. Failures are traced (module 83, location 0x1000, level 0) and
/// reported by a code; no PException leaves the class.
///
/// Writing takes the lock of LockedFile, so that several processes may append to one board. Readers
/// take no lock and may see a record that is being written. A shift, backup or restore must not run
/// concurrently with writes to the same board.
///
/// Three rules are by design. A link in place of the working file or of the shift request file is
/// not followed for writing, because any user may leave one in /tmp and /var/tmp. A write of fewer
/// bytes than requested counts as failed. A search reads 100 slots at a time, because one slot at a
/// time costs seventy times as much.
class RECORDKIT_API BMCSELDataFile {
public:
    using BMCSELEntryMessage = TAVLib::RecordKit::BMCSELEntryMessage;

    enum Code : unsigned int {
        SUCCESS = 0,
        NO_RECORD = 1,       ///< the file is empty
        FILE_FULL = 2,       ///< no empty slot in 800
        DAMAGED_TAIL = 3,    ///< the first slot with record id FFFFh is not all 0xFF
        OPEN_FAILED = 4,     ///< the file could not be opened
        REWRITE_FAILED = 6,  ///< truncation, rewrite or removal failed
        MOVE_FAILED = 7,     ///< copy or rename failed
        POSITION_FAILED = 8, ///< positioning failed, or no such board to copy
        READ_FAILED = 10,    ///< reading failed, or a PException was caught during a scan
        STAT_FAILED = 14,    ///< stat failed for a reason other than a missing file
        NOT_FOUND = 15,      ///< no such record
    };

    /// The result of shiftSelFile when no shift was requested.
    static constexpr int NOT_REQUESTED = -1;

    // Files, and the system calls with a trace line (message 20011) on failure. Their results
    // are those of the C library.

    /// Path of a file: any fileNo but 0 names a rotated one, whatever `kind` says.
    std::string getFileName(unsigned char sb, int fileNo, int kind);
    /// Path of the file by which a shift is requested and answered.
    static std::string getShiftRequestFile();
    /// Opens for reading; negative on failure.
    int openFile(std::string name);
    long lseek(int fd, long offset, int whence);
    long read(int fd, void* buf, unsigned int len);
    int closeFile(int fd);
    /// Traces a text of at most 255 characters. The message's other parameters are 0 or an empty
    /// text.
    void writeTrace(unsigned char level, int msgNo, const char* format, ...)
        __attribute__((format(printf, 4, 5)));

    // Scans.

    /// Finds the first slot with a record id: SUCCESS loads `out`. `addr` is the offset of the
    /// slot, or where the search ended. Otherwise OPEN_FAILED, POSITION_FAILED, READ_FAILED, or
    /// NOT_FOUND, also if the rest of the file cannot be read.
    unsigned int searchRecord(std::string name, unsigned short recordId, BMCSELEntryMessage& out,
                              unsigned long& addr);
    /// Offset of the first empty slot of the working file: SUCCESS, FILE_FULL, DAMAGED_TAIL or
    /// the code of the search.
    unsigned int getTailAddr(unsigned char sb, unsigned long& addr);
    /// The same for any file, tracing every other code of the search.
    unsigned int getTailAddrEx(unsigned char sb, int fileNo, unsigned long& addr, int kind);
    /// Offset of the newest record of the working file: SUCCESS, NO_RECORD or the code of
    /// getTailAddr. A full file returns FILE_FULL instead: callers tell a full file by this code.
    unsigned int getLastRecAddr(unsigned char sb, unsigned long& addr);
    /// Counts the records of the working file and of the rotated files up to the first that is
    /// missing or has another size; `lastFileNo` is the highest index counted, `counts` is indexed
    /// by file. A file whose tail is not found counts 0. SUCCESS or STAT_FAILED.
    unsigned int getEntryNumEx(unsigned char sb, unsigned short& total, unsigned short& lastFileNo,
                               std::vector<unsigned short>& counts);
    unsigned int getEntryNum(unsigned char sb, unsigned short& total, unsigned short& lastFileNo);
    /// State of the working file: SUCCESS (room left), FILE_FULL, DAMAGED_TAIL or a code of the
    /// search. A missing file, or one of another size, is rewritten as empty.
    unsigned int fullEntryCheck(unsigned char sb);

    // Records. `out` is loaded only when an operation succeeds.

    /// Appends a complete record (138 bytes) to the working file: 1 written, 0 not. Never rotates
    /// the file: call fullEntryCheck, then shiftSelFile. A missing file is not created. **A record
    /// with id FFFFh is written like any other, and ends the file: it marks an empty slot, so the
    /// tail counts as damaged (DAMAGED_TAIL) and nothing is stored after it.** Refuse such a
    /// record; `sel check --recover` repairs the log.
    int writeRecord(unsigned char sb, BMCSELEntryMessage& rec);
    /// Reads by record id, checking the first and last id of each file, starting with the working
    /// file. NO_RECORD when the working file is empty, OPEN_FAILED when the search reaches a
    /// missing file, NOT_FOUND also whenever the working file is full. Id FFFFh is searched like
    /// any other: in a rotated file that was cleared it is found in slot 0.
    unsigned int readRecord(unsigned char sb, unsigned short recordId, BMCSELEntryMessage& out);
    /// Reads the oldest record: the first of the highest file, 0 when that is empty. 1 with
    /// `out` untouched when a file that may be read cannot be opened.
    int readFirstRecord(unsigned char sb, BMCSELEntryMessage& out);
    /// Reads the newest record of one file: 1 or 0.
    int readLastRecordEx(unsigned char sb, int fileNo, BMCSELEntryMessage& out, int kind);
    /// Reads the newest record of the working file, or else of the newest rotated file: 1 or 0.
    int readLastRecord(unsigned char sb, BMCSELEntryMessage& out);
    /// Reads by log number, from 1 for the oldest record counted by getEntryNumEx.
    unsigned int readStoredRecord(unsigned char sb, unsigned short logNum, BMCSELEntryMessage& out);

    // Maintenance. BMCMessageFile is kept in step.

    /// Rewrites one file as 800 empty slots, creating it: SUCCESS or REWRITE_FAILED.
    unsigned int truncate(unsigned char sb, int fileNo, int kind);
    /// Empties the working file, its backup and all seven rotated files, which exist and are
    /// full-sized afterwards: SUCCESS or REWRITE_FAILED.
    unsigned int clearAllRecord(unsigned char sb);
    /// Copies the working file to its backup, then empties it: SUCCESS, REWRITE_FAILED,
    /// MOVE_FAILED, POSITION_FAILED (no such board) or STAT_FAILED.
    unsigned int makeCopySELFile(unsigned char sb);
    /// Moves the working file into the chain; the oldest of seven rotated files is dropped.
    ///
    /// Unless `noSync`, a shift is requested by the file /var/tmp/shift_sel_sync, which is removed
    /// first and written last with the result: 16 bytes, decimal text and zero bytes. SUCCESS,
    /// REWRITE_FAILED, MOVE_FAILED, POSITION_FAILED, STAT_FAILED or NOT_REQUESTED. The first
    /// failure stops the shift; files already moved stay where they are.
    ///
    /// **The answer is written also if nobody asked (NOT_REQUESTED), and the next call takes it for
    /// a request.** Who makes the request waits for the answer and removes it; do not call this
    /// with `noSync` false by a timer, or full and empty files are rotated away; a timer does as
    /// examples/rotate_on_request.cpp. Whoever may write to the folder can make a request.
    int shiftSelFile(unsigned char sb, bool noSync);
    // Copies are made by /bin/cp through /bin/sh; while they run, an ignored SIGCHLD has its
    // default. In a folder that others may write to, both ends must be files that the library would
    // open.

    /// Copies the working file to its backup: 1 or 0.
    int backupTmpSel(unsigned char sb);
    /// Copies the backup back to the working file: 1 or 0.
    int restoreTmpSel(unsigned char sb);
    /// Restores the working file of every board, or creates an empty one where there is none.
    /// Returns the number of boards, not a status. **A backup replaces also a working file with
    /// newer events**: call this only after a start that emptied the folder of working files. For a
    /// daemon that starts again, examples/start_board.cpp shows the order.
    int initialTruncate();
};

#endif
