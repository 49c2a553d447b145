// SPDX-License-Identifier: MIT
#include "batterydetails.h"

#include "objecttooltip.h"
#include "overviewtr.h"
#include "rowtable.h"

#include <interpreter/batterytexts.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objects.h>
#include <store/nodeview.h>

namespace {

constexpr quint16 energyObjects[] = {
    0x6160,                   // actual capacity in Wh
    0x6162,                   // full output capacity in Wh
    Object::relativeCapacity, // state of charge
    0x6176,                   // state of health
};

/*! An object of the fixed data, and the object that the tooltips of its rows name. */
struct Rating
{
    quint16 index;
    quint16 toolTipIndex;
};

// Deliberate: the tooltips of the limits name 6102h.
constexpr Rating ratings[] = {
    {0x6102, 0x6102},                   // rated capacity in Wh
    {0x6120, 0x6102},                   // temperatures: charging may begin up to and from
    {0x6121, 0x6102}, {0x6122, 0x6102}, // temperatures: discharging up to and from
    {0x6123, 0x6102}, {0x6124, 0x6102}, // temperatures: storage up to and from
    {0x6125, 0x6102}, {0x6126, 0x6102}, // cell voltage: highest and lowest
    {0x6127, 0x6102},
};

bool isReservedState(quint8 state)
{
    return state == 4 || state == 5 || state >= 7;
}

/*! The colour of a state of charge in hundredths of a percent, after a row of colour \a previous. */
Qt::GlobalColor chargeColor(quint32 charge, Qt::GlobalColor previous)
{
    constexpr quint32 low = 1000;
    constexpr quint32 sufficient = 2500;
    if (charge < low)
        return Qt::red;
    if (charge < sufficient)
        return Qt::darkYellow;
    // Deliberate: a good state of charge keeps the colour of the row above.
    return previous;
}

DetailRow entryRow(quint16 index, quint8 subIndex, const QVariant &value)
{
    return {DataInterpreter::objectName(index, subIndex),
            DataInterpreter::formatValue(index, subIndex, value), objectToolTip(index, value)};
}

} // namespace

void BatteryDetails::show(const NodeView &node)
{
    const int firstParameter = m_parameters.rowCount();

    m_position = m_values.rowCount();
    showStatus(node);
    showTemperatures(node);
    showEnergyValues(node);

    m_parameters.insertSeparator(firstParameter);
    m_position = firstParameter + 1;
    showChemistry(node);
    showRatings(node);
}

void BatteryDetails::showStatus(const NodeView &node)
{
    const std::optional<QVariant> status = node.value(Object::deviceStatus, 1);
    // Deliberate: the rows that follow count on this one; without it they are beyond the end and not shown.
    if (!status)
        return;

    const quint8 state = batteryState(status->toUInt());
    Qt::GlobalColor color = Qt::black;
    const QString text = DataInterpreter::interpretFsaState(state, color);
    if (isReservedState(state))
        color = Qt::black;
    m_values.insertRow(m_position, {OverviewTr::tr("Battery Status"), text,
                                    objectToolTip(Object::deviceStatus, *status), color});
}

void BatteryDetails::showTemperatures(const NodeView &node)
{
    const std::optional<quint32> count = node.entryCount(Object::batteryTemperatures);
    if (!count)
        return;

    const QString label = batteryTemperatureLabel(*count);
    node.forEachEntry(Object::batteryTemperatures, [&](quint8 subIndex, const QVariant &value) {
        DetailRow row = entryRow(Object::batteryTemperatures, subIndex, value);
        row.name = label;
        row.color = DataInterpreter::checkLimits(Object::batteryTemperatures, value);
        m_values.insertRow(++m_position, row);
    });
}

void BatteryDetails::showEnergyValues(const NodeView &node)
{
    for (const quint16 index : energyObjects) {
        Qt::GlobalColor color = Qt::black;
        node.forEachEntry(index, [&](quint8 subIndex, const QVariant &value) {
            DetailRow row = entryRow(index, subIndex, value);
            row.name += QStringLiteral(": ") + QString::number(subIndex);
            if (index == Object::relativeCapacity) {
                color = chargeColor(value.toUInt(), color);
                row.color = color;
            }
            m_values.insertRow(++m_position, row);
        });
    }
}

void BatteryDetails::showChemistry(const NodeView &node)
{
    const std::optional<QVariant> type = node.value(Object::batteryType, 1);
    // Deliberate: the ratings count on this row as the live values count on the status.
    if (!type)
        return;
    m_parameters.insertRow(m_position, {DataInterpreter::objectName(Object::batteryType, 1),
                                        DataInterpreter::interpretBatteryChemistry(*type),
                                        objectToolTip(Object::batteryType, *type)});
}

void BatteryDetails::showRatings(const NodeView &node)
{
    for (const Rating &rating : ratings) {
        node.forEachEntry(rating.index, [&](quint8 subIndex, const QVariant &value) {
            DetailRow row = entryRow(rating.index, subIndex, value);
            row.toolTip = objectToolTip(rating.toolTipIndex, value);
            m_parameters.insertRow(++m_position, row);
        });
    }
}
