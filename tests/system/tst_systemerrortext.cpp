// SPDX-License-Identifier: MIT
#include <store/exchangefile.h>
#include <system/systemerrortext.h>

#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <cerrno>

namespace {

/*! A language with one reason. */
class Translator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return qstrcmp(context, "SystemErrorText") == 0 && qstrcmp(sourceText, "no such file or folder") == 0
                   ? QStringLiteral("fehlt")
                   : QString();
    }
};

} // namespace

/*! The system's reasons in the words of the program. */
class tst_SystemErrorText : public QObject
{
    Q_OBJECT

private slots:
    void reasons_data();
    void reasons();
    void otherReasonsStay();
    void sentencesHoldThem();
};

void tst_SystemErrorText::reasons_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");

    QTest::newRow("EPERM") << EPERM << QStringLiteral("not permitted");
    QTest::newRow("ENOENT") << ENOENT << QStringLiteral("no such file or folder");
    QTest::newRow("EIO") << EIO << QStringLiteral("the medium or device failed");
    QTest::newRow("EACCES") << EACCES << QStringLiteral("no permission");
    QTest::newRow("EBUSY") << EBUSY << QStringLiteral("in use by another program");
    QTest::newRow("ENODEV") << ENODEV << QStringLiteral("no such device");
    QTest::newRow("ENOTDIR") << ENOTDIR << QStringLiteral("a part of the path is no folder");
    QTest::newRow("EISDIR") << EISDIR << QStringLiteral("it is a folder");
    QTest::newRow("EFBIG") << EFBIG << QStringLiteral("the file is too large");
    QTest::newRow("ENOSPC") << ENOSPC << QStringLiteral("no space is left");
    QTest::newRow("EROFS") << EROFS << QStringLiteral("the medium is read-only");
    QTest::newRow("ENAMETOOLONG") << ENAMETOOLONG << QStringLiteral("the name is too long");
    QTest::newRow("ENETDOWN") << ENETDOWN << QStringLiteral("the interface is down");
    QTest::newRow("ENOBUFS") << ENOBUFS << QStringLiteral("no buffer is free");
}

void tst_SystemErrorText::reasons()
{
    QFETCH(int, number);
    QTEST(systemErrorText(qt_error_string(number)), "text");
}

void tst_SystemErrorText::otherReasonsStay()
{
    QCOMPARE(systemErrorText(QStringLiteral("the disk burns")), QStringLiteral("the disk burns"));
    QCOMPARE(systemErrorText(QString()), QString());
}

void tst_SystemErrorText::sentencesHoldThem()
{
    const QTemporaryDir folder;
    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString name = folder.filePath(QStringLiteral("gone"));
    QString text;
    QString error;
    QVERIFY(!loadExchangeFile(name, text, &error));
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(error, QStringLiteral("The file %1 cannot be read: fehlt.").arg(name));
}

QTEST_GUILESS_MAIN(tst_SystemErrorText)
#include "tst_systemerrortext.moc"
