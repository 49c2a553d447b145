// SPDX-License-Identifier: MIT
#include "waitingverdict.h"

#include <json/jsondocument.h>
#include <json/jsonobject.h>
#include <store/wholefile.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

namespace {

constexpr qint64 longestFile = 4096; // bytes; one has about a hundred

constexpr char verdictKey[] = "verdict"; // a number, as in the table of the visits
constexpr char faultsKey[] = "faults";
constexpr char warningsKey[] = "warnings";
constexpr char notesKey[] = "notes";
constexpr char notCheckedKey[] = "notChecked";

int countOf(const JsonObject &object, const char *key)
{
    return static_cast<int>(object.integer(key, 0, std::numeric_limits<int>::max()));
}

} // namespace

QString WaitingVerdict::fileOf(const QString &snapshotFile)
{
    const QFileInfo info(snapshotFile);
    return info.path() + QLatin1Char('/') + info.completeBaseName() + QStringLiteral(".verdict");
}

bool WaitingVerdict::save(const QString &snapshotFile, const VisitVerdict &verdict)
{
    const QJsonObject object{{QLatin1String(verdictKey), static_cast<int>(verdict.verdict)},
                             {QLatin1String(faultsKey), verdict.faults},
                             {QLatin1String(warningsKey), verdict.warnings},
                             {QLatin1String(notesKey), verdict.notes},
                             {QLatin1String(notCheckedKey), verdict.notChecked}};
    WholeFile file(fileOf(snapshotFile));
    return file.open() && file.write(QJsonDocument(object).toJson()) && file.commit();
}

std::optional<VisitVerdict> WaitingVerdict::load(const QString &snapshotFile)
{
    QFile file(fileOf(snapshotFile));
    if (!file.open(QIODevice::ReadOnly) || file.size() > longestFile)
        return std::nullopt;
    QString problem; // is nothing that the user could mend
    const std::optional<JsonDocument> document = JsonDocument::parse(file.readAll(), &problem);
    if (!document)
        return std::nullopt;
    JsonFault fault;
    const JsonPlace top(&fault);
    const JsonObject object(document->root(), top);
    VisitVerdict verdict;
    verdict.verdict = static_cast<Verdict>(object.integer(verdictKey, 0, static_cast<int>(Verdict::Fault)));
    verdict.faults = countOf(object, faultsKey);
    verdict.warnings = countOf(object, warningsKey);
    verdict.notes = countOf(object, notesKey);
    verdict.notChecked = countOf(object, notCheckedKey);
    return fault.isEmpty() ? std::optional<VisitVerdict>(verdict) : std::nullopt;
}

void WaitingVerdict::remove(const QString &snapshotFile)
{
    QFile::remove(fileOf(snapshotFile));
}
