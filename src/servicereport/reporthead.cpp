// SPDX-License-Identifier: MIT
#include "reporthead.h"

#include "reporttr.h"
#include "reportwords.h"

#include <checkup/findings.h>
#include <snapshot/deviceidentity.h>
#include <snapshot/snapshot.h>

namespace {

constexpr quint8 controllerNode = 1;
constexpr int longestName = 500;  // characters of what a person wrote in one line
constexpr int longestNote = 4000; // and in many

QString scopeText(SnapshotScope scope)
{
    switch (scope) {
    case SnapshotScope::Full:
        return ReportTr::tr("Everything that the devices have");
    case SnapshotScope::Quick:
        return ReportTr::tr("Quick: the most important values");
    case SnapshotScope::Imported:
        return ReportTr::tr("Taken from an exchange file");
    case SnapshotScope::Recorded:
        return ReportTr::tr("Taken from a trace: what others read in it");
    }
    return QString();
}

QString busText(const Snapshot &snapshot)
{
    QStringList parts;
    for (const QString &text : {snapshot.bus, snapshot.adapter}) {
        if (!text.isEmpty())
            parts.append(ReportWords::shortened(text));
    }
    return parts.join(QStringLiteral(" · "));
}

QString bitRateText(int bitRate, const ReportWords &words)
{
    constexpr int kilo = 1000;
    if (bitRate <= 0)
        return QString();
    return bitRate % kilo == 0 ? QStringLiteral("%1 kbit/s").arg(words.locale().toString(bitRate / kilo))
                               : QStringLiteral("%1 bit/s").arg(words.locale().toString(bitRate));
}

QStringList counts(const CheckupResult &checkup)
{
    QStringList texts;
    if (const int faults = checkup.count(Severity::Fault))
        texts << ReportTr::tr("%n fault(s)", nullptr, faults);
    if (const int warnings = checkup.count(Severity::Warning))
        texts << ReportTr::tr("%n warning(s)", nullptr, warnings);
    if (const int notes = checkup.count(Severity::Note))
        texts << ReportTr::tr("%n note(s)", nullptr, notes);
    if (const int unchecked = checkup.notCheckedCount())
        texts << ReportTr::tr("%n component(s) not fully checked", nullptr, unchecked);
    return texts;
}

} // namespace

QString ReportHead::vehicleName(const Snapshot &snapshot)
{
    const QString written = snapshot.notes.vehicle.trimmed();
    if (!written.isEmpty())
        return ReportWords::shortened(written, longestName);
    const SnapshotNode *controller = snapshot.find(controllerNode);
    const std::optional<quint32> serial
        = controller != nullptr ? DeviceIdentity::of(*controller).serial : std::nullopt;
    return serial && *serial != 0 ? QString::number(*serial) : QString();
}

QVector<ReportFact> ReportHead::facts(const Snapshot &snapshot, const ReportWords &words)
{
    const SnapshotNotes &notes = snapshot.notes;
    const QVector<ReportFact> all{
        {ReportTr::tr("Vehicle"), vehicleName(snapshot)},
        {ReportTr::tr("Customer"), ReportWords::shortened(notes.customer, longestName)},
        {ReportTr::tr("Date"), words.dateAndTime(snapshot.time)},
        {ReportTr::tr("Technician"), ReportWords::shortened(notes.technician, longestName)},
        {ReportTr::tr("Odometer"), ReportWords::shortened(notes.odometer, longestName)},
        {ReportTr::tr("What was read"), scopeText(snapshot.scope)},
        {ReportTr::tr("Bus"), busText(snapshot)},
        {ReportTr::tr("Bit rate"), bitRateText(snapshot.bitRate, words)},
        {ReportTr::tr("Read with"), ReportWords::shortened(snapshot.program)},
        {ReportTr::tr("Remarks"), ReportWords::shortened(notes.note, longestNote)},
    };
    QVector<ReportFact> known;
    for (const ReportFact &fact : all) {
        if (!fact.text.trimmed().isEmpty())
            known.append(fact);
    }
    return known;
}

QString ReportHead::headline(const CheckupResult &checkup)
{
    switch (checkup.verdict) {
    case Verdict::Ok:
        return ReportTr::tr("In order");
    case Verdict::Note:
        return ReportTr::tr("In order, with notes");
    case Verdict::Incomplete:
        return ReportTr::tr("Not everything could be checked");
    case Verdict::Warning:
        return ReportTr::tr("Needs attention");
    case Verdict::Fault:
        return ReportTr::tr("Faults were found");
    }
    return QString();
}

QString ReportHead::sentence(const CheckupResult &checkup)
{
    const QStringList texts = counts(checkup);
    if (texts.isEmpty() && checkup.components.isEmpty())
        return ReportTr::tr("No component was heard.");
    if (texts.isEmpty())
        return ReportTr::tr("Nothing was found, and all components were checked.");
    return texts.join(QStringLiteral(", "));
}
