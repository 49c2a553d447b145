// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/*! One entry to read: index and sub-index, and its CiA 301 data type code. */
struct ReadEntry
{
    quint16 index;
    quint8 subIndex;
    quint8 dataType;
};
Q_DECLARE_TYPEINFO(ReadEntry, Q_PRIMITIVE_TYPE);

/*! The parts of the read list, in reading order. */
enum class ReadGroup : quint8 {
    General, //!< identity of the device (CiA 301) and what all components have (CiA 454)
    Group2,  //!< bus controller
    Group3,  //!< battery and security
    Group4,  //!< motor control
    Group5,  //!< security in full
};

/*! Number of entries that are read of every node, over all groups. */
constexpr int readListLength = 204;

/*! The entries of one group in reading order. */
QList<ReadEntry> readListGroup(ReadGroup group);
