// SPDX-License-Identifier: MIT
#include "checkupwriting.h"

#include "findingwords.h"

#include <json/jsontext.h>

namespace {

void writeFinding(JsonText *json, const Finding &finding)
{
    json->beginObject();
    json->write("rule", finding.rule);
    json->write("severity", FindingWords::of(finding.severity));
    json->write("text", finding.text);
    json->write("advice", finding.advice);
    json->beginArray("objects");
    for (const CanOpen::ObjectKey key : finding.objects) {
        json->beginObject();
        json->write("index", qint64(key.index));
        json->write("sub", qint64(key.subIndex));
        json->endObject();
    }
    json->endArray();
    json->endObject();
}

void writeFindings(JsonText *json, const QVector<Finding> &findings)
{
    json->beginArray("findings");
    for (const Finding &finding : findings) {
        json->breakLine();
        writeFinding(json, finding);
    }
    json->endArray();
}

void writeComponent(JsonText *json, const CheckedComponent &component)
{
    json->breakLine();
    json->beginObject();
    json->write("node", qint64(component.nodeId));
    json->write("name", component.name);
    json->write("state", FindingWords::of(component.state));
    writeFindings(json, component.findings);
    json->beginArray("notChecked");
    for (const QString &reason : component.notChecked)
        json->write(nullptr, reason);
    json->endArray();
    json->endObject();
}

} // namespace

QByteArray CheckupWriting::toJson(const CheckupResult &result)
{
    JsonText json;
    json.beginObject();
    json.write("verdict", FindingWords::of(result.verdict));
    json.beginArray("components");
    for (const CheckedComponent &component : result.components)
        writeComponent(&json, component);
    json.endArray();
    json.breakLine();
    writeFindings(&json, result.vehicleFindings);
    json.endObject();
    return json.bytes() + '\n';
}
