// SPDX-License-Identifier: MIT
#include "pcapreader.h"

#include "capturedframe.h"
#include "capturewords.h"
#include "timeofday.h"
#include "tracefilestr.h"

#include <system/amounts.h>

#include <QtEndian>

namespace {

/*  The file:                        A record:
 *    0  magic number                  0  seconds
 *    4  version (2, 2)                4  us, or ns
 *    8  not used (4, 4)               8  bytes that follow
 *   16  most bytes of a packet       12  bytes that there were
 *   20  link type
 */
constexpr size_t fileHeadSize = 24;
constexpr size_t linkTypePlace = 20;
constexpr size_t recordHeadSize = 16;
constexpr size_t fractionPlace = 4;
constexpr size_t sizePlace = 8;

constexpr quint32 microsecondMagic = 0xA1B2C3D4;
constexpr quint32 nanosecondMagic = 0xA1B23C4D;
constexpr quint32 linkTypeMask = 0x0FFFFFFF; // above it stands what a frame ends with

} // namespace

bool PcapReader::isIt(const QByteArray &beginning)
{
    if (beginning.size() < 4)
        return false;
    const auto big = qFromBigEndian<quint32>(beginning.constData());
    const auto little = qFromLittleEndian<quint32>(beginning.constData());
    return big == microsecondMagic || big == nanosecondMagic || little == microsecondMagic
           || little == nanosecondMagic;
}

quint32 PcapReader::numberAt(const uchar *bytes) const
{
    return m_isSwapped ? qFromLittleEndian<quint32>(bytes) : qFromBigEndian<quint32>(bytes);
}

bool PcapReader::readHead()
{
    m_hasHead = true;
    const uchar *const head = m_bytes.take(fileHeadSize);
    if (head == nullptr)
        return false;
    const auto magic = qFromBigEndian<quint32>(head);
    m_isSwapped = magic != microsecondMagic && magic != nanosecondMagic;
    m_hasNanoseconds = numberAt(head) == nanosecondMagic;
    m_linkType = numberAt(head + linkTypePlace) & linkTypeMask;
    return true;
}

TraceReader::Step PcapReader::stop(const QString &sentence)
{
    m_hasEnded = true;
    return complain(m_number, sentence);
}

/*! Of the records; a part of one may stand there. */
TraceReader::Step PcapReader::end()
{
    if (!m_bytes.errorString().isEmpty())
        return stop(m_bytes.errorString());
    if (!m_bytes.isAtEnd())
        return stop(CaptureWords::cut());
    m_hasEnded = true;
    return Step::End;
}

TraceReader::Step PcapReader::next(TraceFrame *frame)
{
    if (m_hasEnded)
        return Step::End;
    if (!m_hasHead) {
        if (!readHead())
            return end();
        if (!CapturedFrame::isCan(m_linkType))
            return stop(CaptureWords::otherInterface(m_linkType));
    }
    for (;;) {
        const uchar *const head = m_bytes.take(recordHeadSize);
        if (head == nullptr)
            return end();
        ++m_number;
        const Step step = readRecord(head, frame);
        if (step != Step::End)
            return step;
    }
}

/*! Step::End when it was no frame. */
TraceReader::Step PcapReader::readRecord(const uchar *head, TraceFrame *frame)
{
    const qint64 seconds = numberAt(head);
    const qint64 fraction = numberAt(head + fractionPlace);
    const quint32 size = numberAt(head + sizePlace);
    if (size > RecordBytes::longest)
        return stop(CaptureWords::impossibleLength(size));
    const qint64 time = seconds * Microseconds::ofSecond
                        + (m_hasNanoseconds ? fraction / Nanoseconds::ofMicrosecond : fraction);
    return readPacket(time, size, frame);
}

TraceReader::Step PcapReader::readPacket(qint64 time, quint32 size, TraceFrame *frame)
{
    const uchar *const bytes = m_bytes.take(size);
    if (bytes == nullptr)
        return stop(m_bytes.errorString().isEmpty() ? CaptureWords::cut() : m_bytes.errorString());
    const CapturedFrame::Packet packet = CapturedFrame::read(m_linkType, bytes, size);
    if (packet.what == CapturedFrame::What::OtherProtocol)
        return Step::End;
    if (packet.what != CapturedFrame::What::Frame)
        return complain(m_number, CaptureWords::of(packet.what));
    const int channel = channelOf(packet.interface);
    if (channel < 0)
        return complain(m_number, CaptureWords::tooManyChannels(mostChannels));
    *frame = packet.frame;
    frame->time = time;
    frame->channel = static_cast<quint8>(channel);
    if (!m_hasFirst)
        headToFill()->hasTimeOfDay = TimeOfDay::isOne(time);
    m_hasFirst = true;
    return Step::Frame;
}

int PcapReader::channelOf(quint32 interface)
{
    const auto known = m_channels.constFind(interface);
    if (known != m_channels.constEnd())
        return *known;
    const int position = m_channels.size();
    if (position >= mostChannels)
        return -1;
    m_channels.insert(interface, position);
    headToFill()->channels.append(QString::number(interface == 0 ? 1 : interface));
    return position;
}
