// SPDX-License-Identifier: MIT
#include "nodedetails.h"

#include "batterydetails.h"
#include "objecttooltip.h"
#include "overviewtr.h"
#include "rowtable.h"

#include <interpreter/datainterpreter.h>
#include <interpreter/objects.h>
#include <store/nodeview.h>

#include <QLoggingCategory>

#include <limits>

namespace {

Q_LOGGING_CATEGORY(lcTables, "details.tables")

constexpr quint8 controllerClass = 4;
constexpr quint8 converterClass = 5;
constexpr quint8 batteryClass = 6;
constexpr quint8 motorControlClass = 7;

/*! An object of one value, shown in one row. */
struct SingleObject
{
    quint16 index;
    QString (*text)(const QVariant &value);
};

QString partNumberText(const QVariant &value)
{
    return DataInterpreter::formatValue(Object::uniquePartNumber, 0, value);
}

constexpr SingleObject singleParameters[] = {
    {Object::supportedAlarms, &DataInterpreter::interpretSupportedAlarms},
    {Object::uniquePartNumber, &partNumberText},
};
constexpr SingleObject controllerStatus{Object::systemStatus, &DataInterpreter::interpretSystemStatus};
constexpr SingleObject controllerVehicle{Object::levType, &DataInterpreter::interpretLevType};

constexpr quint16 limitObjects[] = {
    0x6020, // dynamic limit of the input voltage
    0x6021, // dynamic limit of the output voltage
    0x6022, // dynamic limit of the input current
    0x6023, // dynamic limit of the output current
    0x6024, // greatest continuous input current
    0x6025, // greatest continuous output current
    0x6026, // greatest voltage
    0x6027, // least voltage
};

constexpr quint16 actualObjects[] = {
    0x603E, // current
    0x6040, // voltage
    0x6042, // temperature of the electronics
    0x604A, // greatest continuous input current
    0x604B, // greatest continuous output current
    0x604C, // greatest peak input current
    0x604D, // its time
    0x604E, // greatest peak output current
    0x604F, // its time
};

/*! Rows one below the other from the top of a table. */
class RowSequence
{
public:
    explicit RowSequence(RowTable &table)
        : m_table(table)
    {
    }

    void add(const DetailRow &row) { m_table.insertRow(m_next++, row); }
    void addList(const QString &name, const QString &toolTip, const QStringList &entries)
    {
        m_table.insertListRow(m_next++, name, toolTip, entries);
    }
    void addSeparator() { m_table.insertSeparator(m_next++); }

private:
    RowTable &m_table;
    // Deliberate: an 8-bit number, so that the 257th row is inserted at the top again, above the first.
    quint8 m_next = 0;
};

std::optional<DetailRow> singleRow(const NodeView &node, const SingleObject &object)
{
    const std::optional<QVariant> value = node.value(object.index, 0);
    if (!value)
        return std::nullopt;
    return DetailRow{DataInterpreter::objectName(object.index, 0), object.text(*value),
                     objectToolTip(object.index, *value)};
}

DetailRow entryRow(quint16 index, quint8 subIndex, const QVariant &value, const QString &name)
{
    return {name, DataInterpreter::formatValue(index, subIndex, value), objectToolTip(index, value)};
}

void addIdentity(const NodeView &node, RowSequence &rows)
{
    QVariant holder;
    if (!node.getValue(Object::identity, 0, holder))
        return;
    node.followEntries(Object::identity, holder, [&rows](quint8 subIndex, const QVariant &value) {
        QString name;
        QString text;
        DataInterpreter::interpretIdentity(value, subIndex, name, text);
        rows.add({name, text, objectToolTip(Object::identity, value)});
    });
}

void addExternalDevices(const NodeView &node, RowSequence &rows)
{
    const std::optional<quint32> count = node.entryCount(Object::ratedVoltage);
    if (!count)
        return;

    // Deliberate: the count decides about all rows, not each row's own number.
    constexpr quint32 lastVirtualDevice = 127;
    const QString label
        = *count > lastVirtualDevice ? OverviewTr::tr(" external device ") : OverviewTr::tr(" VDN ");
    node.forEachEntry(Object::ratedVoltage, [&](quint8 subIndex, const QVariant &value) {
        const QString name
            = DataInterpreter::objectName(Object::ratedVoltage, subIndex) + label + QString::number(subIndex);
        rows.add(entryRow(Object::ratedVoltage, subIndex, value, name));
    });
}

void addSecurityProperties(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(Object::securityCapability, 1);
    if (!value)
        return;

    QString label;
    QString features;
    QString keyClassLabel;
    QString keyClass;
    DataInterpreter::interpretSecurityProperties(*value, label, features, keyClassLabel, keyClass);
    const QString toolTip = objectToolTip(Object::securityCapability, *value);
    rows.add({label, features, toolTip});
    rows.add({keyClassLabel, keyClass, toolTip});
}

void addLimits(const NodeView &node, RowSequence &rows)
{
    for (const quint16 index : limitObjects) {
        node.forEachEntry(index, [&rows, index](quint8 subIndex, const QVariant &value) {
            // Deliberate: the name of the first entry stands in every row.
            const QString name
                = DataInterpreter::objectName(index, 1) + OverviewTr::tr(" VDN ") + QString::number(subIndex);
            rows.add(entryRow(index, subIndex, value, name));
        });
    }
}

void addControlCommand(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(Object::controlCommand, 1);
    if (!value)
        return;

    QString text;
    DataInterpreter::interpretControlCommand(*value, text);
    rows.add({DataInterpreter::objectName(Object::controlCommand, 1), text,
              objectToolTip(Object::controlCommand, *value)});
}

void addCapability(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(Object::deviceCapability, 1);
    if (!value)
        return;

    QStringList capabilities;
    DataInterpreter::interpretDeviceCapability(*value, capabilities);
    if (capabilities.isEmpty())
        capabilities.append(QStringLiteral("---"));
    // Deliberate: the tooltip names 6005h.
    rows.addList(DataInterpreter::objectName(Object::deviceCapability, 1), objectToolTip(0x6005, *value),
                 capabilities);
}

void addDeviceStatus(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(Object::deviceStatus, 1);
    if (!value)
        return;

    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(*value, flags, state);
    const QString toolTip = objectToolTip(Object::deviceStatus, *value);
    rows.add({DataInterpreter::objectName(Object::deviceStatus, 1), flags, toolTip});
    rows.add({OverviewTr::tr("Draxel FSA state"), state, toolTip});
}

void addActualValues(const NodeView &node, RowSequence &rows)
{
    for (const quint16 index : actualObjects) {
        node.forEachEntry(index, [&rows, index](quint8 subIndex, const QVariant &value) {
            const QString name = DataInterpreter::objectName(index, subIndex) + OverviewTr::tr(" VDN ")
                                 + QString::number(subIndex);
            rows.add(entryRow(index, subIndex, value, name));
        });
    }
}

/*! How many of a node's stated motor values are shown: there is none beyond sub-index 255. */
quint32 motorValueCount(const NodeView &node)
{
    constexpr quint32 greatestCount = std::numeric_limits<quint8>::max() + 1;
    const quint32 count = node.entryCount(Object::motorValues).value_or(0);
    if (count <= greatestCount)
        return count;
    qCDebug(lcTables) << "Node" << node.nodeId() << "states" << count
                      << "motor values, more than there can be";
    return greatestCount;
}

} // namespace

NodeDetails::NodeDetails(const NodeStore &store, RowTable &parameters, RowTable &values)
    : m_store(store)
    , m_parameters(parameters)
    , m_values(values)
{
}

QString NodeDetails::parametersTitle()
{
    return OverviewTr::tr("Device Parameters (fixed)");
}

QString NodeDetails::valuesTitle()
{
    return OverviewTr::tr("Actual Values");
}

void NodeDetails::showNode(quint8 nodeId)
{
    const NodeView node(m_store, nodeId);
    showDeviceDetails(node);

    const std::optional<QVariant> device = node.value(Object::virtualDevices, 1);
    if (!device)
        return;
    switch (static_cast<quint8>(device->toUInt() & 0xFF)) {
    case controllerClass:
        showControllerDetails(node);
        break;
    case converterClass:
        showConverterDetails(node);
        break;
    case batteryClass:
        showBatteryPackDetails(node);
        break;
    case motorControlClass:
        showMotorControlDetails(node);
        break;
    default:
        break;
    }
}

void NodeDetails::showDeviceDetails(const NodeView &node)
{
    m_parameters.clear();
    m_values.clear();
    showCommonParameters(node);
    showCommonValues(node);
}

void NodeDetails::showCommonParameters(const NodeView &node)
{
    RowSequence rows(m_parameters);
    addIdentity(node, rows);
    addExternalDevices(node, rows);
    addSecurityProperties(node, rows);
    for (const SingleObject &object : singleParameters) {
        if (const std::optional<DetailRow> row = singleRow(node, object))
            rows.add(*row);
    }
    rows.addSeparator();
    addLimits(node, rows);
}

void NodeDetails::showCommonValues(const NodeView &node)
{
    RowSequence rows(m_values);
    addControlCommand(node, rows);
    addCapability(node, rows);
    addDeviceStatus(node, rows);
    addActualValues(node, rows);
}

void NodeDetails::showControllerDetails(const NodeView &node)
{
    if (const std::optional<DetailRow> row = singleRow(node, controllerStatus))
        m_values.appendRow(*row);
    m_parameters.appendSeparator();
    if (const std::optional<DetailRow> row = singleRow(node, controllerVehicle))
        m_parameters.appendRow(*row);
}

void NodeDetails::showConverterDetails(const NodeView &node)
{
    Q_UNUSED(node)
    // The place for rows of converters: the state is decoded, and no row shows it.
    Qt::GlobalColor color = Qt::black;
    DataInterpreter::interpretProcessingState(0, color);
}

void NodeDetails::showBatteryPackDetails(const NodeView &node)
{
    BatteryDetails(m_parameters, m_values).show(node);
}

void NodeDetails::showMotorControlDetails(const NodeView &node)
{
    const quint32 count = motorValueCount(node);
    // Deliberate: from the count itself, sub-index 0, to the entry before the last, stored or not, as plain
    // numbers.
    for (quint32 s = 0; s < count; ++s) {
        const auto subIndex = static_cast<quint8>(s);
        m_values.appendRow({DataInterpreter::objectName(Object::motorValues, subIndex),
                            node.value(Object::motorValues, subIndex).value_or(QVariant()).toString()});
    }
}
