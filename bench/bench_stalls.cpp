// SPDX-License-Identifier: MIT
// How long the window keeps a click waiting, at worst. The simulated vehicle runs in the same thread and counts too.
#include "manyvisits.h"
#include "stallwatch.h"
#include "vehiclesnapshot.h"

#include <archive/archive.h>
#include <host/core/hostservices.h>
#include <host/core/pluginsession.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <interface/dxplugininterface.h>
#include <interpreter/readlist.h>
#include <simulator/simulateddevice.h>
#include <simulator/vehicle.h>
#include <simulator/vehiclefile.h>
#include <simulator/vehicleonbus.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>
#include <tests/support/filedialogdriver.h>
#include <tests/support/httpserver.h>

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
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
constexpr int framesPerMillisecond = 8;
constexpr qint64 floodTime = 10000;  // ms
constexpr qint64 settlingTime = 400; // ms, until the window is painted
constexpr qint64 answerTime = 2500;  // ms, until an answer has been shown and closed
constexpr int repetitions = 10;

/*! Sends PDOs of all nodes, 8000 frames a second. */
class Flood : public Simulator::BusParticipant
{
public:
    explicit Flood(Simulator::SimulatedBus *bus)
        : m_bus(bus)
    {
        m_bus->attach(this);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { sendDue(); });
        m_clock.start();
        m_timer.start(1);
    }
    ~Flood() override { m_bus->detach(this); }
    Q_DISABLE_COPY(Flood)

    void receive(const QCanBusFrame &) override {}
    bool isSimulated() const override { return true; }
    qint64 sentCount() const { return m_sent; }

private:
    void sendDue()
    {
        for (const qint64 due = m_clock.elapsed() * framesPerMillisecond; m_sent < due; ++m_sent) {
            const auto cobId = 0x180u + static_cast<quint32>(m_sent % nodeCount) + 1u;
            m_bus->send(this, QCanBusFrame(cobId, QByteArray(8, static_cast<char>(m_sent))), 0,
                        Simulator::SimulatedBus::noQueueLimit);
        }
    }

    Simulator::SimulatedBus *m_bus;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_sent = 0;
};

/*! The whole window on a bus with the shipped vehicle "full-bus". */
class Window
{
public:
    explicit Window(const Simulator::VehicleDescription &vehicle = loadVehicle())
        : m_bus(std::make_shared<Simulator::SimulatedBus>(0))
        , m_vehicle(vehicle)
        , m_vehicleOnBus(&m_vehicle, m_bus.get())
        , m_session(&m_services)
    {
        m_services.bus().setDeviceFactory(
            [this](const QString &, const QString &, QString *) -> QCanBusDevice * {
                return new Simulator::SimulatedCanDevice(m_bus);
            });
        const QStringList errors
            = m_session.loadFolder(QStringLiteral(OVERVIEW_PLUGIN_FOLDER), QStringLiteral("en"));
        if (!errors.isEmpty())
            qFatal("%s", qUtf8Printable(errors.first()));
        m_window = std::make_unique<MainWindow>(&m_services, &m_session);
        m_window->checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        m_window->checkup().setSharePercent(100);
        m_window->showPlugins();
        m_window->show();
        m_vehicle.start();
        BusSettings settings;
        settings.address.plugin = QStringLiteral("simulated");
        settings.address.interfaceName = QStringLiteral("full-bus");
        QString error;
        if (!m_services.bus().connectToBus(settings, &error))
            qFatal("%s", qUtf8Printable(error));
        pass(500);
    }

    ~Window()
    {
        m_window.reset();
        m_session.shutDown();
        for (const PluginSession::Plugin &plugin : m_session.plugins())
            delete dynamic_cast<QObject *>(plugin.library.plugin);
    }
    Q_DISABLE_COPY(Window)

    /*! Lets the event loop run for \a milliseconds. */
    static void pass(qint64 milliseconds)
    {
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(milliseconds), &loop, &QEventLoop::quit);
        loop.exec();
    }

    void press(const char *button) { m_window->findChild<QPushButton *>(QLatin1String(button))->click(); }
    void openFile(const QString &fileName) { m_window->openFile(fileName); }
    void trigger(const char *action) { m_window->findChild<QAction *>(QLatin1String(action))->trigger(); }
    Simulator::SimulatedBus *bus() { return m_bus.get(); }
    MainWindow &window() { return *m_window; }

    static Simulator::VehicleDescription loadVehicle()
    {
        QString error;
        const auto vehicle
            = Simulator::readVehicleFile(QStringLiteral(VEHICLE_FOLDER "/full-bus.json"), &error);
        if (!vehicle)
            qFatal("%s", qUtf8Printable(error));
        return *vehicle;
    }

private:
    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::Vehicle m_vehicle;
    Simulator::VehicleOnBus m_vehicleOnBus;
    HostServices m_services;
    PluginSession m_session;
    std::unique_ptr<MainWindow> m_window;
};

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
    Window window;
    window.trigger(page);
    for (auto _ : state) {
        const Flood flood(window.bus());
        Window::pass(100);
        StallWatch watch;
        Window::pass(floodTime);
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
    Window window;
    for (auto _ : state) {
        const Flood flood(window.bus());
        Window::pass(100);
        StallWatch watch;
        window.press("btnRead");
        Window::pass(100);
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
    Window window;
    for (auto _ : state) {
        StallWatch watch;
        const DialogEnd dialogEnd([&watch] { watch.reset(); });
        window.press("btnImport");
        Window::pass(settlingTime);
        report(watch, &state);
    }
}

/*! The same by the host, as its own file dialog, its list of files and its command line do. */
void openFile(benchmark::State &state, const QString &text)
{
    const QTemporaryDir folder;
    const QString fileName = fileWith(text, folder);
    Window window;
    for (auto _ : state) {
        StallWatch watch;
        QTimer::singleShot(0, [&] { window.openFile(fileName); });
        Window::pass(settlingTime);
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
    Simulator::VehicleDescription vehicle = Window::loadVehicle();
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
    Window window(crowd());
    for (auto _ : state) {
        StallWatch watch;
        window.trigger("actionQuickCheckup");
        while (window.window().checkup().isRunning()
               || window.window().checkup().kept() == CheckupSession::Kept::Asked)
            Window::pass(settlingTime);
        Window::pass(3 * settlingTime);
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
    Window window;
    for (auto _ : state) {
        StallWatch watch;
        window.trigger("actionPageArchive");
        Window::pass(answerTime);
        auto *search = window.window().findChild<QLineEdit *>(QStringLiteral("archiveSearch"));
        search->setText(QStringLiteral("1"));
        Window::pass(answerTime);
        search->clear();
        Window::pass(answerTime);
        window.window().findChild<QTableView *>(QStringLiteral("vehicleTable"))->selectRow(3);
        Window::pass(answerTime);
        window.press("visitOpen");
        Window::pass(answerTime);
        report(watch, &state);
        state.counters["visits"] = ManyVisits::count();
    }
}
BENCHMARK(archiveOf10000)->Iterations(1)->Unit(benchmark::kMillisecond);

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
        {"9 MB in one line", text(QByteArray(9 * megabyte, 'x'))},
        {"9 MB in words", text(QByteArray("word ").repeated(9 * megabyte / 5))},
        {"9 MB of line ends", text(QByteArray(9 * megabyte, '\n'))},
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
             const QByteArray body = compressed(QByteArray(1029 * megabyte, 'x'));
             return HttpServer::response(body, "200 OK", "Content-Encoding: gzip\r\n");
         }},
        {"gzip of 9 MB",
         [] {
             const QByteArray body = compressed(QByteArray(9 * megabyte, 'x'));
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
    Window window;
    window.openFile(fileWith(largestText(), folder));
    Window::pass(settlingTime);
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
            Window::pass(settlingTime);
            box->accept();
        });
        look.start(5);
        window.press("btnCheckUpdate");
        Window::pass(answerTime);
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
