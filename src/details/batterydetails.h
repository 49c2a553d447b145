// SPDX-License-Identifier: MIT
#pragma once

class NodeView;
class RowTable;

/*! Writes what only battery packs (CiA 454) have below the rows that all components have.
 *
 *  The live values go to one table, the fixed data to the other. Nothing is kept and nothing fails: an object
 *  that is not stored gives no row. Two objects open the way for the others: without the device status 6002h
 *  no live value is shown, and without the type of battery 6100h no fixed data.
 */
class BatteryDetails
{
public:
    BatteryDetails(RowTable &parameters, RowTable &values)
        : m_parameters(parameters)
        , m_values(values)
    {
    }

    /*! Appends the rows of the battery on \a node. */
    void show(const NodeView &node);

private:
    void showStatus(const NodeView &node);
    void showTemperatures(const NodeView &node);
    void showEnergyValues(const NodeView &node);
    void showChemistry(const NodeView &node);
    void showRatings(const NodeView &node);

    RowTable &m_parameters;
    RowTable &m_values;
    int m_position = 0; // of the row written last, first in the values, then in the parameters
};
