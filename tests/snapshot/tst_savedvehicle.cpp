// SPDX-License-Identifier: MIT
#include "snapshotbuilder.h"

#include <snapshot/savedvehicle.h>
#include <snapshot/snapshotfile.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using CanOpen::DataType;

namespace {

constexpr char exchangeText[]
    = "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\r\n"
      "<dxtoolstorage pl_overwiew=\"1.0\" date=\"Thu Sep 3 10:12:05 2026\">\r\n"
      "<nodes><node nodeid=\"3\"><object index=\"0x6000\" sub=\"0x01\" value=\"6\" />"
      "</node></nodes></dxtoolstorage>\r\n";

QByteArray snapshotText()
{
    SnapshotBuilder builder;
    builder.node(4).value(0x6000, 1, DataType::Unsigned32, 7u);
    return SnapshotFile::toJson(builder.snapshot());
}

} // namespace

class tst_SavedVehicle : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_error.clear(); }
    void contentTellsTheKind_data();
    void contentTellsTheKind();
    void storeIsFilledLikewise();
    void storeStaysWhenTheFileIsBad();
    void dateOfAnExchangeFileIsTheTime();
    void problems_data();
    void problems();
    void missingFileIsNamed();
    void tooLargeIsMoreThan64MB();
    void pipeIsReadOnce();

private:
    QString fileWith(const QByteArray &text)
    {
        QFile file(m_folder.filePath(QStringLiteral("any.name")));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName()
                                                                                  : QString();
    }

    QTemporaryDir m_folder;
    QString m_error;
};

void tst_SavedVehicle::contentTellsTheKind_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("node");
    QTest::newRow("snapshot") << snapshotText() << 4;
    QTest::newRow("exchange file") << QByteArray(exchangeText) << 3;
    QTest::newRow("snapshot with a byte order mark") << "\xEF\xBB\xBF" + snapshotText() << 4;
    QTest::newRow("exchange file with a byte order mark") << "\xEF\xBB\xBF" + QByteArray(exchangeText) << 3;
}

void tst_SavedVehicle::contentTellsTheKind()
{
    QFETCH(QByteArray, text);
    QFETCH(int, node);
    const std::optional<Snapshot> snapshot = SavedVehicle::load(fileWith(text), &m_error);
    QVERIFY2(snapshot, qPrintable(m_error));
    QCOMPARE(snapshot->nodes.size(), 1);
    QCOMPARE(int(snapshot->nodes.first().id), node);
    QVERIFY(snapshot->nodes.first().find(0x6000, 1)->hasValue());
}

void tst_SavedVehicle::storeIsFilledLikewise()
{
    NodeStore store;
    QVERIFY2(SavedVehicle::loadStore(fileWith(snapshotText()), store, &m_error), qPrintable(m_error));
    QCOMPARE(store.nodeList(), QList<quint8>{4});
    QCOMPARE(store.objects(4).value({0x6000, 1}).toInt(), 7);
    NodeStore other;
    QVERIFY2(SavedVehicle::loadStore(fileWith(exchangeText), other, &m_error), qPrintable(m_error));
    QCOMPARE(other.nodeList().first(), quint8(3));
    QCOMPARE(other.objects(3).value({0x6000, 1}).toInt(), 6);
}

void tst_SavedVehicle::storeStaysWhenTheFileIsBad()
{
    NodeStore store;
    store.appendNode(77);
    QVERIFY(!SavedVehicle::loadStore(fileWith("{}"), store, &m_error));
    QVERIFY(!SavedVehicle::loadStore(fileWith("<xml>"), store, &m_error));
    QCOMPARE(store.nodeList(), QList<quint8>{77});
}

void tst_SavedVehicle::dateOfAnExchangeFileIsTheTime()
{
    const std::optional<Snapshot> snapshot = SavedVehicle::load(fileWith(exchangeText), &m_error);
    QVERIFY(snapshot);
    QCOMPARE(snapshot->time, QDateTime(QDate(2026, 9, 3), QTime(10, 12, 5)));
    QVERIFY(snapshot->scope == SnapshotScope::Imported);
}

void tst_SavedVehicle::problems_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QByteArray()
                           << QStringLiteral("The file %1 is neither a snapshot nor an exchange file: ");
    QTest::newRow("cut off") << snapshotText().chopped(10)
                             << QStringLiteral("The file %1 is no good snapshot: line 5, column ");
    QTest::newRow("another JSON") << QByteArray("{\"format\":\"other\"}")
                                  << QStringLiteral("The file %1 is no good snapshot: This is no snapshot.");
    QTest::newRow("list") << QByteArray("[]")
                          << QStringLiteral("The file %1 is no good snapshot: An object, {...}, is wanted.");
    QTest::newRow("XML cut off") << QByteArray(exchangeText).left(200)
                                 << QStringLiteral(
                                        "The file %1 is neither a snapshot nor an exchange file: ");
}

void tst_SavedVehicle::problems()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    const QString name = fileWith(text);
    QVERIFY(!SavedVehicle::load(name, &m_error));
    QVERIFY2(m_error.startsWith(error.arg(name)), qPrintable(m_error));
}

void tst_SavedVehicle::missingFileIsNamed()
{
    const QString name = m_folder.filePath(QStringLiteral("none"));
    QVERIFY(!SavedVehicle::load(name, &m_error));
    QCOMPARE(m_error, QStringLiteral("The file %1 cannot be read: no such file or folder.").arg(name));
}

void tst_SavedVehicle::tooLargeIsMoreThan64MB()
{
    const QString name = m_folder.filePath(QStringLiteral("large.dxsnap"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("{ no snapshot") > 0);
    QVERIFY(file.resize(64 * 1024 * 1024));
    QVERIFY(!SavedVehicle::load(name, &m_error));
    QVERIFY2(m_error.startsWith(QStringLiteral("The file %1 is no good snapshot: ").arg(name)),
             qPrintable(m_error));
    QVERIFY(file.resize(64 * 1024 * 1024 + 1));
    QVERIFY(!SavedVehicle::load(name, &m_error));
    QCOMPARE(m_error, QStringLiteral("The file %1 is far too large for a vehicle.").arg(name));
    QVERIFY(file.remove());
}

void tst_SavedVehicle::pipeIsReadOnce()
{
#ifdef Q_OS_UNIX
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const QByteArray text = snapshotText();
    QCOMPARE(::write(ends[1], text.constData(), static_cast<size_t>(text.size())), ssize_t(text.size()));
    ::close(ends[1]);
    const std::optional<Snapshot> snapshot
        = SavedVehicle::load(QStringLiteral("/dev/fd/%1").arg(ends[0]), &m_error);
    ::close(ends[0]);
    QVERIFY2(snapshot, qPrintable(m_error));
    QCOMPARE(int(snapshot->nodes.first().id), 4);
#endif
}

QTEST_GUILESS_MAIN(tst_SavedVehicle)
#include "tst_savedvehicle.moc"
