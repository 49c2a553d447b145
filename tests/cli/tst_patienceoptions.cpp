// SPDX-License-Identifier: MIT
#include <canopen/sdoclient.h>
#include <cli/core/commandarguments.h>
#include <cli/core/patienceoptions.h>

#include <QCanBusFrame>
#include <QtTest>

using namespace std::chrono_literals;

/*! How long the options let a node be waited for. */
class tst_PatienceOptions : public QObject
{
    Q_OBJECT

private slots:
    void silentNodeIsAskedAsOftenAsWanted_data();
    void silentNodeIsAskedAsOftenAsWanted();
};

namespace {

constexpr char requestToRead = 0x40;

/*! How often a client with \a patience asks a node that never answers. */
int requestsToASilentNode(const CanOpen::SdoPatience &patience)
{
    int requests = 0;
    auto now = 0ms;
    CanOpen::SdoClient client(
        [&requests](const QCanBusFrame &frame) {
            requests += frame.payload().at(0) == requestToRead ? 1 : 0;
            return CanOpen::Sending::Written;
        },
        [&now] { return now; });
    client.setDefaultPatience(patience);
    client.upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    for (auto next = client.nextDeadline(); next; next = client.nextDeadline()) {
        now = *next;
        client.checkDeadlines();
    }
    return requests;
}

} // namespace

void tst_PatienceOptions::silentNodeIsAskedAsOftenAsWanted_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("requests");
    const auto row = [](const char *arguments, int requests) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                 << requests;
    };
    row("", 3);
    row("--retries 0", 1);
    row("--retries 5", 6);
    row("--retries 8", 9);
    row("--retries 12", 13);
    row("--retries 100", 101);
    row("--timeout 60000", 3);
    row("--timeout 60000 --retries 100", 101);
    row("--timeout 5000 --retries 5", 6);
}

void tst_PatienceOptions::silentNodeIsAskedAsOftenAsWanted()
{
    QFETCH(QStringList, arguments);
    CommandArguments options(QStringLiteral("get"), QString());
    PatienceOptions::add(options);
    QVERIFY(!options.parse(QStringList{QStringLiteral("draxelctl"), QStringLiteral("get")} + arguments));
    CanOpen::SdoPatience patience;
    QVERIFY(!PatienceOptions::parse(options, &patience));
    QTEST(requestsToASilentNode(patience), "requests");
}

QTEST_GUILESS_MAIN(tst_PatienceOptions)
#include "tst_patienceoptions.moc"
