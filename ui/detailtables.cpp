// SPDX-License-Identifier: MIT
#include "detailtables.h"

#include "batterydetails.h"
#include "objecttooltip.h"
#include "overviewtr.h"

#include <interpreter/datainterpreter.h>
#include <reader/datareader.h>

#include <QComboBox>
#include <QLoggingCategory>
#include <QTableWidget>

#include <limits>

namespace {

Q_LOGGING_CATEGORY(lcTables, "ui.tables")

constexpr quint16 identity = 0x1018;
constexpr quint16 virtualDevices = 0x6000;
constexpr quint16 controlCommand = 0x6001;
constexpr quint16 deviceStatus = 0x6002;
constexpr quint16 deviceCapability = 0x6003;
constexpr quint16 uniquePartNumber = 0x6005;
constexpr quint16 externalDevices = 0x6008;
constexpr quint16 supportedAlarms = 0x600A;
constexpr quint16 systemStatus = 0x6080;
constexpr quint16 levType = 0x6081;
constexpr quint16 motorValues = 0x62E8;
constexpr quint16 securityCapability = 0x6310;

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
    return DataInterpreter::formatValue(uniquePartNumber, 0, value);
}

constexpr SingleObject singleParameters[] = {
    {supportedAlarms, &DataInterpreter::interpretSupportedAlarms},
    {uniquePartNumber, &partNumberText},
};
constexpr SingleObject controllerStatus{systemStatus, &DataInterpreter::interpretSystemStatus};
constexpr SingleObject controllerVehicle{levType, &DataInterpreter::interpretLevType};

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
    explicit RowSequence(TableWriter &writer)
        : m_writer(writer)
    {
    }

    void add(const DetailRow &row) { m_writer.insertRow(m_next++, row); }
    void add(const QString &name, const QString &toolTip, std::unique_ptr<QWidget> widget)
    {
        m_writer.insertWidgetRow(m_next++, name, toolTip, std::move(widget));
    }
    void addSeparator() { m_writer.insertSeparator(m_next++); }

private:
    TableWriter &m_writer;
    // Deliberate: an 8-bit number, so that the 257th row is inserted at the top again, above the first.
    quint8 m_next = 0;
};

/*! Keeps a widget from painting while it is filled. */
class UpdatesPause
{
public:
    explicit UpdatesPause(QWidget &widget)
        : m_widget(widget)
        , m_wasPaused(widget.testAttribute(Qt::WA_ForceUpdatesDisabled))
    {
        m_widget.setUpdatesEnabled(false);
    }
    ~UpdatesPause() { m_widget.setUpdatesEnabled(!m_wasPaused); }
    Q_DISABLE_COPY(UpdatesPause)

private:
    QWidget &m_widget;
    bool m_wasPaused;
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
    if (!node.getValue(identity, 0, holder))
        return;
    node.followEntries(identity, holder, [&rows](quint8 subIndex, const QVariant &value) {
        QString name;
        QString text;
        DataInterpreter::interpretIdentity(value, subIndex, name, text);
        rows.add({name, text, objectToolTip(identity, value)});
    });
}

void addExternalDevices(const NodeView &node, RowSequence &rows)
{
    const std::optional<quint32> count = node.entryCount(externalDevices);
    if (!count)
        return;

    // Deliberate: the count decides about all rows, not each row's own number.
    constexpr quint32 lastVirtualDevice = 127;
    const QString label = *count > lastVirtualDevice ? Tr::tr(" external device ") : Tr::tr(" VDN ");
    node.forEachEntry(externalDevices, [&](quint8 subIndex, const QVariant &value) {
        const QString name
            = DataInterpreter::objectName(externalDevices, subIndex) + label + QString::number(subIndex);
        rows.add(entryRow(externalDevices, subIndex, value, name));
    });
}

void addSecurityProperties(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(securityCapability, 1);
    if (!value)
        return;

    QString label;
    QString features;
    QString keyClassLabel;
    QString keyClass;
    DataInterpreter::interpretSecurityProperties(*value, label, features, keyClassLabel, keyClass);
    const QString toolTip = objectToolTip(securityCapability, *value);
    rows.add({label, features, toolTip});
    rows.add({keyClassLabel, keyClass, toolTip});
}

void addLimits(const NodeView &node, RowSequence &rows)
{
    for (const quint16 index : limitObjects) {
        node.forEachEntry(index, [&rows, index](quint8 subIndex, const QVariant &value) {
            // Deliberate: the name of the first entry stands in every row.
            const QString name
                = DataInterpreter::objectName(index, 1) + Tr::tr(" VDN ") + QString::number(subIndex);
            rows.add(entryRow(index, subIndex, value, name));
        });
    }
}

void addControlCommand(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(controlCommand, 1);
    if (!value)
        return;

    QString text;
    DataInterpreter::interpretControlCommand(*value, text);
    rows.add({DataInterpreter::objectName(controlCommand, 1), text, objectToolTip(controlCommand, *value)});
}

/*! A list without a frame on the background of the table's row. */
std::unique_ptr<QComboBox> capabilityBox(const QVariant &value, const QPalette &tablePalette)
{
    constexpr int fontSize = 10; // points

    auto box = std::make_unique<QComboBox>();
    QStringList capabilities;
    DataInterpreter::interpretDeviceCapability(value, capabilities);
    if (capabilities.isEmpty())
        capabilities.append(QStringLiteral("---"));
    box->addItems(capabilities);

    QPalette palette = tablePalette;
    palette.setBrush(QPalette::Base, QBrush(QColor(255, 0, 0, 0)));
    box->setPalette(palette);

    const QString highlight = QString::number(palette.highlight().color().rgb(), 16).mid(2); // without alpha
    box->setStyleSheet(QStringLiteral("QComboBox { background-color: rgba(0, 0, 0, 0);\nborder: 0px;}"
                                      "QComboBox QAbstractItemView { selection-color: black;"
                                      "selection-background-color: #%1;}")
                           .arg(highlight));

    QFont font = box->font();
    font.setPointSize(fontSize);
    box->setFont(font);
    return box;
}

void addCapability(const NodeView &node, const QPalette &tablePalette, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(deviceCapability, 1);
    if (!value)
        return;
    // Deliberate: the tooltip names 6005h.
    rows.add(DataInterpreter::objectName(deviceCapability, 1), objectToolTip(0x6005, *value),
             capabilityBox(*value, tablePalette));
}

void addDeviceStatus(const NodeView &node, RowSequence &rows)
{
    const std::optional<QVariant> value = node.value(deviceStatus, 1);
    if (!value)
        return;

    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(*value, flags, state);
    const QString toolTip = objectToolTip(deviceStatus, *value);
    rows.add({DataInterpreter::objectName(deviceStatus, 1), flags, toolTip});
    rows.add({Tr::tr("Draxel FSA state"), state, toolTip});
}

void addActualValues(const NodeView &node, RowSequence &rows)
{
    for (const quint16 index : actualObjects) {
        node.forEachEntry(index, [&rows, index](quint8 subIndex, const QVariant &value) {
            const QString name
                = DataInterpreter::objectName(index, subIndex) + Tr::tr(" VDN ") + QString::number(subIndex);
            rows.add(entryRow(index, subIndex, value, name));
        });
    }
}

/*! How many of a node's stated motor values are shown: more than an UNSIGNED8 can state are no device's. */
quint32 motorValueCount(const NodeView &node)
{
    constexpr quint32 greatestCount = std::numeric_limits<quint8>::max();
    const quint32 count = node.entryCount(motorValues).value_or(0);
    if (count <= greatestCount)
        return count;
    qCDebug(lcTables) << "Node" << node.nodeId() << "states" << count
                      << "motor values, more than there can be";
    return greatestCount;
}

} // namespace

DetailTables::DetailTables(const DataReader &dataReader, QTableWidget &parameters, QTableWidget &values)
    : m_dataReader(dataReader)
    , m_parametersTable(parameters)
    , m_valuesTable(values)
    , m_parameters(parameters)
    , m_values(values)
{
}

void DetailTables::showNode(quint8 nodeId)
{
    const UpdatesPause parametersPause(m_parametersTable);
    const UpdatesPause valuesPause(m_valuesTable);

    showDeviceDetails(nodeId);

    const std::optional<QVariant> device = m_dataReader.node(nodeId).value(virtualDevices, 1);
    if (!device)
        return;
    switch (static_cast<quint8>(device->toUInt() & 0xFF)) {
    case controllerClass:
        showControllerDetails(nodeId);
        break;
    case converterClass:
        showConverterDetails(nodeId);
        break;
    case batteryClass:
        showBatteryPackDetails(nodeId);
        break;
    case motorControlClass:
        showMotorControlDetails(nodeId);
        break;
    default:
        break;
    }
}

void DetailTables::showDeviceDetails(quint8 nodeId)
{
    m_parameters.clear();
    m_values.clear();

    const NodeView node = m_dataReader.node(nodeId);
    showCommonParameters(node);
    showCommonValues(node);
}

void DetailTables::showCommonParameters(const NodeView &node)
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

void DetailTables::showCommonValues(const NodeView &node)
{
    RowSequence rows(m_values);
    addControlCommand(node, rows);
    addCapability(node, m_valuesTable.palette(), rows);
    addDeviceStatus(node, rows);
    addActualValues(node, rows);
}

void DetailTables::showControllerDetails(quint8 nodeId)
{
    const NodeView node = m_dataReader.node(nodeId);
    if (const std::optional<DetailRow> row = singleRow(node, controllerStatus))
        m_values.appendRow(*row);
    m_parameters.appendSeparator();
    if (const std::optional<DetailRow> row = singleRow(node, controllerVehicle))
        m_parameters.appendRow(*row);
}

void DetailTables::showConverterDetails(quint8 nodeId)
{
    Q_UNUSED(nodeId)
    // The place for rows of converters: the state is decoded, and no row shows it.
    Qt::GlobalColor color = Qt::black;
    DataInterpreter::interpretProcessingState(0, color);
}

void DetailTables::showBatteryPackDetails(quint8 nodeId)
{
    BatteryDetails(m_parameters, m_values).show(m_dataReader.node(nodeId));
}

void DetailTables::showMotorControlDetails(quint8 nodeId)
{
    const NodeView node = m_dataReader.node(nodeId);
    const quint32 count = motorValueCount(node);
    // Deliberate: from the count itself, sub-index 0, to the entry before the last, stored or not, as plain
    // numbers.
    for (quint32 s = 0; s < count; ++s) {
        const auto subIndex = static_cast<quint8>(s);
        m_values.appendRow({DataInterpreter::objectName(motorValues, subIndex),
                            node.value(motorValues, subIndex).value_or(QVariant()).toString()});
    }
}
