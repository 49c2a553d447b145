// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>
#include <canopen/objectdictionary.h>
#include <canopen/objectkey.h>
#include <snapshot/snapshot.h>

#include <QHash>
#include <QString>
#include <QVector>

/*! What is known of the objects of the devices in a trace beside it: their types and names. */
class ObjectBook
{
public:
    /*! What the EDS or DCF of a node says counts more than a snapshot. */
    void tell(quint8 nodeId, const CanOpen::ObjectDictionary &sheet);
    void tell(const SnapshotNode &node);

    /*! The types that an object may have, the likeliest first; empty when none is known. */
    QVector<CanOpen::DataType> types(quint8 nodeId, CanOpen::ObjectKey object) const;

    /*! "Relative battery Wh capacity"; of an object that has no name in the object table the name in its data sheet. Empty
     *  when it has none there either.
     */
    QString name(quint8 nodeId, CanOpen::ObjectKey object) const;

    /*! Raised when something else may be known. */
    int revision() const { return m_revision; }

private:
    QHash<quint8, CanOpen::ObjectDictionary> m_sheets;
    QHash<quint8, SnapshotNode> m_nodes;
    int m_revision = 0;
};
