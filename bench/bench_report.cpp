// SPDX-License-Identifier: MIT
#include <report/pdfwriter.h>
#include <report/reportsections.h>
#include <store/nodestore.h>

#include <benchmark/benchmark.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTextDocument>

namespace {

constexpr int nodeCount = 127;

struct Entry
{
    quint16 index;
    quint8 subIndex;
    quint32 value;
};

// A twin battery: the class with the most rows.
constexpr Entry batteryEntries[] = {
    {0x1000, 0, 0x040101C6}, {0x1001, 0, 0},       {0x1018, 0, 4},          {0x1018, 1, 65534},
    {0x1018, 2, 4540202},    {0x1018, 3, 0x10005}, {0x1018, 4, 1123450},    {0x6000, 0, 2},
    {0x6000, 1, 6},          {0x6000, 2, 6},       {0x6001, 1, 4},          {0x6002, 1, 0x80C2},
    {0x6005, 0, 454020272},  {0x6008, 0, 2},       {0x6008, 1, 36000},      {0x6008, 2, 36000},
    {0x600A, 0, 0x8000003F}, {0x600E, 0, 2},       {0x600E, 1, 0x71810200}, {0x600E, 2, 0x71860200},
    {0x6020, 0, 2},          {0x6020, 1, 42000},   {0x6020, 2, 42000},      {0x6024, 0, 2},
    {0x6024, 1, 4000},       {0x6024, 2, 4000},    {0x6025, 0, 2},          {0x6025, 1, 20000},
    {0x6025, 2, 20000},      {0x603E, 0, 2},       {0x603E, 1, 6200},       {0x603E, 2, 6050},
    {0x6040, 0, 2},          {0x6040, 1, 39300},   {0x6040, 2, 39280},      {0x6042, 0, 2},
    {0x6042, 1, 268},        {0x6042, 2, 264},     {0x604A, 0, 2},          {0x604A, 1, 4000},
    {0x604A, 2, 4000},       {0x604B, 0, 2},       {0x604B, 1, 20000},      {0x604B, 2, 20000},
    {0x604C, 0, 2},          {0x604C, 1, 6000},    {0x604C, 2, 6000},       {0x604D, 0, 2},
    {0x604D, 1, 2000},       {0x604D, 2, 2000},    {0x604E, 0, 2},          {0x604E, 1, 30000},
    {0x604E, 2, 30000},      {0x604F, 0, 2},       {0x604F, 1, 5000},       {0x604F, 2, 5000},
    {0x6100, 1, 0xA0},       {0x6102, 0, 2},       {0x6102, 1, 500000},     {0x6102, 2, 500000},
    {0x6105, 0, 2},          {0x6105, 1, 253},     {0x6105, 2, 261},        {0x6120, 0, 1},
    {0x6120, 1, 450},        {0x6121, 0, 1},       {0x6121, 1, 20},         {0x6126, 0, 2},
    {0x6126, 1, 4200},       {0x6126, 2, 4200},    {0x6127, 0, 2},          {0x6127, 1, 2800},
    {0x6127, 2, 2800},       {0x6160, 0, 2},       {0x6160, 1, 420000},     {0x6160, 2, 418500},
    {0x6162, 0, 2},          {0x6162, 1, 486000},  {0x6162, 2, 486000},     {0x6164, 0, 2},
    {0x6164, 2, 8400},       {0x6176, 0, 2},       {0x6176, 1, 9720},       {0x6176, 2, 9755},
    {0x6310, 1, 0x20080},    {0x6311, 0, 2},       {0x6311, 1, 0xC5},       {0x6311, 2, 0xC5},
};

const NodeStore &largestStore()
{
    static const NodeStore store = [] {
        NodeStore filled;
        for (int node = 1; node <= nodeCount; ++node) {
            const auto nodeId = static_cast<quint8>(node);
            filled.appendNode(nodeId);
            for (const Entry &entry : batteryEntries)
                filled.setValue(nodeId, entry.index, entry.subIndex, QVariant(entry.value));
        }
        return filled;
    }();
    return store;
}

void buildHtml(benchmark::State &state)
{
    int size = 0;
    for (auto _ : state) {
        pdfWriter writer;
        ReportSections(largestStore()).write(writer);
        size = writer.html().size();
    }
    state.counters["html_characters"] = size;
}
BENCHMARK(buildHtml)->Unit(benchmark::kMillisecond);

/*! What Qt needs by itself to lay out and print the same HTML on the same page. */
void printByQt(benchmark::State &state)
{
    pdfWriter writer;
    ReportSections(largestStore()).write(writer);
    const QString html = writer.html() + QLatin1String("</div></body></html>");
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("plain.pdf"));
    for (auto _ : state) {
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setOutputFileName(fileName);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
        QTextDocument document;
        document.setPageSize(printer.pageLayout().fullRectPoints().size());
        document.setHtml(html);
        document.print(&printer);
    }
    state.counters["pdf_bytes"] = double(QFileInfo(fileName).size());
}
BENCHMARK(printByQt)->Unit(benchmark::kMillisecond);

/*! The whole report as the button makes it: rows, HTML file, PDF file. */
void writeReport(benchmark::State &state)
{
    const QTemporaryDir folder;
    for (auto _ : state) {
        pdfWriter writer;
        ReportSections(largestStore()).write(writer);
        if (!writer.writeFiles(folder.path()))
            state.SkipWithError(qPrintable(writer.errorString()));
    }
    state.counters["pdf_bytes"] = double(QFileInfo(pdfWriter::pdfPath(folder.path())).size());
}
BENCHMARK(writeReport)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
