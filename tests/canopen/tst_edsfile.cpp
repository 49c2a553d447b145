// SPDX-License-Identifier: MIT
#include <canopen/edsfile.h>

#include <QTemporaryDir>
#include <QtTest>

#include <random>

Q_DECLARE_METATYPE(CanOpen::Access)

using namespace CanOpen;

class tst_EdsFile : public QObject
{
    Q_OBJECT

private slots:
    void readsAWholeFile();
    void readsWithCarriageReturns();
    void values_data();
    void values();
    void accessTypes_data();
    void accessTypes();
    void limits();
    void limitsInTwosComplement();
    void nodeIdOfTheFileOrOfTheCaller();
    void parameterValueGoesFirst();
    void compactSubObjects();
    void compactSubObjectsOfADcf();
    void sectionNamesInAnyCaseAndOrder();
    void missingDefaultIsZero();
    void definitionsOfDataTypesAreNoObjects();
    void textsOfEmergencies();
    void errors_data();
    void errors();
    void hostileFiles_data();
    void hostileFiles();
    void readsFromDisk();
    void missingFileIsNamed();
    void mutatedFilesNeverCrash();
};

namespace {

const char wholeFile[] = "; a comment\n"
                         "[FileInfo]\n"
                         "FileName=test.dcf\n"
                         "\n"
                         "[DeviceInfo]\n"
                         "VendorName=Draxel Project\n"
                         "ProductName=DX-Test 36\n"
                         "[DeviceComissioning]\n"
                         "NodeID=0x05\n"
                         "NodeName=Tester\n"
                         "[MandatoryObjects]\n"
                         "SupportedObjects=3\n"
                         "1=0x1000\n"
                         "2=0x1001\n"
                         "3=0x1018\n"
                         "[1000]\n"
                         "ParameterName=Device type\n"
                         "ObjectType=0x7\n"
                         "DataType=0x0007\n"
                         "AccessType=ro\n"
                         "DefaultValue=0x000001C6\n"
                         "PDOMapping=0\n"
                         "[1001]\n"
                         "ParameterName=Error register\n"
                         "ObjectType=0x7\n"
                         "DataType=0x0005\n"
                         "AccessType=ro\n"
                         "DefaultValue=0\n"
                         "[1018]\n"
                         "ParameterName=Identity\n"
                         "ObjectType=0x9\n"
                         "SubNumber=2\n"
                         "[1018sub0]\n"
                         "ParameterName=Highest sub-index\n"
                         "DataType=0x0005\n"
                         "AccessType=const\n"
                         "DefaultValue=1\n"
                         "[1018sub1]\n"
                         "ParameterName=Vendor ID\n"
                         "DataType=0x0007\n"
                         "AccessType=ro\n"
                         "DefaultValue=0xFFFE\n";

/*! A file with one variable 2000h; \a keys follow its type and access. */
QByteArray variable(const char *type, const QByteArray &keys, const char *access = "rw")
{
    return QByteArray("[2000]\nParameterName=Test\nObjectType=7\nDataType=") + type + "\nAccessType=" + access
           + "\n" + keys + "\n";
}

QByteArray dataOf(const std::optional<EdsFile> &file, ObjectKey key)
{
    if (!file || file->dictionary.find(key) == nullptr)
        return QByteArrayLiteral("absent");
    return file->dictionary.find(key)->data.toHex();
}

} // namespace

void tst_EdsFile::readsAWholeFile()
{
    QString error;
    const std::optional<EdsFile> file = parseEds(wholeFile, 0, &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QCOMPARE(file->productName, QStringLiteral("DX-Test 36"));
    QCOMPARE(int(file->nodeId.value_or(0)), 5);
    QCOMPARE(file->nodeName, QStringLiteral("Tester"));
    QCOMPARE(file->dictionary.keys().size(), 4);
    QCOMPARE(dataOf(file, {0x1000, 0}), QByteArray("c6010000"));
    QCOMPARE(dataOf(file, {0x1001, 0}), QByteArray("00"));
    QCOMPARE(dataOf(file, {0x1018, 0}), QByteArray("01"));
    QCOMPARE(dataOf(file, {0x1018, 1}), QByteArray("feff0000"));
    QCOMPARE(file->dictionary.find({0x1018, 1})->name, QStringLiteral("Vendor ID"));
    QCOMPARE(file->dictionary.find({0x1018, 0})->access, Access::Constant);
    QCOMPARE(file->dictionary.find({0x1001, 0})->type, DataType::Unsigned8);
}

void tst_EdsFile::readsWithCarriageReturns()
{
    QByteArray text(wholeFile);
    text.replace("\n", "\r\n");
    text.prepend("\xEF\xBB\xBF");
    text.chop(2); // no line end at the end of the file
    QString error;
    const std::optional<EdsFile> file = parseEds(text, 0, &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QCOMPARE(file->productName, QStringLiteral("DX-Test 36"));
    QCOMPARE(dataOf(file, {0x1018, 1}), QByteArray("feff0000"));
}

void tst_EdsFile::values_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("data");

    const auto row = [](const char *name, const char *type, const char *value, const char *data) {
        QTest::newRow(name) << QByteArray(type) << QByteArray(value) << QByteArray(data);
    };
    row("type in hexadecimal", "0x0006", "258", "0201");
    row("type in decimal", "6", "1", "0100");
    row("type in octal", "06", "1", "0100");
    row("node ID", "0x0007", "$NODEID+0x600", "07060000");
    row("text with = and ;", "0x0009", "a=b;c", "613d623b63");
    row("empty value", "0x0007", "", "00000000");
    row("empty text", "0x0009", "", "");
}

void tst_EdsFile::values()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, data);
    QString error;
    const auto file = parseEds(variable(type.constData(), "DefaultValue=" + value), 7, &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QCOMPARE(dataOf(file, {0x2000, 0}), data);
}

void tst_EdsFile::accessTypes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<Access>("access");

    QTest::newRow("ro") << QByteArray("ro") << Access::ReadOnly;
    QTest::newRow("wo") << QByteArray("wo") << Access::WriteOnly;
    QTest::newRow("rw") << QByteArray("rw") << Access::ReadWrite;
    QTest::newRow("rwr") << QByteArray("rwr") << Access::ReadWrite;
    QTest::newRow("rww") << QByteArray("rww") << Access::ReadWrite;
    QTest::newRow("const") << QByteArray("const") << Access::Constant;
    QTest::newRow("capitals") << QByteArray("RO") << Access::ReadOnly;
}

void tst_EdsFile::accessTypes()
{
    QFETCH(QByteArray, text);
    QFETCH(Access, access);
    QString error;
    const auto file = parseEds(variable("5", "", text.constData()), 0, &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QCOMPARE(file->dictionary.find({0x2000, 0})->access, access);
}

void tst_EdsFile::limits()
{
    const auto file = parseEds(variable("3", "LowLimit=-10\nHighLimit=0x7F\n"), 0, nullptr);
    QVERIFY(file.has_value());
    QCOMPARE(file->dictionary.find({0x2000, 0})->lowLimit.value_or(1), qint64(-10));
    QCOMPARE(file->dictionary.find({0x2000, 0})->highLimit.value_or(1), qint64(127));

    const auto none = parseEds(variable("3", "LowLimit=\n"), 0, nullptr);
    QVERIFY(none.has_value());
    QVERIFY(!none->dictionary.find({0x2000, 0})->lowLimit.has_value());
    QVERIFY(!none->dictionary.find({0x2000, 0})->highLimit.has_value());
}

void tst_EdsFile::limitsInTwosComplement()
{
    const auto file = parseEds(variable("3", "LowLimit=0x8000\nHighLimit=0x7FFF\n"), 0, nullptr);
    QVERIFY(file.has_value());
    QCOMPARE(file->dictionary.find({0x2000, 0})->lowLimit.value_or(1), qint64(-32768));
    QCOMPARE(file->dictionary.find({0x2000, 0})->highLimit.value_or(1), qint64(32767));
}

void tst_EdsFile::nodeIdOfTheFileOrOfTheCaller()
{
    const QByteArray text = variable("7", "DefaultValue=$NODEID+0x580") + "[DeviceComissioning]\nNodeID=9\n";
    QCOMPARE(dataOf(parseEds(text, 0, nullptr), {0x2000, 0}), QByteArray("89050000"));
    QCOMPARE(dataOf(parseEds(text, 3, nullptr), {0x2000, 0}), QByteArray("83050000"));
}

void tst_EdsFile::parameterValueGoesFirst()
{
    QCOMPARE(dataOf(parseEds(variable("5", "ParameterValue=7\nDefaultValue=3"), 0, nullptr), {0x2000, 0}),
             QByteArray("07"));
    QCOMPARE(dataOf(parseEds(variable("5", "DefaultValue=3\nParameterValue="), 0, nullptr), {0x2000, 0}),
             QByteArray("03"));
}

void tst_EdsFile::compactSubObjects()
{
    const QByteArray text = "[2100]\nParameterName=Cell\nObjectType=8\nDataType=6\nAccessType=ro\n"
                            "DefaultValue=3600\nCompactSubObj=3\n";
    const auto file = parseEds(text, 0, nullptr);
    QVERIFY(file.has_value());
    QCOMPARE(file->dictionary.keys().size(), 4);
    QCOMPARE(dataOf(file, {0x2100, 0}), QByteArray("03"));
    QCOMPARE(file->dictionary.find({0x2100, 0})->type, DataType::Unsigned8);
    QCOMPARE(dataOf(file, {0x2100, 1}), QByteArray("100e"));
    QCOMPARE(dataOf(file, {0x2100, 3}), QByteArray("100e"));
    QCOMPARE(file->dictionary.find({0x2100, 2})->name, QStringLiteral("Cell2"));
}

void tst_EdsFile::compactSubObjectsOfADcf()
{
    const QByteArray text = "[2100]\nParameterName=Cell\nObjectType=8\nDataType=6\nAccessType=ro\n"
                            "DefaultValue=3600\nCompactSubObj=3\n"
                            "[2100Name]\nNrOfEntries=1\n2=Middle\n"
                            "[2100Value]\nNrOfEntries=1\n2=0x0E11\n";
    const auto file = parseEds(text, 0, nullptr);
    QVERIFY(file.has_value());
    QCOMPARE(dataOf(file, {0x2100, 1}), QByteArray("100e"));
    QCOMPARE(dataOf(file, {0x2100, 2}), QByteArray("110e"));
    QCOMPARE(dataOf(file, {0x2100, 3}), QByteArray("100e"));
    QCOMPARE(file->dictionary.find({0x2100, 2})->name, QStringLiteral("Middle"));
}

void tst_EdsFile::sectionNamesInAnyCaseAndOrder()
{
    const QByteArray text = "[62e8SUBa]\ndatatype=0x3\naccesstype=ro\ndefaultvalue=5\n"
                            "[62E8]\nobjecttype=0x9\nSubNumber=1\n";
    QString error;
    const auto file = parseEds(text, 0, &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QCOMPARE(dataOf(file, {0x62E8, 10}), QByteArray("0500"));
}

void tst_EdsFile::missingDefaultIsZero()
{
    QCOMPARE(dataOf(parseEds(variable("7", ""), 0, nullptr), {0x2000, 0}), QByteArray("00000000"));
    QCOMPARE(dataOf(parseEds(variable("9", ""), 0, nullptr), {0x2000, 0}), QByteArray(""));
}

void tst_EdsFile::definitionsOfDataTypesAreNoObjects()
{
    const QByteArray text
        = variable("5", "") + "[0005]\nObjectType=5\n[0005sub0]\nDataType=7\nAccessType=ro\n";
    QString error;
    const auto file = parseEds(text, 0, &error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QCOMPARE(file->dictionary.keys(), QVector<ObjectKey>({ObjectKey{0x2000, 0}}));
}

void tst_EdsFile::textsOfEmergencies()
{
    const QByteArray object = variable("5", "");
    const QByteArray texts
        = "[emergencyErrorCodes]\n0xff12=Cell too cold\n33024 = Controller; warm\n0x4210=\n"
          "0x5000="
          + QByteArray(300, 'x') + "\n";
    const std::optional<EdsFile> file = parseEds(object + texts, 0, nullptr);
    QVERIFY(file.has_value());
    QCOMPARE(file->emergencyTexts.size(), 3);
    QCOMPARE(file->emergencyTexts.value(0xFF12), QStringLiteral("Cell too cold"));
    QCOMPARE(file->emergencyTexts.value(0x8100), QStringLiteral("Controller; warm"));
    QCOMPARE(file->emergencyTexts.value(0x5000), QString(200, QLatin1Char('x')));
    QVERIFY(parseEds(object, 0, nullptr)->emergencyTexts.isEmpty());
}

void tst_EdsFile::errors_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QByteArray &text, const char *message) {
        QTest::newRow(name) << text << QString::fromLatin1(message);
    };
    row("unknown type", variable("0x99", ""), "line 4, [2000] DataType: 0x99 is no data type of CiA 301");
    row("type beyond 16 bits", variable("0x10005", ""),
        "line 4, [2000] DataType: 0x10005 is no data type of CiA 301");
    row("type in words", variable("UNSIGNED8", ""),
        "line 4, [2000] DataType: UNSIGNED8 is no data type of CiA 301");
    row("unknown access", variable("5", "", "read"),
        "line 5, [2000] AccessType: read is none of ro, wo, rw, rwr, rww, const");
    row("value too large", variable("5", "DefaultValue=256"),
        "line 6, [2000] DefaultValue: 256 is no value of type UNSIGNED8");
    row("value negative", variable("5", "DefaultValue=-1"),
        "line 6, [2000] DefaultValue: -1 is no value of type UNSIGNED8");
    row("low limit", variable("5", "LowLimit=x"), "line 6, [2000] LowLimit: x is no value of type UNSIGNED8");
    row("high limit", variable("5", "HighLimit=300"),
        "line 6, [2000] HighLimit: 300 is no value of type UNSIGNED8");
    row("emergency", variable("5", "") + "[EmergencyErrorCodes]\n0x10000=Warm\n",
        "line 8, [EmergencyErrorCodes] 0x10000: is no emergency error code");
    row("object type", "[2000]\nObjectType=0x33\n",
        "line 2, [2000] ObjectType: 0x33 is no object type of CiA 301");
    row("no type", "\n[2000]\nAccessType=ro\n", "line 2, [2000] DataType: the key is missing");
    row("no access", "[2000]\nDataType=5\n", "line 1, [2000] AccessType: the key is missing");
    row("node ID", variable("5", "") + "[DeviceComissioning]\nNodeID=128\n",
        "line 8, [DeviceComissioning] NodeID: 128 is no node ID from 1 to 127");
    row("node ID 0", variable("5", "") + "[DeviceComissioning]\nNodeID=0\n",
        "line 8, [DeviceComissioning] NodeID: 0 is no node ID from 1 to 127");
    row("sub-index too large", "[2000]\nObjectType=9\n[2000sub100]\n",
        "line 3, [2000sub100]: the sub-index is no number from 0 to FF");
    row("sub-index with sign", "[2000]\nObjectType=9\n[2000sub-1]\n",
        "line 3, [2000sub-1]: the sub-index is no number from 0 to FF");
    row("sub-index twice", "[2000]\nObjectType=9\n[2000sub1]\nDataType=5\nAccessType=ro\n[2000sub01]\n",
        "line 6, [2000sub01]: the sub-index is there twice, first in line 3");
    row("sub-index without object", "[1018sub1]\nDataType=5\nAccessType=ro\n",
        "line 1, [1018sub1]: there is no section [1018]");
    row("sub-index of a variable", variable("5", "[2000sub1]\nDataType=5\nAccessType=ro"),
        "line 6, [2000sub1]: object 2000 is neither an array nor a record");
    row("type of a sub-index", "[1018]\nObjectType=9\n[1018sub1]\nDataType=0x99\nAccessType=ro\n",
        "line 4, [1018sub1] DataType: 0x99 is no data type of CiA 301");
    row("record without sub-indices", "[1018]\nObjectType=9\nSubNumber=5\n",
        "line 3, [1018] SubNumber: there is no section [1018sub0]");
    row("SubNumber too large", "[1018]\nObjectType=9\nSubNumber=4000000000\n",
        "line 3, [1018] SubNumber: 4000000000 is no number of sub-indices from 0 to 255");
    row("CompactSubObj too large",
        "[2100]\nObjectType=8\nDataType=5\nAccessType=ro\nCompactSubObj=4294967295\n",
        "line 5, [2100] CompactSubObj: 4294967295 is no number of sub-indices from 0 to 254");
    row("value of a compact array",
        "[2100]\nObjectType=8\nDataType=5\nAccessType=ro\nCompactSubObj=2\n[2100Value]\n2=999\n",
        "line 7, [2100Value] 2: 999 is no value of type UNSIGNED8");
    row("listed and not there", variable("5", "[OptionalObjects]\nSupportedObjects=1\n1=0x6000"),
        "line 8, [OptionalObjects] 1: object 6000 has no section");
    row("list of nonsense", variable("5", "[OptionalObjects]\n1=many"),
        "line 7, [OptionalObjects] 1: many is no index of an object");
    row("text before a section", "DataType=5\n", "line 1: there is text before the first section");
    row("empty", "", "the file describes no object");
    row("control characters in a value", variable("5", "DefaultValue=\x1b[31m\xc2\x9b"),
        "line 6, [2000] DefaultValue: \\u001B[31m\\u009B is no value of type UNSIGNED8");
    row("control characters in a key", variable("5", "[OptionalObjects]\n1=\x1b]0;x\x07"),
        "line 7, [OptionalObjects] 1: \\u001B]0;x\\u0007 is no index of an object");
    row("control characters in a section", "[2000]\nObjectType=9\n[2000sub\x1b[2J]\n",
        "line 3, [2000sub\\u001B[2J]: the sub-index is no number from 0 to FF");
    row("NUL byte", QByteArray("[2000]\nData\0Type=5\n", 18),
        "line 2: there is a NUL byte; this is no text file");
}

void tst_EdsFile::errors()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!parseEds(text, 0, &error).has_value());
    QCOMPARE(error, message);
    QVERIFY(!parseEds(text, 0, nullptr).has_value());
}

void tst_EdsFile::hostileFiles_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");

    QTest::newRow("long value") << variable("5", "DefaultValue=" + QByteArray(60000, '9'))
                                << QString(QStringLiteral("line 6, [2000] DefaultValue: ")
                                           + QString(200, QLatin1Char('9')) + QStringLiteral("..."));
    QTest::newRow("huge promise") << variable("5",
                                              "[OptionalObjects]\nSupportedObjects=4294967295\n1=0x70000")
                                  << QStringLiteral(
                                         "line 8, [OptionalObjects] 1: 0x70000 is no index of an object");
}

void tst_EdsFile::hostileFiles()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!parseEds(text, 0, &error).has_value());
    QCOMPARE(error, message);
}

void tst_EdsFile::readsFromDisk()
{
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = folder.filePath(QStringLiteral("device.dcf"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(wholeFile);
    out.close();
    QString error;
    QVERIFY2(readEdsFile(path, 0, &error).has_value(), qPrintable(error));

    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write("[2000]\nDataType=0x99\n");
    out.close();
    QVERIFY(!readEdsFile(path, 0, &error).has_value());
    QCOMPARE(error, path + QStringLiteral(": line 2, [2000] DataType: 0x99 is no data type of CiA 301"));
}

void tst_EdsFile::missingFileIsNamed()
{
    QString error;
    QVERIFY(!readEdsFile(QStringLiteral("/nowhere/device.dcf"), 0, &error).has_value());
    QVERIFY2(error.startsWith(QStringLiteral("/nowhere/device.dcf: ")), qPrintable(error));
    QVERIFY(error.size() > 25);
}

void tst_EdsFile::mutatedFilesNeverCrash()
{
    const QByteArray compact
        = "[2100]\nParameterName=Cell\nObjectType=8\nDataType=6\nAccessType=ro\n"
          "DefaultValue=3600\nLowLimit=0\nHighLimit=0x7fff\nCompactSubObj=3\n"
          "[2100Name]\nNrOfEntries=1\n2=Middle\n[2100Value]\nNrOfEntries=1\n2=$NODEID+1\n";
    const QByteArray original = QByteArray(wholeFile) + compact;
    static const QByteArrayList snippets = {"[",
                                            "]",
                                            "=",
                                            "\n",
                                            "\r",
                                            QByteArray(1, '\0'),
                                            "sub",
                                            "$NODEID",
                                            "0x",
                                            "-",
                                            "+",
                                            ";",
                                            "FFFFFFFFFFFFFFFFFF",
                                            "4294967295",
                                            "\xEF\xBB\xBF",
                                            "\xFF",
                                            "[1018sub",
                                            "CompactSubObj=254\n",
                                            "[FFFF]\n",
                                            "ObjectType=8\n",
                                            "DataType=0x11\n"};
    std::mt19937 random(306);
    int accepted = 0;
    int refused = 0;
    for (int round = 0; round < 20000; ++round) {
        QByteArray text = original;
        const int changes = 1 + static_cast<int>(random() % 6);
        for (int change = 0; change < changes && !text.isEmpty(); ++change) {
            const int place = static_cast<int>(random() % unsigned(text.size()));
            switch (random() % 5) {
            case 0:
                text[place] = static_cast<char>(random() & 0xFF);
                break;
            case 1:
                text.remove(place, 1 + static_cast<int>(random() % 40));
                break;
            case 2:
                text.insert(place, snippets.at(static_cast<int>(random() % unsigned(snippets.size()))));
                break;
            case 3:
                text.insert(place, text.mid(static_cast<int>(random() % unsigned(text.size())), 60));
                break;
            default:
                text.truncate(place);
                break;
            }
        }
        QString error;
        if (const auto file = parseEds(text, static_cast<quint8>(random() % 128), &error)) {
            ++accepted;
            QVERIFY(!file->dictionary.isEmpty());
        } else {
            ++refused;
            QVERIFY(!error.isEmpty());
            QVERIFY(error.startsWith(QStringLiteral("line "))
                    || error == QStringLiteral("the file describes no object"));
            QVERIFY2(error.size() < 600, qPrintable(error));
        }
    }
    QVERIFY(accepted > 100);
    QVERIFY(refused > 1000);
}

QTEST_GUILESS_MAIN(tst_EdsFile)
#include "tst_edsfile.moc"
