// SPDX-License-Identifier: MIT
#include "linewriting.h"

#include "tracedecoder.h"

#include <system/amounts.h>
#include <trace/core/trace.h>

#include <QJsonArray>

namespace {

struct ProblemName
{
    SdoTransfer::Problem problem;
    const char *name;
};

constexpr ProblemName problemNames[] = {
    {SdoTransfer::WrongToggle, "wrongToggle"},     {SdoTransfer::LostSegment, "lostSegment"},
    {SdoTransfer::SizeMismatch, "sizeMismatch"},   {SdoTransfer::WrongChecksum, "wrongChecksum"},
    {SdoTransfer::ForeignClient, "foreignClient"}, {SdoTransfer::Overtaken, "overtaken"},
    {SdoTransfer::Repeated, "repeated"},           {SdoTransfer::Cut, "cut"},
};

QLatin1String markName(TraceMark mark)
{
    switch (mark) {
    case TraceMark::Plain:
        break;
    case TraceMark::Note:
        return QLatin1String("note");
    case TraceMark::Warning:
        return QLatin1String("warning");
    case TraceMark::Fault:
        return QLatin1String("fault");
    }
    return QLatin1String("plain");
}

QLatin1String outcomeName(SdoTransfer::Outcome outcome)
{
    switch (outcome) {
    case SdoTransfer::Outcome::Done:
        break;
    case SdoTransfer::Outcome::AbortedByServer:
        return QLatin1String("abortedByServer");
    case SdoTransfer::Outcome::AbortedByClient:
        return QLatin1String("abortedByClient");
    case SdoTransfer::Outcome::NoAnswer:
        return QLatin1String("noAnswer");
    case SdoTransfer::Outcome::Broken:
        return QLatin1String("broken");
    case SdoTransfer::Outcome::Unfinished:
        return QLatin1String("unfinished");
    }
    return QLatin1String("done");
}

QLatin1String protocolName(SdoTransfer::Protocol protocol)
{
    switch (protocol) {
    case SdoTransfer::Protocol::Expedited:
        break;
    case SdoTransfer::Protocol::Segmented:
        return QLatin1String("segmented");
    case SdoTransfer::Protocol::Block:
        return QLatin1String("block");
    }
    return QLatin1String("expedited");
}

QJsonArray problemsOf(const SdoTransfer &transfer)
{
    QJsonArray names;
    for (const ProblemName &row : problemNames) {
        if (transfer.has(row.problem))
            names.append(QLatin1String(row.name));
    }
    return names;
}

} // namespace

void LineWriting::addFrame(const TraceFrame &frame, QJsonObject *json)
{
    const QByteArray bytes(reinterpret_cast<const char *>(frame.bytes.data()), frame.size());
    json->insert(QLatin1String("id"), double(frame.id));
    json->insert(QLatin1String("isExtended"), frame.isExtended());
    json->insert(QLatin1String("isRemote"), frame.isRemote());
    json->insert(QLatin1String("isSent"), frame.isSent());
    json->insert(QLatin1String("bytes"), QString::fromLatin1(bytes.toHex(' ').toUpper()));
}

QJsonObject LineWriting::toJson(const SdoTransfer &transfer, const TraceDecoder &decoder)
{
    QJsonObject json;
    json.insert(QLatin1String("index"), transfer.object.index);
    json.insert(QLatin1String("sub"), transfer.object.subIndex);
    json.insert(QLatin1String("name"), decoder.book().objects().name(transfer.nodeId, transfer.object));
    json.insert(QLatin1String("isUpload"), transfer.isUpload);
    json.insert(QLatin1String("isSent"), transfer.isSent);
    json.insert(QLatin1String("protocol"), protocolName(transfer.protocol));
    json.insert(QLatin1String("outcome"), outcomeName(transfer.outcome));
    json.insert(QLatin1String("abortCode"), double(transfer.abortCode));
    json.insert(QLatin1String("problems"), problemsOf(transfer));
    json.insert(QLatin1String("frames"), transfer.frames);
    json.insert(QLatin1String("duration"), double(transfer.end - transfer.begin) / Microseconds::ofSecond);
    json.insert(QLatin1String("bytes"), QString::fromLatin1(transfer.data.toHex(' ').toUpper()));
    const QString value = decoder.transfers().value(transfer);
    json.insert(QLatin1String("value"), transfer.hasValue() ? QJsonValue(value) : QJsonValue());
    return json;
}

QJsonObject LineWriting::toJson(const StreamedLine &line, const TraceDecoder &decoder, const TraceHead &head)
{
    const FrameSort sort
        = line.transfer ? FrameSort::of(*line.transfer) : decoder.sort(line.frame, line.position);
    const TraceText text
        = line.transfer ? decoder.text(*line.transfer) : decoder.text(line.frame, line.position);
    QJsonObject json;
    json.insert(QLatin1String("time"), double(line.frame.time) / Microseconds::ofSecond);
    json.insert(QLatin1String("channel"), head.channels.value(line.frame.channel));
    json.insert(QLatin1String("node"), sort.nodeId);
    json.insert(QLatin1String("kind"), QLatin1String(frameKindName(sort.kind)));
    json.insert(QLatin1String("mark"), markName(sort.mark));
    json.insert(QLatin1String("text"), text.text);
    if (line.transfer)
        json.insert(QLatin1String("transfer"), toJson(*line.transfer, decoder));
    else
        addFrame(line.frame, &json);
    return json;
}
