// SPDX-License-Identifier: MIT
#pragma once

#include "linestream.h"

#include <QJsonObject>

class TraceDecoder;
struct TraceHead;

/*! Lines of a trace for programs. */
class LineWriting
{
public:
    /*! "time" (s), "channel", "node" (0: of no single one), "kind", "mark", "text", "id", "isExtended", "isRemote", "isSent",
     *  "bytes" (hexadecimal); of a transfer "transfer" instead of the last five.
     */
    static QJsonObject toJson(const StreamedLine &line, const TraceDecoder &decoder, const TraceHead &head);

private:
    static void addFrame(const TraceFrame &frame, QJsonObject *json);
    static QJsonObject toJson(const SdoTransfer &transfer, const TraceDecoder &decoder);
};
