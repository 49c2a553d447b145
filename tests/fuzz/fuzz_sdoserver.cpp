// SPDX-License-Identifier: MIT
// The SDO server: requests of any kind and in any order, block uploads among them.
#include "bytereader.h"

#include <canopen/cobid.h>
#include <canopen/sdoserver.h>

namespace {

using namespace CanOpen;

constexpr quint8 nodeId = 5;

ObjectDictionary makeDictionary()
{
    ObjectDictionary dictionary;
    const auto add = [&dictionary](ObjectKey key, DataType type, Access access, const QByteArray &data) {
        ObjectEntry entry;
        entry.type = type;
        entry.access = access;
        entry.data = data;
        entry.lowLimit = type == DataType::Integer16 ? std::optional<qint64>(-5) : std::nullopt;
        dictionary.insert(key, entry);
    };
    add({0x1000, 0}, DataType::Unsigned32, Access::ReadOnly, QByteArray(4, 'a'));
    add({0x1008, 0}, DataType::VisibleString, Access::ReadWrite, QByteArray(24, 'b'));
    add({0x2000, 0}, DataType::Integer16, Access::ReadWrite, QByteArray(2, 'c'));
    add({0x2001, 0}, DataType::Domain, Access::ReadWrite, QByteArray(1500, 'd'));
    add({0x2002, 0}, DataType::Unsigned64, Access::WriteOnly, QByteArray(8, 'e'));
    add({0x2003, 0}, DataType::OctetString, Access::ReadOnly, QByteArray());
    return dictionary;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static const ObjectDictionary original = makeDictionary();
    ByteReader reader(data, size);
    ObjectDictionary dictionary = original;
    SdoServer server(nodeId, &dictionary);
    const quint8 manner = reader.byte();
    server.setSegmented((manner & 0x01) != 0);
    server.setSegmentSize(1 + (manner >> 1) % 7);
    while (!reader.atEnd()) {
        const QVector<QCanBusFrame> answers
            = server.handleFrame(QCanBusFrame(sdoRequestCobId(nodeId), reader.payload()));
        require(answers.size() <= 127);
        for (const QCanBusFrame &answer : answers)
            require(answer.frameId() == sdoResponseCobId(nodeId) && answer.payload().size() == 8);
    }
    // What may not be written has stayed, and numbers have kept their width.
    require(dictionary.find({0x1000, 0})->data == QByteArray(4, 'a'));
    require(dictionary.find({0x2000, 0})->data.size() == 2);
    require(dictionary.find({0x2002, 0})->data.size() == 8);
    return 0;
}
