// SPDX-License-Identifier: MIT
#include "bundlemanifest.h"

#include <json/jsondocument.h>
#include <json/jsonobject.h>
#include <json/jsontext.h>

#include <QCryptographicHash>

namespace {

const QLatin1String format("draxel-bundle");
constexpr int longestManifestText = 1000;
constexpr int newestVersion = 1'000'000;

} // namespace

QString BundleManifest::fingerprint(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

BundleManifest BundleManifest::of(const QVector<ZipFile::Entry> &entries)
{
    BundleManifest manifest;
    for (const ZipFile::Entry &entry : entries)
        manifest.files.append({entry.name, fingerprint(entry.bytes)});
    return manifest;
}

QByteArray BundleManifest::toJson() const
{
    JsonText json;
    json.beginObject();
    json.write("format", format);
    json.write("version", qint64(version));
    json.write("program", program);
    json.write("time", time.toString(Qt::ISODateWithMs));
    json.writeBoolean("masked", isMasked);
    json.beginArray("files");
    for (const File &file : files) {
        json.breakLine();
        json.beginObject();
        json.write("name", file.name);
        json.write("sha256", file.sha256);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.bytes() + '\n';
}

std::optional<BundleManifest> BundleManifest::fromJson(const QByteArray &text, QString *problem)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(text, problem);
    if (!document)
        return std::nullopt;
    JsonFault fault;
    const JsonPlace top(&fault);
    const JsonObject json(document->root(), top);
    BundleManifest manifest;
    if (fault.isEmpty() && json.text("format", longestManifestText) != format)
        top.complain(tr("it is no support bundle"));
    const qint64 told = fault.isEmpty() ? json.integer("version", 1, newestVersion) : 0;
    if (told > version)
        top.complain(tr("it was made by a newer version of the program (format %1)").arg(told));
    if (fault.isEmpty()) {
        manifest.program = json.optionalText("program", longestManifestText);
        manifest.time
            = QDateTime::fromString(json.optionalText("time", longestManifestText), Qt::ISODateWithMs);
        manifest.isMasked = json.boolean("masked", false);
        json.forEachObject("files", [&manifest](const JsonObject &file) {
            manifest.files.append(
                {file.text("name", longestManifestText), file.text("sha256", longestManifestText)});
        });
    }
    if (fault.isEmpty())
        return manifest;
    *problem = fault.text;
    return std::nullopt;
}
