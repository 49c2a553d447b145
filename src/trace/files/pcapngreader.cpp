// SPDX-License-Identifier: MIT
#include "pcapngreader.h"

#include "capturedframe.h"
#include "capturewords.h"
#include "pcapngformat.h"
#include "textscan.h"
#include "timeofday.h"
#include "tracefilestr.h"

#include <system/amounts.h>

#include <QtEndian>

#include <algorithm>

namespace {

/*  Every block:                     An interface:            A packet:
 *    0  type                          8  link type (2)         8  interface
 *    4  length of all of it          16  options              12  time, high half; low half
 *    8  what it holds                                         20  bytes that follow
 *   ..  length again                                          28  bytes, filled up to four; options
 */
constexpr size_t sectionBeginning = 12; // up to the magic number
constexpr size_t blockHeadSize = 8;
constexpr size_t blockEndSize = 4;
constexpr size_t smallestBlock = blockHeadSize + blockEndSize;
constexpr size_t interfaceHeadSize = 8;
constexpr size_t packetHeadSize = 20;
constexpr size_t timeHighPlace = 4;
constexpr size_t timeLowPlace = 8;
constexpr size_t packetSizePlace = 12;
constexpr size_t optionHeadSize = 4;
constexpr size_t mostInterfaces = 4096;

constexpr size_t filledUp(size_t size)
{
    return (size + 3) / 4 * 4;
}

/*! No longer than it can be shown, and nothing in it that acts on a terminal. */
QString nameOf(const uchar *bytes, quint16 size)
{
    const char *const begin = reinterpret_cast<const char *>(bytes);
    return TextScan::excerpt({begin, begin + size});
}

/*! What a time of this resolution counts in a second; 0 for one that is out of reason. */
qint64 perSecondOf(quint8 resolution)
{
    constexpr quint8 binaryFlag = 0x80;
    constexpr quint8 mostBinary = 40;
    constexpr quint8 mostDecimal = 12;
    const auto exponent = static_cast<quint8>(resolution & ~binaryFlag);
    if ((resolution & binaryFlag) != 0)
        return exponent <= mostBinary ? Q_INT64_C(1) << exponent : 0;
    if (exponent > mostDecimal)
        return 0;
    qint64 count = 1;
    for (int i = 0; i < exponent; ++i)
        count *= 10;
    return count;
}

/*! us, without more than 64 bits in between. */
qint64 microseconds(quint64 time, qint64 perSecond)
{
    constexpr quint64 mostSeconds = 100000000000; // some thousand years
    const auto count = static_cast<quint64>(perSecond);
    const quint64 seconds = time / count;
    if (seconds > mostSeconds)
        return 0;
    // Less than 2^40 times 10^6.
    const quint64 fraction = time % count * static_cast<quint64>(Microseconds::ofSecond) / count;
    return static_cast<qint64>(seconds) * Microseconds::ofSecond + static_cast<qint64>(fraction);
}

} // namespace

bool PcapNgReader::isIt(const QByteArray &beginning)
{
    return beginning.size() >= 4
           && qFromBigEndian<quint32>(beginning.constData()) == PcapNg::BlockType::section;
}

quint16 PcapNgReader::shortAt(const uchar *bytes) const
{
    return m_isSwapped ? qFromLittleEndian<quint16>(bytes) : qFromBigEndian<quint16>(bytes);
}

quint32 PcapNgReader::numberAt(const uchar *bytes) const
{
    return m_isSwapped ? qFromLittleEndian<quint32>(bytes) : qFromBigEndian<quint32>(bytes);
}

TraceReader::Step PcapNgReader::stop(const QString &sentence)
{
    m_hasEnded = true;
    return complain(m_number, sentence);
}

TraceReader::Step PcapNgReader::end()
{
    if (!m_bytes.errorString().isEmpty())
        return stop(m_bytes.errorString());
    if (!m_bytes.isAtEnd())
        return stop(CaptureWords::cut());
    m_hasEnded = true;
    return Step::End;
}

TraceReader::Step PcapNgReader::next(TraceFrame *frame)
{
    while (!m_hasEnded) {
        if (m_bytes.peek(blockHeadSize) == nullptr)
            return end();
        const Step step = readBlock(frame);
        if (step != Step::End)
            return step;
    }
    return Step::End;
}

/*! Step::End when it was no frame. */
TraceReader::Step PcapNgReader::readBlock(TraceFrame *frame)
{
    ++m_number;
    const uchar *const head = m_bytes.peek(blockHeadSize);
    if (numberAt(head) == PcapNg::BlockType::section && !readSection())
        return stop(m_bytes.isAtEnd() ? CaptureWords::cut()
                                      : TraceFilesTr::tr("A section begins without its magic number: the "
                                                         "rest is not read."));
    const uchar *const again = m_bytes.peek(blockHeadSize);
    const quint32 type = numberAt(again);
    const quint32 size = numberAt(again + 4);
    if (size < smallestBlock || size % 4 != 0)
        return stop(CaptureWords::impossibleLength(size));
    // What is so long is no frame: names of hosts, keys.
    if (size > RecordBytes::longest)
        return m_bytes.skip(size) ? Step::End : stop(CaptureWords::cut());
    const uchar *const block = m_bytes.take(size);
    if (block == nullptr)
        return end();
    return readBody(type, block + blockHeadSize, size - smallestBlock, frame);
}

/*! A section has an order of bytes and interfaces of its own. The type reads the same in both orders. */
bool PcapNgReader::readSection()
{
    const uchar *const section = m_bytes.peek(sectionBeginning);
    if (section == nullptr)
        return false;
    const uchar *const magic = section + blockHeadSize;
    m_interfaces.clear();
    m_isSwapped = qFromLittleEndian<quint32>(magic) == PcapNg::byteOrderMagic;
    return m_isSwapped || qFromBigEndian<quint32>(magic) == PcapNg::byteOrderMagic;
}

TraceReader::Step PcapNgReader::readBody(quint32 type, const uchar *body, size_t size, TraceFrame *frame)
{
    if (type == PcapNg::BlockType::interface)
        return readInterface(body, size);
    if (type == PcapNg::BlockType::packet)
        return readPacket(body, size, frame);
    return Step::End;
}

bool PcapNgReader::takeOption(const uchar **at, const uchar *end, Option *option) const
{
    const uchar *const p = *at;
    if (static_cast<size_t>(end - p) < optionHeadSize)
        return false;
    *option = {shortAt(p), p + optionHeadSize, shortAt(p + 2)};
    const size_t size = filledUp(option->size);
    if (option->code == 0 || size > static_cast<size_t>(end - p) - optionHeadSize)
        return false;
    *at = p + optionHeadSize + size;
    return true;
}

void PcapNgReader::setOption(const Option &option, Interface *interface) const
{
    if (option.code == PcapNg::OptionCode::name && option.size > 0)
        interface->name = nameOf(option.value, option.size);
    else if (option.code == PcapNg::OptionCode::timeResolution && option.size >= 1)
        interface->perSecond = perSecondOf(*option.value);
    else if (option.code == PcapNg::OptionCode::timeOffset && option.size >= sizeof(qint64))
        interface->offset
            = m_isSwapped ? qFromLittleEndian<qint64>(option.value) : qFromBigEndian<qint64>(option.value);
}

TraceReader::Step PcapNgReader::readInterface(const uchar *body, size_t size)
{
    if (size < interfaceHeadSize || m_interfaces.size() >= mostInterfaces)
        return stop(TraceFilesTr::tr("An interface is not described as one can be: the rest is not read."));
    Interface interface;
    interface.linkType = shortAt(body);
    interface.name = QString::number(m_interfaces.size() + 1);
    const uchar *at = body + interfaceHeadSize;
    Option option;
    while (takeOption(&at, body + size, &option))
        setOption(option, &interface);
    m_interfaces.push_back(interface);
    if (CapturedFrame::isCan(interface.linkType))
        return Step::End;
    return complain(m_number, CaptureWords::otherInterface(interface.name, interface.linkType));
}

bool PcapNgReader::isSent(const uchar *at, const uchar *end) const
{
    Option option;
    while (takeOption(&at, end, &option)) {
        if (option.code == PcapNg::OptionCode::flags && option.size >= sizeof(quint32))
            return (numberAt(option.value) & PcapNg::directionMask) == PcapNg::outbound;
    }
    return false;
}

TraceReader::Step PcapNgReader::readPacket(const uchar *body, size_t size, TraceFrame *frame)
{
    if (size < packetHeadSize || numberAt(body) >= m_interfaces.size()
        || numberAt(body + packetSizePlace) > size - packetHeadSize)
        return complain(m_number, TraceFilesTr::tr("A packet is not described as one can be."));
    Interface *const interface = &m_interfaces[numberAt(body)];
    if (!CapturedFrame::isCan(interface->linkType))
        return Step::End; // which was said
    if (interface->perSecond == 0)
        return complain(m_number, TraceFilesTr::tr("The times of its interface cannot be read."));
    const quint32 count = numberAt(body + packetSizePlace);
    const quint64 time = quint64(numberAt(body + timeHighPlace)) << 32 | numberAt(body + timeLowPlace);
    const Step step = readFrame(interface, body + packetHeadSize, count, frame);
    if (step != Step::Frame)
        return step;
    constexpr qint64 mostOffset = 100000000000; // s
    const bool isOffset = interface->offset > -mostOffset && interface->offset < mostOffset;
    frame->time = microseconds(time, interface->perSecond)
                  + (isOffset ? interface->offset * Microseconds::ofSecond : 0);
    if (isSent(body + packetHeadSize + std::min(filledUp(count), size - packetHeadSize), body + size))
        frame->flags |= TraceFrame::Sent;
    if (!m_hasFirst)
        headToFill()->hasTimeOfDay = TimeOfDay::isOne(frame->time);
    m_hasFirst = true;
    return Step::Frame;
}

TraceReader::Step PcapNgReader::readFrame(Interface *interface, const uchar *bytes, size_t size,
                                          TraceFrame *frame)
{
    const CapturedFrame::Packet packet = CapturedFrame::read(interface->linkType, bytes, size);
    if (packet.what == CapturedFrame::What::OtherProtocol)
        return Step::End;
    if (packet.what != CapturedFrame::What::Frame)
        return complain(m_number, CaptureWords::of(packet.what));
    // The interface "any" has those of all others.
    const bool isNamed = packet.interface == 0;
    if (interface->channel < 0 || !isNamed)
        interface->channel = channelOf(isNamed ? interface->name : QString::number(packet.interface));
    if (interface->channel < 0)
        return complain(m_number, CaptureWords::tooManyChannels(mostChannels));
    *frame = packet.frame;
    frame->channel = static_cast<quint8>(interface->channel);
    return Step::Frame;
}

int PcapNgReader::channelOf(const QString &name)
{
    QStringList &channels = headToFill()->channels;
    const int known = channels.indexOf(name);
    if (known >= 0)
        return known;
    if (channels.size() >= mostChannels)
        return -1;
    channels.append(name);
    return channels.size() - 1;
}
