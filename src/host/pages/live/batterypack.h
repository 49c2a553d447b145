// SPDX-License-Identifier: MIT
#pragma once

#include <live/values/livevalues.h>

#include <QVector>

#include <optional>

/*! What is heard of the cells of one battery pack. */
struct BatteryPack
{
    struct Cell
    {
        int number = 0; //!< from 1
        double value = 0;
        bool isLate = false;
    };

    quint8 nodeId = 0;
    quint16 object = 0; //!< 6165h to 6174h
    QString unit;
    double divisor = 1;  //!< of the values, for their decimals
    QVector<Cell> cells; //!< in the order of their numbers; those that were heard

    /*! All packs of which cells were heard, by node and object; \a now in us. */
    static QVector<BatteryPack> of(const LiveValues &values, qint64 now);

    /*! Positions in cells; -1 without any. */
    int lowest() const;
    int highest() const;
    double spread() const;

    /*! The other values of its node that tell of a battery, as far as they were heard. */
    static QVector<LiveValue> others(const LiveValues &values, quint8 nodeId);
};
