// SPDX-License-Identifier: MIT
#include "simulatedhost.h"

#include <host/core/pluginsession.h>
#include <interface/dxplugininterface.h>
#include <tests/support/messageboxwatcher.h>
#include <trace/files/tracefile.h>

#include <QCanBus>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

namespace {

QString cellText(const QTableWidget &table, int row, int column)
{
    if (const auto *box = qobject_cast<QComboBox *>(table.cellWidget(row, column))) {
        QStringList items;
        for (int i = 0; i < box->count(); ++i)
            items << box->itemText(i);
        return QStringLiteral("[") + items.join(QStringLiteral(" / ")) + QStringLiteral("]");
    }
    const QTableWidgetItem *item = table.item(row, column);
    if (item == nullptr)
        return QString();
    QString text = item->text();
    const QBrush brush = item->foreground();
    if (column == 1 && brush.style() != Qt::NoBrush && brush.color() != Qt::black)
        text += QStringLiteral("  {%1}").arg(brush.color().name());
    return text.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
}

void appendTable(QString &text, const QString &title, const QTableWidget &table)
{
    text += QStringLiteral("    %1\n").arg(title);
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString line = QStringLiteral("        %1 | %2")
                                 .arg(cellText(table, row, 0), cellText(table, row, 1))
                                 .trimmed();
        text += line == QLatin1String("|") ? QStringLiteral("        --\n")
                                           : QStringLiteral("        %1\n").arg(line);
    }
}

/*! All that the plug-in's window shows. */
QString shownBy(const QWidget &form)
{
    auto *tree = form.findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
    const auto *parameters = form.findChild<QTableWidget *>(QStringLiteral("tblParameters"));
    const auto *values = form.findChild<QTableWidget *>(QStringLiteral("tblValues"));
    QString shown;
    QString lastTables;
    for (int row = 0; row < tree->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = tree->topLevelItem(row);
        tree->setCurrentItem(item);
        shown += QStringLiteral("%1 | node %2 | %3%4\n")
                     .arg(item->text(0), item->text(1), item->text(3),
                          item->icon(0).isNull() ? QString() : QStringLiteral(" | icon"));
        QString tables;
        appendTable(tables, QStringLiteral("Device Parameters (fixed)"), *parameters);
        appendTable(tables, QStringLiteral("Actual Values"), *values);
        shown += tables == lastTables ? QStringLiteral("    as above\n") : tables;
        lastTables = tables;
    }
    return shown;
}

/*! The plug-in as the host has it; a process can have it once. */
class PluginInHost
{
public:
    explicit PluginInHost(HostServices *services)
        : m_services(services)
        , m_session(services)
    {
    }

    void load();
    /*! What it shows of a bus when its button "Read all data" was pressed; \a connect opens the bus. */
    void read(const std::function<bool()> &connect, QString *shown);

private:
    HostServices *m_services;
    PluginSession m_session;
    std::unique_ptr<QWidget> m_form;
};

void PluginInHost::load()
{
    QString error;
    const std::optional<PluginLibrary> library = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN), &error);
    QVERIFY2(library, qPrintable(error));
    m_session.add(*library, QStringLiteral("en"));
    m_form.reset(m_session.plugins().first().widget);
    QVERIFY(m_form);
}

void PluginInHost::read(const std::function<bool()> &connect, QString *shown)
{
    QVERIFY(connect());
    QTRY_VERIFY(m_session.isConnectionTold());

    const MessageBoxWatcher boxes;
    QTest::mouseClick(m_form->findChild<QPushButton *>(QStringLiteral("btnRead")), Qt::LeftButton);
    QCOMPARE(boxes.texts(), QStringList());
    *shown = shownBy(*m_form);

    m_services->bus().disconnectFromBus();
    QTRY_VERIFY(!m_session.isConnectionTold());
}

/*! Keeps what goes over a connection. */
class Recorder
{
public:
    explicit Recorder(const BusConnection *bus)
    {
        m_clock.start();
        trace.head.channels.append(QStringLiteral("can0"));
        const auto keep = [this](const QCanBusFrame &frame) {
            trace.frames.push_back(TraceFrame::of(frame, m_clock.nsecsElapsed() / 1000));
        };
        QObject::connect(bus, &BusConnection::frameReceived, &m_context, keep);
        QObject::connect(bus, &BusConnection::frameSent, &m_context, keep);
    }

    Trace trace;

private:
    QElapsedTimer m_clock;
    QObject m_context;
};

void compareWithGolden(const QString &shown)
{
    // What is shown now can be taken over as the new golden file: see the name that a failure prints.
    QFile written(QCoreApplication::applicationDirPath() + QStringLiteral("/full-bus.shown.txt"));
    QVERIFY(written.open(QIODevice::WriteOnly | QIODevice::Text));
    written.write(shown.toUtf8());
    written.close();

    QFile golden(QStringLiteral(GOLDEN_FOLDER "/full-bus.golden.txt"));
    QVERIFY2(golden.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(golden.errorString()));
    const QStringList expected = QString::fromUtf8(golden.readAll()).split(QLatin1Char('\n'));
    const QStringList actual = shown.split(QLatin1Char('\n'));
    for (int line = 0; line < qMin(expected.size(), actual.size()); ++line) {
        QVERIFY2(actual.at(line) == expected.at(line),
                 qPrintable(QStringLiteral("line %1 of %2:\nshown:    %3\nexpected: %4")
                                .arg(QString::number(line + 1), written.fileName(), actual.at(line),
                                     expected.at(line))));
    }
    QCOMPARE(actual.size(), expected.size());
}

} // namespace

/*! Reads a bus with every class of component through the plug-in's library and compares all that the window
 *  shows with a file that a person can read.
 */
class tst_FullBus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsEverything();
    void showsTheSameOfATrace();

private:
    // Slow enough for a trace with times that differ.
    SimulatedHost m_host{SimulatedHost::stillVehicle(QStringLiteral("full-bus")), 250000};
    PluginInHost m_plugin{&m_host.services()};
};

void tst_FullBus::initTestCase()
{
    QCoreApplication::addLibraryPath(QStringLiteral(OVERVIEW_BIN_DIR)); // the back end of traces
    m_plugin.load();
}

void tst_FullBus::showsEverything()
{
    QString shown;
    m_plugin.read([this] { return m_host.connectToBus(); }, &shown);
    if (!QTest::currentTestFailed())
        compareWithGolden(shown);
}

/*! The read is recorded, and the plug-in reads what is played back, without any vehicle. */
void tst_FullBus::showsTheSameOfATrace()
{
    const QTemporaryDir folder;
    BusSettings settings;
    settings.address.plugin = QStringLiteral("trace");
    settings.address.interfaceName = folder.filePath(QStringLiteral("read.log"));
    {
        const Recorder recorder(&m_host.services().bus());
        QString shown;
        m_plugin.read([this] { return m_host.connectToBus(); }, &shown);
        QString error;
        QVERIFY2(TraceFile::save(settings.address.interfaceName, recorder.trace, &error), qPrintable(error));
    }

    BusConnection &bus = m_host.services().bus();
    bus.setDeviceFactory([](const QString &plugin, const QString &interfaceName, QString *errorMessage) {
        return QCanBus::instance()->createDevice(plugin, interfaceName, errorMessage);
    });
    QString shown;
    m_plugin.read([&] { return bus.connectToBus(settings, nullptr); }, &shown);
    if (!QTest::currentTestFailed())
        compareWithGolden(shown);
}

QTEST_MAIN(tst_FullBus)
#include "tst_fullbus.moc"
