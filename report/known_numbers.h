// The numbers by which the plug-in knows actions and buttons of the host, for the report to look
// up. tests/host/assumptions.txt says where each is used.
#pragma once

#include "host/host.h"
#include "host/toolbar_controls.h"
#include "resources/command_ids.h"

namespace report {

inline constexpr unsigned long kTables[] = {host::kMainTable, host::kTrackViewTable,
                                            host::kSnapsTable, host::kUnwrapTable, kKarvelTableId};

struct KnownAction {
    unsigned long table;
    int action;
};
inline constexpr KnownAction kActions[] = {
    {host::kMainTable, 40072},     {host::kMainTable, 40074},     {host::kMainTable, 40105},
    {host::kMainTable, 50020},     {host::kMainTable, 50022},     {host::kMainTable, 59231},
    {host::kTrackViewTable, 230},  {host::kTrackViewTable, 380},  {host::kTrackViewTable, 480},
    {host::kTrackViewTable, 1040}, {host::kTrackViewTable, 2020}, {host::kTrackViewTable, 2030},
    {host::kTrackViewTable, 2040}, {host::kTrackViewTable, 2180}, {host::kTrackViewTable, 40328},
    {host::kSnapsTable, 50067},    {host::kSnapsTable, 50069},    {host::kSnapsTable, 50073},
    {host::kSnapsTable, 50075},    {host::kSnapsTable, 80000},    {host::kSnapsTable, 80001},
    {host::kSnapsTable, 80002},    {host::kSnapsTable, 80005},    {host::kUnwrapTable, 40007},
    {host::kUnwrapTable, 40008},   {host::kUnwrapTable, 40009},   {host::kUnwrapTable, 40020},
    {host::kUnwrapTable, 40033},   {host::kUnwrapTable, 40034},   {host::kUnwrapTable, 40087},
};

inline constexpr int kButtons[] = {kLockButtonId,
                                   kAngleSnapButtonId,
                                   50021,
                                   kZoomExtentsButtonId,
                                   host::kSelectButton,
                                   4184,
                                   4185,
                                   4186,
                                   1007,
                                   1008,
                                   1009,
                                   1077};

}  // namespace report
