// SPDX-License-Identifier: MIT
#include <interface/canreceiverhub.h>
#include <interface/hostinterface.h>
#include <interface/sdoclient.h>
#include <reader/datareader.h>
#include <interpreter/readlist.h>
#include <ui/componenttree.h>
#include <ui/detailtables.h>
#include <ui/overviewform.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPushButton>
#include <QTableWidget>
#include <QTreeWidget>

#include <ctime>

namespace {

constexpr int nodeCount = 127;
constexpr int devicesPerNode = 5;

/*! A store in which every node has every entry of the read list, and five batteries. */
void fill(DataReader &reader)
{
    QString text = QStringLiteral("<dxtoolstorage><nodes>");
    for (int node = 1; node <= nodeCount; ++node) {
        text += QStringLiteral("<node nodeid=\"%1\">").arg(node);
        for (const ReadGroup group : {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3,
                                      ReadGroup::Group4, ReadGroup::Group5}) {
            for (const ReadEntry &entry : readListGroup(group)) {
                int value = 4 + entry.subIndex;
                if (entry.index == 0x6000)
                    value = entry.subIndex == 0 ? devicesPerNode : 6;
                text += QStringLiteral("<object index=\"%1\" sub=\"%2\" value=\"%3\"/>")
                            .arg(entry.index)
                            .arg(entry.subIndex)
                            .arg(value);
            }
        }
        text += QStringLiteral("</node>");
    }
    text += QStringLiteral("</nodes></dxtoolstorage>");
    reader.importXml(text);
}

/*! The rebuild of the tree, with the tables that its last row fills left out. */
void rebuildTree(benchmark::State &state)
{
    DataReader reader;
    fill(reader);
    OverviewForm form;
    form.show();
    auto *tree = form.findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
    const QSignalBlocker blocker(tree);
    for (auto _ : state) {
        ComponentTree componentTree(*tree);
        componentTree.clear();
        componentTree.addNodes(reader);
        tree->resizeColumnToContents(0);
    }
    state.counters["rows"] = tree->topLevelItemCount();
}
BENCHMARK(rebuildTree)->Unit(benchmark::kMillisecond);

/*! What a click on a component does, until the tables are painted. */
void selectComponent(benchmark::State &state)
{
    DataReader reader;
    fill(reader);
    OverviewForm form;
    form.show();
    auto *parameters = form.findChild<QTableWidget *>(QStringLiteral("tblParameters"));
    auto *values = form.findChild<QTableWidget *>(QStringLiteral("tblValues"));
    quint8 nodeId = 1;
    for (auto _ : state) {
        DetailTables(reader.store(), *parameters, *values).showNode(nodeId);
        QCoreApplication::processEvents();
        nodeId = nodeId == nodeCount ? quint8(1) : quint8(nodeId + 1);
    }
    state.counters["rows"] = parameters->rowCount() + values->rowCount();
}
BENCHMARK(selectComponent)->Unit(benchmark::kMillisecond);

/*! A host on whose bus nothing is heard. */
class SilentHost : public HostInterface, public CanReceiverHub, public SdoClient
{
public:
    CanReceiverHub *getCanReceiverHub() override { return this; }
    SdoClient *getSdoClient() override { return this; }
    SecondarySdoClient *getSecondarySdoClient() override { return nullptr; }
    QObject *getReceiver(quint16) override { return nullptr; }
    QObject *getNmtStateSource(quint8) override { return nullptr; }
    void upload(quint8, quint16, quint8, quint16, int) override {}
    QObject *getQObject() override { return &m_signals; }

private:
    QObject m_signals;
};

/*! The wait for heartbeats, with the title moving: how much of one core the process uses. */
void waitForHeartbeats(benchmark::State &state)
{
    SilentHost host;
    OverviewForm form;
    form.setHostInterface(&host);
    form.setConnected(true);
    form.show();
    QCoreApplication::processEvents();
    auto *read = form.findChild<QPushButton *>(QStringLiteral("btnRead"));
    double share = 0;
    for (auto _ : state) {
        timespec cpuBefore{};
        timespec cpuAfter{};
        timespec before{};
        timespec after{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpuBefore);
        clock_gettime(CLOCK_MONOTONIC, &before);
        read->click();
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpuAfter);
        clock_gettime(CLOCK_MONOTONIC, &after);
        const auto seconds = [](const timespec &from, const timespec &to) {
            return double(to.tv_sec - from.tv_sec) + double(to.tv_nsec - from.tv_nsec) * 1e-9;
        };
        share = std::max(share, seconds(cpuBefore, cpuAfter) / seconds(before, after));
    }
    state.counters["share_of_a_core"] = share;
}
BENCHMARK(waitForHeartbeats)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
