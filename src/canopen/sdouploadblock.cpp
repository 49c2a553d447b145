// SPDX-License-Identifier: MIT
// The block protocol of SdoUpload.
#include "sdoupload.h"

#include <utility>

namespace CanOpen {

SdoUpload::Step SdoUpload::handleBlockInitiateResponse(const QByteArray &payload)
{
    const std::optional<SdoBlockInitiateResponse> response = readSdoBlockInitiateResponse(payload);
    if (m_state != State::InitiatingBlock || !response || response->key != m_outcome.key)
        return {}; // answers to another client
    m_isAnswered = true;
    if (m_disturbance != Disturbance::None)
        return restart();
    if (mustWait())
        return waitBeforeTransfer();
    m_state = State::Block;
    m_readings.begin(m_memory);
    m_block.begin(*response, lengthLimit());
    m_memory.noteRequest();
    Step step;
    step.send(makeSdoBlockStart());
    step.waitRestarts = true;
    return step;
}

SdoUpload::Step SdoUpload::handleBlockFrame(const QByteArray &payload)
{
    m_readings.note(m_memory, payload);
    return doNextOfBlock(m_block.take(payload));
}

SdoUpload::Step SdoUpload::doNextOfBlock(BlockReception::Event event)
{
    Step step;
    switch (event) {
    case BlockReception::Event::Nothing:
        step.waitRestarts = true;
        break;
    case BlockReception::Event::Ignored:
        m_memory.noteUnasked();
        break;
    case BlockReception::Event::Acknowledge:
        m_memory.noteRequest();
        step.send(m_block.acknowledge());
        step.waitRestarts = true;
        break;
    case BlockReception::Event::Complete: {
        step = finishReading(m_readings.judgeBlocks(m_memory, m_block.data(), m_block.hasCrc()));
        // The end is confirmed before anything else is asked.
        std::swap(step.frames[0], step.frames[1]);
        step.frames[0] = makeSdoBlockEndResponse();
        ++step.frameCount;
        break;
    }
    case BlockReception::Event::Failed:
        return readPlainInstead(static_cast<quint32>(m_block.failure()));
    }
    return step;
}

// Whatever it was: the plain protocol says it better, or works.
SdoUpload::Step SdoUpload::readPlainInstead(quint32 code)
{
    m_protocol = SdoProtocol::Plain;
    if (m_state == State::InitiatingBlock) {
        m_knowsNoBlocks = code == static_cast<quint32>(SdoAbort::CommandSpecifierUnknown);
        return initiate();
    }
    m_memory.noteTrouble();
    leaveTransfer();
    Step step = awaitClearLine();
    step.send(makeSdoAbort(m_outcome.key, code));
    return step;
}

} // namespace CanOpen
