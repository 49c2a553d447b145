// SPDX-License-Identifier: MIT
// Pictures of the page "Live" on the vehicle "ride", for eyes and for the user guide. Its clock leaps over what nothing
// happens in. Everything that depends on the desktop comes from outside.
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>
#include <host/core/settingsstore.h>
#include <host/mainwindow.h>
#include <host/pages/live/livesession.h>
#include <interface/dxplugininterface.h>
#include <simulator/vehiclefile.h>
#include <tests/integration/simulatedhost.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QEventLoop>
#include <QLineEdit>
#include <QScreen>
#include <QTableView>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int bitRate = 250000;
constexpr int settlingTime = 300; // ms

void handleEventsFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class LiveLook
{
public:
    LiveLook(MainWindow *window, const QDir &folder)
        : m_window(window)
        , m_folder(folder)
    {
    }

    void all()
    {
        trigger("actionPageTrace");
        take("trace-empty");
        trigger("actionPageLive");
        take("live-empty");
        trigger("actionConnect");
        handleEventsFor(3000);
        take("live-new");
        click("learnValues");
        while (m_window->live().questions().isLearning())
            handleEventsFor(settlingTime);
        watch();
        handleEventsFor(100000);
        take("live");
        takeDialog("live-add", "addValue");
        takeDialog("live-numbers", "allNumbers");
        handleEventsFor(140000); // into the emergency
        take("live-emergency");
        auto *events = m_window->findChild<QTableView *>(QStringLiteral("eventTable"));
        for (int row = 0; row < events->model()->rowCount(); ++row) {
            if (events->model()->index(row, 2).data().toString().contains(QStringLiteral("4210h")))
                emit events->clicked(events->model()->index(row, 0));
        }
        take("live-cursor");
        lookAtTrace();
        trigger("actionPageLive");
        trigger("actionDisconnect");
        take("live-ended");
        trigger("actionConnect"); // again: now the battery is watched, and its mapping is not known
        handleEventsFor(3000);
        take("live-offer");
        click("askBattery");
        handleEventsFor(5000);
        take("live-asked");
    }

private:
    void lookAtTrace()
    {
        trigger("actionPageTrace");
        take("trace-event"); // the one that was clicked
        m_window->findChild<QCheckBox *>(QStringLiteral("filterWrong"))->click();
        take("trace-wrong");
        click("filterClear");
        m_window->findChild<QLineEdit *>(QStringLiteral("filterText"))->setText(QStringLiteral("1A00h"));
        handleEventsFor(settlingTime);
        m_window->findChild<QTableView *>(QStringLiteral("traceTable"))->selectRow(0);
        take("trace-transfer");
        click("filterClear");
        click("traceFollow");
        take("trace");
    }

    void watch()
    {
        const char *const values[]
            = {"2:603E:1", "2:6040:1", "2:6164:2", "4:62E8:1", "4:62E8:2", "4:62E8:4", "2:6105:1"};
        for (const char *value : values)
            m_window->live().watch().add(*parseWatched(QLatin1String(value)));
        for (const int row : {0, 1, 5})
            m_window->live().watch().setPlotted(row, true);
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
        const QList<QDialog *> dialogs = m_window->findChildren<QDialog *>();
        for (QDialog *dialog : dialogs)
            dialog->close();
    }

    void click(const char *button) { m_window->findChild<QToolButton *>(QLatin1String(button))->click(); }
    void trigger(const char *action) { m_window->findChild<QAction *>(QLatin1String(action))->trigger(); }

    MainWindow *m_window;
    QDir m_folder;
};

} // namespace

int main(int argc, char **argv)
{
    // As the program does.
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QLatin1String(HostSettings::organization));
    QApplication::setApplicationName(QStringLiteral("draxel-live-look"));
    QApplication::setApplicationDisplayName(QLatin1String(HostSettings::displayName));
    if (argc != 3)
        qFatal("usage: live_look FOLDER LANGUAGE");
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
    LiveLook(&window, QDir(QString::fromLocal8Bit(argv[1]))).all();
    std::_Exit(0); // pictures are all that is wanted
}
