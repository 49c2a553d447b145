// SPDX-License-Identifier: MIT
#include "frozeninterface.h"

#include <tests/support/logwatcher.h>

#include <QAbstractButton>
#include <QLocale>
#include <QPluginLoader>
#include <QTimer>
#include <QWidget>
#include <QtTest>

// Nothing here may include the headers of src/interface, directly or through a helper of other tests.
#ifdef DXPlugInInterface_iid
#error "This test has to do without the real interface"
#endif

namespace {

/*! A client that answers every upload with the number of its index, through the event loop. */
class OldSdoClient : public QObject, public SdoClient
{
    Q_OBJECT

public:
    void upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout) override
    {
        uploads.append(QStringLiteral("%1 %2:%3 %4 %5")
                           .arg(nodeId)
                           .arg(index, 0, 16)
                           .arg(subIndex)
                           .arg(dataType)
                           .arg(timeout));
        QMetaObject::invokeMethod(
            this, [=] { emit resultReceived(nodeId, index, subIndex, uint(index)); }, Qt::QueuedConnection);
    }
    QObject *getQObject() override { return this; }

    QStringList uploads;

signals:
    void resultReceived(quint8 nodeId, quint16 index, quint8 subIndex, QVariant value);
    void errorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code);
};

class OldSecondarySdoClient : public QObject, public SecondarySdoClient
{
    Q_OBJECT

public:
    QObject *getQObject() override
    {
        ++timesAsked;
        return this;
    }

    int timesAsked = 0;

signals:
    void resultReceived(quint8 nodeId, quint16 index, quint8 subIndex, QVariant value);
    void errorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code);
};

class OldReceiver : public QObject
{
    Q_OBJECT

signals:
    void received(quint16);
    void newNmtState(quint8, NmtSender::NmtState);
};

/*! A hub on which node 1 is heard as soon as its receiver is asked for. */
class OldHub : public CanReceiverHub
{
public:
    QObject *getReceiver(quint16 cobId) override
    {
        if (cobId != 0x701)
            return nullptr;
        QMetaObject::invokeMethod(
            &receiver, [this] { emit receiver.received(0x701); }, Qt::QueuedConnection);
        return &receiver;
    }
    QObject *getNmtStateSource(quint8 nodeId) override
    {
        nodesAskedForStates.append(nodeId);
        return &receiver;
    }

    OldReceiver receiver;
    QList<quint8> nodesAskedForStates;
};

class OldHost : public HostInterface
{
public:
    CanReceiverHub *getCanReceiverHub() override { return &hub; }
    SdoClient *getSdoClient() override { return &client; }
    SecondarySdoClient *getSecondarySdoClient() override { return &secondary; }

    OldHub hub;
    OldSdoClient client;
    OldSecondarySdoClient secondary;
};

/*! Lets the detection of the nodes, the only waiting of 2 s, end at once when it begins. */
class DetectionHastener : public QObject
{
public:
    DetectionHastener() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded
            && qstrcmp(object->metaObject()->className(), "DataReader") == 0) {
            QTimer::singleShot(0, object, [object] {
                if (auto *timer = object->findChild<QTimer *>())
                    timer->setInterval(0);
            });
        }
        return QObject::eventFilter(object, event);
    }
};

} // namespace

/*! The built plug-in under a host that was compiled against the interface as it was shipped. */
class tst_FrozenInterface : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void activation();
    void hooks();
    void language();
    void connectionAndRead();

private:
    QPluginLoader m_loader{QStringLiteral(OVERVIEW_PLUGIN)};
    DXPlugInInterface *m_plugin = nullptr;
    OldHost m_host;
};

void tst_FrozenInterface::initTestCase()
{
    qRegisterMetaType<NmtSender::NmtState>("NmtSender::NmtState");
    QObject *instance = m_loader.instance();
    QVERIFY2(instance != nullptr, qPrintable(m_loader.errorString()));
    m_plugin = static_cast<DXPlugInInterface *>(instance->qt_metacast("org.draxel.DXPlugInInterface/0.1"));
    QVERIFY(m_plugin != nullptr);
}

void tst_FrozenInterface::cleanupTestCase()
{
    delete m_plugin; // through the first place of the table
    QVERIFY(m_loader.unload());
}

void tst_FrozenInterface::activation()
{
    LogWatcher log;
    QVERIFY(m_plugin->activate());
    QCOMPARE(log.debugLines(), QStringList{QStringLiteral("activate overview")});
    QVERIFY(m_plugin->deactivate());
    QCOMPARE(log.debugLines().mid(1), QStringList{QStringLiteral("deactivate overview")});
}

void tst_FrozenInterface::hooks()
{
    LogWatcher log;
    QVERIFY(m_plugin->hostHook1(0));
    QVERIFY(m_plugin->hostHook2(0xFFFFFFFF));
    QCOMPARE(log.debugLines(), QStringList());
}

void tst_FrozenInterface::language()
{
    m_plugin->setLanguage(QStringLiteral("nl"));
    QCOMPARE(QLocale().language(), QLocale::Dutch);
    m_plugin->setLanguage(QStringLiteral("en"));
}

void tst_FrozenInterface::connectionAndRead()
{
    DetectionHastener hastener;
    QWidget *window = m_plugin->getWidget();
    QVERIFY(window != nullptr);
    QCOMPARE(window->metaObject()->className(), "OverviewForm");
    m_plugin->setHostInterface(&m_host);
    QVERIFY(!m_plugin->setConnected(false));
    QVERIFY(m_plugin->setConnected(true));
    QCOMPARE(m_host.secondary.timesAsked, 1);

    window->findChild<QAbstractButton *>(QStringLiteral("btnRead"))->click();
    QCOMPARE(m_host.client.uploads.size(), 204);
    QCOMPARE(m_host.client.uploads.constFirst(), QStringLiteral("1 1000:0 7 100"));
    QCOMPARE(m_host.client.uploads.constLast(), QStringLiteral("1 6311:7 6 100"));
    QCOMPARE(m_host.hub.nodesAskedForStates, QList<quint8>{1});
    QVERIFY(!m_plugin->setConnected(false));
}

QTEST_MAIN(tst_FrozenInterface)
#include "tst_frozeninterface.moc"
