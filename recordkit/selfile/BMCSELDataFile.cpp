// SPDX-License-Identifier: Apache-2.0
// The names of the store's files, and the system calls with a trace line. What the store does with
// them has a file for each of scans, records and rotation.
#include <recordkit/selfile/BMCSELDataFile.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include <recordkit/platform/BoardFiles.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/posix/File.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/Failure.h>

using TAVLib::BMC_SEL_DATA_FILE_LOCATION;
namespace BoardFiles = TAVLib::BoardFiles;
using namespace TAVLib::RecordKit::SELFileLayout;

namespace {

constexpr const char* SHIFT_REQUEST_FILE = "/var/tmp/shift_sel_sync";

}

std::string BMCSELDataFile::getFileName(unsigned char sb, int fileNo, int kind)
{
    const bool isPersistent = fileNo != 0 || kind != TEMPORARY;
    return TAVLib::systemRoot() +
           (isPersistent ? BoardFiles::PERSISTENT_FOLDER : BoardFiles::WORKING_FOLDER) + "sb" +
           std::to_string(sb) + "_bmc_sel" + std::to_string(fileNo);
}

std::string BMCSELDataFile::getShiftRequestFile()
{
    return TAVLib::systemRoot() + SHIFT_REQUEST_FILE;
}

int BMCSELDataFile::openFile(std::string name)
{
    const int fd = TAVLib::posix::openFile(name, O_RDONLY);
    if (fd < 0) {
        const int error = errno;
        const std::string text = "open filename:[" + name.substr(0, 255) + "]";
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, text.c_str(), error);
    }
    return fd;
}

long BMCSELDataFile::lseek(int fd, long offset, int whence)
{
    const long at = ::lseek(fd, offset, whence);
    if (at < 0) {
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, "lseek", errno);
    }
    return at;
}

long BMCSELDataFile::read(int fd, void* buf, unsigned int len)
{
    const long count = TEMP_FAILURE_RETRY(::read(fd, buf, len));
    if (count < 0) {
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, "read", errno);
    }
    return count;
}

int BMCSELDataFile::closeFile(int fd)
{
    const int result = ::close(fd);
    if (result < 0) {
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, "close", errno);
    }
    return result;
}

void BMCSELDataFile::writeTrace(unsigned char level, int msgNo, const char* format, ...)
{
    char text[256] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    TAVLib::traceText(BMC_SEL_DATA_FILE_LOCATION, level, msgNo, text);
}
