// SPDX-License-Identifier: MIT
// Whatever a bus brings, by whatever clock, and whatever devices say of their PDOs: what listens comes to an end, stays
// within its bounds, and its numbers and words can be made.
#include "bytereader.h"
#include "framereader.h"

#include <canopen/objectdictionary.h>
#include <live/core/frameclock.h>
#include <live/events/eventrecorder.h>
#include <live/events/eventwords.h>
#include <live/events/eventwriting.h>
#include <live/health/bushealth.h>
#include <live/health/healthjson.h>
#include <live/values/livevalues.h>
#include <live/values/pdosource.h>
#include <live/values/valuewriting.h>

#include <cmath>
#include <memory>

namespace {

constexpr qint64 second = 1'000'000; // us

/*! What a device says of two of its PDOs. */
CanOpen::ObjectDictionary dictionaryFrom(ByteReader &reader)
{
    CanOpen::ObjectDictionary dictionary;
    const auto set = [&dictionary](quint16 index, quint8 sub, quint32 value) {
        CanOpen::ObjectEntry entry;
        entry.data = CanOpen::encodeValue(entry.type, value).value_or(QByteArray());
        dictionary.insert({index, sub}, entry);
    };
    for (const quint16 number : {quint16(0), quint16(1)}) {
        set(quint16(0x1800 + number), 1, 0x180u + reader.byte() + (quint32(reader.byte()) << 24));
        set(quint16(0x1800 + number), 5, reader.word());
        const quint8 count = reader.byte();
        set(quint16(0x1A00 + number), 0, count);
        for (quint8 entry = 1; entry <= (count & 0x0F); ++entry)
            set(quint16(0x1A00 + number), entry, 0x60000000u | (reader.doubleWord() & 0x00FFFFFFu));
    }
    return dictionary;
}

/*! All that listens, with a clock whose stamps go astray. */
class Listeners
{
public:
    explicit Listeners(ByteReader &reader)
    {
        m_health.start(0);
        m_health.setBitRate(reader.byte() * 1000);
        learn(reader);
    }

    void handleOne(ByteReader &reader)
    {
        switch (const quint8 what = reader.byte()) {
        case 0xFF:
            m_now += second * reader.byte();
            m_events.advance(m_clock.timeAt(m_now));
            break;
        case 0xFE:
            learn(reader);
            break;
        case 0xFD:
            m_health.setConfiguredHeartbeat(reader.byte() & 0x7F, reader.word());
            break;
        case 0xFC:
            m_health.interrupt();
            m_events.loseInterface(QStringLiteral("unplugged"), m_clock.timeAt(m_now));
            break;
        case 0xFB:
            m_stamp += qint64(qint32(reader.doubleWord())) * 1000; // the computer's clock is set
            break;
        default:
            handleFrame(reader, what);
        }
    }

    /*! What windows and programs make of it. */
    void look()
    {
        const HealthNumbers numbers = m_health.numbers(m_clock.timeAt(m_now));
        require(numbers.duration >= 0 && numbers.nodes.size() <= 127);
        require(!numbers.meanLoad || (std::isfinite(*numbers.meanLoad) && *numbers.meanLoad >= 0));
        for (const NodeNumbers &node : numbers.nodes)
            require(!node.heartbeat.period || std::isfinite(*node.heartbeat.period));
        HealthJson::of(numbers, {});
        require(m_events.list().events().size() <= EventList::mostEvents);
        for (const LiveEvent &event : m_events.list().events())
            require(!EventWords::text(event).isEmpty());
        require(m_values.values().size() <= std::size_t(LiveValues::mostValues));
        for (const LiveValue &value : m_values.values())
            ValueWriting::toCsv(value, QDateTime());
        m_values.problems();
    }

private:
    void learn(ByteReader &reader)
    {
        const CanOpen::ObjectDictionary dictionary = dictionaryFrom(reader);
        m_values.learn(PdoSource::of(quint8(1 + (reader.byte() & 0x03)), dictionary));
        for (std::size_t i = 0; i < m_values.values().size() && i < 4; ++i)
            m_values.setWatched(int(i), true);
    }

    void handleFrame(ByteReader &reader, quint8 steps)
    {
        m_now += steps * 40;
        m_stamp += steps * 40;
        const quint16 id = reader.word();
        const QCanBusFrame frame = frameFrom(reader, id & 0x7FF);
        const qint64 time = m_clock.timeOf((id & 0x8000) != 0 ? m_stamp : 0, m_now);
        require(time >= m_last);
        m_last = time;
        const LiveFrame live
            = LiveFrame::of(frame, time, (id & 0x4000) != 0 ? FrameSource::Ourselves : FrameSource::Others);
        m_health.handle(live);
        m_events.handle(live);
        m_values.handle(live);
    }

    BusHealth m_health;
    EventRecorder m_events;
    LiveValues m_values;
    FrameClock m_clock;
    qint64 m_now = 0;
    qint64 m_stamp = second;
    qint64 m_last = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    ByteReader reader(data, size);
    const auto listeners = std::make_unique<Listeners>(reader);
    while (!reader.atEnd())
        listeners->handleOne(reader);
    listeners->look();
    return 0;
}
