// SPDX-License-Identifier: MIT
#pragma once

#include <store/nodestore.h>

/*! One node in a store. What is derived from it, \a Shown, shows the node; set() and setEntries() can be chained. */
template<typename Shown>
class NodeValues
{
public:
    static constexpr quint8 nodeId = 5;

    Shown &set(quint16 index, quint8 subIndex, const QVariant &value)
    {
        store.setValue(nodeId, index, subIndex, value);
        return static_cast<Shown &>(*this);
    }

    /*! Stores the count and the entries of an object. */
    Shown &setEntries(quint16 index, const QVector<qint64> &entries)
    {
        set(index, 0, entries.size());
        for (int i = 0; i < entries.size(); ++i)
            set(index, static_cast<quint8>(i + 1), entries.at(i));
        return static_cast<Shown &>(*this);
    }

    NodeStore store;
};
