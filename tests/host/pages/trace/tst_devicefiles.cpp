// SPDX-License-Identifier: MIT
#include "heardframes.h"

#include <host/pages/trace/devicefiles.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/windowtest.h>

#include <QFileDialog>
#include <QInputDialog>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

/*! Files that tell what the devices of a trace are. */
class tst_DeviceFiles : public WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void dataSheet();
    void dataSheetWithoutANode();
    void nodeIsNotTold();
    void snapshot();
    void exchangeFile();
    void brokenFiles_data();
    void brokenFiles();
    void whatIsNoFile();
    void dialogOffersThem();

private:
    void open(const QString &fileName);
    static void finishWork();
    QString write(const char *name, const QByteArray &text) const;
    QString batteryWithoutNode() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<DeviceFiles> m_files;
    QVector<TraceDevices> m_read;
    QStringList m_told;
    QStringList m_failed;
};

void tst_DeviceFiles::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<QWidget>();
    m_window->show();
    m_files = std::make_unique<DeviceFiles>(m_window.get());
    m_read.clear();
    m_told.clear();
    m_failed.clear();
    connect(m_files.get(), &DeviceFiles::read, this,
            [this](const TraceDevices &devices, const QString &sentence) {
                m_read << devices;
                m_told << sentence;
            });
    connect(m_files.get(), &DeviceFiles::failed, this,
            [this](const QString &sentence) { m_failed << sentence; });
}

void tst_DeviceFiles::cleanup()
{
    m_files.release(); // its window's
    m_window.reset();
    QTest::qWait(500); // Qt's animations end
}

void tst_DeviceFiles::finishWork()
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

void tst_DeviceFiles::open(const QString &fileName)
{
    m_files->open(fileName);
    finishWork();
}

QString tst_DeviceFiles::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder->filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qWarning("%s", qPrintable(file.errorString()));
    return file.fileName();
}

QString tst_DeviceFiles::batteryWithoutNode() const
{
    QFile dcf(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"));
    if (!dcf.open(QIODevice::ReadOnly))
        qWarning("%s", qPrintable(dcf.errorString()));
    return write("battery.EDS", dcf.readAll().replace("NodeID=", "NoNodeID="));
}

void tst_DeviceFiles::dataSheet()
{
    QFile dcf(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"));
    QVERIFY(dcf.open(QIODevice::ReadOnly));
    open(write("battery.dcf", dcf.readAll().replace("NodeID=2", "NodeID=7")));
    QCOMPARE(m_failed, QStringList());
    QCOMPARE(m_told, QStringList(QStringLiteral("Node 7 of the trace is known from battery.dcf now.")));
    QCOMPARE(m_read.first().sheets.keys(), QList<quint8>{7});
    QVERIFY(m_read.first().sheets.first().find({0x6040, 1}) != nullptr);
}

void tst_DeviceFiles::dataSheetWithoutANode()
{
    open(batteryWithoutNode());
    QCOMPARE(m_told, QStringList());
    auto *dialog = m_window->findChild<QInputDialog *>(QStringLiteral("sheetNodeDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->labelText(), QStringLiteral("Which node is it the data sheet of?"));
    QCOMPARE(dialog->intMinimum(), 1);
    QCOMPARE(dialog->intMaximum(), 127);
    dialog->setIntValue(127);
    dialog->accept();
    finishWork();
    QCOMPARE(m_told, QStringList(QStringLiteral("Node 127 of the trace is known from battery.EDS now.")));
    QCOMPARE(m_read.first().sheets.keys(), QList<quint8>{127});
}

void tst_DeviceFiles::nodeIsNotTold()
{
    open(batteryWithoutNode());
    m_window->findChild<QInputDialog *>(QStringLiteral("sheetNodeDialog"))->reject();
    finishWork();
    QCOMPARE(m_told, QStringList());
    QCOMPARE(m_failed, QStringList());
}

void tst_DeviceFiles::snapshot()
{
    Snapshot snapshot = mappingOf5().snapshot;
    snapshot.time = QDateTime::fromMSecsSinceEpoch(morning / 1000);
    QString error;
    const QString name = m_folder->filePath(QStringLiteral("vehicle.dxsnap"));
    QVERIFY2(SnapshotFile::save(name, snapshot, &error), qPrintable(error));
    open(name);
    QCOMPARE(m_failed, QStringList());
    QCOMPARE(m_told,
             QStringList(QStringLiteral("1 node(s) of the trace are known from vehicle.dxsnap now.")));
    TraceBook book;
    book.tell(m_read.first());
    QVERIFY(book.pdos().find(heard(0, 0x185, "2A"), 0) != nullptr);
    QVERIFY(book.pdos().find(heard(0, 0x186, "2A"), 0) == nullptr);
}

void tst_DeviceFiles::exchangeFile()
{
    open(write("vehicle.dxxml", "<dummy/>"));
    QCOMPARE(m_told, QStringList());
    QCOMPARE(m_failed.size(), 1);
}

void tst_DeviceFiles::brokenFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty sheet") << "a.eds" << QByteArray();
    QTest::newRow("rubbish sheet") << "a.dcf" << QByteArray(1000, '\xff');
    QTest::newRow("empty snapshot") << "a.dxsnap" << QByteArray();
    QTest::newRow("snapshot of another kind") << "a.dxsnap" << QByteArray("{\"format\": \"other\"}");
    QTest::newRow("a trace") << "a.log" << QByteArray("(1795336200.000000) can0 705#05\n");
}

void tst_DeviceFiles::brokenFiles()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    open(write(name.toLatin1().constData(), text));
    QCOMPARE(m_told, QStringList());
    QCOMPARE(m_failed.size(), 1);
    QVERIFY2(m_failed.first().contains(name), qPrintable(m_failed.first()));
}

void tst_DeviceFiles::whatIsNoFile()
{
#ifdef Q_OS_UNIX
    open(QStringLiteral("/dev/null")); // nor a pipe, which might keep a thread waiting for ever
    QCOMPARE(m_failed, QStringList(QStringLiteral("/dev/null is not a file.")));
#endif
}

void tst_DeviceFiles::dialogOffersThem()
{
    m_files->choose(m_folder->path());
    auto *dialog = m_window->findChild<QFileDialog *>(QStringLiteral("traceDevicesDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->nameFilters().first(),
             QStringLiteral("Snapshots and data sheets (*.dxsnap *.dxxml *.eds *.dcf *.EDS *.DCF)"));
    emit dialog->fileSelected(m_folder->filePath(QStringLiteral("gone.dxsnap")));
    finishWork();
    QCOMPARE(m_failed.size(), 1);
    dialog->reject();
}

QTEST_MAIN(tst_DeviceFiles)
#include "tst_devicefiles.moc"
