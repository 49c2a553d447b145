// SPDX-License-Identifier: MIT
#include "snapshotfile.h"

#include "snapshotreading.h"
#include "snapshotwriting.h"

#include <json/jsondocument.h>
#include <json/jsonobject.h>
#include <store/wholefile.h>
#include <system/systemerrortext.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>

namespace {

struct SnapshotFileTr
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotFile)
};

} // namespace

QByteArray SnapshotFile::toJson(const Snapshot &snapshot)
{
    return SnapshotJson::write(snapshot, version);
}

std::optional<Snapshot> SnapshotFile::fromJson(const QByteArray &text, QString *errorMessage)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(text, errorMessage);
    if (!document)
        return std::nullopt;
    JsonFault fault;
    const JsonPlace top(&fault);
    const Snapshot snapshot = SnapshotReading::read(JsonObject(document->root(), top), version);
    if (fault.isEmpty())
        return snapshot;
    *errorMessage = fault.text;
    return std::nullopt;
}

bool SnapshotFile::save(const QString &fileName, const Snapshot &snapshot, QString *errorMessage)
{
    WholeFile file(fileName);
    if (file.open() && file.write(toJson(snapshot)) && file.commit())
        return true;
    *errorMessage = SnapshotFileTr::tr("The file %1 cannot be written: %2.")
                        .arg(QDir::toNativeSeparators(fileName), systemErrorText(file.errorString()));
    return false;
}

bool SnapshotFile::looksLikeSnapshot(const QByteArray &text)
{
    constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
    const QByteArray start
        = (text.startsWith(byteOrderMark) ? text.mid(int(std::size(byteOrderMark)) - 1) : text).trimmed();
    return start.startsWith('{') || start.startsWith('[');
}

QString SnapshotFile::fingerprint(const Snapshot &snapshot)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(toJson(snapshot), QCryptographicHash::Sha256).toHex());
}
