// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/cobid.h>
#include <canopen/sdoclient.h>
#include <canopen/sdoframe.h>
#include <canopen/sdoserver.h>

#include <QCanBusFrame>
#include <QObject>
#include <QVector>

#include <chrono>
#include <deque>
#include <map>
#include <optional>
#include <queue>
#include <random>

/*! Repeatable, and fast enough for a million transfers. */
class Random
{
public:
    explicit Random(quint32 seed)
        : m_engine(seed)
    {
    }
    int below(int bound) { return static_cast<int>(m_engine() % static_cast<quint32>(bound)); }
    bool oneIn(int count) { return below(count) == 0; }
    bool percent(int chance) { return below(100) < chance; }

private:
    std::mt19937 m_engine;
};

/*! What a line does to the frames on it. */
struct LineFaults
{
    int copied = 0;          // of 100 frames; each of them has one to three copies
    int copiesLate = 100;    // of 100 copies: late by up to longestDelay; the others come right behind
    int originalsLate = 0;   // of 100 frames
    int lost = 0;            // of 100 frames, copies not counted
    int longestDelay = 300;  // ms
    int babble = 0;          // segments of chance content from the node, per second
    bool sameBabble = false; // always the same segment
    int foreign = 0;         // another client's transfers, per second
};

/*! One node as it is seen over a line: how it answers and whether its values move. */
struct NodeHabits
{
    int segmented = 50;    // of 100 objects that would fit into one frame
    int sizeless = 30;     // of 100 objects: the size is not announced
    int moving = 30;       // of 100 objects: another value with every reading
    int lingering = 20;    // of 100 objects: another value now and then
    int blockSupport = 70; // of 100 nodes
};

/*! A client and a node with a bad line between them, in a time of their own.
 *
 *  Every value that the node's server reads to answer is kept for a while, so that what the client delivers can
 *  be judged: right is what the node read for that object since a little before the upload began.
 */
class UnreliableLine : public QObject
{
public:
    struct Object
    {
        CanOpen::ObjectKey key;
        CanOpen::DataType type;
        int size; // bytes; 0: does not exist
        bool segmented = false;
        bool sizeless = false;
        bool moving = false;
        bool lingering = false;
    };

    /*! How long before the upload a value may have been read: as old as an answer on the line can be. */
    static constexpr qint64 oldestReading = 700000; // us
    static constexpr quint8 nodeId = 5;

    UnreliableLine(quint32 seed, const LineFaults &faults, const NodeHabits &habits)
        : m_random(seed)
        , m_faults(faults)
        , m_server(nodeId, &m_dictionary)
        , m_client([this](const QCanBusFrame &frame) { return sendRequest(frame); },
                   [this] { return std::chrono::milliseconds(m_now / 1000); })
    {
        connect(&m_client, &CanOpen::SdoClient::finished, this,
                [this](const CanOpen::SdoOutcome &outcome) { m_outcome = outcome; });
        makeObjects(habits);
        if (faults.babble > 0)
            push(Event::Babble, 1000, {});
        if (faults.foreign > 0)
            push(Event::ForeignBegin, 1000, {});
    }

    Random &random() { return m_random; }
    const QVector<Object> &objects() const { return m_objects; }
    qint64 now() const { return m_now; }
    quint64 requests() const { return m_requests; }
    CanOpen::SdoClient &client() { return m_client; }

    /*! Reads an object to the end of the upload. */
    CanOpen::SdoOutcome read(const Object &object)
    {
        const bool inBlocks = object.type == CanOpen::DataType::OctetString && m_random.oneIn(2);
        return read(object, inBlocks ? CanOpen::SdoProtocol::Block : CanOpen::SdoProtocol::Plain);
    }

    CanOpen::SdoOutcome read(const Object &object, CanOpen::SdoProtocol protocol)
    {
        m_outcome.reset();
        m_begun = m_now;
        m_client.upload(nodeId, object.key, object.type, std::chrono::milliseconds{0}, protocol);
        while (!m_outcome)
            advance();
        return *m_outcome;
    }

    /*! Lets time pass. */
    void idle(qint64 microseconds)
    {
        const qint64 end = m_now + microseconds;
        while (!m_events.empty() && m_events.top().time <= end)
            advance();
        m_now = end;
    }

    /*! Whether \a data is what the node has read for the object, in one reading of this upload or just before. */
    bool isRight(const Object &object, const QByteArray &data) const
    {
        const auto readings = m_readings.find(object.key);
        if (readings == m_readings.end())
            return false;
        for (const Reading &reading : readings->second) {
            if (reading.until >= m_begun - oldestReading && reading.data == data)
                return true;
        }
        return false;
    }

private:
    struct Event
    {
        enum Kind { Request, Answer, Babble, ForeignBegin } kind;
        qint64 time; // us
        quint64 number;
        QByteArray payload;

        bool operator<(const Event &other) const
        {
            return time != other.time ? time > other.time : number > other.number;
        }
    };
    struct Reading
    {
        qint64 until; // us; when it was read last
        QByteArray data;
    };

    void push(Event::Kind kind, qint64 delay, const QByteArray &payload)
    {
        m_events.push({kind, m_now + delay, ++m_number, payload});
    }

    void makeObjects(const NodeHabits &habits)
    {
        using CanOpen::DataType;
        const struct
        {
            DataType type;
            int size;
        } kinds[] = {{DataType::Unsigned8, 1},    {DataType::Unsigned8, 1},    {DataType::Unsigned16, 2},
                     {DataType::Unsigned16, 2},   {DataType::Unsigned32, 4},   {DataType::Unsigned32, 4},
                     {DataType::Unsigned32, 4},   {DataType::Unsigned64, 8},   {DataType::OctetString, 3},
                     {DataType::OctetString, 12}, {DataType::OctetString, 20}, {DataType::OctetString, 33},
                     {DataType::Unsigned32, 0}};
        quint16 index = 0x6000;
        for (const auto &kind : kinds) {
            Object object{{++index, 0}, kind.type, kind.size};
            object.segmented = m_random.percent(habits.segmented);
            object.sizeless = m_random.percent(habits.sizeless);
            object.moving = m_random.percent(habits.moving);
            object.lingering = m_random.percent(habits.lingering);
            m_objects.append(object);
            if (object.size == 0)
                continue;
            CanOpen::ObjectEntry entry;
            entry.type = object.type;
            // Some objects have the same value.
            entry.data = m_random.oneIn(4) ? QByteArray(object.size, '\0') : newValue(object);
            m_dictionary.insert(object.key, entry);
        }
        m_supportsBlock = m_random.percent(habits.blockSupport);
    }

    // No two of a size have the same number, before a byte has come round.
    QByteArray newValue(const Object &object)
    {
        const quint32 number = ++m_lastValue;
        QByteArray value(object.size, '\0');
        for (int i = 0; i < value.size(); ++i)
            value[i] = static_cast<char>((number >> (8 * (i % 4))) + static_cast<quint32>(i / 4 * 37));
        return value;
    }

    Object *findObject(CanOpen::ObjectKey key)
    {
        for (Object &object : m_objects) {
            if (object.key == key)
                return &object;
        }
        return nullptr;
    }

    CanOpen::Sending sendRequest(const QCanBusFrame &frame)
    {
        ++m_requests;
        carry(Event::Request, frame.payload());
        return CanOpen::Sending::Written;
    }

    // One frame on its way: it or its copies, if any, arrive sometime.
    void carry(Event::Kind kind, const QByteArray &payload)
    {
        if (!m_random.percent(m_faults.lost))
            push(kind, m_random.percent(m_faults.originalsLate) ? lateDelay() : inOrder(kind), payload);
        if (!m_random.percent(m_faults.copied))
            return;
        for (int copies = 1 + m_random.below(3); copies > 0; --copies)
            push(kind, m_random.percent(m_faults.copiesLate) ? lateDelay() : shortDelay(), payload);
    }

    qint64 shortDelay() { return 250 + m_random.below(100); }

    // What is not late does not overtake.
    qint64 inOrder(Event::Kind kind)
    {
        qint64 &last = kind == Event::Request ? m_lastRequest : m_lastAnswer;
        last = std::max(m_now + shortDelay(), last + 1);
        return last - m_now;
    }

    qint64 lateDelay() { return 250 + m_random.below(m_faults.longestDelay * 1000); }

    void advance()
    {
        const std::optional<std::chrono::milliseconds> deadline = m_client.nextDeadline();
        if (!m_events.empty() && (!deadline || m_events.top().time < deadline->count() * 1000)) {
            const Event event = m_events.top();
            m_events.pop();
            m_now = std::max(m_now, event.time);
            handle(event);
        } else if (deadline) {
            m_now = std::max(m_now, qint64(deadline->count()) * 1000);
            m_client.checkDeadlines();
        } else {
            qFatal("the client waits for nothing and does not end");
        }
    }

    void handle(const Event &event)
    {
        switch (event.kind) {
        case Event::Request:
            serve(event.payload);
            break;
        case Event::Answer:
            m_client.handleFrame(QCanBusFrame(CanOpen::sdoResponseCobId(nodeId), event.payload));
            if (m_faults.foreign > 0)
                continueForeign(event.payload);
            break;
        case Event::Babble:
            m_client.handleFrame(QCanBusFrame(CanOpen::sdoResponseCobId(nodeId), babble()));
            push(Event::Babble, 2 * m_random.below(1000000 / m_faults.babble) + 1, {});
            break;
        case Event::ForeignBegin:
            foreignTransfer();
            push(Event::ForeignBegin, 2 * m_random.below(1000000 / m_faults.foreign) + 1, {});
            break;
        }
    }

    QByteArray babble()
    {
        if (m_faults.sameBabble)
            return QByteArray::fromHex("0734120000000000"); // the last segment, four bytes: 1234h
        const int size = 1 + m_random.below(4);
        QByteArray payload(8, '\0');
        payload[0] = static_cast<char>((7 - size) << 1 | 1);
        for (int i = 1; i <= size; ++i)
            payload[i] = static_cast<char>(m_random.below(256));
        return payload;
    }

    // Another client begins a transfer of any of the objects, and sometimes leaves it there.
    void foreignTransfer()
    {
        const Object &object = m_objects.at(m_random.below(m_objects.size()));
        m_foreignKey = object.key;
        m_foreignToggle = false;
        m_foreignGoesOn = !m_random.oneIn(4);
        sendForeign(CanOpen::makeSdoInitiateUploadRequest(object.key));
    }

    // It reads on when its answer comes, whoever may have spoilt its transfer meanwhile.
    void continueForeign(const QByteArray &answer)
    {
        using namespace CanOpen;
        const std::optional<SdoInitiate> initiate = readSdoInitiateUploadResponse(answer);
        const std::optional<SdoSegment> segment = readSdoUploadSegmentResponse(answer);
        if (initiate && initiate->key == m_foreignKey && !initiate->expedited)
            m_foreignToggle = false;
        else if (!m_foreignReads || !segment || segment->toggle != m_foreignToggle)
            return;
        else
            m_foreignToggle = !m_foreignToggle;
        m_foreignReads = m_foreignGoesOn && !(segment && segment->last);
        if (m_foreignReads)
            sendForeign(makeSdoUploadSegmentRequest(m_foreignToggle));
    }

    void sendForeign(const QByteArray &payload)
    {
        m_client.handleFrame(QCanBusFrame(CanOpen::sdoRequestCobId(nodeId), payload));
        serve(payload);
    }

    void serve(const QByteArray &request)
    {
        using namespace CanOpen;
        const SdoRequest kind = sdoRequestOf(request);
        const bool isBlock = kind == SdoRequest::BlockUpload;
        const bool initiates = kind == SdoRequest::InitiateUpload
                               || (isBlock && sdoBlockUploadOf(request) == SdoBlockUpload::Initiate);
        if (isBlock && !m_supportsBlock) {
            carry(Event::Answer, makeSdoAbort(sdoKeyOf(request), 0x05040001));
            return;
        }
        if (initiates) {
            m_object = findObject(sdoKeyOf(request));
            noteReading();
            m_server.setSegmented(m_object != nullptr && m_object->segmented);
        }
        const QVector<QCanBusFrame> answers
            = m_server.handleFrame(QCanBusFrame(sdoRequestCobId(nodeId), request));
        for (const QCanBusFrame &answer : answers)
            carry(Event::Answer, initiates ? withHabits(answer.payload()) : answer.payload());
    }

    void noteReading()
    {
        if (m_object == nullptr || m_object->size == 0)
            return;
        if (m_object->moving || (m_object->lingering && m_random.oneIn(4)))
            m_dictionary.setData(m_object->key, newValue(*m_object));
        std::deque<Reading> &readings = m_readings[m_object->key];
        const QByteArray data = m_dictionary.find(m_object->key)->data;
        if (!readings.empty() && readings.back().data == data)
            readings.back().until = m_now;
        else
            readings.push_back({m_now, data});
        while (readings.front().until < m_begun - 2 * oldestReading)
            readings.pop_front();
    }

    // Without the announced size, where the object has none.
    QByteArray withHabits(QByteArray payload) const
    {
        const auto command = static_cast<quint8>(payload.at(0));
        if (m_object == nullptr || !m_object->sizeless || (command != 0x41 && command != 0xC6))
            return payload;
        payload[0] = static_cast<char>(command == 0x41 ? 0x40 : 0xC4);
        return payload.left(4) + QByteArray(4, '\0');
    }

    Random m_random;
    LineFaults m_faults;
    QVector<Object> m_objects;
    CanOpen::ObjectDictionary m_dictionary;
    CanOpen::SdoServer m_server;
    bool m_supportsBlock = true;
    Object *m_object = nullptr; // that the server has begun to answer last
    CanOpen::ObjectKey m_foreignKey;
    bool m_foreignToggle = false;
    bool m_foreignGoesOn = false;
    bool m_foreignReads = false; // segments
    quint32 m_lastValue = 0;
    std::map<CanOpen::ObjectKey, std::deque<Reading>> m_readings;
    std::priority_queue<Event> m_events;
    quint64 m_number = 0;
    quint64 m_requests = 0;
    qint64 m_now = 0; // us
    qint64 m_begun = 0;
    qint64 m_lastRequest = 0; // us; arrival
    qint64 m_lastAnswer = 0;
    std::optional<CanOpen::SdoOutcome> m_outcome;
    CanOpen::SdoClient m_client;
};
