// SPDX-License-Identifier: MIT
#include <bundle/masking/masking.h>
#include <bundle/masking/pathfinding.h>
#include <bundle/masking/snapshotmasking.h>
#include <snapshot/snapshotfile.h>

#include <QtTest>

using CanOpen::ObjectKey;

namespace {

constexpr ObjectKey serialNumber{0x1018, 4};
constexpr ObjectKey deviceName{0x1008, 0};

/*! What stands for a secret is not known; where it stands is. */
QString withX(QString text)
{
    return text.replace(QRegularExpression(QStringLiteral("masked-[0-9A-F]{4}")), QStringLiteral("X"));
}

SnapshotEntry entryOf(ObjectKey key, CanOpen::DataType type, const QByteArray &raw)
{
    SnapshotEntry entry;
    entry.key = key;
    entry.type = type;
    entry.raw = raw;
    entry.value = *CanOpen::decodeValue(type, raw);
    return entry;
}

} // namespace

/*! What is secret, and how it is replaced in texts and values. */
class tst_Masking : public QObject
{
    Q_OBJECT

private slots:
    void secretObjects_data();
    void secretObjects();
    void texts_data();
    void texts();
    void paths_data();
    void paths();
    void sameEverywhere();
    void values_data();
    void values();
    void wideTextKeepsItsBytes();
    void nameInUtf8KeepsItsBytes();
    void nameInUtf8_data();
    void nameInUtf8();
    void nameInAnotherWordStays();
    void valueOfAnotherObjectIsTheSame();
    void bytesWithZerosKeepTheirLength();
    void computer();
    void snapshotStaysReadable();
    void shortSecretsWithoutBytes();
    void odometer_data();
    void odometer();
};

void tst_Masking::secretObjects_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sub");
    QTest::addColumn<bool>("isSecret");
    QTest::newRow("serial number") << 0x1018 << 4 << true;
    QTest::newRow("revision number") << 0x1018 << 3 << false;
    QTest::newRow("unique part number") << 0x6005 << 0 << true;
    QTest::newRow("security key") << 0x6058 << 0 << true;
    QTest::newRow("expected serial number of node 5") << 0x1F88 << 5 << true;
    QTest::newRow("how many expected ones") << 0x1F88 << 0 << false;
    QTest::newRow("voltage") << 0x6061 << 0 << false;
    QTest::newRow("an object of the manufacturer") << 0x2000 << 1 << false;
}

void tst_Masking::secretObjects()
{
    QFETCH(int, index);
    QFETCH(int, sub);
    QTEST(Masking::isSecret({quint16(index), quint8(sub)}), "isSecret");
}

void tst_Masking::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("masked");
    QTest::newRow("decimal") << QStringLiteral("serial number 1031904.")
                             << QStringLiteral("serial number X.");
    QTest::newRow("hexadecimal") << QStringLiteral("0x000FBEE0, FBEE0h and 000fbee0")
                                 << QStringLiteral("X, X and X");
    QTest::newRow("within letters") << QStringLiteral("SN1031904") << QStringLiteral("SNX");
    QTest::newRow("part of another number") << QStringLiteral("10319045") << QStringLiteral("10319045");
    QTest::newRow("small numbers stay") << QStringLiteral("node 7 of 12") << QStringLiteral("node 7 of 12");
    QTest::newRow("a name") << QStringLiteral("For ERIKA MUSTERMANN, soon") << QStringLiteral("For X, soon");
    QTest::newRow("part of a word") << QStringLiteral("Annabell") << QStringLiteral("Annabell");
    QTest::newRow("part of a word, then the word")
        << QStringLiteral("see Annabell, Anna") << QStringLiteral("see Annabell, X");
    QTest::newRow("a word") << QStringLiteral("by anna: done") << QStringLiteral("by X: done");
    QTest::newRow("a name at the beginning, and again")
        << QStringLiteral("Anna asks Anna, anna") << QStringLiteral("X asks X, X");
    QTest::newRow("a serial that is a text")
        << QStringLiteral("device ab-12/77 is gone") << QStringLiteral("device X is gone");
    QTest::newRow("serials in other languages")
        << QStringLiteral("ZX-5512, F-0077 and NL-0088") << QStringLiteral("X, X and X");
    QTest::newRow("a path") << QStringLiteral("Saved: /home/anna/bike.dxsnap")
                            << QStringLiteral("Saved: X.dxsnap");
    QTest::newRow("nothing") << QStringLiteral("12.5 km/h, 2/3 and/or 1.")
                             << QStringLiteral("12.5 km/h, 2/3 and/or 1.");
}

void tst_Masking::texts()
{
    QFETCH(QString, text);
    Masking masking;
    masking.learnNumber(1031904);
    masking.learnNumber(7);
    masking.learnNumber(12);
    masking.learnName(QStringLiteral("Erika Mustermann"));
    masking.learnName(QStringLiteral("anna"));
    masking.learnName(QStringLiteral("A"));
    masking.learnValue(deviceName, QByteArrayLiteral("Drive S/N: AB-12/77"));
    masking.learnValue(deviceName, QByteArrayLiteral("Akku Seriennummer: ZX-5512"));
    masking.learnValue(deviceName, QByteArrayLiteral("No de serie F-0077"));
    masking.learnValue(deviceName, QByteArrayLiteral("Serienr. NL-0088"));
    QTEST(withX(masking.text(text)), "masked");
}

void tst_Masking::paths_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path");
    const auto add = [](const char *name, const char *text, const char *path) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(path);
    };
    add("absolute", "Opened: /home/a/x.dxsnap", "/home/a/x.dxsnap");
    add("end of a sentence", "Cannot write /home/a/x. Why?", "/home/a/x");
    add("with its reason", "The file /home/a/x.zip: gone", "/home/a/x.zip");
    add("blank in a folder", "Saved: /home/a/My bikes/x.log", "/home/a/My bikes/x.log");
    add("blank in the name", "Saved: /home/a/My bike.log", "/home/a/My bike.log");
    add("in quotes", "the file \"/home/a/My bike\" is", "/home/a/My bike");
    add("in quotes that do not begin", "He said: /home/a/x.log\" twice", "/home/a/x.log");
    add("in quotes that do not end", "\"/home/a/x.log is gone", "/home/a/x.log");
    add("home", "see ~/x", "~/x");
    add("relative", "simulated:./bike.json is", "./bike.json");
    add("above", "../up/bike.json", "../up/bike.json");
    add("of a bus", "trace:/tmp/ride.log?speed=2", "/tmp/ride.log?speed=2");
    add("of Windows", "Saved: C:\\Users\\Anna B\\x.log", "C:\\Users\\Anna B\\x.log");
    add("of a server", "cannot reach postgresql://anna@desk/archive", "//anna@desk/archive");
    add("letters of others", "nach /home/jürgen/Fährräder/ü.log", "/home/jürgen/Fährräder/ü.log");
    add("unit", "12 km/h", "");
    add("alone", "this / that", "");
}

void tst_Masking::paths()
{
    QFETCH(QString, text);
    QFETCH(QString, path);
    const PathFinding::Place place = PathFinding::next(text, 0);
    QCOMPARE(place.first < 0 ? QString() : text.mid(place.first, place.size), path);
}

void tst_Masking::sameEverywhere()
{
    Masking masking;
    masking.learnValue(serialNumber, QByteArray::fromHex("e0be0f00"));
    const QByteArray value = masking.value(serialNumber, QByteArray::fromHex("e0be0f00"));
    const QString text = masking.text(QStringLiteral("1031904 0xFBEE0"));
    const QString token
        = QString::fromLatin1(QByteArray(1, value.at(1)).toHex() + QByteArray(1, value.at(0)).toHex());
    QCOMPARE(text, QStringLiteral("masked-%1 masked-%1").arg(token.toUpper()));
    QCOMPARE(masking.word(QStringLiteral("1031904")), QStringLiteral("masked-") + token.toUpper());
}

void tst_Masking::values_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sub");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("isChanged");
    QTest::newRow("serial number") << 0x1018 << 4 << QByteArray::fromHex("e0be0f00") << true;
    QTest::newRow("small serial number") << 0x1018 << 4 << QByteArray::fromHex("07000000") << true;
    QTest::newRow("of 64 bits") << 0x1018 << 4 << QByteArray::fromHex("0102030405060708") << true;
    QTest::newRow("as a text") << 0x1018 << 4 << QByteArrayLiteral("AB-1234567") << true;
    QTest::newRow("none") << 0x1018 << 4 << QByteArray::fromHex("00000000") << false;
    QTest::newRow("none, the other way") << 0x1018 << 4 << QByteArray::fromHex("ffffffff") << false;
    QTest::newRow("product code") << 0x1018 << 2 << QByteArray::fromHex("01020304") << false;
    QTest::newRow("number in a name") << 0x1008 << 0 << QByteArrayLiteral("Pack 1031904 B") << true;
    QTest::newRow("name") << 0x1008 << 0 << QByteArrayLiteral("DX-Pack 36/500") << false;
    QTest::newRow("elsewhere") << 0x2000 << 1 << QByteArray::fromHex("e0be0f00") << true;
    QTest::newRow("within more") << 0x2000 << 1 << QByteArray::fromHex("0102e0be0f0003") << true;
    QTest::newRow("letter, zero, letter") << 0x2000 << 1 << QByteArray::fromHex("610062") << false;
    QTest::newRow("five of a text") << 0x2000 << 1 << QByteArray::fromHex("6100620063") << false;
    QTest::newRow("empty") << 0x1018 << 4 << QByteArray() << false;
}

void tst_Masking::values()
{
    QFETCH(int, index);
    QFETCH(int, sub);
    QFETCH(QByteArray, value);
    QFETCH(bool, isChanged);
    Masking masking;
    masking.learnNumber(1031904);
    const ObjectKey key{quint16(index), quint8(sub)};
    const QByteArray masked = masking.value(key, value);
    QCOMPARE(masked.size(), value.size());
    QCOMPARE(masked != value, isChanged);
    QVERIFY(!masked.contains(QByteArray::fromHex("e0be0f00")));
    QVERIFY(!masked.contains("1031904"));
}

void tst_Masking::wideTextKeepsItsBytes()
{
    const QString text = QStringLiteral("Pack 1031904."); // 26 bytes
    const QByteArray wide(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    Masking masking;
    masking.learnNumber(1031904);
    const QByteArray masked = masking.value(deviceName, wide);
    QCOMPARE(masked.size(), wide.size());
    const QString read
        = QString::fromUtf16(reinterpret_cast<const ushort *>(masked.constData()), masked.size() / 2);
    QVERIFY2(QRegularExpression(QStringLiteral("^Pack ma-[0-9A-F]{4}\\.$")).match(read).hasMatch(),
             qPrintable(read));
}

void tst_Masking::nameInUtf8KeepsItsBytes()
{
    Masking masking;
    masking.learnName(QStringLiteral("J\u00FCrgen M\u00FCller"));
    const QByteArray text = "Rad von J\xC3\xBCrgen M\xC3\xBCller."; // 24 bytes
    const QByteArray masked = masking.value(deviceName, text);
    const QString word = masking.text(QStringLiteral("J\u00FCrgen M\u00FCller")); // "masked-3F2A"
    QCOMPARE(masked, "Rad von " + word.toLatin1().leftJustified(15, '.') + '.');
}

void tst_Masking::nameInUtf8_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("before"); // the name, and what follows it
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("capitals") << QByteArray("RAD VON M\xC3\x9CLLER.") << QByteArray("RAD VON ")
                              << QByteArray(".");
    QTest::newRow("small letters") << QByteArray("rad von m\xC3\xBCller.") << QByteArray("rad von ")
                                   << QByteArray(".");
    QTest::newRow("beside a dash") << QByteArray("M\xC3\xBCller\xE2\x80\x93Rad") << QByteArray()
                                   << QByteArray("\xE2\x80\x93Rad");
    QTest::newRow("in quotation marks") << QByteArray("Rad \xC2\xBBM\xC3\xBCller\xC2\xAB.")
                                        << QByteArray("Rad \xC2\xBB") << QByteArray("\xC2\xAB.");
}

void tst_Masking::nameInUtf8()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    Masking masking;
    masking.learnName(QStringLiteral("M\u00FCller"));
    const QByteArray word = masking.text(QStringLiteral("M\u00FCller")).toLatin1(); // "masked-3F2A"
    QCOMPARE(masking.value(deviceName, text),
             before + "ma-" + word.right(4) + after); // as many bytes as before
}

void tst_Masking::nameInAnotherWordStays()
{
    Masking masking;
    masking.learnName(QStringLiteral("Meier"));
    const QString text = QStringLiteral("Meier\u00F6 und \u00C4meier");
    QCOMPARE(masking.text(text), text);
}

void tst_Masking::valueOfAnotherObjectIsTheSame()
{
    Masking masking;
    masking.learnValue(serialNumber, QByteArray::fromHex("e0be0f00"));
    QCOMPARE(masking.value({0x2000, 1}, QByteArray::fromHex("e0be0f00")),
             masking.value(serialNumber, QByteArray::fromHex("e0be0f00")));
    QCOMPARE(masking.value({0x1F88, 5}, QByteArray::fromHex("e0be0f00")),
             masking.value(serialNumber, QByteArray::fromHex("e0be0f00")));
}

void tst_Masking::bytesWithZerosKeepTheirLength()
{
    Masking masking;
    masking.learnNumber(1031904);
    QCOMPARE(masking.value({0x1000, 0}, QByteArray::fromHex("c6010047")), QByteArray::fromHex("c6010047"));
}

void tst_Masking::computer()
{
    qputenv("USER", "musterfrau");
    Masking masking;
    masking.learnComputer();
    QCOMPARE(withX(masking.text(QStringLiteral("usermod -aG dialout musterfrau"))),
             QStringLiteral("usermod -aG dialout X"));
    const QString host = QSysInfo::machineHostName();
    if (host.size() >= 3)
        QCOMPARE(withX(masking.text(QStringLiteral("on %1").arg(host))), QStringLiteral("on X"));
}

void tst_Masking::snapshotStaysReadable()
{
    Snapshot snapshot;
    snapshot.program = QStringLiteral("test");
    snapshot.time = QDateTime(QDate(2026, 11, 22), QTime(10, 0), Qt::OffsetFromUTC, 3600);
    snapshot.bus = QStringLiteral("trace:/home/erika/ride.log");
    snapshot.notes = {QStringLiteral("Cargo bike 7"), QStringLiteral("Erika"), QStringLiteral("Max"),
                      QStringLiteral("1204 km"), QStringLiteral("calls at night")};
    SnapshotNode node;
    node.id = 3;
    node.insert(entryOf(serialNumber, CanOpen::DataType::Unsigned32, QByteArray::fromHex("e0be0f00")));
    node.insert(entryOf(deviceName, CanOpen::DataType::VisibleString, "Pack 1031904 of Erika"));
    SnapshotEntry without; // of a file that holds no bytes
    without.key = {0x6005, 0};
    without.type = CanOpen::DataType::Unsigned32;
    without.value = 454010503U;
    node.insert(without);
    without.key = {0x6058, 0};
    without.type = CanOpen::DataType::VisibleString;
    without.value = QStringLiteral("QX-778899");
    node.insert(without);
    without.key = {0x2000, 0};
    without.value = QStringLiteral("Key of QX-778899");
    node.insert(without);
    snapshot.nodes.append(node);

    Masking masking;
    SnapshotMasking::learn(snapshot, &masking);
    const Snapshot masked = SnapshotMasking::masked(snapshot, &masking);
    const QByteArray json = SnapshotFile::toJson(masked);
    for (const char *secret :
         {"1031904", "e0be0f00", "454010503", "778899", "Erika", "erika", "Max", "night", "Cargo"})
        QVERIFY2(!json.contains(secret), secret);
    QVERIFY(json.contains("1204 km"));
    QString error;
    const std::optional<Snapshot> read = SnapshotFile::fromJson(json, &error);
    QVERIFY2(read, qPrintable(error));
    QCOMPARE(SnapshotFile::toJson(*read), json);
    QCOMPARE(withX(read->bus), QStringLiteral("trace:X.log"));
    QCOMPARE(masked.find(3)->value(0x1018, 4).toUInt() & 0xFFFF, masking.number(1031904, 32) & 0xFFFF);
}

/*! A file may have texts without their bytes. Four letters are no number then, and few digits are a secret, too. */
void tst_Masking::shortSecretsWithoutBytes()
{
    Snapshot snapshot;
    SnapshotNode node;
    node.id = 3;
    SnapshotEntry entry;
    entry.type = CanOpen::DataType::VisibleString;
    entry.key = {0x6005, 0};
    entry.value = QStringLiteral("AB12");
    node.insert(entry);
    entry.key = {0x6058, 0};
    entry.value = QStringLiteral("00042");
    node.insert(entry);
    entry.key = deviceName;
    entry.value = QStringLiteral("Pack AB12, 42 cells");
    node.insert(entry);
    snapshot.nodes.append(node);
    Masking masking;
    SnapshotMasking::learn(snapshot, &masking);
    const Snapshot masked = SnapshotMasking::masked(snapshot, &masking);
    QCOMPARE(withX(masked.find(3)->value(0x6005, 0).toString()), QStringLiteral("X"));
    QCOMPARE(withX(masked.find(3)->value(0x6058, 0).toString()), QStringLiteral("X"));
    QCOMPARE(withX(masked.find(3)->value(0x1008, 0).toString()), QStringLiteral("Pack X, 42 cells"));
}

void tst_Masking::odometer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("masked");
    QTest::newRow("kilometres") << QStringLiteral("1.204,5 km") << QStringLiteral("1.204,5 km");
    QTest::newRow("number") << QStringLiteral("17") << QStringLiteral("17");
    QTest::newRow("a text") << QStringLiteral("ask Erika") << QStringLiteral("X");
    QTest::newRow("none") << QString() << QString();
}

void tst_Masking::odometer()
{
    QFETCH(QString, text);
    Snapshot snapshot;
    snapshot.notes.odometer = text;
    Masking masking;
    QTEST(withX(SnapshotMasking::masked(snapshot, &masking).notes.odometer), "masked");
}

QTEST_GUILESS_MAIN(tst_Masking)
#include "tst_masking.moc"
