// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshotbuilder.h>

#include <servicereport/servicereportdata.h>

/*! A vehicle with something of everything, for looking at reports: a broken battery, a motor with a warning, a display that
 *  is silent, and two components that are well.
 */
namespace ReportExample {

using CanOpen::DataType;

inline void addIdentity(SnapshotBuilder &builder, quint32 product, quint32 serial, quint8 componentClass,
                        const char *name)
{
    builder.value(0x1008, 0, DataType::VisibleString, QString::fromLatin1(name))
        .value(0x1009, 0, DataType::VisibleString, QStringLiteral("HW 2.1"))
        .value(0x100A, 0, DataType::VisibleString, QStringLiteral("1.3.0"))
        .value(0x1018, 0, DataType::Unsigned8, 4)
        .value(0x1018, 1, DataType::Unsigned32, 0xFFFEu)
        .value(0x1018, 2, DataType::Unsigned32, product)
        .value(0x1018, 3, DataType::Unsigned32, 0x00010003u)
        .value(0x1018, 4, DataType::Unsigned32, serial)
        .value(0x6000, 0, DataType::Unsigned8, 1)
        .value(0x6000, 1, DataType::Unsigned32, quint32(componentClass))
        .value(0x6005, 0, DataType::Unsigned32, 454020272u);
    builder.last().medianAnswer = 5;
}

inline void addPower(SnapshotBuilder &builder, qint32 millivolts, qint32 milliamperes, int tenthsOfDegree)
{
    builder.value(0x6026, 0, DataType::Unsigned8, 1)
        .value(0x6026, 1, DataType::Unsigned32, 42000u)
        .value(0x6027, 0, DataType::Unsigned8, 1)
        .value(0x6027, 1, DataType::Unsigned32, 30000u)
        .value(0x603E, 0, DataType::Unsigned8, 1)
        .value(0x603E, 1, DataType::Integer32, milliamperes)
        .value(0x6040, 0, DataType::Unsigned8, 1)
        .value(0x6040, 1, DataType::Integer32, millivolts)
        .value(0x6042, 0, DataType::Unsigned8, 1)
        .value(0x6042, 1, DataType::Integer16, tenthsOfDegree);
}

inline void addBattery(SnapshotBuilder &builder)
{
    builder.node(2);
    addIdentity(builder, 0x0045472Au, 1123450, 6, "DX-Pack 36/500");
    addPower(builder, 39310, -6200, 312);
    builder.value(0x6102, 1, DataType::Unsigned32, 500000u)
        .value(0x6105, 0, DataType::Unsigned8, 1)
        .value(0x6105, 1, DataType::Integer16, 455)
        .value(0x6107, 1, DataType::Unsigned16, 800)
        .value(0x6122, 1, DataType::Integer16, 600)
        .value(0x6123, 1, DataType::Integer16, -150)
        .value(0x6126, 0, DataType::Unsigned8, 1)
        .value(0x6126, 1, DataType::Integer32, 4200)
        .value(0x6127, 0, DataType::Unsigned8, 1)
        .value(0x6127, 1, DataType::Integer32, 3000)
        .value(0x6160, 1, DataType::Unsigned32, 361200u)
        .value(0x6162, 1, DataType::Unsigned32, 430000u)
        .value(0x6164, 1, DataType::Unsigned16, 8400)
        .value(0x6165, 0, DataType::Unsigned8, 10);
    const int cells[] = {3702, 3708, 3711, 3699, 3704, 3706, 2910, 3701, 3705};
    quint8 number = 1;
    for (const int cell : cells)
        builder.value(0x6165, number++, DataType::Unsigned16, cell);
    builder.gap(0x6165, 10, SnapshotGap::NoAnswer)
        .value(0x6176, 1, DataType::Unsigned16, 8800)
        .value(0x617D, 1, DataType::Unsigned16, 246)
        .value(0x617F, 1, DataType::Unsigned16, 3)
        .gap(0x617B, 1, SnapshotGap::Abort, 0x08000022)
        .gap(0x617C, 1, SnapshotGap::Abort, 0x08000022);
}

inline Snapshot snapshot()
{
    SnapshotBuilder builder;
    Snapshot &snapshot = builder.snapshot();
    snapshot.program = QStringLiteral("draxelctl 1.0.0");
    snapshot.bus = QStringLiteral("socketcan:can0");
    snapshot.adapter = QStringLiteral("PCAN-USB");
    snapshot.notes = {QStringLiteral("Cargo bike 7 (1104001)"), QStringLiteral("Jörg Müller & Söhne"),
                      QStringLiteral("A. Weber"), QStringLiteral("4 812 km"),
                      QStringLiteral("Customer says: cuts out on hills.\nBattery was dropped last winter.")};
    builder.node(1);
    addIdentity(builder, 0x004546C5u, 1104001, 4, "DX Controller");
    addPower(builder, 39200, 300, 281);
    addBattery(builder);
    builder.node(3);
    addIdentity(builder, 0x004546C7u, 1009484, 5, "DX Charger 4A");
    builder.node(4);
    addIdentity(builder, 0x004546C9u, 1009001, 7, "DX Drive 250");
    addPower(builder, 43150, 5800, 655);
    builder.node(5);
    builder.last().end = SnapshotEnd::Silent;
    builder.gap(0x1000, 0, SnapshotGap::NoAnswer).gap(0x1018, 1, SnapshotGap::NoAnswer);
    return snapshot;
}

inline Finding finding(const char *rule, Severity severity, quint8 nodeId,
                       const QVector<CanOpen::ObjectKey> &objects, const char *text, const char *advice = "")
{
    Finding finding;
    finding.rule = QString::fromLatin1(rule);
    finding.severity = severity;
    finding.nodeId = nodeId;
    finding.objects = objects;
    finding.text = QString::fromUtf8(text);
    finding.advice = QString::fromUtf8(advice);
    return finding;
}

inline CheckupResult checkup()
{
    CheckedComponent battery{2, QStringLiteral("Battery Pack"), ComponentState::Fault, {}, {}};
    battery.findings = {finding("cell-low", Severity::Fault, 2, {{0x6165, 7}},
                                "Cell 7 has 2.91 V, less than the 3.00 V that the battery allows.",
                                "Do not charge the battery. It needs service."),
                        finding("cell-spread", Severity::Fault, 2, {{0x6165, 7}},
                                "Cell 7 is 801 mV below the highest one (limit 100 mV).",
                                "Charge and balance, then check again; if it stays, the pack needs service."),
                        finding("health", Severity::Note, 2, {{0x6176, 1}}, "The state of health is 88 %.")};
    battery.notChecked = QStringList{QStringLiteral("Cell 10: The device did not answer.")};
    CheckedComponent motor{4, QStringLiteral("Motor Control unit"), ComponentState::Warning, {}, {}};
    motor.findings = {finding("voltage", Severity::Warning, 4, {{0x6040, 1}},
                              "The voltage is 43.15 V, more than the 42.00 V that the device allows.",
                              "Look at the charger and at the wiring.")};
    CheckedComponent display{5, QStringLiteral("Device"), ComponentState::NotChecked, {}, {}};
    display.notChecked = QStringList{QStringLiteral("The device does not answer.")};
    CheckupResult result;
    result.verdict = Verdict::Fault;
    result.components = {battery,
                         motor,
                         display,
                         {1, QStringLiteral("Draxel Controller"), ComponentState::Good, {}, {}},
                         {3, QStringLiteral("Charger"), ComponentState::Good, {}, {}}};
    result.vehicleFindings = {
        finding("versions", Severity::Note, 0, {}, "The devices follow different versions of the profile.")};
    return result;
}

inline ReportComparison comparison()
{
    const QDateTime time(QDate(2026, 3, 12), QTime(9, 40), Qt::OffsetFromUTC, 3600);
    const auto make = [](Change::Kind kind, quint8 nodeId, std::optional<CanOpen::ObjectKey> key,
                         const char *before, const char *after, const char *text) {
        Change change;
        change.kind = kind;
        change.nodeId = nodeId;
        change.key = key;
        change.before = QString::fromUtf8(before);
        change.after = QString::fromUtf8(after);
        change.text = QString::fromUtf8(text);
        return change;
    };
    Comparison changes;
    changes.changes = {
        make(Change::Kind::Replaced, 3, {}, "1009001", "1009484",
             "Charger: another device of the same kind, serial number 1009484 in the place of 1009001."),
        make(Change::Kind::Firmware, 2, {}, "1.2.0", "1.3.0", "The software version was 1.2.0 and is 1.3.0."),
        make(Change::Kind::Counter, 2, CanOpen::ObjectKey{0x617D, 1}, "210", "246",
             "Discharges: 210 before, 246 now."),
        make(Change::Kind::Value, 2, CanOpen::ObjectKey{0x6176, 1}, "94.00 %", "88.00 %", "")};
    return {time, changes};
}

inline HealthTrend trend()
{
    HealthTrend trend;
    trend.nodeId = 2;
    const double percents[] = {98, 96, 94, 88};
    const QDate dates[] = {QDate(2025, 3, 4), QDate(2025, 9, 18), QDate(2026, 3, 12), QDate(2026, 9, 3)};
    for (int i = 0; i < 4; ++i)
        trend.points.append({QDateTime(dates[i], QTime(10, 0), Qt::OffsetFromUTC, 7200), percents[i]});
    return trend;
}

inline ServiceReportData data(const QLocale &locale = QLocale(QLocale::English, QLocale::UnitedKingdom))
{
    ServiceReportData data;
    data.snapshot = snapshot();
    data.checkup = checkup();
    data.comparison = comparison();
    data.trends = {trend()};
    data.workshop.name = QStringLiteral("Zweirad Sommer");
    data.workshop.lines = QStringList{QStringLiteral("Hauptstraße 12"), QStringLiteral("12345 Musterstadt"),
                                      QStringLiteral("+49 123 456789")};
    data.program = QStringLiteral("draxelctl 1.0.0");
    data.locale = locale;
    return data;
}

} // namespace ReportExample
