// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class NodeStore;
class NodeView;
class QString;
class RowTable;

/*! Writes the rows of one node into two tables: what is fixed, and the actual values.
 *
 *  Every node has the rows that all components have; the class of its first virtual device (object 6000h, CiA
 *  454) adds rows of its own. An object that is not stored gives no row, and nothing is reported. The tables
 *  hold what was stored when they were filled; nothing follows later changes of the store.
 */
class NodeDetails
{
public:
    /*! Everything is used, nothing owned. */
    NodeDetails(const NodeStore &store, RowTable &parameters, RowTable &values);

    /*! The translated titles of the two tables. */
    static QString parametersTitle();
    static QString valuesTitle();

    /*! Replaces the contents of both tables by the rows of \a nodeId. */
    void showNode(quint8 nodeId);

private:
    void showDeviceDetails(const NodeView &node);
    void showControllerDetails(const NodeView &node);
    void showConverterDetails(const NodeView &node);
    void showBatteryPackDetails(const NodeView &node);
    void showMotorControlDetails(const NodeView &node);

    void showCommonParameters(const NodeView &node);
    void showCommonValues(const NodeView &node);

    const NodeStore &m_store;
    RowTable &m_parameters;
    RowTable &m_values;
};
