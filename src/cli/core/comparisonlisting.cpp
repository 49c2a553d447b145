// SPDX-License-Identifier: MIT
#include "comparisonlisting.h"

#include <checkup/changesummary.h>
#include <json/jsontext.h>

#include <QStringList>

#include <iterator>

namespace {

// In the order of Change::Kind
constexpr const char *kindWords[] = {"added",     "removed", "replaced", "moved",   "firmware",
                                     "parameter", "counter", "value",    "finding", "gap"};
static_assert(std::size(kindWords) == static_cast<std::size_t>(Change::Kind::Gap) + 1);

void writeChange(JsonText *json, const Change &change)
{
    json->breakLine();
    json->beginObject();
    json->write("kind", ComparisonListing::word(change.kind));
    json->write("node", qint64(change.nodeId));
    if (change.key) {
        json->write("index", qint64(change.key->index));
        json->write("sub", qint64(change.key->subIndex));
    }
    json->write("before", change.before);
    json->write("after", change.after);
    json->write("text", change.text);
    json->endObject();
}

} // namespace

QString ComparisonListing::word(Change::Kind kind)
{
    return QLatin1String(kindWords[static_cast<std::size_t>(kind)]);
}

QString ComparisonListing::toText(const Comparison &comparison)
{
    if (comparison.isSame())
        return tr("Nothing has changed.");
    const Comparison summary = ChangeSummary::forPeople(comparison);
    QStringList lines;
    for (const Change &change : summary.changes)
        lines.append(change.text);
    lines.append(QString());
    lines.append(tr("Changes: %1.").arg(summary.changes.size()));
    return lines.join(QLatin1Char('\n'));
}

QByteArray ComparisonListing::toJson(const Comparison &comparison)
{
    JsonText json;
    json.beginObject();
    json.writeBoolean("same", comparison.isSame());
    json.beginArray("changes");
    for (const Change &change : comparison.changes)
        writeChange(&json, change);
    json.endArray();
    json.endObject();
    return json.bytes() + '\n';
}
