// SPDX-License-Identifier: MIT
#include "reportsections.h"

#include "pdfwriter.h"

#include <interpreter/batterytexts.h>
#include <interpreter/componentclass.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objects.h>
#include <store/nodestore.h>
#include <store/nodeview.h>

#include <QCoreApplication>

namespace {

/*! The report shares its texts with the window. */
struct OverviewTr
{
    Q_DECLARE_TR_FUNCTIONS(OverviewForm)
};

constexpr quint16 ratedObjects[] = {
    0x6008, // voltage
    0x6024, // greatest continuous input current
    0x6025, // greatest continuous output current
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

constexpr quint16 batteryRatings[] = {
    0x6102,         // capacity in Wh
    0x6120, 0x6121, // temperatures: charging may begin up to and from
    0x6122, 0x6123, // temperatures: discharging up to and from
    0x6124, 0x6125, // temperatures: storage up to and from
    0x6126, 0x6127, // cell voltage: highest and lowest
};

constexpr quint16 batteryEnergy[] = {
    0x6160, // actual capacity in Wh
    0x6162, // full output capacity in Wh
    0x6164, // state of charge
    0x6176, // state of health
};

/*! Lookups in one node of which every value found also goes into one holder. */
class SharedLookups
{
public:
    explicit SharedLookups(const NodeView &node)
        : m_node(node)
    {
    }

    /*! The value, or nothing; the holder then stays as it was. */
    std::optional<QVariant> value(quint16 index, quint8 subIndex)
    {
        if (!m_node.getValue(index, subIndex, m_holder))
            return std::nullopt;
        return m_holder;
    }

    /*! NodeView::forEachEntry(); the count of the entries goes into the holder too. */
    template<typename Handler>
    void forEachEntry(quint16 index, Handler handle)
    {
        if (!value(index, 0))
            return;
        m_node.forEachEntry(index, [this, &handle](quint8 subIndex, const QVariant &entry) {
            m_holder = entry;
            handle(subIndex, entry);
        });
    }

    /*! NodeView::followEntries() whose first bound is what the holder has. */
    template<typename Handler>
    void followEntries(quint16 index, Handler handle)
    {
        m_node.followEntries(index, m_holder, handle);
    }

private:
    const NodeView &m_node;
    QVariant m_holder;
};

QString numbered(quint16 index, quint8 subIndex, const QString &label, quint8 number)
{
    return DataInterpreter::objectName(index, subIndex) + label + QString::number(number);
}

// Rows of the parameters that every device may have

void addIdentity(const NodeView &node, pdfWriter &writer)
{
    QVariant holder;
    if (!node.getValue(Object::identity, 0, holder))
        return;
    node.followEntries(Object::identity, holder, [&writer](quint8 subIndex, const QVariant &value) {
        QString name;
        QString text;
        DataInterpreter::interpretIdentity(value, subIndex, name, text);
        writer.addRow(name, text);
    });
}

void addDeviceInformation(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::deviceType, 0))
        writer.addDeviceInformationRow(*value);
}

void addRatedValues(const NodeView &node, pdfWriter &writer)
{
    constexpr quint32 lastVirtualDevice = 127;

    for (const quint16 index : ratedObjects) {
        // Deliberate: capitals, unlike in the window; and the count decides about all rows, not each row's
        // number.
        const QString label = node.entryCount(index).value_or(0) > lastVirtualDevice
                                  ? OverviewTr::tr(" External Device ")
                                  : OverviewTr::tr(" VDN ");
        node.forEachEntry(index, [&](quint8 subIndex, const QVariant &value) {
            writer.addRow(numbered(index, subIndex, label, subIndex),
                          DataInterpreter::formatValue(index, subIndex, value));
        });
    }
}

void addSecurityProperties(const NodeView &node, pdfWriter &writer)
{
    const std::optional<QVariant> value = node.value(Object::securityCapability, 1);
    if (!value)
        return;

    QString label;
    QString features;
    QString keyClassLabel;
    QString keyClass;
    DataInterpreter::interpretSecurityProperties(*value, label, features, keyClassLabel, keyClass);
    writer.addRow(label, features);
    writer.addRow(keyClassLabel, keyClass);
}

void addSupportedAlarms(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::supportedAlarms, 0)) {
        writer.addRow(DataInterpreter::objectName(Object::supportedAlarms, 0),
                      DataInterpreter::interpretSupportedAlarms(*value));
    }
}

void addPartNumber(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::uniquePartNumber, 0))
        writer.addObjectRow(Object::uniquePartNumber, *value);
}

// Rows of the actual values that every device may have

void addControlCommand(SharedLookups &lookups, pdfWriter &writer)
{
    const std::optional<QVariant> value = lookups.value(Object::controlCommand, 1);
    if (!value)
        return;
    QString text;
    DataInterpreter::interpretControlCommand(*value, text);
    writer.addRow(DataInterpreter::objectName(Object::controlCommand, 1), text);
}

void addDeviceStatus(SharedLookups &lookups, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = lookups.value(Object::deviceStatus, 1))
        writer.addDeviceStatusRows(*value);
}

void addInputVoltageLimits(SharedLookups &lookups, pdfWriter &writer)
{
    const QString label = OverviewTr::tr(" VDN ");
    // Deliberate: of the limits 6020h to 6027h only the first, and the name of its first entry in every row.
    lookups.forEachEntry(Object::inputVoltageLimit, [&](quint8 subIndex, const QVariant &value) {
        writer.addRow(numbered(Object::inputVoltageLimit, 1, label, subIndex),
                      DataInterpreter::formatValue(Object::inputVoltageLimit, subIndex, value));
    });
}

void addActualValues(SharedLookups &lookups, pdfWriter &writer)
{
    const QString label = OverviewTr::tr(" VDN ");
    for (const quint16 index : actualObjects) {
        lookups.forEachEntry(index, [&](quint8 subIndex, const QVariant &value) {
            writer.addRow(numbered(index, subIndex, label, subIndex),
                          DataInterpreter::formatValue(index, subIndex, value));
        });
    }
}

void addErrorRegister(SharedLookups &lookups, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = lookups.value(Object::errorRegister, 0))
        writer.addErrorRegisterRow(*value);
}

void addProfileVersions(SharedLookups &lookups, pdfWriter &writer)
{
    if (!lookups.value(Object::profileVersions, 0))
        return;

    QString versions;
    lookups.followEntries(Object::profileVersions, [&versions](quint8, const QVariant &value) {
        QString label;
        QString text;
        DataInterpreter::interpretSpecificationVersions(value, label, text);
        // Deliberate: the first version too stands behind a line break.
        versions += QLatin1String("<br>") + text;
    });
    writer.addRow(OverviewTr::tr("Implemented specification versions"), versions);
}

void addSecurityStatus(const NodeView &node, SharedLookups &lookups, pdfWriter &writer)
{
    if (!node.value(Object::securityStatus, 0))
        return;

    // Deliberate: the count does not go into the holder, so the walk's first bound is the value found last by
    // the rows above, usually the last version.
    QString states;
    lookups.followEntries(Object::securityStatus, [&states](quint8, const QVariant &value) {
        states += DataInterpreter::interpretSecurityStatus(value);
    });
    writer.addRow(OverviewTr::tr("Security Status"),
                  states.replace(QLatin1Char('\n'), QLatin1String("<br>")));
}

// Rows of single component classes

void addControllerParameters(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::levType, 0))
        writer.addRow(DataInterpreter::objectName(Object::levType, 0),
                      DataInterpreter::interpretLevType(*value));
}

void addControllerValues(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::systemStatus, 0)) {
        writer.addRow(DataInterpreter::objectName(Object::systemStatus, 0),
                      DataInterpreter::interpretSystemStatus(*value));
    }
}

void addBatteryParameters(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::batteryType, 1)) {
        // Deliberate: the name is that of sub-index 0, the value that of sub-index 1.
        writer.addRow(DataInterpreter::objectName(Object::batteryType, 0),
                      DataInterpreter::interpretBatteryChemistry(*value));
    }
    for (const quint16 index : batteryRatings) {
        node.forEachEntry(index, [&writer, index](quint8 subIndex, const QVariant &value) {
            writer.addRow(DataInterpreter::objectName(index, subIndex),
                          DataInterpreter::formatValue(index, subIndex, value));
        });
    }
}

void addTemperatures(const NodeView &node, pdfWriter &writer)
{
    const QString label = batteryTemperatureLabel(node.entryCount(Object::batteryTemperatures).value_or(0));
    node.forEachEntry(Object::batteryTemperatures, [&](quint8 subIndex, const QVariant &value) {
        writer.addRow(label, DataInterpreter::formatValue(Object::batteryTemperatures, subIndex, value));
    });
}

void addBatteryValues(const NodeView &node, pdfWriter &writer)
{
    if (const std::optional<QVariant> value = node.value(Object::deviceStatus, 1))
        writer.addBatteryStatusRow(*value);
    addTemperatures(node, writer);
    for (const quint16 index : batteryEnergy) {
        node.forEachEntry(
            index, [&writer, index](quint8, const QVariant &value) { writer.addObjectRow(index, value); });
    }
}

using RowFunction = void (*)(const NodeView &node, pdfWriter &writer);

/*! What a component class adds to the two sections. */
struct ClassRows
{
    quint8 code;
    RowFunction addParameters;
    RowFunction addValues;
};

constexpr ClassRows classRows[] = {
    {4, addControllerParameters, addControllerValues},
    {6, addBatteryParameters, addBatteryValues},
};

constexpr RowFunction commonParameters[] = {
    addIdentity,           addDeviceInformation, addRatedValues,
    addSecurityProperties, addSupportedAlarms,   addPartNumber,
};

void addCommonValues(const NodeView &node, pdfWriter &writer)
{
    SharedLookups lookups(node);
    addControlCommand(lookups, writer);
    addDeviceStatus(lookups, writer);
    addInputVoltageLimits(lookups, writer);
    addActualValues(lookups, writer);
    addErrorRegister(lookups, writer);
    addProfileVersions(lookups, writer);
    addSecurityStatus(node, lookups, writer);
}

void addClassRows(RowFunction ClassRows::*section, quint8 code, const NodeView &node, pdfWriter &writer)
{
    for (const ClassRows &rows : classRows) {
        if (rows.code == code)
            (rows.*section)(node, writer);
    }
}

void writeDevice(const NodeView &node, const ComponentClass &componentClass, pdfWriter &writer)
{
    // Deliberate: the name of the class alone, also for the controller on node 127.
    writer.beginDeviceTable(componentClassName(componentClass));

    writer.beginSectionTable(OverviewTr::tr("Device Parameters (fixed)"));
    for (const RowFunction addRows : commonParameters)
        addRows(node, writer);
    addClassRows(&ClassRows::addParameters, componentClass.code, node, writer);
    writer.endSectionTable();

    writer.beginSectionTable(OverviewTr::tr("Actual Values"));
    addCommonValues(node, writer);
    addClassRows(&ClassRows::addValues, componentClass.code, node, writer);
    writer.endDeviceTable();
}

} // namespace

void ReportSections::write(pdfWriter &writer) const
{
    for (const quint8 nodeId : m_store.nodeList()) {
        const NodeView node(m_store, nodeId);
        const quint32 device = node.value(Object::virtualDevices, 1).value_or(QVariant()).toUInt();
        if (const ComponentClass *componentClass = findComponentClass(static_cast<quint8>(device & 0xFF)))
            writeDevice(node, *componentClass, writer);
    }
}
