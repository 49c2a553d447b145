// SPDX-License-Identifier: MIT
#include "readlist.h"

#include <cstddef>

namespace {

enum DataType : quint8 {
    Integer16 = 3,
    Integer32 = 4,
    Unsigned8 = 5,
    Unsigned16 = 6,
    Unsigned32 = 7,
};

/*! Neighbouring sub-indices of one object that have the same data type. */
struct ReadRange
{
    ReadGroup group;
    quint16 index;
    quint8 firstSubIndex;
    quint8 lastSubIndex;
    DataType dataType;
};

using Group = ReadGroup;

constexpr ReadRange readRanges[] = {
    // group       index   sub-indices  type
    {Group::General, 0x1000, 0, 0, Unsigned32}, // device type
    {Group::General, 0x1001, 0, 0, Unsigned8},  // error register
    {Group::General, 0x1018, 0, 0, Unsigned8},  // identity
    {Group::General, 0x1018, 1, 4, Unsigned32},
    {Group::General, 0x6000, 0, 0, Unsigned8}, // virtual devices
    {Group::General, 0x6000, 1, 5, Unsigned32},
    {Group::General, 0x6001, 0, 0, Unsigned8}, // control commands
    {Group::General, 0x6001, 1, 5, Unsigned16},
    {Group::General, 0x6002, 0, 0, Unsigned8}, // device status
    {Group::General, 0x6002, 1, 5, Unsigned16},
    {Group::General, 0x6003, 0, 0, Unsigned8}, // device capability
    {Group::General, 0x6003, 1, 5, Unsigned16},
    {Group::General, 0x6005, 0, 0, Unsigned32},
    {Group::General, 0x6008, 0, 0, Unsigned8},
    {Group::General, 0x6008, 1, 4, Integer32},
    {Group::General, 0x600D, 0, 0, Unsigned8},
    {Group::General, 0x600E, 0, 0, Unsigned8}, // implemented profile versions
    {Group::General, 0x600E, 1, 14, Unsigned32},
    {Group::General, 0x6020, 0, 0, Unsigned8},
    {Group::General, 0x6020, 1, 5, Unsigned16},
    {Group::General, 0x6022, 0, 0, Unsigned8},
    {Group::General, 0x6022, 1, 5, Unsigned16},
    {Group::General, 0x6023, 0, 0, Unsigned8},
    {Group::General, 0x6023, 1, 5, Unsigned16},
    {Group::General, 0x6024, 0, 0, Unsigned8},
    {Group::General, 0x6024, 1, 5, Integer32},
    {Group::General, 0x6025, 0, 0, Unsigned8},
    {Group::General, 0x6025, 1, 5, Integer32},
    {Group::General, 0x6026, 0, 0, Unsigned8},
    {Group::General, 0x6026, 1, 5, Integer32},
    {Group::General, 0x6027, 0, 0, Unsigned8},
    {Group::General, 0x6027, 1, 5, Integer32},
    {Group::General, 0x603E, 0, 0, Unsigned8},
    {Group::General, 0x603E, 1, 5, Integer32},
    {Group::General, 0x6040, 0, 0, Unsigned8},
    {Group::General, 0x6040, 1, 5, Integer32},
    {Group::General, 0x6042, 0, 0, Unsigned8},
    {Group::General, 0x6042, 1, 5, Integer16},
    {Group::General, 0x6046, 0, 0, Unsigned8},
    {Group::General, 0x6046, 1, 2, Integer32},
    {Group::General, 0x6047, 0, 0, Unsigned8},
    {Group::General, 0x6047, 1, 2, Integer32},
    {Group::General, 0x6048, 0, 0, Unsigned8},
    {Group::General, 0x6048, 1, 2, Integer32},
    {Group::General, 0x6049, 0, 0, Unsigned8},
    {Group::General, 0x6049, 1, 2, Integer32},
    {Group::General, 0x604A, 0, 0, Unsigned8},
    {Group::General, 0x604A, 1, 2, Integer32},
    {Group::General, 0x604B, 0, 0, Unsigned8},
    {Group::General, 0x604B, 1, 2, Integer32},
    {Group::General, 0x604C, 0, 0, Unsigned8},
    {Group::General, 0x604C, 1, 2, Integer32},
    {Group::General, 0x604D, 0, 0, Unsigned8},
    {Group::General, 0x604D, 1, 2, Integer32},
    {Group::General, 0x604E, 0, 0, Unsigned8},
    {Group::General, 0x604E, 1, 2, Integer32},
    {Group::General, 0x604F, 0, 0, Unsigned8},
    {Group::General, 0x604F, 1, 2, Integer32},

    {Group::Group2, 0x6080, 0, 0, Unsigned16}, // status of the energy management system
    {Group::Group2, 0x6081, 0, 0, Unsigned8},  // type of vehicle

    {Group::Group3, 0x6100, 0, 0, Unsigned8}, // type of battery
    {Group::Group3, 0x6100, 1, 2, Unsigned16},
    {Group::Group3, 0x6102, 0, 0, Unsigned8},
    {Group::Group3, 0x6102, 1, 2, Unsigned32},
    {Group::Group3, 0x6105, 0, 0, Unsigned8}, // temperatures
    {Group::Group3, 0x6105, 1, 2, Unsigned16},
    {Group::Group3, 0x6120, 0, 0, Unsigned8},
    {Group::Group3, 0x6120, 1, 1, Unsigned16},
    {Group::Group3, 0x6121, 0, 0, Unsigned8},
    {Group::Group3, 0x6121, 1, 1, Unsigned16},
    {Group::Group3, 0x6126, 0, 0, Unsigned8},
    {Group::Group3, 0x6126, 1, 2, Integer32},
    {Group::Group3, 0x6127, 0, 0, Unsigned8},
    {Group::Group3, 0x6127, 1, 2, Integer32},
    {Group::Group3, 0x6160, 0, 0, Unsigned8},
    {Group::Group3, 0x6160, 1, 2, Unsigned32},
    {Group::Group3, 0x6162, 0, 0, Unsigned8},
    {Group::Group3, 0x6162, 1, 2, Unsigned32},
    {Group::Group3, 0x6164, 0, 0, Unsigned8},
    {Group::Group3, 0x6164, 1, 1, Unsigned8},
    {Group::Group3, 0x6164, 2, 2, Unsigned16},
    {Group::Group3, 0x6176, 0, 0, Unsigned8},
    {Group::Group3, 0x6176, 1, 2, Unsigned16},
    // Deliberate: 6310h and 6311h are read here and again in full in group 5, with another type for 6311h;
    // the later answer stays in the store.
    {Group::Group3, 0x6310, 0, 0, Unsigned8}, // security capability
    {Group::Group3, 0x6310, 1, 1, Unsigned32},
    {Group::Group3, 0x6311, 0, 0, Unsigned8}, // security status
    {Group::Group3, 0x6311, 1, 1, Unsigned32},
    {Group::Group3, 0x6312, 0, 0, Unsigned8},
    {Group::Group3, 0x6312, 1, 1, Unsigned8},

    {Group::Group4, 0x62E8, 0, 0, Unsigned8},
    {Group::Group4, 0x62E8, 1, 5, Integer16},

    {Group::Group5, 0x6310, 0, 0, Unsigned8},
    {Group::Group5, 0x6310, 1, 7, Unsigned32},
    {Group::Group5, 0x6311, 0, 0, Unsigned8},
    {Group::Group5, 0x6311, 1, 7, Unsigned16},
};

template<std::size_t count>
constexpr int entryCount(const ReadRange (&ranges)[count])
{
    int entries = 0;
    for (const ReadRange &range : ranges)
        entries += range.lastSubIndex - range.firstSubIndex + 1;
    return entries;
}

template<std::size_t count>
constexpr bool isInGroupOrder(const ReadRange (&ranges)[count])
{
    for (std::size_t i = 1; i < count; ++i) {
        if (ranges[i].group < ranges[i - 1].group)
            return false;
    }
    return true;
}

static_assert(entryCount(readRanges) == readListLength);
static_assert(readListLength < 256, "positions in the list are 8-bit numbers");
static_assert(isInGroupOrder(readRanges));

} // namespace

QList<ReadEntry> readListGroup(ReadGroup group)
{
    QList<ReadEntry> entries;
    for (const ReadRange &range : readRanges) {
        if (range.group != group)
            continue;
        for (int s = range.firstSubIndex; s <= range.lastSubIndex; ++s)
            entries.append(ReadEntry{range.index, static_cast<quint8>(s), range.dataType});
    }
    return entries;
}
