// SPDX-License-Identifier: MIT
#include "snapshotbuilder.h"

#include <snapshot/snapshotfile.h>

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>

using CanOpen::DataType;

namespace {

/*! A document with one node and one entry, of which \a entry is the rest. */
QByteArray documentWith(const QByteArray &entry)
{
    return "{\"format\":\"draxel-snapshot\",\"version\":1,\"program\":\"p\","
           "\"time\":\"2026-09-03T10:12:05.120+02:00\",\"duration\":0,\"scope\":\"full\",\"bus\":\"b\","
           "\"nodes\":[{\"id\":2,\"end\":\"complete\",\"entries\":[{\"index\":24576,\"sub\":1,\"ms\":0"
           + entry + "}]}]}";
}

Snapshot everyKind()
{
    SnapshotBuilder builder;
    builder.node(1)
        .raw(0x1000, 0, QByteArray::fromHex("c6010047"))
        .value(0x1008, 0, DataType::VisibleString, QString::fromUtf8("Pack \"36/500\" \n"))
        .gap(0x1009, 0, SnapshotGap::Absent, 0x06020000)
        .gap(0x100A, 0, SnapshotGap::Abort, 0x08000020)
        .raw(0x2000, 0, QByteArray(100, '\xfe'))
        .raw(0x2001, 0, QByteArray::fromHex("ffffffffffffffff"))
        .value(0x2002, 0, DataType::Real32, 1.1f)
        .value(0x2002, 1, DataType::Real64, -0.1)
        .value(0x2003, 0, DataType::Integer64, std::numeric_limits<qlonglong>::min())
        .value(0x2004, 0, DataType::Boolean, true)
        .value(0x2005, 0, DataType::OctetString, QByteArray("\x00\x01", 2))
        .value(0x2006, 0, DataType::VisibleString, QString())
        .value(0x6042, 1, DataType::Integer16, -273);
    SnapshotEntry wrong;
    wrong.key = {0x6040, 1};
    wrong.raw = QByteArray::fromHex("0102");
    wrong.gap = SnapshotGap::WrongSize;
    wrong.type = DataType::Integer32;
    wrong.ms = 1234;
    builder.last().insert(wrong);
    builder.last().medianAnswer = 3;
    builder.last().longestAnswer = 71;
    builder.last().bootUps = 2;
    builder.last().dataSheet = QStringLiteral("Data sheet");
    builder.node(2).gap(0x6000, 0, SnapshotGap::NoAnswer).gap(0x6001, 0, SnapshotGap::Stopped);
    builder.last().end = SnapshotEnd::Silent;
    builder.last().nmtState.reset();
    builder.node(127).gap(0x6000, 0, SnapshotGap::Cancelled).gap(0x6001, 0, SnapshotGap::Failed, 0x05030000);
    builder.last().end = SnapshotEnd::Cancelled;
    builder.snapshot().adapter = QStringLiteral("adapter");
    builder.snapshot().notes = {QStringLiteral("Cargo bike 7"), QStringLiteral("M\u00fcller"),
                                QStringLiteral("T"), QStringLiteral("1234 km"), QStringLiteral("line\nline")};
    return builder.snapshot();
}

} // namespace

class tst_SnapshotFile : public QObject
{
    Q_OBJECT

private slots:
    void writesOneLineForEachEntry();
    void everythingComesBack();
    void sameBytesAfterReading();
    void randomSnapshotsComeBack();
    void localTimeHasItsZone();
    void wrongDocuments_data();
    void wrongDocuments();
    void wrongEntries_data();
    void wrongEntries();
    void goodEntries_data();
    void goodEntries();
    void unknownMembersArePassedOver();
    void orderIsKept();
    void cutOffAnywhereIsRefused();
    void savedFileHasTheBytes();
    void fileProblemsNameTheFile();
    void fingerprintIsThatOfTheBytes();
    void tellsItselfFromAnExchangeFile();
};

void tst_SnapshotFile::writesOneLineForEachEntry()
{
    SnapshotBuilder builder;
    builder.node(2).raw(0x6000, 0, QByteArray(1, '\x01')).gap(0x6000, 1, SnapshotGap::Abort, 0x08000020);
    builder.last().entries[1].ms = 17;
    QCOMPARE(
        SnapshotFile::toJson(builder.snapshot()),
        QByteArray("{\"format\":\"draxel-snapshot\",\"version\":1,\n"
                   "\"program\":\"test 1.0\",\"time\":\"2026-09-03T10:12:05.120+02:00\","
                   "\"duration\":4711,\"scope\":\"full\",\"bus\":\"simulated:test\",\"bitRate\":250000,\n"
                   "\"nodes\":[\n"
                   "{\"id\":2,\"nmtState\":\"operational\",\"end\":\"complete\",\"entries\":[\n"
                   "{\"index\":24576,\"sub\":0,\"type\":5,\"raw\":\"01\",\"value\":1,\"ms\":0},\n"
                   "{\"index\":24576,\"sub\":1,\"gap\":\"abort\",\"abortCode\":134217760,\"ms\":17}]}]}\n"));
}

void tst_SnapshotFile::everythingComesBack()
{
    const Snapshot before = everyKind();
    QString error;
    const std::optional<Snapshot> after = SnapshotFile::fromJson(SnapshotFile::toJson(before), &error);
    QVERIFY2(after, qPrintable(error));
    QCOMPARE(after->program, before.program);
    QCOMPARE(after->time, before.time);
    QCOMPARE(after->time.offsetFromUtc(), 7200);
    QCOMPARE(after->duration, before.duration);
    QCOMPARE(after->bus, before.bus);
    QCOMPARE(after->adapter, before.adapter);
    QCOMPARE(after->bitRate, 250000);
    QVERIFY(after->scope == SnapshotScope::Full);
    QCOMPARE(after->notes.vehicle, QStringLiteral("Cargo bike 7"));
    QCOMPARE(after->notes.customer, QStringLiteral("M\u00fcller"));
    QCOMPARE(after->notes.technician, QStringLiteral("T"));
    QCOMPARE(after->notes.odometer, QStringLiteral("1234 km"));
    QCOMPARE(after->notes.note, QStringLiteral("line\nline"));
    QCOMPARE(after->nodes.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const SnapshotNode &a = after->nodes.at(i);
        const SnapshotNode &b = before.nodes.at(i);
        QCOMPARE(a.id, b.id);
        QVERIFY(a.end == b.end);
        QVERIFY(a.nmtState == b.nmtState);
        QCOMPARE(a.bootUps, b.bootUps);
        QCOMPARE(a.medianAnswer, b.medianAnswer);
        QCOMPARE(a.longestAnswer, b.longestAnswer);
        QCOMPARE(a.dataSheet, b.dataSheet);
        QCOMPARE(a.entries.size(), b.entries.size());
        for (int e = 0; e < a.entries.size(); ++e)
            QVERIFY2(areSame(a.entries.at(e), b.entries.at(e)), qPrintable(a.entries.at(e).key.toString()));
    }
}

void tst_SnapshotFile::sameBytesAfterReading()
{
    const QByteArray text = SnapshotFile::toJson(everyKind());
    QString error;
    QCOMPARE(SnapshotFile::toJson(*SnapshotFile::fromJson(text, &error)), text);
}

void tst_SnapshotFile::randomSnapshotsComeBack()
{
    QRandomGenerator random(20261121);
    constexpr DataType types[]
        = {DataType::Boolean,     DataType::Integer8,   DataType::Integer24, DataType::Integer64,
           DataType::Unsigned16,  DataType::Unsigned64, DataType::Real32,    DataType::VisibleString,
           DataType::OctetString, DataType::Domain,     DataType::TimeOfDay, DataType::UnicodeString};
    for (int round = 0; round < 200; ++round) {
        SnapshotBuilder builder;
        for (int node = 1 + random.bounded(40); node <= 127; node += 1 + random.bounded(60)) {
            builder.node(static_cast<quint8>(node));
            for (int e = random.bounded(30); e > 0; --e) {
                SnapshotEntry entry;
                entry.key = {static_cast<quint16>(random.bounded(0x10000)),
                             static_cast<quint8>(random.bounded(256))};
                entry.type = types[random.bounded(12)];
                const int fixedSize = CanOpen::byteSize(*entry.type);
                const int size = fixedSize > 0 ? fixedSize : random.bounded(20);
                for (int i = 0; i < size; ++i)
                    entry.raw.append(static_cast<char>(random.bounded(256)));
                if (const auto value = CanOpen::decodeValue(*entry.type, entry.raw))
                    entry.value = *value;
                else
                    entry.gap = SnapshotGap::WrongSize;
                entry.ms = random.bounded(1000000);
                builder.last().insert(entry);
            }
        }
        const QByteArray text = SnapshotFile::toJson(builder.snapshot());
        QString error;
        const std::optional<Snapshot> after = SnapshotFile::fromJson(text, &error);
        QVERIFY2(after, qPrintable(error));
        QCOMPARE(SnapshotFile::toJson(*after), text);
        QCOMPARE(after->valueCount(), builder.snapshot().valueCount());
    }
}

void tst_SnapshotFile::localTimeHasItsZone()
{
    SnapshotBuilder builder;
    const QDateTime local(QDate(2026, 1, 2), QTime(3, 4, 5));
    builder.snapshot().time = local;
    QString error;
    const QDateTime after = SnapshotFile::fromJson(SnapshotFile::toJson(builder.snapshot()), &error)->time;
    QCOMPARE(after, local);
    QCOMPARE(after.timeSpec(), local.offsetFromUtc() == 0 ? Qt::UTC : Qt::OffsetFromUTC);
}

void tst_SnapshotFile::wrongDocuments_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    const QByteArray good = documentWith(",\"value\":1");
    QTest::newRow("no JSON") << QByteArray(
        "<xml/>") << QStringLiteral("line 1, column 1: syntax error while parsing value - invalid literal");
    QTest::newRow("list") << QByteArray("[]") << QStringLiteral("An object, {...}, is wanted.");
    QTest::newRow("no format") << QByteArray("{}") << QStringLiteral("format: This is missing.");
    QTest::newRow("other format") << QByteArray(good).replace("draxel-snapshot", "draxel-trace")
                                  << QStringLiteral("This is no snapshot.");
    QTest::newRow("newer") << QByteArray(good).replace("\"version\":1", "\"version\":2")
                           << QStringLiteral("This snapshot was made by a newer program. It takes at least "
                                             "the program's version that made it.");
    QTest::newRow("version zero") << QByteArray(good).replace("\"version\":1", "\"version\":0")
                                  << QStringLiteral(
                                         "version: A whole number from 1 to 2147483647 is wanted.");
    QTest::newRow("no time") << QByteArray(good).replace("\"time\"", "\"date\"")
                             << QStringLiteral("time: This is missing.");
    QTest::newRow("wrong time") << QByteArray(good).replace("2026-09-03T", "yesterday")
                                << QStringLiteral("time: A date and time as in ISO 8601 is wanted.");
    QTest::newRow("scope") << QByteArray(good).replace("\"full\"", "\"half\"")
                           << QStringLiteral("scope: This word is not known.");
    QTest::newRow("no nodes") << QByteArray(good).replace("\"nodes\"", "\"devices\"")
                              << QStringLiteral("nodes: This is missing.");
    QTest::newRow("node 0") << QByteArray(good).replace("\"id\":2", "\"id\":0")
                            << QStringLiteral("nodes[0].id: A whole number from 1 to 127 is wanted.");
    QTest::newRow("node 128") << QByteArray(good).replace("\"id\":2", "\"id\":128")
                              << QStringLiteral("nodes[0].id: A whole number from 1 to 127 is wanted.");
    QTest::newRow("end") << QByteArray(good).replace("\"complete\"", "\"over\"")
                         << QStringLiteral("nodes[0].end: This word is not known.");
    QTest::newRow("NMT state") << QByteArray(good).replace("\"end\"", "\"nmtState\":\"on\",\"end\"")
                               << QStringLiteral("nodes[0].nmtState: This word is not known.");
}

void tst_SnapshotFile::wrongDocuments()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    QString found;
    QVERIFY(!SnapshotFile::fromJson(text, &found));
    QCOMPARE(found, error);
}

void tst_SnapshotFile::wrongEntries_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("error");
    const QString place = QStringLiteral("nodes[0].entries[0]");
    QTest::newRow("nothing") << QByteArray()
                             << place
                                    + QStringLiteral(
                                        ": There is neither a value nor a reason why there is none.");
    QTest::newRow("both") << QByteArray(",\"value\":1,\"gap\":\"absent\"")
                          << place
                                 + QStringLiteral(
                                     ": There is a value as well as a reason why there is none.");
    QTest::newRow("gap") << QByteArray(",\"gap\":\"hole\"")
                         << place + QStringLiteral(".gap: This word is not known.");
    QTest::newRow("type") << QByteArray(",\"type\":64,\"raw\":\"01\"")
                          << place + QStringLiteral(".type: This is no data type of CiA 301.");
    QTest::newRow("size") << QByteArray(",\"type\":7,\"raw\":\"01\"")
                          << place + QStringLiteral(".raw: The bytes do not fit the data type.");
    QTest::newRow("odd digits") << QByteArray(",\"raw\":\"012\"")
                                << place
                                       + QStringLiteral(
                                           ".raw: Bytes are wanted, two hexadecimal digits each, in "
                                           "lower case.");
    QTest::newRow("no digits") << QByteArray(",\"raw\":\"0x\"")
                               << place
                                      + QStringLiteral(
                                          ".raw: Bytes are wanted, two hexadecimal digits each, in "
                                          "lower case.");
    const QString other = place + QStringLiteral(".value: The value is not that of the bytes.");
    QTest::newRow("other value") << QByteArray(",\"type\":5,\"raw\":\"01\",\"value\":2") << other;
    QTest::newRow("other sign") << QByteArray(",\"type\":2,\"raw\":\"ff\",\"value\":255") << other;
    QTest::newRow("sign of the widest")
        << QByteArray(",\"type\":27,\"raw\":\"ffffffffffffffff\",\"value\":-1") << other;
    QTest::newRow("other text") << QByteArray(",\"type\":9,\"raw\":\"41\",\"value\":\"B\"") << other;
    QTest::newRow("text for a number") << QByteArray(",\"type\":5,\"raw\":\"01\",\"value\":\"1\"") << other;
    QTest::newRow("number for a text") << QByteArray(",\"type\":9,\"raw\":\"31\",\"value\":1") << other;
    QTest::newRow("fraction for a number") << QByteArray(",\"type\":5,\"raw\":\"01\",\"value\":1.5") << other;
    QTest::newRow("value is a list") << QByteArray(",\"value\":[]")
                                     << place + QStringLiteral(".value: A number or a text is wanted.");
}

void tst_SnapshotFile::wrongEntries()
{
    QFETCH(QByteArray, entry);
    QFETCH(QString, error);
    QString found;
    QVERIFY(!SnapshotFile::fromJson(documentWith(entry), &found));
    QCOMPARE(found, error);
}

void tst_SnapshotFile::goodEntries_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("value without bytes") << QByteArray(",\"value\":-5") << QVariant(qlonglong(-5));
    QTest::newRow("text without bytes") << QByteArray(",\"value\":\"x\"") << QVariant(QStringLiteral("x"));
    QTest::newRow("bytes of no type") << QByteArray(",\"raw\":\"3412\"") << QVariant(qulonglong(0x1234));
    QTest::newRow("bytes of no type and no number")
        << QByteArray(",\"raw\":\"010203040506070809\"") << QVariant();
    QTest::newRow("bytes without value") << QByteArray(",\"type\":2,\"raw\":\"ff\"") << QVariant(-1);
    QTest::newRow("empty text") << QByteArray(",\"type\":9,\"value\":\"\"") << QVariant(QString());
    QTest::newRow("whole number for a fraction")
        << QByteArray(",\"type\":8,\"raw\":\"0000803f\",\"value\":1") << QVariant(1.0f);
}

void tst_SnapshotFile::goodEntries()
{
    QFETCH(QByteArray, entry);
    QFETCH(QVariant, value);
    QString error;
    const std::optional<Snapshot> snapshot = SnapshotFile::fromJson(documentWith(entry), &error);
    QVERIFY2(snapshot, qPrintable(error));
    QCOMPARE(snapshot->nodes.first().entries.first().value, value);
}

void tst_SnapshotFile::unknownMembersArePassedOver()
{
    QString error;
    QVERIFY2(SnapshotFile::fromJson(documentWith(",\"value\":1,\"later\":{\"a\":[]}"), &error),
             qPrintable(error));
}

void tst_SnapshotFile::orderIsKept()
{
    QString error;
    QByteArray text = SnapshotFile::toJson(everyKind());
    QVERIFY(!SnapshotFile::fromJson(QByteArray(text).replace("\"id\":2,", "\"id\":1,"), &error));
    QCOMPARE(error, QStringLiteral("nodes[1]: The nodes do not stand in the order of their IDs."));
    QVERIFY(!SnapshotFile::fromJson(QByteArray(text).replace("\"index\":8193,", "\"index\":8192,"), &error));
    QCOMPARE(
        error,
        QStringLiteral("nodes[0].entries[5]: The entries do not stand in the order of index and sub-index."));
}

void tst_SnapshotFile::cutOffAnywhereIsRefused()
{
    const QByteArray text = SnapshotFile::toJson(everyKind());
    for (int size = 0; size < text.size() - 1; ++size) {
        QString error;
        QVERIFY2(!SnapshotFile::fromJson(text.left(size), &error), qPrintable(QString::number(size)));
        QVERIFY(!error.isEmpty());
    }
}

void tst_SnapshotFile::savedFileHasTheBytes()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("a.dxsnap"));
    QString error;
    QVERIFY2(SnapshotFile::save(name, everyKind(), &error), qPrintable(error));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), SnapshotFile::toJson(everyKind()));
}

void tst_SnapshotFile::fileProblemsNameTheFile()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("none/a.dxsnap"));
    QString error;
    QVERIFY(!SnapshotFile::save(name, everyKind(), &error));
    QCOMPARE(error, QStringLiteral("The file %1 cannot be written: no such file or folder.").arg(name));
}

void tst_SnapshotFile::fingerprintIsThatOfTheBytes()
{
    // sha256sum of the file gives the same
    Snapshot snapshot;
    snapshot.time = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);
    QCOMPARE(
        SnapshotFile::toJson(snapshot),
        QByteArray("{\"format\":\"draxel-snapshot\",\"version\":1,\n\"program\":\"\","
                   "\"time\":\"2026-01-01T00:00:00.000Z\",\"duration\":0,\"scope\":\"full\",\"bus\":\"\",\n"
                   "\"nodes\":[]}\n"));
    QCOMPARE(SnapshotFile::fingerprint(snapshot),
             QStringLiteral("b8a1644648e1809fffb37201d37d598da2a72de0b8f544e61ebef0c6652682e6"));
    snapshot.notes.note = QStringLiteral("x");
    QVERIFY(SnapshotFile::fingerprint(snapshot)
            != QStringLiteral("b8a1644648e1809fffb37201d37d598da2a72de0b8f544e61ebef0c6652682e6"));
}

void tst_SnapshotFile::tellsItselfFromAnExchangeFile()
{
    QVERIFY(SnapshotFile::looksLikeSnapshot(SnapshotFile::toJson(everyKind())));
    QVERIFY(SnapshotFile::looksLikeSnapshot("\n  {\"format\""));
    QVERIFY(!SnapshotFile::looksLikeSnapshot("<?xml version =\"1.0\" encoding=\"UTF-8\" ?>"));
    QVERIFY(!SnapshotFile::looksLikeSnapshot(""));
}

QTEST_GUILESS_MAIN(tst_SnapshotFile)
#include "tst_snapshotfile.moc"
