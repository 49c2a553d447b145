// SPDX-License-Identifier: MIT
#pragma once

#include "tablewriter.h"

class DataReader;
class NodeView;

/*! Shows one node in the two detail tables: what is fixed, and the actual values.
 *
 *  Every node has the rows that all components have; the class of its first virtual device (object 6000h, CiA
 * 454) adds rows of its own. An object that is not stored gives no row, and nothing is reported. The tables
 * hold what was stored when they were filled; nothing follows later changes of the store.
 */
class DetailTables
{
public:
    /*! The tables have at least two columns and their headers. Everything is used, nothing owned. */
    DetailTables(const DataReader &dataReader, QTableWidget &parameters, QTableWidget &values);

    /*! Replaces the contents of both tables by the rows of \a nodeId. */
    void showNode(quint8 nodeId);

private:
    void showDeviceDetails(quint8 nodeId);
    void showControllerDetails(quint8 nodeId);
    void showConverterDetails(quint8 nodeId);
    void showBatteryPackDetails(quint8 nodeId);
    void showMotorControlDetails(quint8 nodeId);

    void showCommonParameters(const NodeView &node);
    void showCommonValues(const NodeView &node);

    const DataReader &m_dataReader;
    QTableWidget &m_parametersTable;
    QTableWidget &m_valuesTable;
    TableWriter m_parameters;
    TableWriter m_values;
};
