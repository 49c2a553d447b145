// SPDX-License-Identifier: MIT
// How long the window keeps a click waiting, at worst. The simulated vehicle runs in the same thread and counts too.
#include "benchwindow.h"
#include "manyvisits.h"
#include "stallwatch.h"
#include "vehiclesnapshot.h"

#include <archive/archive.h>
#include <host/pages/checkupsession.h>
#include <interpreter/readlist.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>
#include <tests/support/filedialogdriver.h>
#include <tests/support/httpserver.h>

#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

#include <zlib.h>

namespace {

constexpr int nodeCount = 127;
constexpr int devicesPerNode = 5;
constexpr qint64 floodTime = 10000;  // ms
constexpr qint64 settlingTime = 400; // ms, until the window is painted
constexpr qint64 answerTime = 2500;  // ms, until an answer has been shown and closed
constexpr int repetitions = 10;

/*! What \a watch saw, and how busy the machine was with other things. */
void report(const StallWatch &watch, benchmark::State *state)
{
    double load = 0;
    getloadavg(&load, 1);
    state->counters["longest_ms"] = std::max<double>(state->counters["longest_ms"], watch.longest());
    state->counters["longest_busy_ms"]
        = std::max<double>(state->counters["longest_busy_ms"], watch.longestBusy());
    state->counters["load"] = load;
}

/*! 8000 frames a second for ten seconds, with \a page shown. */
void measureFlood(benchmark::State &state, const char *page)
{
    BenchWindow window;
    window.trigger(page);
    for (auto _ : state) {
        const Flood flood(window.bus());
        BenchWindow::pass(100);
        StallWatch watch;
        BenchWindow::pass(floodTime);
        report(watch, &state);
        state.counters["frames"] = static_cast<double>(flood.sentCount());
    }
}

void flood(benchmark::State &state)
{
    measureFlood(state, "actionPageOverview");
}
BENCHMARK(flood)->Iterations(1)->Unit(benchmark::kMillisecond);

void floodOnLivePage(benchmark::State &state)
{
    measureFlood(state, "actionPageLive");
}
BENCHMARK(floodOnLivePage)->Iterations(1)->Unit(benchmark::kMillisecond);

/*! A read of the vehicle, detection included, with the same flood beside it. */
void readInFlood(benchmark::State &state)
{
    BenchWindow window;
    for (auto _ : state) {
        const Flood flood(window.bus());
        BenchWindow::pass(100);
        StallWatch watch;
        window.press("btnRead");
        BenchWindow::pass(100);
        report(watch, &state);
    }
}
BENCHMARK(readInFlood)->Iterations(1)->Unit(benchmark::kMillisecond);

/*! 127 nodes with all entries of the read list and five virtual devices each. */
QString largestText()
{
    NodeStore store;
    store.clear();
    for (int node = 1; node <= nodeCount; ++node) {
        const auto nodeId = static_cast<quint8>(node);
        store.appendNode(nodeId);
        for (const ReadGroup group : {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3,
                                      ReadGroup::Group4, ReadGroup::Group5}) {
            for (const ReadEntry &entry : readListGroup(group)) {
                int value = 4 + entry.subIndex;
                if (entry.index == 0x6000)
                    value = entry.subIndex == 0 ? devicesPerNode : 6;
                store.setValue(nodeId, entry.index, entry.subIndex, value);
            }
        }
    }
    return exportToText(store, QDateTime::currentDateTime());
}

QString fileWith(const QString &text, const QTemporaryDir &folder)
{
    QString fileName = folder.filePath(QStringLiteral("largest.dxxml"));
    if (!saveExchangeFile(fileName, text))
        qFatal("the file to open cannot be written");
    return fileName;
}

/*! Tells when a file dialog has been answered: what it does before that is Qt's. */
class DialogEnd : public QObject
{
public:
    explicit DialogEnd(std::function<void()> tell)
        : m_tell(std::move(tell))
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && qobject_cast<QFileDialog *>(object) != nullptr)
            m_tell();
        return false;
    }

private:
    std::function<void()> m_tell;
};

/*! The import by the plug-in's button, from the end of the file dialog to the painted window. */
void importFile(benchmark::State &state, const QString &text)
{
    const QTemporaryDir folder;
    const FileDialogDriver dialogs(fileWith(text, folder));
    BenchWindow window;
    for (auto _ : state) {
        StallWatch watch;
        const DialogEnd dialogEnd([&watch] { watch.reset(); });
        window.press("btnImport");
        BenchWindow::pass(settlingTime);
        report(watch, &state);
    }
}

/*! The same by the host, as its own file dialog, its list of files and its command line do. */
void openFile(benchmark::State &state, const QString &text)
{
    const QTemporaryDir folder;
    const QString fileName = fileWith(text, folder);
    BenchWindow window;
    for (auto _ : state) {
        StallWatch watch;
        QTimer::singleShot(0, [&] { window.openFile(fileName); });
        BenchWindow::pass(settlingTime);
        report(watch, &state);
    }
}

/*! A file that another program has written again has to go through the XML parser. */
QString rewritten(QString text)
{
    return text.replace(QLatin1String("            <object"), QLatin1String("\t<object"));
}

void importLargestFile(benchmark::State &state)
{
    importFile(state, largestText());
}
BENCHMARK(importLargestFile)->Iterations(repetitions)->Unit(benchmark::kMillisecond);

void importRewrittenFile(benchmark::State &state)
{
    importFile(state, rewritten(largestText()));
}
BENCHMARK(importRewrittenFile)->Iterations(repetitions)->Unit(benchmark::kMillisecond);

void openLargestFile(benchmark::State &state)
{
    openFile(state, largestText());
}
BENCHMARK(openLargestFile)->Iterations(repetitions)->Unit(benchmark::kMillisecond);

void openRewrittenFile(benchmark::State &state)
{
    openFile(state, rewritten(largestText()));
}
BENCHMARK(openRewrittenFile)->Iterations(repetitions)->Unit(benchmark::kMillisecond);

/*! A server of its own thread: what it does to make an answer is no stall of the window. */
class AnsweringServer
{
public:
    explicit AnsweringServer(const QByteArray &answer)
    {
        m_thread.start();
        QObject context;
        context.moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            &context,
            [this, &answer] {
                m_server = std::make_unique<HttpServer>();
                m_server->setAnswer(answer, HttpServer::Ending::Close);
                qputenv("DRAXEL_UPDATE_HOST", m_server->authority().toLatin1());
                m_server->moveToThread(&m_thread);
            },
            Qt::BlockingQueuedConnection);
    }
    ~AnsweringServer()
    {
        m_server.release()->deleteLater(); // in its thread
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY(AnsweringServer)

private:
    QThread m_thread;
    std::unique_ptr<HttpServer> m_server;
};

QByteArray compressed(const QByteArray &text)
{
    constexpr int gzipFormat = 15 + 16;
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY);
    QByteArray result(static_cast<int>(deflateBound(&stream, static_cast<uLong>(text.size()))), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.constData()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    deflate(&stream, Z_FINISH);
    result.truncate(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    return result;
}

/*! 127 times the battery with the most to say. */
Simulator::VehicleDescription crowd()
{
    constexpr quint8 battery = 2;
    Simulator::VehicleDescription vehicle = BenchWindow::shipped("full-bus");
    const auto model
        = std::find_if(vehicle.nodes.cbegin(), vehicle.nodes.cend(),
                       [](const Simulator::NodeDescription &node) { return node.id == battery; });
    const Simulator::NodeDescription one = *model;
    vehicle.nodes.clear();
    for (int id = 1; id <= nodeCount; ++id) {
        Simulator::NodeDescription node = one;
        node.id = static_cast<quint8>(id);
        node.behaviours.clear();
        node.dictionary.setValue({0x1018, 4}, id);
        vehicle.nodes.append(node);
    }
    return vehicle;
}

/*! An archive of its own for a benchmark. */
class OwnArchive
{
public:
    OwnArchive() { qputenv("DRAXEL_ARCHIVE", fileName().toLocal8Bit()); }
    QString fileName() const { return m_folder.filePath(QStringLiteral("bench.dxarchive")); }

private:
    QTemporaryDir m_folder;
};

/*! Check-ups of 127 nodes, from the button until it is judged, kept, and, from the second on, compared. */
void checkupOf127(benchmark::State &state)
{
    const OwnArchive archive;
    BenchWindow window(crowd());
    for (auto _ : state) {
        StallWatch watch;
        window.trigger("actionQuickCheckup");
        while (window.window().checkup().isRunning()
               || window.window().checkup().kept() == CheckupSession::Kept::Asked)
            BenchWindow::pass(settlingTime);
        BenchWindow::pass(3 * settlingTime);
        report(watch, &state);
        state.counters["values"] = window.window().checkup().record().snapshot.valueCount();
    }
}
BENCHMARK(checkupOf127)->Iterations(3)->Unit(benchmark::kMillisecond);

void fillArchive(const QString &fileName)
{
    Archive archive;
    QString error;
    const auto address = ArchiveAddress::parse(fileName, &error);
    if (!address || !archive.open(*address, Archive::Missing::Make, &error)
        || !ManyVisits::fill(&archive, &error))
        qFatal("%s", qUtf8Printable(error));
}

/*! The page of an archive with 10 000 visits: shown, searched, a vehicle and a visit of it opened. */
void archiveOf10000(benchmark::State &state)
{
    const ManyVisits visits;
    qputenv("DRAXEL_ARCHIVE", visits.fileName().toLocal8Bit());
    fillArchive(visits.fileName());
    BenchWindow window;
    for (auto _ : state) {
        StallWatch watch;
        window.trigger("actionPageArchive");
        BenchWindow::pass(answerTime);
        auto *search = window.window().findChild<QLineEdit *>(QStringLiteral("archiveSearch"));
        search->setText(QStringLiteral("1"));
        BenchWindow::pass(answerTime);
        search->clear();
        BenchWindow::pass(answerTime);
        window.window().findChild<QTableView *>(QStringLiteral("vehicleTable"))->selectRow(3);
        BenchWindow::pass(answerTime);
        window.press("visitOpen");
        BenchWindow::pass(answerTime);
        report(watch, &state);
        state.counters["visits"] = ManyVisits::count();
    }
}
BENCHMARK(archiveOf10000)->Iterations(1)->Unit(benchmark::kMillisecond);

/*! A visit with everything that can be read of 127 nodes, opened from the archive. */
void openVisitOf127(benchmark::State &state)
{
    const OwnArchive archive;
    BenchWindow window(crowd());
    window.trigger("actionCheckup");
    while (window.window().checkup().isRunning()
           || window.window().checkup().kept() == CheckupSession::Kept::Asked)
        BenchWindow::pass(settlingTime);
    window.trigger("actionPageArchive");
    BenchWindow::pass(answerTime);
    window.window().findChild<QTableView *>(QStringLiteral("vehicleTable"))->selectRow(0);
    BenchWindow::pass(answerTime);
    for (auto _ : state) {
        StallWatch watch;
        window.press("visitOpen");
        BenchWindow::pass(answerTime);
        report(watch, &state);
        state.counters["values"] = window.window().checkup().record().snapshot.valueCount();
    }
}
BENCHMARK(openVisitOf127)->Iterations(3)->Unit(benchmark::kMillisecond);

QByteArray inChunksOfOneByte(int count)
{
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + QByteArray("1\r\nx\r\n").repeated(count)
           + "0\r\n\r\n";
}

struct Answer
{
    const char *name;
    std::function<QByteArray()> bytes;
};

/*! Answers that are hard on a client or on a box that shows them. */
const std::vector<Answer> &answers()
{
    constexpr int megabyte = 1024 * 1024;
    constexpr int shown = 20000; // characters of the details
    static const auto text
        = [](const QByteArray &body) { return [body] { return HttpServer::response(body); }; };
    static const std::vector<Answer> all = {
        {"short", text("Firmware 1.1 is available.")},
        {"4 MB in one line", text(QByteArray(4 * megabyte, 'x'))},
        {"4 MB in words", text(QByteArray("word ").repeated(4 * megabyte / 5))},
        {"4 MB of line ends", text(QByteArray(4 * megabyte, '\n'))},
        {"20000 in one line", text(QByteArray(shown, 'x'))},
        {"20000 blanks", text(QByteArray(shown, ' '))},
        {"20000 tabs", text(QByteArray(shown, '\t'))},
        {"20000 line ends", text(QByteArray(shown, '\n'))},
        {"20000 control characters", text(QByteArray(shown, '\x01'))},
        {"20000 soft hyphens", text(QByteArray(shown, '\xAD'))},
        {"20000 accents", text(QByteArray(shown, '\xE4'))},
        {"4000 in one line", text(QByteArray(3999, 'W'))},
        {"200 control characters", text(QByteArray(200, '\x01') + QByteArray(3700, 'x'))},
        {"4000 tabs", text(QByteArray(3999, '\t'))},
        {"4000 accents", text(QByteArray(3999, '\xE4'))},
        {"4000 in words", text(QByteArray("W ").repeated(1999))},
        {"gzip of 1 GB",
         [] {
             const QByteArray body = compressed(QByteArray(1024 * megabyte, 'x'));
             return HttpServer::response(body, "200 OK", "Content-Encoding: gzip\r\n");
         }},
        {"gzip of 4 MB",
         [] {
             const QByteArray body = compressed(QByteArray(4 * megabyte, 'x'));
             return HttpServer::response(body, "200 OK", "Content-Encoding: gzip\r\n");
         }},
        {"20000 cookies",
         [] {
             return HttpServer::response("x", "200 OK", QByteArray("Set-Cookie: a=b\r\n").repeated(20000));
         }},
        {"2000000 chunks", [] { return inChunksOfOneByte(2000000); }},
    };
    return all;
}

/*! The answer to the check for an update, from the button to the box with its details. */
void updateAnswer(benchmark::State &state)
{
    const Answer &answer = answers().at(static_cast<std::size_t>(state.range(0)));
    state.SetLabel(answer.name);
    const AnsweringServer server(answer.bytes());
    const QTemporaryDir folder;
    BenchWindow window;
    window.openFile(fileWith(largestText(), folder));
    BenchWindow::pass(settlingTime);
    for (auto _ : state) {
        StallWatch watch;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box == nullptr)
                return;
            for (QAbstractButton *button : box->buttons()) {
                if (box->buttonRole(button) == QMessageBox::ActionRole
                    && button->text().contains(QLatin1String("Details")))
                    button->click();
            }
            BenchWindow::pass(settlingTime);
            box->accept();
        });
        look.start(5);
        window.press("btnCheckUpdate");
        BenchWindow::pass(answerTime);
        report(watch, &state);
    }
}
BENCHMARK(updateAnswer)->DenseRange(0, 19)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bench_stalls"));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
