// SPDX-License-Identifier: MIT
#include "savedvehicle.h"

#include "snapshotexchange.h"
#include "snapshotfile.h"

#include <store/exchangefile.h>
#include <store/nodestore.h>
#include <system/systemerrortext.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

namespace {

struct SavedVehicleTr
{
    Q_DECLARE_TR_FUNCTIONS(SavedVehicle)
};

constexpr qint64 maximumSize = maximumExchangeFileSize; // bytes; of snapshots and exchange files alike

/*! The file is read once only, so that it may be a pipe. */
std::optional<QByteArray> readFile(const QString &fileName, QString *errorMessage)
{
    const QString shownName = QDir::toNativeSeparators(fileName);
    QFile file(fileName);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.read(maximumSize + 1);
    if (file.error() != QFileDevice::NoError) {
        *errorMessage = SavedVehicleTr::tr("The file %1 cannot be read: %2.")
                            .arg(shownName, systemErrorText(file.errorString()));
        return std::nullopt;
    }
    if (bytes.size() > maximumSize) {
        *errorMessage = SavedVehicleTr::tr("The file %1 is far too large for a vehicle.").arg(shownName);
        return std::nullopt;
    }
    return bytes;
}

/*! The text as from a file that is open in text mode. */
QString textOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    return QTextStream(&buffer).readAll();
}

/*! What a file holds: one of the two. */
struct Content
{
    std::optional<Snapshot> snapshot;
    QString exchangeText;
};

/*! Looks whether it is good to its end. */
std::optional<Content> readContent(const QString &fileName, QString *errorMessage)
{
    const std::optional<QByteArray> bytes = readFile(fileName, errorMessage);
    if (!bytes)
        return std::nullopt;
    Content content;
    QString problem;
    if (SnapshotFile::looksLikeSnapshot(*bytes)) {
        content.snapshot = SnapshotFile::fromJson(*bytes, &problem);
        problem = content.snapshot ? QString() : SavedVehicleTr::tr("no good snapshot: %1").arg(problem);
    } else {
        content.exchangeText = textOf(*bytes);
        problem = exchangeProblem(content.exchangeText);
        if (!problem.isEmpty())
            problem = SavedVehicleTr::tr("neither a snapshot nor an exchange file: %1").arg(problem);
    }
    if (problem.isEmpty())
        return content;
    *errorMessage = SavedVehicleTr::tr("The file %1 is %2").arg(QDir::toNativeSeparators(fileName), problem);
    return std::nullopt;
}

} // namespace

std::optional<Snapshot> SavedVehicle::load(const QString &fileName, QString *errorMessage)
{
    const std::optional<Content> content = readContent(fileName, errorMessage);
    if (!content || content->snapshot)
        return content ? content->snapshot : std::nullopt;
    NodeStore store;
    importFrom(content->exchangeText, store);
    Snapshot snapshot = SnapshotExchange::fromStore(store);
    snapshot.time = exchangeDate(content->exchangeText);
    return snapshot;
}

bool SavedVehicle::loadStore(const QString &fileName, NodeStore &store, QString *errorMessage)
{
    const std::optional<Content> content = readContent(fileName, errorMessage);
    if (content && content->snapshot)
        SnapshotExchange::fillStore(*content->snapshot, store);
    else if (content)
        importFrom(content->exchangeText, store);
    return content.has_value();
}
