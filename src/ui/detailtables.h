// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class NodeStore;
class QTableWidget;

/*! Shows one node in the window's two detail tables: what is fixed, and the actual values. */
class DetailTables
{
public:
    /*! The tables have at least two columns and their headers. Everything is used, nothing owned. */
    DetailTables(const NodeStore &store, QTableWidget &parameters, QTableWidget &values)
        : m_store(store)
        , m_parameters(parameters)
        , m_values(values)
    {
    }

    /*! Replaces the contents of both tables by the rows of \a nodeId. */
    void showNode(quint8 nodeId);

private:
    const NodeStore &m_store;
    QTableWidget &m_parameters;
    QTableWidget &m_values;
};
