// SPDX-License-Identifier: MIT
#include <bundle/zipfile.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

namespace {

QVector<ZipFile::Entry> someEntries()
{
    return {{QStringLiteral("a.txt"), QByteArrayLiteral("hello")},
            {QStringLiteral("b.gz"), QByteArray(1000, 'b'), true},
            {QStringLiteral("empty"), QByteArray()}};
}

QByteArray packed(const QVector<ZipFile::Entry> &entries)
{
    QString error;
    const QByteArray bytes = ZipFile::pack(entries, &error);
    if (bytes.isEmpty())
        qFatal("%s", qPrintable(error));
    return bytes;
}

/*! What is said of it; "good" when nothing is. */
QString problemOf(const QByteArray &bytes, const ZipFile::Limits &limits = {})
{
    QString problem;
    return ZipFile::unpack(bytes, limits, &problem) ? QStringLiteral("good") : problem;
}

/*! Both places in which a zip names a file, by another name of the same length. */
QByteArray renamed(QByteArray zip, const QByteArray &from, const QByteArray &to)
{
    return zip.replace(from, to);
}

} // namespace

/*! Several files in one, and what hostile ones come to. */
class tst_ZipFile : public QObject
{
    Q_OBJECT

private slots:
    void comesBack();
    void packedOnesAreStored();
    void otherProgramsReadIt();
    void recognised();
    void tellsWhatIsWrong_data();
    void tellsWhatIsWrong();
    void everyCutIsFound();
    void everyChangedByteIsHarmless();
    void bombIsRefused();
    void lyingSizeIsRefused();
    void tooManyFiles();
    void tooLargeInAll();
    void encrypted();
};

void tst_ZipFile::comesBack()
{
    QString problem;
    const auto entries = ZipFile::unpack(packed(someEntries()), ZipFile::Limits(), &problem);
    QVERIFY2(entries, qPrintable(problem));
    QCOMPARE(entries->size(), 3);
    QCOMPARE(entries->at(0).name, QStringLiteral("a.txt"));
    QCOMPARE(entries->at(0).bytes, QByteArrayLiteral("hello"));
    QCOMPARE(entries->at(1).bytes, QByteArray(1000, 'b'));
    QCOMPARE(entries->at(2).name, QStringLiteral("empty"));
    QCOMPARE(entries->at(2).bytes, QByteArray());
}

void tst_ZipFile::packedOnesAreStored()
{
    const QByteArray zip = packed(someEntries());
    QVERIFY(zip.contains(QByteArray(1000, 'b')));
    QVector<ZipFile::Entry> entries = someEntries();
    entries[1].isPacked = false;
    QVERIFY(packed(entries).size() < 600);
}

void tst_ZipFile::otherProgramsReadIt()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("x.zip")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(packed(someEntries()));
    file.close();
    QProcess python;
    python.start(QStringLiteral("python3"),
                 {QStringLiteral("-c"),
                  QStringLiteral("import sys, zipfile\nz = zipfile.ZipFile(sys.argv[1])\n"
                                 "assert z.testzip() is None\nprint(z.namelist(), z.read('a.txt'))"),
                  file.fileName()});
    QVERIFY(python.waitForFinished());
    QCOMPARE(QString::fromUtf8(python.readAllStandardOutput()),
             QStringLiteral("['a.txt', 'b.gz', 'empty'] b'hello'\n"));
}

void tst_ZipFile::recognised()
{
    QVERIFY(ZipFile::isZip(packed(someEntries())));
    QVERIFY(!ZipFile::isZip("PK"));
    QVERIFY(!ZipFile::isZip(""));
    QVERIFY(!ZipFile::isZip("{\"format\":"));
}

void tst_ZipFile::tellsWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("problem");
    const QByteArray zip = packed(someEntries());
    const QString outside = QStringLiteral("it holds a file in a folder, or of a name that none may have");
    QTest::newRow("good") << zip << QStringLiteral("good");
    QTest::newRow("nothing") << QByteArray() << QStringLiteral("it is no zip file");
    QTest::newRow("a text") << QByteArray(1000, 'x') << QStringLiteral("it is no zip file");
    QTest::newRow("the folder above") << renamed(zip, "a.txt", "../ab") << outside;
    QTest::newRow("absolute") << renamed(zip, "a.txt", "/a.tx") << outside;
    QTest::newRow("as Windows does") << renamed(zip, "a.txt", "..\\ab") << outside;
    QTest::newRow("hidden") << renamed(zip, "a.txt", ".a.tx") << outside;
    QTest::newRow("twice there") << renamed(zip, "empty", "a.txt")
                                 << QStringLiteral("it holds two files of the same name");
    QTest::newRow("wrong checksum") << renamed(zip, QByteArray(1000, 'b'), QByteArray(1000, 'c'))
                                    << QStringLiteral("the file b.gz in it is damaged");
}

void tst_ZipFile::tellsWhatIsWrong()
{
    QFETCH(QByteArray, bytes);
    QTEST(problemOf(bytes), "problem");
}

void tst_ZipFile::everyCutIsFound()
{
    const QByteArray zip = packed(someEntries());
    for (int size = 0; size < zip.size(); ++size)
        QVERIFY2(problemOf(zip.left(size)).startsWith(QLatin1String("it is ")),
                 qPrintable(QString::number(size)));
}

/*! What comes out is what went in, or nothing. */
void tst_ZipFile::everyChangedByteIsHarmless()
{
    const QByteArray zip = packed(someEntries());
    for (int place = 0; place < zip.size(); ++place) {
        QByteArray changed = zip;
        changed[place] = static_cast<char>(changed.at(place) ^ 0x41);
        QString problem;
        const auto entries = ZipFile::unpack(changed, ZipFile::Limits(), &problem);
        QVERIFY(entries || !problem.isEmpty());
        QVERIFY(!entries || entries->size() <= 3);
    }
}

void tst_ZipFile::bombIsRefused()
{
    const QByteArray zip = packed({{QStringLiteral("bomb"), QByteArray(50'000'000, '\0')}});
    QVERIFY(zip.size() < 60000);
    ZipFile::Limits limits;
    limits.file = 1'000'000;
    QCOMPARE(problemOf(zip, limits), QStringLiteral("the file bomb in it is far too large"));
}

/*! Says 1000 bytes, and holds millions. */
void tst_ZipFile::lyingSizeIsRefused()
{
    const int size = 50'000'000;
    QByteArray zip = packed({{QStringLiteral("bomb"), QByteArray(size, '\0')}});
    const auto bytesOf = [](quint32 number) {
        QByteArray bytes(4, '\0');
        qToLittleEndian(number, bytes.data());
        return bytes;
    };
    QVERIFY(zip.contains(bytesOf(size)));
    zip.replace(bytesOf(size), bytesOf(1000));
    ZipFile::Limits limits;
    limits.file = 1'000'000;
    QCOMPARE(problemOf(zip, limits), QStringLiteral("the file bomb in it is damaged"));
}

void tst_ZipFile::tooManyFiles()
{
    QVector<ZipFile::Entry> entries;
    for (int i = 0; i < 64; ++i)
        entries.append({QString::number(i), QByteArrayLiteral("x")});
    QCOMPARE(problemOf(packed(entries)), QStringLiteral("good"));
    entries.append({QStringLiteral("one more"), QByteArrayLiteral("x")});
    QCOMPARE(problemOf(packed(entries)), QStringLiteral("it holds too many files"));
}

void tst_ZipFile::tooLargeInAll()
{
    ZipFile::Limits limits;
    limits.total = 1005;
    QCOMPARE(problemOf(packed(someEntries()), limits), QStringLiteral("good"));
    limits.total = 1004;
    QCOMPARE(problemOf(packed(someEntries()), limits),
             QStringLiteral("the file b.gz in it is far too large"));
}

/*! The bit of the old encryption, in both places. */
void tst_ZipFile::encrypted()
{
    QByteArray zip = packed({{QStringLiteral("a.txt"), QByteArrayLiteral("hello"), true}});
    constexpr int localFlags = 6;
    constexpr int centralFlags = 8;
    const int central = zip.indexOf("PK\x01\x02");
    zip[localFlags] = static_cast<char>(zip.at(localFlags) | 1);
    zip[central + centralFlags] = static_cast<char>(zip.at(central + centralFlags) | 1);
    QCOMPARE(problemOf(zip), QStringLiteral("it is encrypted"));
}

QTEST_GUILESS_MAIN(tst_ZipFile)
#include "tst_zipfile.moc"
