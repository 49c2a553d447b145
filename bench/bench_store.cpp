// SPDX-License-Identifier: MIT
#include "allocations.h"

#include <store/exchangefile.h>
#include <store/nodestore.h>
#include <interpreter/readlist.h>

#include <benchmark/benchmark.h>

#include <QDateTime>
#include <QTemporaryDir>

namespace {

constexpr int nodeCount = 127;

const QList<ReadEntry> &readList()
{
    static const QList<ReadEntry> entries
        = readListGroup(ReadGroup::General) + readListGroup(ReadGroup::Group2)
          + readListGroup(ReadGroup::Group3) + readListGroup(ReadGroup::Group4)
          + readListGroup(ReadGroup::Group5);
    return entries;
}

/*! Adds the entries of the read list to every node, each with a value of eight digits. An entry that the list
 *  has twice is stored once; further sub-indices make up for it, so that each node has 204.
 */
void fillStore(NodeStore &store)
{
    store.clear();
    store.clearNodeList();
    for (int node = 1; node <= nodeCount; ++node) {
        const auto nodeId = static_cast<quint8>(node);
        store.appendNode(nodeId);
        quint32 value = 10'000'000;
        for (const ReadEntry &entry : readList())
            store.setValue(nodeId, entry.index, entry.subIndex, QVariant(value++));
        for (quint8 spare = 100; store.objects(nodeId).size() < readListLength; ++spare)
            store.setValue(nodeId, 0x6311, spare, QVariant(value++));
    }
}

const NodeStore &largestStore()
{
    static const NodeStore store = [] {
        NodeStore filled;
        fillStore(filled);
        return filled;
    }();
    return store;
}

const QString &largestText()
{
    static const QString text = exportToText(largestStore(), QDateTime());
    return text;
}

void setValue(benchmark::State &state)
{
    for (auto _ : state) {
        NodeStore store;
        fillStore(store);
        benchmark::DoNotOptimize(store);
    }
    state.SetItemsProcessed(state.iterations() * nodeCount * readListLength);
}
BENCHMARK(setValue)->Unit(benchmark::kMillisecond);

void getValue(benchmark::State &state)
{
    const NodeStore &store = largestStore();
    QVariant value;
    int found = 0;
    for (auto _ : state) {
        for (const ReadEntry &entry : readList())
            found += store.getValue(64, entry.index, entry.subIndex, value) ? 1 : 0;
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations() * readListLength);
}
BENCHMARK(getValue);

void exportLargestStore(benchmark::State &state)
{
    const NodeStore &store = largestStore();
    const QDateTime date = QDateTime::currentDateTime();
    for (auto _ : state) {
        const QString text = exportToText(store, date);
        benchmark::DoNotOptimize(text.constData());
    }
    const std::size_t before = Allocations::current();
    Allocations::resetPeak();
    const QString text = exportToText(store, date);
    state.counters["file_bytes"] = text.size();
    state.counters["memory_per_file_byte"] = double(Allocations::peak() - before) / text.size();
}
BENCHMARK(exportLargestStore)->Unit(benchmark::kMillisecond);

void importLargestStore(benchmark::State &state)
{
    const QString &text = largestText();
    for (auto _ : state) {
        NodeStore store;
        importFrom(text, store);
        benchmark::DoNotOptimize(store);
    }
    // The text that is given counts too; the store that is made does as well.
    const std::size_t before = Allocations::current();
    Allocations::resetPeak();
    NodeStore store;
    importFrom(text, store);
    const auto textBytes = std::size_t(text.size()) * sizeof(QChar);
    state.counters["file_bytes"] = text.size();
    state.counters["memory_per_file_byte"] = double(Allocations::peak() - before + textBytes) / text.size();
}
BENCHMARK(importLargestStore)->Unit(benchmark::kMillisecond);

/*! The same from file to store and from store to file, as the buttons do it. */
void saveAndLoadLargestStore(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("largest.dxxml"));
    std::size_t peak = 0;
    for (auto _ : state) {
        const std::size_t before = Allocations::current();
        Allocations::resetPeak();
        saveExchangeFile(fileName, exportToText(largestStore(), QDateTime()));
        QString text;
        loadExchangeFile(fileName, text);
        NodeStore store;
        importFrom(text, store);
        benchmark::DoNotOptimize(store);
        peak = Allocations::peak() - before;
    }
    state.counters["memory_per_file_byte"] = double(peak) / largestText().size();
}
BENCHMARK(saveAndLoadLargestStore)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
