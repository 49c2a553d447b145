// SPDX-License-Identifier: MIT
// The client's state machine of one upload after the other, against a server and another client that do anything.
#include "bytereader.h"

#include <canopen/sdoupload.h>

namespace {

using CanOpen::DataType;
using CanOpen::SdoOutcome;
using CanOpen::SdoUpload;

constexpr DataType types[]
    = {DataType::Unsigned8,  DataType::Unsigned16,    DataType::Unsigned32,  DataType::Integer32,
       DataType::Unsigned64, DataType::VisibleString, DataType::OctetString, DataType::Domain};

/*! What holds after every step of an upload of \a type. */
void checkStep(const SdoUpload &upload, const SdoUpload::Step &step, CanOpen::ObjectKey key, DataType type)
{
    require(step.frameCount >= 0 && step.frameCount <= 2);
    for (int frame = 0; frame < step.frameCount; ++frame)
        require(step.frames[static_cast<std::size_t>(frame)].size() == 8);
    require(!step.finished || !upload.isActive());
    if (!step.finished)
        return;
    const SdoOutcome &outcome = upload.outcome();
    require(outcome.key == key);
    require((outcome.kind == SdoOutcome::Kind::Value) == outcome.value.isValid());
    if (outcome.kind != SdoOutcome::Kind::Value || CanOpen::byteSize(type) == 0)
        return;
    const std::optional<QByteArray> bytes = CanOpen::encodeValue(type, outcome.value);
    require(bytes && bytes->size() == CanOpen::byteSize(type));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    ByteReader reader(data, size);
    SdoUpload upload;
    CanOpen::ObjectKey key;
    DataType type = DataType::Unsigned32;
    while (!reader.atEnd()) {
        const quint8 action = reader.byte();
        SdoUpload::Step step;
        switch (action & 0x07) {
        case 0:
            key = CanOpen::ObjectKey{reader.word(), reader.byte()};
            type = types[action >> 3 & 0x07];
            step = upload.start(key, type, action >> 6);
            break;
        case 1:
            step = upload.handleForeignRequest(reader.payload());
            break;
        case 2:
            if (upload.isActive())
                step = upload.timeOver();
            break;
        case 3:
            if (upload.isActive())
                step = upload.giveUp();
            break;
        case 4: {
            // An answer to the right object, as it takes long to find one by chance.
            QByteArray payload = reader.bytes(1) + QByteArray(3, '\0') + reader.bytes(4);
            payload = payload.leftJustified(8, '\0');
            payload[1] = static_cast<char>(key.index & 0xFF);
            payload[2] = static_cast<char>(key.index >> 8);
            payload[3] = static_cast<char>(key.subIndex);
            step = upload.handleResponse(payload);
            break;
        }
        default:
            step = upload.handleResponse(reader.payload());
        }
        checkStep(upload, step, key, type);
    }

    // Whatever came before: silence ends every upload.
    for (int wait = 0; upload.isActive(); ++wait) {
        require(wait < 100);
        checkStep(upload, upload.timeOver(), key, type);
    }
    return 0;
}
