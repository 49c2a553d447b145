// SPDX-License-Identifier: MIT
// Pictures of the whole screen while the window is used, for scripts/look. Everything that depends on the desktop (screen,
// scale, fonts, colours) comes from outside.
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <interface/dxplugininterface.h>
#include <tests/integration/simulatedhost.h>
#include <tests/support/troubledvehicle.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

namespace {

constexpr int bitRate = 125000; // so that there is time for a picture of the read
constexpr int settlingTime = 250;
constexpr int midCheckup = 4000; // ms
constexpr int midRead = 4000;    // ms, behind the detection of 2 s

void handleEventsFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class LookAround
{
public:
    LookAround(MainWindow *window, QDir folder)
        : m_window(window)
        , m_folder(std::move(folder))
        , m_tree(window->findChild<QTreeWidget *>(QStringLiteral("treeWidget")))
        , m_tabs(window->findChild<QTabWidget *>(QStringLiteral("tabWidget")))
    {
    }

    void all()
    {
        take("start");
        trigger("actionConnect");
        handleEventsFor(settlingTime);
        QTimer::singleShot(midRead, m_window, [this] { take("reading"); });
        m_window->findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
        handleEventsFor(2 * settlingTime);
        take("read");
        takeComponents();
        takeMenus();
        takeCheckup();
        takeArchive();
        trigger("actionPageOverview");
        takeDialogs();
    }

    /*! The host's own pages alone. */
    void pages()
    {
        trigger("actionPageCheckup");
        take("checkup-empty");
        trigger("actionConnect");
        handleEventsFor(settlingTime);
        takeCheckup();
        takeArchive();
    }

private:
    void take(const char *name)
    {
        handleEventsFor(settlingTime);
        const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
        if (!picture.save(m_folder.filePath(QLatin1String(name) + QStringLiteral(".png"))))
            qFatal("the picture %s cannot be written", name);
    }

    void trigger(const char *action)
    {
        auto *found = m_window->findChild<QAction *>(QLatin1String(action));
        if (found == nullptr)
            qFatal("there is no action %s", action);
        found->trigger();
    }

    void takeComponents()
    {
        for (const int row : {0, 3}) { // the controller and the first battery
            m_tree->setCurrentItem(m_tree->topLevelItem(row));
            for (int tab = 0; tab < m_tabs->count(); ++tab) {
                m_tabs->setCurrentIndex(tab);
                take(qPrintable(QStringLiteral("component-%1-%2").arg(row).arg(tab)));
            }
        }
    }

    void takeCheckup()
    {
        trigger("actionPageCheckup");
        trigger("actionQuickCheckup");
        handleEventsFor(midCheckup);
        take("checkup-running");
        while (m_window->checkup().isRunning())
            handleEventsFor(settlingTime);
        handleEventsFor(2 * settlingTime); // kept, and compared with the visit before
        take("checkup");
        auto *table = m_window->findChild<QTableView *>(QStringLiteral("componentTable"));
        table->selectRow(1);
        take("checkup-second");
        table->selectRow(table->model()->rowCount() - 1);
        take("checkup-last");
        auto *tabs = m_window->findChild<QTabWidget *>(QStringLiteral("componentTabs"));
        tabs->setCurrentIndex(1);
        take("checkup-values");
        tabs->setCurrentIndex(2);
        table->selectRow(1);
        take("checkup-gaps");
        tabs->setCurrentIndex(0);
        auto *button = m_window->findChild<QToolButton *>(QStringLiteral("checkupButton"));
        button->menu()->popup(button->mapToGlobal(QPoint(0, button->height())));
        take("checkup-menu");
        button->menu()->close();
        for (const char *name : {"actionNotes", "actionServiceReport", "actionCompareLast"})
            takeWhileModal(name, [this, name] { trigger(name); });
    }

    void takeArchive()
    {
        trigger("actionPageArchive");
        handleEventsFor(4 * settlingTime);
        take("archive");
        m_window->findChild<QLineEdit *>(QStringLiteral("archiveSearch"))->setText(QStringLiteral("nothing"));
        handleEventsFor(4 * settlingTime);
        take("archive-nothing");
        m_window->findChild<QLineEdit *>(QStringLiteral("archiveSearch"))->clear();
        handleEventsFor(2 * settlingTime);
        takeWhileModal("archive-address", [this] {
            m_window->findChild<QPushButton *>(QStringLiteral("archiveAddress"))->click();
        });
    }

    void takeMenus()
    {
        for (const char *name : {"fileMenu", "busMenu", "viewMenu", "languageMenu", "helpMenu"}) {
            auto *menu = m_window->findChild<QMenu *>(QLatin1String(name));
            menu->popup(m_window->mapToGlobal(QPoint(20, 40)));
            take(name);
            menu->close();
        }
        takeWhileModal("contextMenu", [this] {
            QMetaObject::invokeMethod(m_tree, "customContextMenuRequested", Q_ARG(QPoint, QPoint(10, 10)));
        });
    }

    /*! What \a open runs, until a picture of it is taken. */
    void takeWhileModal(const char *name, const std::function<void()> &open)
    {
        QTimer::singleShot(settlingTime, m_window, [this, name] {
            take(name);
            closeAll();
        });
        open();
        handleEventsFor(2 * settlingTime);
    }

    static void closeAll()
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
        while (QWidget *dialog = QApplication::activeModalWidget()) {
            dialog->close();
            handleEventsFor(1);
        }
        const QList<QWidget *> windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->isVisible() && qobject_cast<QDialog *>(window) != nullptr)
                window->close();
        }
        handleEventsFor(1);
    }

    void takeDialogs()
    {
        m_tree->setCurrentItem(m_tree->topLevelItem(1));
        for (const char *name : {"showDeviceType", "showErrorReg", "showErrorField", "showSpec",
                                 "showSecurityStatus", "on_btnCheckUpdate_clicked"}) {
            QWidget *form = m_tree;
            while (form->metaObject()->indexOfMethod("showDeviceType()") < 0)
                form = form->parentWidget();
            takeWhileModal(name, [form, name] { QMetaObject::invokeMethod(form, name); });
        }
        for (const char *name :
             {"actionPatience", "actionKeyList", "actionAbout", "actionOpen", "actionQuit"}) {
            takeWhileModal(name, [this, name] { trigger(name); });
        }
        takeWhileModal("error", [this] { m_window->openFile(QStringLiteral("/proc/self/status")); });
        trigger("actionDisconnect");
        take("disconnected");
    }

    MainWindow *m_window;
    QDir m_folder;
    QTreeWidget *m_tree;
    QTabWidget *m_tabs;
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
    QApplication::setApplicationName(QStringLiteral("draxel-look"));
    QApplication::setApplicationDisplayName(QLatin1String(HostSettings::displayName));
    if (argc != 3 && argc != 4)
        qFatal("usage: look_around FOLDER LANGUAGE [healthy|troubled]");
    const QByteArray vehicle(argc == 4 ? argv[3] : "");
    const QString language = QString::fromLocal8Bit(argv[2]);
    LanguageSetting languages(QStringLiteral(LANGUAGE_FOLDER));
    languages.apply(language);

    QString error;
    const std::optional<PluginLibrary> library = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN), &error);
    if (!library)
        qFatal("%s", qUtf8Printable(error));
    Simulator::VehicleDescription description = SimulatedHost::stillVehicle(QStringLiteral("full-bus"));
    if (vehicle == "troubled")
        TroubledVehicle::spoil(&description);
    SimulatedHost host(description, bitRate);
    PluginSession session(&host.services());
    session.add(*library, language);
    MainWindow window(&host.services(), &session);
    window.setLanguages(&languages, language);
    window.checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
    window.checkup().setSharePercent(100);
    window.showPlugins();
    BusSettings bus;
    bus.address.plugin = QStringLiteral("simulated");
    bus.address.interfaceName = QStringLiteral("full-bus");
    window.chooseBus(bus);
    window.show();
    window.activateWindow();

    LookAround look(&window, QDir(QString::fromLocal8Bit(argv[1])));
    if (vehicle.isEmpty())
        look.all();
    else
        look.pages();
    std::_Exit(0); // pictures are all that is wanted
}
