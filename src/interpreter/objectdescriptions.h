// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

class QIODevice;
struct UnitFormat;

/*! The limits of one row, in the object's own raw unit; both limits themselves are in range. */
struct ObjectLimits
{
    std::optional<quint32> minimum;
    std::optional<quint32> maximum;
};

/*! What the object description table says about one object index, over all its rows. */
struct ObjectDescription
{
    QString name;                     // of the object's first row
    int subIndex = 0;                 // of the line below that row; 0 when that line names no sub-index
    QString subName;                  // of that sub-index
    const UnitFormat *unit = nullptr; // of the object's last row; null for a plain number
    QVector<ObjectLimits> limits;     // of all rows that have any, in the order of the file
};

/*! The object description table: eight fields a line, separated by semicolons.
 *
 *      index (hexadecimal); name; alternative name; unit key; minimum; maximum; unused; unused
 *
 *  A line that describes a sub-index carries it as an additional field after the index. The header line is
 *  not skipped: its first field is no number, reads as 0 and describes index 0000h, which no device has.
 */
class ObjectDescriptions
{
public:
    /*! Reads a table from a device that is open in text mode. */
    static ObjectDescriptions read(QIODevice &device);

    /*! Returns the description of an object, or null when the table has no row for it. */
    const ObjectDescription *find(quint16 index) const;

    /*! All indices that have a row, in ascending order, those that are slips included. */
    QVector<quint16> indices() const;

private:
    QHash<quint16, ObjectDescription> m_descriptions;
};

/*! Returns the table of the resource bundle, read once per process; empty when the bundle has none. */
const ObjectDescriptions &objectDescriptions();
