// SPDX-License-Identifier: MIT
#include <interpreter/datainterpreter.h>

#include <benchmark/benchmark.h>

#include <QFile>
#include <QVariant>

namespace {

/*! Objects from the beginning, the middle and the end of the table, and one that it does not have. */
constexpr quint16 indices[] = {0x1000, 0x6040, 0x6105, 0x6164, 0x62E8, 0x6725, 0x5FFF};

void objectName(benchmark::State &state)
{
    for (auto _ : state) {
        for (const quint16 index : indices)
            benchmark::DoNotOptimize(DataInterpreter::objectName(index, 1));
    }
    state.SetItemsProcessed(state.iterations() * qint64(std::size(indices)));
}
BENCHMARK(objectName);

void formatValue(benchmark::State &state)
{
    const QVariant value(36500u);
    for (auto _ : state) {
        for (const quint16 index : indices)
            benchmark::DoNotOptimize(DataInterpreter::formatValue(index, 1, value));
    }
    state.SetItemsProcessed(state.iterations() * qint64(std::size(indices)));
}
BENCHMARK(formatValue);

/*! What one look-up costs when the table is read from its resource line by line, as far as the last line. */
void readTableLineByLine(benchmark::State &state)
{
    for (auto _ : state) {
        for (const quint16 index : indices) {
            QFile file(QStringLiteral(":/files/od.csv"));
            file.open(QIODevice::ReadOnly | QIODevice::Text);
            QString name;
            while (!file.atEnd()) {
                const QStringList fields = QString::fromUtf8(file.readLine()).split(QLatin1Char(';'));
                if ((fields.first().toInt(nullptr, 16) & 0xFFFF) == index)
                    name = fields.at(1);
            }
            benchmark::DoNotOptimize(name);
        }
    }
    state.SetItemsProcessed(state.iterations() * qint64(std::size(indices)));
}
BENCHMARK(readTableLineByLine);

} // namespace

BENCHMARK_MAIN();
