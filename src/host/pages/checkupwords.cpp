// SPDX-License-Identifier: MIT
#include "checkupwords.h"

#include "checkuprecord.h"

#include <canopen/plaintext.h>
#include <servicereport/reporthead.h>

#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

using std::chrono::milliseconds;

namespace {

constexpr qint64 msPerSecond = 1000;
constexpr qint64 secondsPerMinute = 60;
constexpr int longestName = 80; // characters of what a person or a device called something

QString shortName(const QString &text)
{
    const QString plain = CanOpen::plainText(text).simplified();
    return plain.size() <= longestName ? plain : plain.left(longestName) + QStringLiteral("…");
}

QString dateAndTime(const QDateTime &time)
{
    return QLocale().toString(time.toLocalTime(), QLocale::ShortFormat);
}

} // namespace

QString CheckupWords::state(const SnapshotNode &node, SnapshotScope scope)
{
    if (node.end == SnapshotEnd::Silent)
        return tr("No answer");
    if (!node.nmtState)
        return scope == SnapshotScope::Imported || scope == SnapshotScope::Recorded ? tr("Not known")
                                                                                    : tr("No heartbeat");
    switch (*node.nmtState) {
    case CanOpen::NmtState::BootUp:
        return tr("Starting");
    case CanOpen::NmtState::Stopped:
        return tr("Stopped");
    case CanOpen::NmtState::Operational:
        return tr("Operating");
    case CanOpen::NmtState::PreOperational:
        return tr("Waiting");
    }
    return tr("Not known");
}

QString CheckupWords::sentence(const CheckedComponent &component)
{
    const bool isFirstFinding = component.state != ComponentState::NotChecked;
    if (!component.findings.isEmpty() && isFirstFinding)
        return component.findings.first().text;
    if (!component.notChecked.isEmpty())
        return component.notChecked.first();
    return component.state == ComponentState::Good ? tr("In order.") : QString();
}

QString CheckupWords::timeLeft(const std::optional<milliseconds> &time)
{
    if (!time)
        return QString();
    const qint64 seconds = (time->count() + msPerSecond - 1) / msPerSecond;
    return seconds < 2 * secondsPerMinute
               ? tr("%1 s left").arg(seconds)
               : tr("%1 min left").arg((seconds + secondsPerMinute - 1) / secondsPerMinute);
}

QString CheckupWords::progress(const SnapshotProgress &progress, bool isListening)
{
    QStringList parts;
    if (progress.nodes == 0)
        return tr("Looking for devices ...");
    if (isListening)
        parts << tr("%n device(s) found, still looking", nullptr, progress.nodes);
    else
        parts << tr("device %1 of %2").arg(qMin(progress.nodesDone + 1, progress.nodes)).arg(progress.nodes);
    parts << tr("%1 of %2").arg(QLocale().toString(progress.asked), QLocale().toString(progress.total));
    if (!isListening && progress.timeLeft)
        parts << timeLeft(progress.timeLeft);
    return parts.join(QStringLiteral(" · "));
}

QString CheckupWords::progress(const SnapshotProgress &progress)
{
    if (progress.total == 0)
        return tr("Waits for its turn");
    return tr("Is being read: %1 of %2")
        .arg(QLocale().toString(progress.asked), QLocale().toString(progress.total));
}

QString CheckupWords::verdict(const CheckupRecord &record)
{
    if (record.snapshot.nodes.isEmpty()) {
        return record.source == CheckupRecord::Source::Bus
                   ? tr("No device was heard. Is the vehicle switched on?")
                   : tr("There is no device in it.");
    }
    //: Verdict, and what was found in numbers: "Faults were found: 2 faults, 1 warning"
    return tr("%1: %2").arg(ReportHead::headline(record.result), ReportHead::sentence(record.result));
}

QString CheckupWords::vehicle(const CheckupRecord &record)
{
    QStringList parts;
    const QString name = shortName(ReportHead::vehicleName(record.snapshot));
    parts << (name.isEmpty() ? tr("Vehicle without a serial number") : tr("Vehicle %1").arg(name));
    if (!record.snapshot.notes.customer.isEmpty())
        parts << shortName(record.snapshot.notes.customer);
    if (record.snapshot.time.isValid())
        parts << dateAndTime(record.snapshot.time);
    if (record.source == CheckupRecord::Source::File)
        parts << tr("from the file %1").arg(QFileInfo(record.fileName).fileName());
    else if (record.source == CheckupRecord::Source::Archive)
        parts << tr("from the archive");
    if (record.comparison && record.comparison->earlier.time.isValid())
        parts << tr("last visit %1").arg(dateAndTime(record.comparison->earlier.time));
    return parts.join(QStringLiteral(" · "));
}

QString CheckupWords::fileName(const CheckupRecord &record)
{
    QString name = shortName(ReportHead::vehicleName(record.snapshot));
    // What file systems do not like in names.
    name.remove(QRegularExpression(QStringLiteral("[\\x00-\\x1f<>:\"/\\\\|?*]")));
    if (name.trimmed().isEmpty())
        name = QStringLiteral("vehicle");
    const QDateTime time
        = record.snapshot.time.isValid() ? record.snapshot.time : QDateTime::currentDateTime();
    return QStringLiteral("%1 %2.dxsnap")
        .arg(name.trimmed(), time.toString(QStringLiteral("yyyy-MM-dd HH-mm")));
}

QString CheckupWords::counts(int faults, int warnings, int notes, int notChecked)
{
    QStringList texts;
    if (faults > 0)
        texts << tr("%n fault(s)", nullptr, faults);
    if (warnings > 0)
        texts << tr("%n warning(s)", nullptr, warnings);
    if (notes > 0)
        texts << tr("%n note(s)", nullptr, notes);
    if (notChecked > 0)
        texts << tr("%n component(s) not checked", nullptr, notChecked);
    return texts.join(QStringLiteral(", "));
}
