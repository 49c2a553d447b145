// SPDX-License-Identifier: MIT
#pragma once

#include <reader/datareader.h>

/*! Fills a reader as a run would: StoreBuilder(reader, {1, 5}).node(5).set(0x6000, 0, 1u). */
class StoreBuilder
{
public:
    /*! Lists the nodes, in this order, without values. */
    StoreBuilder(DataReader &reader, const QList<quint8> &nodeIds)
        : m_reader(reader)
    {
        // Elements without an end list a node and nothing else.
        QString text = QStringLiteral("<nodes>");
        for (const quint8 nodeId : nodeIds)
            text += QStringLiteral("<node nodeid=\"%1\">").arg(nodeId);
        m_reader.importXml(text);
    }

    /*! The node that the following values are of. */
    StoreBuilder &node(quint8 nodeId)
    {
        m_nodeId = nodeId;
        return *this;
    }

    StoreBuilder &set(quint16 index, quint8 subIndex, const QVariant &value)
    {
        m_reader.setValue(m_nodeId, index, subIndex, value);
        return *this;
    }

private:
    DataReader &m_reader;
    quint8 m_nodeId = 1;
};
