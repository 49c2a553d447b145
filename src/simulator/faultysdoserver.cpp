// SPDX-License-Identifier: MIT
#include "faultysdoserver.h"

#include "lyingmapping.h"
#include "sdodistortion.h"

#include <canopen/cobid.h>
#include <canopen/sdoframe.h>

namespace Simulator {

namespace {

using CanOpen::ObjectKey;
using CanOpen::SdoRequest;

} // namespace

FaultySdoServer::FaultySdoServer(quint8 nodeId, CanOpen::ObjectDictionary *dictionary,
                                 const FaultList *faults)
    : m_nodeId(nodeId)
    , m_dictionary(dictionary)
    , m_faults(faults)
    , m_server(nodeId, dictionary)
    , m_foreignClient(nodeId, dictionary)
    , m_random(nodeId)
{
}

std::optional<ObjectKey> FaultySdoServer::objectBegun(const QByteArray &request)
{
    switch (CanOpen::sdoRequestOf(request)) {
    case SdoRequest::InitiateUpload:
    case SdoRequest::InitiateDownload:
        return CanOpen::sdoKeyOf(request);
    case SdoRequest::BlockUpload:
        if (CanOpen::sdoBlockUploadOf(request) == CanOpen::SdoBlockUpload::Initiate)
            return CanOpen::sdoKeyOf(request);
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

FaultySdoServer::Answers FaultySdoServer::handleRequest(const QCanBusFrame &request)
{
    const QByteArray payload = request.payload();
    if (CanOpen::sdoRequestOf(payload) == SdoRequest::Abort) {
        m_isHalfOpen = false;
        m_server.handleFrame(request);
        return {};
    }
    const std::optional<ObjectKey> begun = objectBegun(payload);
    m_object = begun.value_or(m_object);
    m_segments = begun ? 0 : m_segments + 1;
    ++m_requests;
    if (m_faults->isEmpty())
        return timed(m_server.handleFrame(request));

    Frames frames = answerTo(request, begun.has_value());
    multiply(frames);
    const auto *foreign = m_faults->find<Faults::ForeignClient>();
    if (foreign != nullptr && m_requests % foreign->every == 0)
        frames = m_foreignClient.readAll(*foreign, m_object) + frames;
    return timed(holdBack(frames));
}

QVector<QCanBusFrame> FaultySdoServer::abandonedTransfer(const Faults::AbandoningClient &fault)
{
    const QCanBusFrame request = m_foreignClient.beginOnly(fault);
    m_server.setSegmented(true);
    return Frames({request}) + m_server.handleFrame(request);
}

void FaultySdoServer::dropTransfer()
{
    m_server.reset();
}

void FaultySdoServer::reset()
{
    m_server.reset();
    m_isHalfOpen = false;
    m_heldBack.clear();
}

void FaultySdoServer::faultsChanged()
{
    m_requests = 0;
    if (m_faults->find<Faults::HalfOpen>() == nullptr)
        m_isHalfOpen = false;
    if (m_faults->find<Faults::LateAnswers>() == nullptr)
        m_heldBack.clear();
    m_server.setSegmented(false);
    m_server.setSegmentSize(CanOpen::sdoSegmentSize);
}

FaultySdoServer::Frames FaultySdoServer::answerTo(const QCanBusFrame &request, bool begins)
{
    if (const std::optional<Frames> instead = insteadOfAnswer(request.payload(), begins))
        return *instead;
    if (const std::optional<quint32> code = refusal(begins)) {
        m_server.reset();
        return {frameOf(CanOpen::makeSdoAbort(m_object, *code))};
    }
    return distortedAnswer(request, begins);
}

/*! What is sent in the place of any answer that the server would give. */
std::optional<FaultySdoServer::Frames> FaultySdoServer::insteadOfAnswer(const QByteArray &request,
                                                                        bool begins)
{
    if (m_isHalfOpen) {
        const auto code = static_cast<quint32>(CanOpen::SdoAbort::CommandSpecifierUnknown);
        return Frames({frameOf(CanOpen::makeSdoAbort(m_object, code))});
    }
    const auto *halfOpen = m_faults->find<Faults::HalfOpen>(m_object);
    if (halfOpen != nullptr && m_requests == halfOpen->from) {
        m_isHalfOpen = true;
        return Frames();
    }
    const auto *silent = m_faults->find<Faults::SdoSilent>(m_object);
    if (silent != nullptr && m_requests >= silent->from)
        return Frames();
    const auto *endless = m_faults->find<Faults::Endless>(m_object);
    if (endless != nullptr && !begins && CanOpen::sdoRequestOf(request) == SdoRequest::UploadSegment)
        return endlessSegment(*endless, request);
    return std::nullopt;
}

std::optional<quint32> FaultySdoServer::refusal(bool begins) const
{
    const auto *refused = m_faults->find<Faults::SdoAbort>(m_object);
    if (refused != nullptr && begins)
        return refused->code;
    const auto *halfWay = m_faults->find<Faults::AbortMidTransfer>(m_object);
    if (halfWay != nullptr && !begins && m_segments > halfWay->afterSegments)
        return halfWay->code;
    return std::nullopt;
}

FaultySdoServer::Frames FaultySdoServer::distortedAnswer(const QCanBusFrame &request, bool begins)
{
    const auto *segmented = m_faults->find<Faults::Segmented>(m_object);
    m_server.setSegmented(segmented != nullptr || m_faults->find<Faults::Endless>(m_object) != nullptr);
    m_server.setSegmentSize(segmented != nullptr ? segmented->bytes : CanOpen::sdoSegmentSize);

    Frames frames = serverAnswer(request, begins);
    if (CanOpen::sdoRequestOf(request.payload()) == SdoRequest::BlockUpload && !begins)
        distortBlock(*m_faults, m_object, frames);
    else
        distortAnswers(*m_faults, m_object, m_segments, frames);
    return frames;
}

FaultySdoServer::Frames FaultySdoServer::serverAnswer(const QCanBusFrame &request, bool begins)
{
    const bool isUpload = CanOpen::sdoRequestOf(request.payload()) != SdoRequest::InitiateDownload;
    if (!begins || !isUpload)
        return m_server.handleFrame(request);
    if (const std::optional<CanOpen::ObjectEntry> lie = lieAbout(*m_faults, *m_dictionary, m_object))
        return lyingAnswer(request, *lie);
    const auto *width = m_faults->find<Faults::WrongWidth>(m_object);
    const CanOpen::ObjectEntry *entry = m_dictionary->find(m_object);
    if (width == nullptr || entry == nullptr)
        return m_server.handleFrame(request);

    // The server takes the value as the transfer begins; behind it the dictionary has the right one again.
    const QByteArray right = entry->data;
    QByteArray wrong = right + QByteArray(width->bytes, '\0');
    wrong.truncate(width->bytes);
    m_dictionary->setData(m_object, wrong);
    const Frames frames = m_server.handleFrame(request);
    m_dictionary->setData(m_object, right);
    return frames;
}

/*! The answer with another entry in the dictionary, which has the right one, or none, again behind it. */
FaultySdoServer::Frames FaultySdoServer::lyingAnswer(const QCanBusFrame &request,
                                                     const CanOpen::ObjectEntry &lie)
{
    const CanOpen::ObjectEntry *entry = m_dictionary->find(m_object);
    const std::optional<CanOpen::ObjectEntry> right
        = entry != nullptr ? std::optional<CanOpen::ObjectEntry>(*entry) : std::nullopt;
    m_dictionary->insert(m_object, lie);
    const Frames frames = m_server.handleFrame(request);
    if (right)
        m_dictionary->insert(m_object, *right);
    else
        m_dictionary->remove(m_object);
    return frames;
}

FaultySdoServer::Frames FaultySdoServer::endlessSegment(const Faults::Endless &fault,
                                                        const QByteArray &request) const
{
    const QByteArray data(fault.bytes, 'x');
    return {frameOf(CanOpen::makeSdoUploadSegmentResponse(CanOpen::sdoToggleOf(request), false, data))};
}

void FaultySdoServer::multiply(Frames &frames) const
{
    const auto *doubled = m_faults->find<Faults::DoubleAnswers>(m_object);
    if (doubled == nullptr)
        return;
    Frames more;
    for (const QCanBusFrame &frame : qAsConst(frames))
        more += Frames(doubled->count, frame);
    frames.swap(more);
}

/*! What is due now: the frames held back so far, and \a frames unless they are held back in turn. */
FaultySdoServer::Frames FaultySdoServer::holdBack(const Frames &frames)
{
    Frames due;
    due.swap(m_heldBack);
    const auto *late = m_faults->find<Faults::LateAnswers>(m_object);
    if (late != nullptr && m_requests % late->every == 0)
        m_heldBack = frames;
    else
        due += frames;
    return due;
}

FaultySdoServer::Answers FaultySdoServer::timed(const Frames &frames)
{
    const auto *delay = m_faults->find<Faults::SdoDelay>(m_object);
    const auto *copies = m_faults->find<Faults::LateCopies>(m_object);
    const std::chrono::milliseconds time = delay != nullptr ? delay->delay : std::chrono::milliseconds(0);
    Answers answers;
    answers.reserve(frames.size());
    for (const QCanBusFrame &frame : frames) {
        answers.append({frame, time});
        for (int copy = 0; copies != nullptr && copy < copies->count; ++copy) {
            std::uniform_int_distribution<qint64> chance(0, copies->within.count());
            answers.append({frame, time + std::chrono::milliseconds(chance(m_random))});
        }
    }
    return answers;
}

QCanBusFrame FaultySdoServer::frameOf(const QByteArray &payload) const
{
    return QCanBusFrame(CanOpen::sdoResponseCobId(m_nodeId), payload);
}

} // namespace Simulator
