// SPDX-License-Identifier: MIT
#include "frameencoder.h"

#include "ascencoder.h"
#include "candumpencoder.h"
#include "pcapencoder.h"
#include "trcencoder.h"

std::unique_ptr<FrameEncoder> FrameEncoder::of(TraceFormat format)
{
    switch (format) {
    case TraceFormat::Candump:
        return std::make_unique<CandumpEncoder>();
    case TraceFormat::Asc:
        return std::make_unique<AscEncoder>();
    case TraceFormat::Trc11:
        return std::make_unique<Trc11Encoder>();
    case TraceFormat::Trc21:
        return std::make_unique<Trc21Encoder>();
    case TraceFormat::Pcap:
        return std::make_unique<PcapEncoder>();
    case TraceFormat::PcapNg:
        break;
    }
    return std::make_unique<PcapNgEncoder>();
}

void FrameEncoder::setHead(const TraceHead &head)
{
    m_hasTimeOfDay = head.hasTimeOfDay;
    for (int i = m_names.size(); i < head.channels.size(); ++i)
        addChannel(head.channels.at(i));
}

void FrameEncoder::addChannel(const QString &name)
{
    QByteArray word = name.toUtf8();
    for (char &c : word) {
        if (static_cast<uchar>(c) <= ' ')
            c = '_';
    }
    const QByteArray position = QByteArray::number(m_names.size());
    m_names.append(word.isEmpty() ? "can" + position : word);

    constexpr int most = 255;
    bool isNumber = false;
    int number = name.toInt(&isNumber);
    if (!isNumber || number < 1 || number > most || m_numbers.contains(QByteArray::number(number))) {
        for (number = m_numbers.size() + 1; m_numbers.contains(QByteArray::number(number)); ++number) {
        }
    }
    m_numbers.append(QByteArray::number(number));
}

QByteArray FrameEncoder::channelName(int channel) const
{
    return channel < m_names.size() ? m_names.at(channel) : "can" + QByteArray::number(channel);
}

QByteArray FrameEncoder::channelNumber(int channel) const
{
    return channel < m_numbers.size() ? m_numbers.at(channel) : QByteArray::number(channel + 1);
}
