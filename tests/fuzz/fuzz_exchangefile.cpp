// SPDX-License-Identifier: MIT
// Exchange files: the same values however the text is cut, and what is written can be read.
#include "bytereader.h"

#include <store/exchangefile.h>
#include <store/nodestore.h>

#include <QDateTime>

namespace {

bool areEqual(const NodeStore &a, const NodeStore &b)
{
    for (int node = 0; node < NodeStore::nodeCount; ++node) {
        if (a.objects(static_cast<quint8>(node)) != b.objects(static_cast<quint8>(node)))
            return false;
    }
    return a.nodeList() == b.nodeList();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    constexpr int smallChunk = 7;
    constexpr int mostListed = 1000; // beyond it the text that is written grows faster than the one read

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    NodeStore store;
    NodeStore inPieces;
    const bool isWhole = importFrom(text, store);
    require(importByParser(text, inPieces, smallChunk) == isWhole);
    require(areEqual(store, inPieces));
    exchangeProblem(text);

    if (store.nodeList().size() > mostListed)
        return 0;
    NodeStore again;
    require(importFrom(exportToText(store, QDateTime(QDate(2026, 1, 1))), again));
    const QList<quint8> &nodes = store.nodeList();
    for (const quint8 node : nodes) {
        const ObjectMap &objects = store.objects(node);
        for (auto object = objects.constBegin(); object != objects.constEnd(); ++object)
            require(again.objects(node).contains(object.key()));
    }
    return 0;
}
