// SPDX-License-Identifier: MIT
#include "simulatedhost.h"

#include <host/core/pluginsession.h>
#include <interface/dxplugininterface.h>
#include <tests/support/messageboxwatcher.h>

#include <QPushButton>
#include <QRandomGenerator>
#include <QTreeWidget>
#include <QtTest>

/*! A bus that goes away at any moment of a read, with the real plug-in and its window. */
class tst_BusLoss : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void readEnds_data();
    void readEnds();
    void disconnectedByTheUser_data();
    void disconnectedByTheUser();
    void quitDuringRead();

private:
    void startRead();
    void readWhole();

    std::optional<PluginLibrary> m_library;
    std::unique_ptr<SimulatedHost> m_host;
    std::unique_ptr<PluginSession> m_session;
    QWidget *m_form = nullptr;
    QPushButton *m_read = nullptr;
    QTreeWidget *m_tree = nullptr;
};

void tst_BusLoss::initTestCase()
{
    QString error;
    m_library = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN), &error);
    QVERIFY2(m_library, qPrintable(error));
    m_form = m_library->plugin->getWidget();
    QVERIFY(m_form != nullptr);
    m_read = m_form->findChild<QPushButton *>(QStringLiteral("btnRead"));
    m_tree = m_form->findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
    QVERIFY(m_read != nullptr && m_tree != nullptr);
}

void tst_BusLoss::cleanupTestCase()
{
    delete m_form;
}

void tst_BusLoss::init()
{
    m_host = std::make_unique<SimulatedHost>(SimulatedHost::stillVehicle(QStringLiteral("pedelec")));
    m_session = std::make_unique<PluginSession>(&m_host->services());
    m_session->add(*m_library, QStringLiteral("en"));
    QVERIFY(m_host->connectToBus());
    QTRY_VERIFY(m_session->isConnectionTold());
    m_tree->clear();
}

void tst_BusLoss::cleanup()
{
    m_host->services().bus().disconnectFromBus();
    QTRY_VERIFY(!m_session->isConnectionTold());
    m_session.reset();
    m_host.reset();
}

/*! Presses the button; returns when the plug-in's read is over. */
void tst_BusLoss::startRead()
{
    const MessageBoxWatcher boxes;
    QTest::mouseClick(m_read, Qt::LeftButton);
    QCOMPARE(boxes.texts(), QStringList());
}

/*! A read finds everything once the bus is there. */
void tst_BusLoss::readWhole()
{
    QTRY_VERIFY(m_session->isConnectionTold());
    startRead();
    QCOMPARE(m_tree->topLevelItemCount(), 7);
}

void tst_BusLoss::readEnds_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("loss");

    // Heartbeats alone make some 280 frames in the 2 s of the detection.
    const QList<int> moments{1, 150, 300, 301, 2500};
    for (const int frames : moments) {
        QTest::addRow("unplugged after %d frames", frames) << frames << int(Simulator::BusLoss::Unplugged);
        QTest::addRow("dropped after %d frames", frames) << frames << int(Simulator::BusLoss::Disconnected);
    }
}

void tst_BusLoss::readEnds()
{
    QFETCH(int, frames);
    QFETCH(int, loss);

    m_host->bus().loseAfter(quint64(frames), Simulator::BusLoss(loss));
    startRead();
    if (Simulator::BusLoss(loss) == Simulator::BusLoss::Disconnected) {
        QTRY_COMPARE(m_host->services().bus().state(), BusConnection::State::Lost);
        QTRY_VERIFY(!m_session->isConnectionTold());
        QVERIFY(!m_host->services().bus().errorString().isEmpty());
    }

    m_host->bus().restore();
    if (m_host->services().bus().state() == BusConnection::State::Connected) {
        // An adapter that only looks connected is noticed by the first write.
        m_host->services().bus().disconnectFromBus();
        QTRY_VERIFY(!m_session->isConnectionTold());
        QVERIFY(m_host->connectToBus());
    }
    QTRY_COMPARE(m_host->services().bus().state(), BusConnection::State::Connected);
    readWhole();
}

void tst_BusLoss::disconnectedByTheUser_data()
{
    QTest::addColumn<int>("milliseconds");

    QTest::newRow("as detection begins") << 0;
    QTest::newRow("during detection") << 700;
    QTest::newRow("as detection ends") << 2000;
    QTest::newRow("during the read") << 2010;
}

void tst_BusLoss::disconnectedByTheUser()
{
    QFETCH(int, milliseconds);

    QTimer::singleShot(milliseconds, Qt::PreciseTimer, this,
                       [this] { m_host->services().bus().disconnectFromBus(); });
    startRead();
    QTRY_VERIFY(!m_session->isConnectionTold());
    QVERIFY(m_host->connectToBus());
    readWhole();
}

void tst_BusLoss::quitDuringRead()
{
    // As at the end of the program: the bus is closed and the application is told to quit, while the plug-in's
    // own loop runs.
    QTimer::singleShot(300, this, [this] {
        m_host->services().bus().disconnectFromBus();
        QCoreApplication::quit();
    });
    startRead();
    QTRY_VERIFY(!m_session->isConnectionTold());
}

QTEST_MAIN(tst_BusLoss)
#include "tst_busloss.moc"
