// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <optional>

struct SnapshotNode;

/*! The cells of one battery pack (objects 6165h to 6174h, limits 6126h and 6127h of CiA 454), in mV. */
struct CellVoltages
{
    struct Cell
    {
        int number = 0;                   //!< from 1 on
        std::optional<double> millivolts; //!< empty when it could not be read
    };

    int pack = 1; //!< from 1 on
    QVector<Cell> cells;
    std::optional<double> lowestAllowed;
    std::optional<double> highestAllowed;

    /*! Positions in cells; -1 when none was read. */
    int lowest() const;
    int highest() const;
    bool isOutside(const Cell &cell) const;

    /*! The packs of a node whose cells it has. */
    static QVector<CellVoltages> of(const SnapshotNode &node);

    /*! Whether an object holds cell voltages or their limits. */
    static bool isCellObject(quint16 index);
};
