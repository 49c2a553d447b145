// SPDX-License-Identifier: MIT
#include "bundlereading.h"

#include "bundledtrace.h"
#include "bundlemessages.h"

#include <live/events/eventreading.h>
#include <snapshot/snapshotfile.h>

#include <algorithm>

namespace {

constexpr int largestSnapshot = 64 * 1024 * 1024; // bytes, as of every saved vehicle

const ZipFile::Entry *find(const QVector<ZipFile::Entry> &files, QLatin1String name)
{
    const auto *const file = std::find_if(files.begin(), files.end(),
                                          [name](const ZipFile::Entry &entry) { return entry.name == name; });
    return file != files.end() ? file : nullptr;
}

} // namespace

BundleReading::BundleReading(const BundleManifest &manifest, const QVector<ZipFile::Entry> &files)
    : m_manifest(manifest)
    , m_files(files)
{
    m_bundle.program = manifest.program;
    m_bundle.time = manifest.time;
    m_bundle.isMasked = manifest.isMasked;
}

std::optional<BundleManifest> BundleReading::manifestOf(const QVector<ZipFile::Entry> &files,
                                                        QString *problem)
{
    const ZipFile::Entry *file = find(files, QLatin1String(BundleManifest::fileName));
    if (file == nullptr) {
        *problem = tr("it is no support bundle: it has no manifest.json");
        return std::nullopt;
    }
    QString wrong;
    std::optional<BundleManifest> manifest = BundleManifest::fromJson(file->bytes, &wrong);
    if (!manifest)
        *problem = tr("its manifest.json cannot be used: %1").arg(wrong);
    return manifest;
}

std::optional<SupportBundle> BundleReading::read(const QVector<ZipFile::Entry> &files, QString *problem)
{
    const std::optional<BundleManifest> manifest = manifestOf(files, problem);
    if (!manifest)
        return std::nullopt;
    BundleReading reading(*manifest, files);
    reading.readSnapshot();
    reading.readTrace();
    reading.readEvents();
    reading.readMessages();
    return reading.m_bundle;
}

std::optional<BundleReading::TakenFile> BundleReading::takeTrace(const QVector<ZipFile::Entry> &files,
                                                                 QString *problem)
{
    const std::optional<BundleManifest> manifest = manifestOf(files, problem);
    if (!manifest)
        return std::nullopt;
    BundleReading reading(*manifest, files);
    const std::optional<QByteArray> bytes = reading.take(BundledTrace::fileName);
    return TakenFile{bytes, reading.m_bundle.problems.value(0)};
}

void BundleReading::complain(const char *name, const QString &reason)
{
    m_bundle.problems.append(tr("%1 of the bundle was not opened: %2").arg(QLatin1String(name), reason));
}

/*! A file that the manifest names, as it was then. What it does not name is none of the bundle. */
std::optional<QByteArray> BundleReading::take(const char *name)
{
    const auto *const named
        = std::find_if(m_manifest.files.begin(), m_manifest.files.end(),
                       [name](const BundleManifest::File &file) { return file.name == QLatin1String(name); });
    if (named == m_manifest.files.end())
        return std::nullopt;
    const ZipFile::Entry *file = find(m_files, QLatin1String(name));
    if (file == nullptr)
        complain(name, tr("It is missing."));
    else if (BundleManifest::fingerprint(file->bytes) != named->sha256)
        complain(name, tr("It is not the file that was put in: somebody has changed it."));
    else
        return file->bytes;
    return std::nullopt;
}

void BundleReading::readSnapshot()
{
    constexpr char name[] = "snapshot.dxsnap";
    const std::optional<QByteArray> bytes = take(name);
    if (!bytes)
        return;
    QString reason = tr("It is far too large.");
    if (bytes->size() <= largestSnapshot)
        m_bundle.snapshot = SnapshotFile::fromJson(*bytes, &reason);
    if (!m_bundle.snapshot)
        complain(name, reason);
}

void BundleReading::readTrace()
{
    const std::optional<QByteArray> bytes = take(BundledTrace::fileName);
    if (!bytes)
        return;
    QString reason;
    m_bundle.trace = BundledTrace::fromBytes(*bytes, &reason);
    if (!m_bundle.trace)
        complain(BundledTrace::fileName, reason);
}

void BundleReading::readEvents()
{
    constexpr char name[] = "events.json";
    const std::optional<QByteArray> bytes = take(name);
    if (!bytes)
        return;
    QString reason;
    const std::optional<EventReading::Events> read = EventReading::fromJson(*bytes, &reason);
    if (!read) {
        complain(name, reason);
        return;
    }
    m_bundle.events = read->events;
    m_bundle.forgottenEvents = read->forgotten;
}

void BundleReading::readMessages()
{
    if (const std::optional<QByteArray> bytes = take("messages.txt"))
        m_bundle.messages = BundleMessages::fromText(*bytes);
}
