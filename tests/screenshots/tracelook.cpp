// SPDX-License-Identifier: MIT
// Pictures of the page "Trace", of the bar that plays a trace and of support bundles on the vehicle "ride", for eyes and for
// the user guide. Its clock leaps over what nothing happens in. Everything that depends on the desktop comes from outside.
#include <host/bundlefiles.h>
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>
#include <host/core/settingsstore.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <host/pages/live/livesession.h>
#include <host/pages/trace/tracesession.h>
#include <interface/dxplugininterface.h>
#include <simulator/vehiclefile.h>
#include <tests/integration/simulatedhost.h>
#include <trace/files/tracefile.h>
#include <tracebus/tracedevice.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QEventLoop>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int bitRate = 250000;
constexpr int settlingTime = 300;      // ms
constexpr int untilEmergency = 245000; // ms
constexpr std::size_t playedFrames = 400;

void handleEventsFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class TraceLook
{
public:
    TraceLook(MainWindow *window, HostServices *services, const QDir &folder)
        : m_window(window)
        , m_services(services)
        , m_folder(folder)
    {
    }

    void all()
    {
        trigger("actionPageTrace");
        take("trace-empty");
        trigger("actionConnect");
        handleEventsFor(settlingTime);
        fill();
        lookAtLines();
        lookAtFilter();
        lookAtFinding();
        lookAtRecording();
        lookAtDialogs();
        saveFiles();
        trigger("actionDisconnect");
        take("trace-ended");
        lookAtFiles();
        lookAtPlayback();
        lookAtBundle();
    }

private:
    /*! Reads of objects, a check-up and an emergency. */
    void fill()
    {
        trigger("actionPageLive");
        click("learnValues");
        while (m_window->live().questions().isLearning())
            handleEventsFor(settlingTime);
        trigger("actionQuickCheckup");
        do {
            handleEventsFor(settlingTime);
        } while (m_window->checkup().isRunning());
        handleEventsFor(untilEmergency);
        trigger("actionPageTrace");
    }

    void lookAtLines()
    {
        take("trace-live");
        find<QLineEdit>("filterText")->setText(QStringLiteral("1A00h"));
        handleEventsFor(settlingTime);
        table()->selectRow(0);
        take("trace-transfer");
        table()->selectAll();
        take("trace-selection");
        click("filterClear");
    }

    void lookAtFilter()
    {
        find<QCheckBox>("filterWrong")->click();
        take("trace-wrong");
        table()->selectRow(table()->model()->rowCount() - 1);
        take("trace-wrong-chosen");
        find<QCheckBox>("filterWrong")->click();
        find<QLineEdit>("filterNodes")->setText(QStringLiteral("2, 128"));
        take("trace-filter-problem");
        click("filterClear");
        takeMenu("trace-kinds", "filterKinds");
    }

    void lookAtFinding()
    {
        click("traceFollow");
        find<QLineEdit>("findText")->setText(QStringLiteral("4210h"));
        click("findNext");
        take("trace-found");
        find<QLineEdit>("findText")->setText(QStringLiteral("xyz"));
        click("findNext");
        handleEventsFor(settlingTime);
        take("trace-not-found");
        find<QLineEdit>("findText")->clear();
        click("traceFollow");
    }

    void lookAtRecording()
    {
        takeMenu("trace-record-menu", "traceRecord");
        m_window->trace().record(m_work.filePath(QStringLiteral("bus 2026-11-22 08-30-15.log")));
        handleEventsFor(3 * settlingTime);
        take("trace-recording");
        click("traceRecord");
        take("trace-recorded");
    }

    void lookAtDialogs()
    {
        takeDialog("trace-record-dialog", "traceRecord");
        takeDialog("trace-save-dialog", "traceSaveLast");
        takeDialog("trace-open-dialog", "traceOpen");
        takeDialog("trace-export-dialog", "traceExport");
        trigger("actionSaveBundle");
        take("bundle-dialog");
        find<QCheckBox>("bundleMask")->click();
        take("bundle-dialog-masked");
        find<QDialog>("bundleDialog")->accept();
        take("bundle-save-dialog");
        closeDialogs();
    }

    void saveFiles()
    {
        const Trace trace = m_window->trace().recorder().lastMinutes().all();
        save(trace, "ride.log");
        Trace part = trace;
        part.frames.resize(std::min(part.frames.size(), playedFrames));
        save(part, "part.log");
        save(part, "cut.log.gz");
        QFile(path("cut.log.gz")).resize(QFileInfo(path("cut.log.gz")).size() / 2);
        save(Trace(), "empty.log");
        m_window->bundles().write(path("bike.zip"), true);
        handleEventsFor(settlingTime);
        while (!QFile::exists(path("bike.zip")))
            handleEventsFor(1);
        handleEventsFor(settlingTime);
    }

    void lookAtFiles()
    {
        open("ride.log");
        take("trace-file");
        open("cut.log.gz");
        take("trace-cut");
        open("empty.log");
        take("trace-no-frame");
        m_window->openFile(path("missing.log"));
        handleEventsFor(settlingTime);
        take("trace-missing");
        closeDialogs();
    }

    void lookAtPlayback()
    {
        m_services->bus().setDeviceFactory(
            [](const QString &, const QString &name, QString *) { return new TraceCanDevice(name); });
        BusSettings bus;
        bus.address.plugin = QStringLiteral("trace");
        bus.address.interfaceName = path("part.log");
        m_window->chooseBus(bus);
        trigger("actionConnect");
        handleEventsFor(3 * settlingTime);
        click("traceLive");
        take("playback");
        click("playButton");
        take("playback-paused");
        click("stepButton");
        take("playback-stepped");
        find<QComboBox>("playbackSpeed")->showPopup();
        take("playback-speeds");
        find<QComboBox>("playbackSpeed")->hidePopup();
        click("repeatButton");
        click("repeatButton");
        click("playButton");
        handleEventsFor(60000);
        take("playback-over");
        trigger("actionDisconnect");
    }

    void lookAtBundle()
    {
        m_window->openFile(path("bike.zip"));
        handleEventsFor(3 * settlingTime);
        waitForLoading();
        take("bundle-checkup");
        trigger("actionPageLive");
        take("bundle-live");
        trigger("actionPageTrace");
        take("bundle-trace");
    }

    void open(const char *name)
    {
        m_window->openFile(path(name));
        waitForLoading();
    }

    void waitForLoading()
    {
        while (m_window->trace().loading().isRunning())
            handleEventsFor(1);
        handleEventsFor(settlingTime);
    }

    void save(const Trace &trace, const char *name)
    {
        QString problem;
        if (!TraceFile::save(path(name), trace, &problem))
            qFatal("%s", qUtf8Printable(problem));
    }

    void take(const char *name)
    {
        handleEventsFor(settlingTime);
        const bool hasDesktop = QGuiApplication::platformName() == QLatin1String("xcb");
        const QPixmap picture
            = hasDesktop ? QGuiApplication::primaryScreen()->grabWindow(0) : m_window->grab();
        if (!picture.save(m_folder.filePath(QLatin1String(name) + QStringLiteral(".png"))))
            qFatal("the picture %s cannot be written", name);
    }

    void takeDialog(const char *name, const char *button)
    {
        click(button);
        take(name);
        closeDialogs();
    }

    void takeMenu(const char *name, const char *button)
    {
        auto *opener = find<QToolButton>(button);
        opener->menu()->popup(opener->mapToGlobal(QPoint(0, opener->height())));
        take(name);
        opener->menu()->close();
    }

    void closeDialogs()
    {
        const QList<QDialog *> dialogs = m_window->findChildren<QDialog *>();
        for (QDialog *dialog : dialogs)
            dialog->close();
        handleEventsFor(1);
    }

    template<typename Widget>
    Widget *find(const char *name) const
    {
        auto *found = m_window->findChild<Widget *>(QLatin1String(name));
        if (found == nullptr)
            qFatal("there is no %s", name);
        return found;
    }

    QTableView *table() const { return find<QTableView>("traceTable"); }
    QString path(const char *name) const { return m_work.filePath(QLatin1String(name)); }
    void click(const char *button) { find<QToolButton>(button)->click(); }
    void trigger(const char *action) { find<QAction>(action)->trigger(); }

    MainWindow *m_window;
    HostServices *m_services;
    QDir m_folder;
    QTemporaryDir m_work;
};

} // namespace

int main(int argc, char **argv)
{
    // As the program does.
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QLatin1String(HostSettings::organization));
    QApplication::setApplicationName(QStringLiteral("draxel-trace-look"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));
    QApplication::setApplicationDisplayName(QLatin1String(HostSettings::displayName));
    if (argc != 3)
        qFatal("usage: trace_look FOLDER LANGUAGE");
    SettingsStore::instance().setValues({});
    const QString language = QString::fromLocal8Bit(argv[2]);
    LanguageSetting languages(QStringLiteral(LANGUAGE_FOLDER));
    languages.apply(language);

    QString error;
    const std::optional<PluginLibrary> library = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN), &error);
    const auto ride = Simulator::readVehicleFile(QStringLiteral(VEHICLE_FOLDER "/ride.json"), &error);
    if (!library || !ride)
        qFatal("%s", qUtf8Printable(error));
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    SimulatedHost host(*ride, bitRate);
    PluginSession session(&host.services());
    session.add(*library, language);
    MainWindow window(&host.services(), &session);
    window.setLanguages(&languages, language);
    window.checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
    window.live().setRules(RuleSet::load({QStringLiteral(HEALTH_RULE_FOLDER)}));
    window.showPlugins();
    BusSettings bus;
    bus.address.plugin = QStringLiteral("simulated");
    bus.address.interfaceName = QStringLiteral("ride");
    window.chooseBus(bus);
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) { // for the user guide
        window.findChild<QDockWidget *>()->hide();
        window.resize(1100, 640);
    }
    window.show();
    window.activateWindow();
    TraceLook(&window, &host.services(), QDir(QString::fromLocal8Bit(argv[1]))).all();
    std::_Exit(0); // pictures are all that is wanted
}
