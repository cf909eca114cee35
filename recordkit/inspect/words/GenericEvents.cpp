// SPDX-License-Identifier: Apache-2.0
#include <iterator>

#include <recordkit/inspect/words/EventWords.h>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr EventWordsRow ROWS[] = {
    {0x01, 0, "Lower Non-critical - going low"},
    {0x01, 1, "Lower Non-critical - going high"},
    {0x01, 2, "Lower Critical - going low"},
    {0x01, 3, "Lower Critical - going high"},
    {0x01, 4, "Lower Non-recoverable - going low"},
    {0x01, 5, "Lower Non-recoverable - going high"},
    {0x01, 6, "Upper Non-critical - going low"},
    {0x01, 7, "Upper Non-critical - going high"},
    {0x01, 8, "Upper Critical - going low"},
    {0x01, 9, "Upper Critical - going high"},
    {0x01, 10, "Upper Non-recoverable - going low"},
    {0x01, 11, "Upper Non-recoverable - going high"},
    {0x02, 0, "Transition to Idle"},
    {0x02, 1, "Transition to Active"},
    {0x02, 2, "Transition to Busy"},
    {0x03, 0, "State Deasserted"},
    {0x03, 1, "State Asserted"},
    {0x04, 0, "Predictive Failure deasserted"},
    {0x04, 1, "Predictive Failure asserted"},
    {0x05, 0, "Limit Not Exceeded"},
    {0x05, 1, "Limit Exceeded"},
    {0x06, 0, "Performance Met"},
    {0x06, 1, "Performance Lags"},
    {0x07, 0, "Transition to OK"},
    {0x07, 1, "Transition to Non-Critical from OK"},
    {0x07, 2, "Transition to Critical from less severe"},
    {0x07, 3, "Transition to Non-recoverable from less severe"},
    {0x07, 4, "Transition to Non-Critical from more severe"},
    {0x07, 5, "Transition to Critical from Non-recoverable"},
    {0x07, 6, "Transition to Non-recoverable"},
    {0x07, 7, "Monitor"},
    {0x07, 8, "Informational"},
    {0x08, 0, "Device Removed / Device Absent"},
    {0x08, 1, "Device Inserted / Device Present"},
    {0x09, 0, "Device Disabled"},
    {0x09, 1, "Device Enabled"},
    {0x0A, 0, "Transition to Running"},
    {0x0A, 1, "Transition to In Test"},
    {0x0A, 2, "Transition to Power Off"},
    {0x0A, 3, "Transition to On Line"},
    {0x0A, 4, "Transition to Off Line"},
    {0x0A, 5, "Transition to Off Duty"},
    {0x0A, 6, "Transition to Degraded"},
    {0x0A, 7, "Transition to Power Save"},
    {0x0A, 8, "Install Error"},
    {0x0B, 0, "Fully Redundant"},
    {0x0B, 1, "Redundancy Lost"},
    {0x0B, 2, "Redundancy Degraded"},
    {0x0B, 3, "Non-redundant: Sufficient Resources from Redundant"},
    {0x0B, 4, "Non-redundant: Sufficient Resources from Insufficient Resources"},
    {0x0B, 5, "Non-redundant: Insufficient Resources"},
    {0x0B, 6, "Redundancy Degraded from Fully Redundant"},
    {0x0B, 7, "Redundancy Degraded from Non-redundant"},
    {0x0C, 0, "D0 Power State"},
    {0x0C, 1, "D1 Power State"},
    {0x0C, 2, "D2 Power State"},
    {0x0C, 3, "D3 Power State"},
};
// clang-format on
static_assert(std::size(ROWS) == 57, "the offsets of event/reading types 01h to 0Ch");

}

EventWordsTable genericEvents()
{
    return {ROWS, std::size(ROWS)};
}

}
