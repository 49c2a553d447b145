// SPDX-License-Identifier: MIT
#include "bundlewriting.h"

#include "bundledtrace.h"
#include "bundlemanifest.h"
#include "bundlemessages.h"

#include <checkup/checkup.h>
#include <checkup/checkupwriting.h>
#include <live/events/eventwriting.h>
#include <snapshot/snapshotfile.h>
#include <system/amounts.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

namespace {

QByteArray eventsJson(const SupportBundle &bundle)
{
    const auto timeOfDay = [&bundle](qint64 time) {
        return QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond, Qt::OffsetFromUTC,
                                              bundle.time.offsetFromUtc());
    };
    QJsonArray events;
    for (const LiveEvent &event : bundle.events)
        events.append(EventWriting::toJson(event, timeOfDay));
    return QJsonDocument(QJsonObject{{QStringLiteral("events"), events},
                                     {QStringLiteral("forgotten"), double(bundle.forgottenEvents)}})
        .toJson();
}

} // namespace

QString BundleWriting::readMe(const SupportBundle &bundle)
{
    QStringList lines{
        tr("This is a support bundle: what %1 knew of a vehicle on %2.")
            .arg(bundle.program, bundle.time.toString(Qt::ISODate)),
        QString(),
        tr("Open it with \"draxel %1\", or read its files one by one:").arg(tr("bundle.zip")),
        QString(),
        tr("manifest.json    which files there are, with their SHA-256"),
    };
    if (bundle.snapshot) {
        lines.append(tr("snapshot.dxsnap  what every device answered, with what could not be read and why"));
        lines.append(tr("checkup.json     what is wrong with the vehicle, and what to do"));
    }
    if (bundle.trace)
        lines.append(tr("trace.log.gz     the frames of the bus, as candump writes them"));
    lines.append(tr("events.json      what happened on the bus"));
    lines.append(tr("messages.txt     what the program told its user"));
    lines.append(tr("system.json      the program, the computer and the adapter"));
    lines.append(QString());
    lines.append(bundle.isMasked
                     ? tr("Serial numbers, names, notes and paths are masked: the same one everywhere by the "
                          "same word or number. Nobody can tell what it was.")
                     : tr("Nothing is masked: serial numbers and notes stand in it as they are."));
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QVector<ZipFile::Entry> BundleWriting::toFiles(const SupportBundle &bundle, const RuleSet &rules,
                                               const QString &language)
{
    QVector<ZipFile::Entry> files{{QStringLiteral("README.txt"), readMe(bundle).toUtf8()}};
    if (bundle.snapshot) {
        files.append({QStringLiteral("snapshot.dxsnap"), SnapshotFile::toJson(*bundle.snapshot)});
        files.append({QStringLiteral("checkup.json"),
                      CheckupWriting::toJson(Checkup::judge(*bundle.snapshot, rules, language))});
    }
    if (bundle.trace)
        files.append({QLatin1String(BundledTrace::fileName), BundledTrace::toBytes(*bundle.trace), true});
    files.append({QStringLiteral("events.json"), eventsJson(bundle)});
    files.append({QStringLiteral("messages.txt"), BundleMessages::toText(bundle.messages)});
    files.append({QStringLiteral("system.json"), QJsonDocument(bundle.system).toJson()});

    BundleManifest manifest = BundleManifest::of(files);
    manifest.program = bundle.program;
    manifest.time = bundle.time;
    manifest.isMasked = bundle.isMasked;
    files.prepend({QLatin1String(BundleManifest::fileName), manifest.toJson()});
    return files;
}
