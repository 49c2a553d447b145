// SPDX-License-Identifier: MIT
#include "textsearch.h"

#include <trace/core/traceframe.h>
#include <trace/transfers/sdotransfer.h>

#include <algorithm>

namespace {

constexpr int keptBytes = 8;
constexpr quint64 transferTag = quint64(1) << 63; // no address has it

template<typename Bytes>
quint64 packed(const Bytes &bytes, int count)
{
    quint64 number = 0;
    for (int i = count - 1; i >= 0; --i)
        number = number << 8 | static_cast<quint8>(bytes[i]);
    return number;
}

} // namespace

std::size_t TextSearch::placeOf(const Key &key)
{
    // Odd numbers of 64 bits spread what is near together; the upper half is spread best.
    constexpr quint64 first = 0x9E3779B97F4A7C15;
    constexpr quint64 second = 0xC2B2AE3D27D4EB4F;
    constexpr int upperHalf = 32;
    const quint64 mixed = (key.data * first ^ key.what * second ^ key.how) * first;
    return static_cast<std::size_t>(mixed >> upperHalf) % places;
}

TextSearch::Key TextSearch::keyOf(const TraceFrame &frame, const PdoLayout *layout)
{
    const quint64 what = quint64(frame.id) << 32 | quint64(frame.length) << 8 | frame.flags;
    return {packed(frame.bytes.data(), TraceFrame::mostBytes), what, quint64(quintptr(layout))};
}

std::optional<TextSearch::Key> TextSearch::keyOf(const SdoTransfer &transfer)
{
    if (transfer.data.size() > keptBytes)
        return std::nullopt;
    const quint64 what = quint64(transfer.object.index) << 48 | quint64(transfer.object.subIndex) << 40
                         | quint64(transfer.nodeId) << 32 | transfer.abortCode;
    const quint64 how = transferTag | quint64(transfer.problems) << 32 | quint64(transfer.data.size()) << 16
                        | quint64(static_cast<quint8>(transfer.outcome)) << 8
                        | quint64(transfer.isUpload ? 2 : 0) | quint64(transfer.isSizeUnknown ? 1 : 0);
    return Key{packed(transfer.data.constData(), transfer.data.size()), what, how};
}
