// SPDX-License-Identifier: MIT
#include <tests/support/vehiclesnapshot.h>

#include <checkup/checkup.h>
#include <checkup/ruleset.h>
#include <checkup/snapshotcomparison.h>

#include <benchmark/benchmark.h>

namespace {

constexpr int nodeCount = 127;

/*! The largest bus: twin batteries on every third node, the other devices of the full bus between them. */
Snapshot largestSnapshot()
{
    const Snapshot vehicle = VehicleSnapshot::of(QStringLiteral("full-bus"));
    Snapshot snapshot = vehicle;
    snapshot.nodes.clear();
    for (int i = 0; i < nodeCount; ++i) {
        SnapshotNode node = i % 3 == 0 ? *vehicle.find(2) : vehicle.nodes.at(i % vehicle.nodes.size());
        node.id = static_cast<quint8>(i + 1);
        snapshot.nodes.append(node);
        VehicleSnapshot::setNumber(&snapshot, node.id, {0x1018, 4}, 1000000 + i);
    }
    return snapshot;
}

/*! A year later: counters have risen, some cells are low. */
Snapshot laterSnapshot()
{
    Snapshot snapshot = largestSnapshot();
    for (int id = 1; id <= nodeCount; id += 3) {
        VehicleSnapshot::setNumber(&snapshot, static_cast<quint8>(id), {0x6107, 1}, 400);
        VehicleSnapshot::setNumber(&snapshot, static_cast<quint8>(id), {0x6165, 7}, 3500);
    }
    return snapshot;
}

const RuleSet &shippedRules()
{
    static const RuleSet rules = RuleSet::load({QStringLiteral(OVERVIEW_SOURCE_DIR "/src/checkup/rules")});
    return rules;
}

void loadRules(benchmark::State &state)
{
    for (auto _ : state) {
        const RuleSet rules = RuleSet::load({QStringLiteral(OVERVIEW_SOURCE_DIR "/src/checkup/rules")});
        benchmark::DoNotOptimize(rules.rules().size());
    }
}
BENCHMARK(loadRules)->Unit(benchmark::kMillisecond);

void judgeLargestBus(benchmark::State &state)
{
    const Snapshot snapshot = laterSnapshot();
    int findings = 0;
    for (auto _ : state)
        findings = Checkup::judge(snapshot, shippedRules(), QStringLiteral("en")).count(Severity::Fault);
    state.counters["faults"] = findings;
}
BENCHMARK(judgeLargestBus)->Unit(benchmark::kMillisecond);

void compareLargestBus(benchmark::State &state)
{
    const Snapshot before = largestSnapshot();
    const Snapshot after = laterSnapshot();
    const CheckupResult was = Checkup::judge(before, shippedRules(), QStringLiteral("en"));
    const CheckupResult is = Checkup::judge(after, shippedRules(), QStringLiteral("en"));
    int changes = 0;
    for (auto _ : state)
        changes = SnapshotComparison::compare({&before, &was}, {&after, &is}, shippedRules().kinds())
                      .changes.size();
    state.counters["changes"] = changes;
    state.counters["entries"] = [&after] {
        int entries = 0;
        for (const SnapshotNode &node : after.nodes)
            entries += node.entries.size();
        return entries;
    }();
}
BENCHMARK(compareLargestBus)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
