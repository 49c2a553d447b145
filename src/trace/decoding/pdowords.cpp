// SPDX-License-Identifier: MIT
#include "pdowords.h"

#include "pdolayout.h"

#include <live/values/pdodecoder.h>
#include <trace/core/traceframe.h>

namespace {

constexpr int mostWords = 65536;
constexpr int bitsOfByte = 8;
constexpr int frameBits = 64;

quint64 bitsOf(const TraceFrame &frame, int first, int bits)
{
    const QByteArray payload
        = QByteArray::fromRawData(reinterpret_cast<const char *>(frame.bytes.data()), TraceFrame::mostBytes);
    const int unused = frameBits - bits;
    return PdoDecoder::bitsOf(payload) >> first << unused >> unused;
}

} // namespace

QString PdoWords::nameOf(quint8 nodeId, CanOpen::ObjectKey object) const
{
    const QString name = m_book->name(nodeId, object);
    return name.isEmpty() ? object.toShortString() : name;
}

QString PdoWords::makeWords(quint8 nodeId, CanOpen::ObjectKey object, quint64 value, int bits) const
{
    return nameOf(nodeId, object) + QLatin1String(" = ") + m_values->ofBits(nodeId, object, value, bits);
}

/*! What the book says now may make other words. */
void PdoWords::forgetOld() const
{
    if (m_known != m_book->revision())
        m_words.clear();
    m_known = m_book->revision();
}

QString PdoWords::words(const TraceFrame &frame, quint8 nodeId, CanOpen::ObjectKey object, int first,
                        int bits) const
{
    forgetOld();
    const Piece piece{bitsOf(frame, first, bits), quint32(object.index) << 8 | object.subIndex, nodeId,
                      static_cast<quint8>(bits)};
    const auto known = m_words.constFind(piece);
    if (known != m_words.constEnd())
        return *known;
    if (m_words.size() >= mostWords)
        m_words.clear();
    return *m_words.insert(piece, makeWords(nodeId, object, piece.value, bits));
}

QString PdoWords::part(const TraceFrame &frame, const PdoLayout &layout, int position) const
{
    const PdoLayout::Part &part = layout.parts.at(position);
    if (part.first + part.bits > frame.size() * bitsOfByte)
        return tr("%1 is missing").arg(nameOf(layout.nodeId, part.object));
    return words(frame, layout.nodeId, part.object, part.first, part.bits);
}

QString PdoWords::line(const TraceFrame &frame, const PdoLayout &layout) const
{
    constexpr int usualLength = 160; // characters
    QString values;
    values.reserve(usualLength);
    for (int i = 0; i < layout.parts.size(); ++i) {
        if (layout.parts.at(i).isDummy)
            continue;
        if (!values.isEmpty())
            values += QLatin1String(", ");
        values += part(frame, layout, i);
    }
    const QString number = QString::number(layout.number);
    if (frame.size() < layout.bytes)
        return tr("PDO %1, too short for its mapping: %2").arg(number, values);
    return layout.isTransmit ? tr("PDO %1: %2").arg(number, values)
                             : tr("PDO %1 to the node: %2").arg(number, values);
}
