// SPDX-License-Identifier: MIT
#include <host/messagelog.h>
#include <host/messagepanel.h>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>
#include <QtTest>

namespace {

using Severity = MessageLog::Severity;

QStringList lines(const MessageLog &log)
{
    return log.toText().split(QLatin1Char('\n'));
}

} // namespace

class tst_MessageLog : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_now = QDateTime(QDate(2024, 2, 29), QTime(7, 5, 9)); }

    void keepsMessagesWithTime();
    void countsRepetitions();
    void countsAlternatingMessages();
    void laterRepetitionIsANewMessage();
    void severityDistinguishes();
    void isBounded();
    void clears();
    void copies();
    void panelShowsTheNewest();

private:
    void prepare(MessageLog *log)
    {
        log->setClock([this] { return m_now; });
    }

    QDateTime m_now;
};

void tst_MessageLog::keepsMessagesWithTime()
{
    MessageLog log;
    prepare(&log);
    QAbstractItemModelTester tester(&log, QAbstractItemModelTester::FailureReportingMode::QtTest);
    log.add(Severity::Information, QStringLiteral("one"));
    m_now = m_now.addSecs(1);
    log.add(Severity::Warning, QStringLiteral("two <b>"));
    QCOMPARE(log.toText(), QStringLiteral("07:05:09  one\n07:05:10  two <b>"));
    QCOMPARE(log.index(1, 0).data().toString(), QStringLiteral("07:05:10"));
    QCOMPARE(log.index(1, 1).data().toString(), QStringLiteral("two <b>"));
    QCOMPARE(log.index(1, 0).data(Qt::ToolTipRole).toString(), QStringLiteral("2024-02-29 07:05:10"));
}

void tst_MessageLog::countsRepetitions()
{
    MessageLog log;
    prepare(&log);
    for (int i = 0; i < 3; ++i) {
        log.add(Severity::Information, QStringLiteral("same %1"));
        m_now = m_now.addSecs(1);
    }
    QCOMPARE(log.toText(), QStringLiteral("07:05:11  same %1 (3 times)"));
}

void tst_MessageLog::countsAlternatingMessages()
{
    MessageLog log;
    prepare(&log);
    QAbstractItemModelTester tester(&log, QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (int i = 0; i < 500; ++i) {
        log.add(Severity::Information, QStringLiteral("starts"));
        log.add(Severity::Information, QStringLiteral("runs"));
    }
    log.add(Severity::Information, QStringLiteral("starts"));
    QCOMPARE(lines(log), (QStringList{QStringLiteral("07:05:09  runs (500 times)"),
                                      QStringLiteral("07:05:09  starts (501 times)")}));
}

void tst_MessageLog::laterRepetitionIsANewMessage()
{
    MessageLog log;
    prepare(&log);
    log.add(Severity::Information, QStringLiteral("same"));
    m_now = m_now.addSecs(11);
    log.add(Severity::Information, QStringLiteral("same"));
    QCOMPARE(lines(log), (QStringList{QStringLiteral("07:05:09  same"), QStringLiteral("07:05:20  same")}));
}

void tst_MessageLog::severityDistinguishes()
{
    MessageLog log;
    prepare(&log);
    log.add(Severity::Information, QStringLiteral("same"));
    log.add(Severity::Error, QStringLiteral("same"));
    QCOMPARE(log.rowCount(), 2);
}

void tst_MessageLog::isBounded()
{
    MessageLog log;
    prepare(&log);
    for (int i = 0; i < 1500; ++i)
        log.add(Severity::Information, QString::number(i));
    QCOMPARE(log.rowCount(), 1000);
    QCOMPARE(log.index(0, 1).data().toString(), QStringLiteral("500"));
    QCOMPARE(log.index(999, 1).data().toString(), QStringLiteral("1499"));
}

void tst_MessageLog::clears()
{
    MessageLog log;
    log.add(Severity::Information, QStringLiteral("one"));
    MessagePanel panel(&log);
    panel.findChild<QToolButton *>(QStringLiteral("clearMessagesButton"))->click();
    QCOMPARE(log.rowCount(), 0);
    QCOMPARE(log.toText(), QString());
}

void tst_MessageLog::copies()
{
    MessageLog log;
    prepare(&log);
    MessagePanel panel(&log);
    for (const char *text : {"one", "two", "three"})
        log.add(Severity::Information, QLatin1String(text));
    panel.findChild<QToolButton *>(QStringLiteral("copyMessagesButton"))->click();
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QStringLiteral("07:05:09  one\n07:05:09  two\n07:05:09  three"));
    auto *view = panel.findChild<QTableView *>(QStringLiteral("messageView"));
    view->selectRow(1);
    QTest::keySequence(view, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("07:05:09  two"));
}

void tst_MessageLog::panelShowsTheNewest()
{
    MessageLog log;
    MessagePanel panel(&log);
    panel.resize(400, 100);
    panel.show();
    for (int i = 0; i < 50; ++i)
        log.add(Severity::Information, QString::number(i));
    const auto *view = panel.findChild<QTableView *>(QStringLiteral("messageView"));
    QTRY_COMPARE(view->rowAt(view->viewport()->height() - 5), 49);
    for (int i = 0; i < 3; ++i)
        log.add(Severity::Warning,
                QStringLiteral("A long message that needs more than one line. ").repeated(4));
    log.add(Severity::Information, QStringLiteral("end"));
    QTRY_COMPARE(view->rowAt(view->viewport()->height() - 5), log.rowCount() - 1);

    // Whoever reads older ones is left there.
    view->verticalScrollBar()->setValue(0);
    log.add(Severity::Information, QStringLiteral("more"));
    QTRY_VERIFY(!panel.findChild<QTableView *>()->visualRect(log.index(0, 0)).isEmpty());
    QCOMPARE(view->verticalScrollBar()->value(), 0);
}

QTEST_MAIN(tst_MessageLog)
#include "tst_messagelog.moc"
