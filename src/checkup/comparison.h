// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QString>
#include <QVector>

#include <optional>

/*! What has changed between two snapshots of a vehicle. */
struct Change
{
    enum class Kind : quint8 {
        Added,     //!< a device that was not there
        Removed,   //!< one that is there no more
        Replaced,  //!< the same kind of device on the node, with another serial number
        Moved,     //!< the same device on another node
        Firmware,  //!< revision or software version
        Parameter, //!< what a device has fixed
        Counter,   //!< what only rises
        Value,     //!< what is measured, beyond its noise
        Finding,   //!< found now and not before, or the other way round
        Gap        //!< read once and not the other time
    };

    Kind kind = Kind::Value;
    quint8 nodeId = 0;                     //!< in the later snapshot; of Removed in the earlier one
    std::optional<CanOpen::ObjectKey> key; //!< empty when it is about the whole device
    QString before;                        //!< as people read it, with units; empty when there was none
    QString after;
    QString text;             //!< a sentence, in the language asked for
    QString device;           //!< "Battery Pack (node 2)"; empty when it is about the vehicle
    QString reason;           //!< of Gap: why it was not read, a sentence
    bool isUnreadNow = false; //!< of Gap: not read this time; otherwise it was not read the time before
    int count = 1;            //!< how many values this stands for, see ChangeSummary
};

struct Comparison
{
    QVector<Change> changes; //!< by kind as listed, then by node and key

    bool isSame() const { return changes.isEmpty(); }
};
