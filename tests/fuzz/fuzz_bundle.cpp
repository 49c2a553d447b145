// SPDX-License-Identifier: MIT
// Support bundles that somebody has sent: as a zip file, and its parts with a zip file around them that is good. What
// can be opened can be masked, and opened again.
#include "bytereader.h"

#include <bundle/bundlefile.h>
#include <bundle/bundlemanifest.h>
#include <bundle/bundlemasking.h>
#include <bundle/bundlewriting.h>
#include <bundle/masking/mask.h>
#include <bundle/zipfile.h>
#include <checkup/ruleset.h>

namespace {

void check(const QByteArray &zip)
{
    QString problem;
    const std::optional<SupportBundle> bundle = BundleFile::fromBytes(zip, &problem);
    require(bundle.has_value() == problem.isEmpty() || bundle);
    if (!bundle)
        return;
    for (const QString &sentence : bundle->problems)
        require(!sentence.isEmpty());
    SupportBundle masked = BundleMasking::masked(*bundle, Mask(QByteArrayLiteral("always the same")));
    require(masked.isMasked);
    require(!bundle->trace || masked.trace->frames.size() == bundle->trace->frames.size());
    if (!masked.time.isValid())
        masked.time = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    const QByteArray again
        = ZipFile::pack(BundleWriting::toFiles(masked, RuleSet(), QStringLiteral("en")), &problem);
    const std::optional<SupportBundle> same = BundleFile::fromBytes(again, &problem);
    require(same.has_value());
    require(same->snapshot.has_value() == bundle->snapshot.has_value());
}

/*! The bytes as one of the parts, by the first of them. */
void checkPart(const QByteArray &bytes)
{
    constexpr const char *names[]
        = {"manifest.json", "snapshot.dxsnap", "trace.log.gz", "events.json", "messages.txt"};
    const auto kind = static_cast<std::size_t>(static_cast<quint8>(bytes.at(0))) % std::size(names);
    QVector<ZipFile::Entry> files{{QLatin1String(names[kind]), bytes.mid(1)}};
    if (kind != 0)
        files.prepend({QLatin1String(names[0]), BundleManifest::of(files).toJson()});
    QString problem;
    check(ZipFile::pack(files, &problem));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    if (ZipFile::isZip(bytes))
        check(bytes);
    else
        checkPart(bytes);
    return 0;
}
