// SPDX-License-Identifier: MIT
#include <host/consolelog.h>

#include <QDebug>
#include <QLoggingCategory>
#include <QtTest>

namespace {

Q_LOGGING_CATEGORY(testLog, "draxel.test", QtDebugMsg)

QStringList printed;

void print(QtMsgType, const QMessageLogContext &, const QString &text)
{
    printed.append(text);
}

} // namespace

class tst_ConsoleLog : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        printed.clear();
        qunsetenv("QT_LOGGING_RULES");
        m_previous = qInstallMessageHandler(print);
    }
    void cleanup() { qInstallMessageHandler(m_previous); }

    void plainDebugLinesAreKeptOff();
    void verboseLetsThemPass();
    void rulesLetThemPass();

private:
    QtMessageHandler m_previous = nullptr;
};

void tst_ConsoleLog::plainDebugLinesAreKeptOff()
{
    installConsoleLog(false);
    installConsoleLog(false); // twice is once
    qDebug() << "sub0 value = 3";
    qWarning("a warning");
    qInfo("news");
    qCDebug(testLog, "of a category");
    QCOMPARE(printed, (QStringList{QStringLiteral("a warning"), QStringLiteral("news"),
                                   QStringLiteral("of a category")}));
}

void tst_ConsoleLog::verboseLetsThemPass()
{
    installConsoleLog(true);
    qDebug("sub0 value = 3");
    QCOMPARE(printed, QStringList(QStringLiteral("sub0 value = 3")));
}

void tst_ConsoleLog::rulesLetThemPass()
{
    qputenv("QT_LOGGING_RULES", "*.debug=true");
    installConsoleLog(false);
    qDebug("sub0 value = 3");
    QCOMPARE(printed, QStringList(QStringLiteral("sub0 value = 3")));
}

QTEST_GUILESS_MAIN(tst_ConsoleLog)
#include "tst_consolelog.moc"
