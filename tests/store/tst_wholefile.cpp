// SPDX-License-Identifier: MIT
#include <tests/support/filesizelimit.h>

#include <store/exchangefile.h>
#include <store/wholefile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

bool write(const QString &name, const QByteArray &content)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QStringList everythingIn(const QTemporaryDir &folder)
{
    return QDir(folder.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

class tst_WholeFile : public QObject
{
    Q_OBJECT

private slots:
    void appearsAtTheEnd();
    void replacesTheOldFileAtTheEnd();
    void isGoneWithoutACommit();
    void longNamesHaveRoom();
    void permissionsStay();
    void linkIsFollowed();
    void linkToNothingIsFollowed();
    void fullDiskIsNamed_data();
    void fullDiskIsNamed();
    void fullDeviceIsNamed();
    void pipeIsWrittenToAndNotReplaced();
    void missingFolderIsNamed();
    void folderInTheWayIsNamed();
};

void tst_WholeFile::appearsAtTheEnd()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("file"));
    WholeFile file(name);
    QVERIFY(file.open());
    QVERIFY(file.write("content"));
#ifdef Q_OS_LINUX
    // Not even under another name: nothing is left when the process is killed now.
    QCOMPARE(everythingIn(folder), QStringList());
#endif
    QVERIFY2(file.commit(), qPrintable(file.errorString()));
    QCOMPARE(everythingIn(folder), QStringList{QStringLiteral("file")});
    QCOMPARE(contentOf(name), QByteArray("content"));
}

void tst_WholeFile::replacesTheOldFileAtTheEnd()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("file"));
    QVERIFY(write(name, "the old one, which is longer"));
    WholeFile file(name);
    QVERIFY(file.open());
    QVERIFY(file.write("content"));
    QCOMPARE(contentOf(name), QByteArray("the old one, which is longer"));
    QVERIFY2(file.commit(), qPrintable(file.errorString()));
    QCOMPARE(everythingIn(folder), QStringList{QStringLiteral("file")});
    QCOMPARE(contentOf(name), QByteArray("content"));
}

void tst_WholeFile::isGoneWithoutACommit()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("file"));
    QVERIFY(write(name, "old"));
    {
        WholeFile file(name);
        QVERIFY(file.open());
        QVERIFY(file.write("content"));
    }
    QCOMPARE(everythingIn(folder), QStringList{QStringLiteral("file")});
    QCOMPARE(contentOf(name), QByteArray("old"));
}

void tst_WholeFile::longNamesHaveRoom()
{
#ifdef Q_OS_LINUX
    const QTemporaryDir folder;
    const QString name = folder.filePath(QString(255, QLatin1Char('v')));
    for (const QByteArray &content : {QByteArray("first"), QByteArray("second")}) {
        WholeFile file(name);
        QVERIFY(file.open());
        QVERIFY(file.write(content));
        QVERIFY2(file.commit(), qPrintable(file.errorString()));
        QCOMPARE(contentOf(name), content);
    }
#else
    QSKIP("This system has no files without a name: that of the file beside it would be too long");
#endif
}

void tst_WholeFile::permissionsStay()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const QByteArray name = QFile::encodeName(folder.filePath(QStringLiteral("file")));
    QVERIFY(write(QFile::decodeName(name), "old"));
    QCOMPARE(chmod(name.constData(), 0640), 0);
    const mode_t mask = umask(0022);
    for (const char *file : {"file", "new"}) {
        WholeFile whole(folder.filePath(QLatin1String(file)));
        QVERIFY(whole.open() && whole.commit());
    }
    umask(mask);
    struct stat status = {};
    QCOMPARE(stat(name.constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0640);
    QCOMPARE(stat(QFile::encodeName(folder.filePath(QStringLiteral("new"))).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0644);
#else
    QSKIP("This system has no permissions of owner, group and others");
#endif
}

void tst_WholeFile::linkIsFollowed()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("elsewhere")));
    const QString target = folder.filePath(QStringLiteral("elsewhere/file"));
    QVERIFY(write(target, "old"));
    QVERIFY(QFile::link(QStringLiteral("elsewhere/file"), folder.filePath(QStringLiteral("second"))));
    QVERIFY(QFile::link(QStringLiteral("second"), folder.filePath(QStringLiteral("first"))));
    WholeFile file(folder.filePath(QStringLiteral("first")));
    QVERIFY(file.open());
    QVERIFY(file.write("new"));
    QVERIFY2(file.commit(), qPrintable(file.errorString()));
    QCOMPARE(contentOf(target), QByteArray("new"));
    QVERIFY(QFileInfo(folder.filePath(QStringLiteral("first"))).isSymLink());
    QCOMPARE(everythingIn(folder),
             (QStringList{QStringLiteral("elsewhere"), QStringLiteral("first"), QStringLiteral("second")}));
#else
    QSKIP("This system has no symbolic links");
#endif
}

void tst_WholeFile::linkToNothingIsFollowed()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    QVERIFY(QFile::link(QStringLiteral("target"), folder.filePath(QStringLiteral("link"))));
    WholeFile file(folder.filePath(QStringLiteral("link")));
    QVERIFY(file.open());
    QVERIFY(file.write("new"));
    QVERIFY2(file.commit(), qPrintable(file.errorString()));
    QCOMPARE(contentOf(folder.filePath(QStringLiteral("target"))), QByteArray("new"));
    QVERIFY(QFileInfo(folder.filePath(QStringLiteral("link"))).isSymLink());
#else
    QSKIP("This system has no symbolic links");
#endif
}

void tst_WholeFile::fullDiskIsNamed_data()
{
    QTest::addColumn<int>("length"); // of a text on a disk with room for 16 kB
    QTest::newRow("noticed at the end") << 16385;
    QTest::newRow("noticed while writing") << 1000000;
}

void tst_WholeFile::fullDiskIsNamed()
{
#ifdef Q_OS_UNIX
    QFETCH(int, length);
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("vehicle.dxxml"));
    QVERIFY(write(name, "old"));
    QString message;
    bool isSaved = true;
    {
        const FileSizeLimit limit(16384);
        isSaved = saveExchangeFile(name, QString(length, QLatin1Char('x')), &message);
    }
    QVERIFY(!isSaved);
    QCOMPARE(message,
             QStringLiteral("The file %1 cannot be written: the file is too large.").arg(name)); // EFBIG
    QCOMPARE(everythingIn(folder), QStringList{QStringLiteral("vehicle.dxxml")});
    QCOMPARE(contentOf(name), QByteArray("old"));
#else
    QSKIP("This system has no limit for the size of files, which stands for a full disk");
#endif
}

void tst_WholeFile::fullDeviceIsNamed()
{
    const QString name = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(name))
        QSKIP("This system has no /dev/full");
    for (const int length : {10, 1000000}) {
        QString message;
        QVERIFY(!saveExchangeFile(name, QString(length, QLatin1Char('x')), &message));
        QCOMPARE(message, QStringLiteral("The file /dev/full cannot be written: no space is left."));
    }
    QVERIFY(!QFileInfo(name).isFile());
}

void tst_WholeFile::pipeIsWrittenToAndNotReplaced()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("pipe"));
    const QString link = folder.filePath(QStringLiteral("link"));
    QCOMPARE(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    QVERIFY(QFile::link(name, link));
    const int readEnd = open(QFile::encodeName(name).constData(), O_RDWR | O_NONBLOCK);
    QVERIFY(readEnd >= 0);
    QVERIFY(saveExchangeFile(name, QStringLiteral("through the pipe")));
    QVERIFY(saveExchangeFile(link, QStringLiteral(", twice")));
    char bytes[100];
    const ssize_t count = read(readEnd, bytes, sizeof bytes);
    close(readEnd);
    QCOMPARE(QByteArray(bytes, static_cast<int>(count)), QByteArray("through the pipe, twice"));
    QVERIFY(QFileInfo::exists(name));
    QVERIFY(!QFileInfo(name).isFile());
#else
    QSKIP("This system has no named pipes");
#endif
}

void tst_WholeFile::missingFolderIsNamed()
{
    const QTemporaryDir folder;
    WholeFile file(folder.filePath(QStringLiteral("missing/file")));
    QVERIFY(!file.open());
    QCOMPARE(file.errorString(), QStringLiteral("No such file or directory"));
}

void tst_WholeFile::folderInTheWayIsNamed()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("file")));
    WholeFile file(folder.filePath(QStringLiteral("file")));
    QVERIFY(!file.open());
    QCOMPARE(file.errorString(), QStringLiteral("Filename refers to a directory"));
    QCOMPARE(everythingIn(folder), QStringList{QStringLiteral("file")});
}

QTEST_GUILESS_MAIN(tst_WholeFile)
#include "tst_wholefile.moc"
