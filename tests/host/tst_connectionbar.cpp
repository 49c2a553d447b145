// SPDX-License-Identifier: MIT
#include <host/connectionbar.h>
#include <tests/support/markingtranslator.h>

#include <QComboBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

class tst_ConnectionBar : public QObject
{
    Q_OBJECT

private slots:
    void bitRateOnlyWhereItApplies();
    void choosesUnknownBackEnd();
    void offersTheUsualBitRates();
    void bitRatesAreTranslated();
    void standsStillAtEveryWidth();
    void growsWithItsTexts();
};

void tst_ConnectionBar::bitRateOnlyWhereItApplies()
{
    ConnectionBar bar;
    BusSettings settings;
    settings.address = {QStringLiteral("virtualcan"), QStringLiteral("can0")};
    settings.bitRate = 125000;
    bar.setSettings(settings);
    QVERIFY(!bar.settings().bitRate);
    QVERIFY(!bar.findChild<QComboBox *>(QStringLiteral("bitRateBox"))->isEnabled());

    settings.address.plugin = QStringLiteral("socketcan");
    bar.setSettings(settings);
    QCOMPARE(bar.settings().bitRate.value_or(0), 125000);
    settings.bitRate = 83333; // none of the usual ones
    bar.setSettings(settings);
    QCOMPARE(bar.settings().bitRate.value_or(0), 83333);
    settings.bitRate.reset();
    bar.setSettings(settings);
    QVERIFY(!bar.settings().bitRate);
}

void tst_ConnectionBar::choosesUnknownBackEnd()
{
    ConnectionBar bar;
    BusSettings settings;
    settings.address = {QStringLiteral("newkindofcan"), QStringLiteral("tcp://host:1/can0")};
    bar.setSettings(settings);
    QCOMPARE(bar.settings().address.toString(), QStringLiteral("newkindofcan:tcp://host:1/can0"));
    bar.refreshInterfaces();
    QCOMPARE(bar.settings().address.interfaceName, QStringLiteral("tcp://host:1/can0"));
}

void tst_ConnectionBar::offersTheUsualBitRates()
{
    const ConnectionBar bar;
    const auto *box = bar.findChild<QComboBox *>(QStringLiteral("bitRateBox"));
    QStringList rates;
    for (int i = 1; i < box->count(); ++i)
        rates.append(box->itemText(i));
    QCOMPARE(rates.join(QLatin1Char('|')),
             QStringLiteral("10 kbit/s|20 kbit/s|50 kbit/s|100 kbit/s|125 kbit/s|250 kbit/s|500 kbit/s|"
                            "800 kbit/s|1000 kbit/s"));
}

// At the width where two rows become one, too: what the decision goes by must not depend on it.
void tst_ConnectionBar::bitRatesAreTranslated()
{
    ConnectionBar bar;
    BusSettings settings;
    settings.address = {QStringLiteral("socketcan"), QStringLiteral("can0")};
    settings.bitRate = 83333; // none of the usual ones
    bar.setSettings(settings);
    const auto *box = bar.findChild<QComboBox *>(QStringLiteral("bitRateBox"));
    QCOMPARE(box->currentText(), QStringLiteral("83333 bit/s"));
    const MarkingTranslator language;
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&bar, &change);
    QCOMPARE(box->itemText(0), QStringLiteral("[ConnectionBar:as configured]"));
    QCOMPARE(box->itemText(1), QStringLiteral("[ConnectionBar:10 kbit/s]"));
    QCOMPARE(box->currentText(), QStringLiteral("[ConnectionBar:83333 bit/s]"));
    QCOMPARE(bar.settings().bitRate.value_or(0), 83333);
}

void tst_ConnectionBar::standsStillAtEveryWidth()
{
    QWidget page;
    ConnectionBar bar(&page);
    QWidget rest(&page);
    rest.setMinimumHeight(120);
    QVBoxLayout layout(&page);
    layout.setContentsMargins(0, 0, 0, 0);
    layout.addWidget(&bar);
    layout.addWidget(&rest, 1);
    page.show();
    const auto *button = bar.findChild<QPushButton *>(QStringLiteral("connectButton"));
    const auto *plugin = bar.findChild<QComboBox *>(QStringLiteral("pluginBox"));
    const auto rows = [&] { return button->geometry().top() > plugin->geometry().bottom() ? 2 : 1; };
    int changes = 0;
    int last = 2;
    for (int width = bar.minimumSizeHint().width(); width < 900; ++width) {
        page.resize(width, 200);
        QCoreApplication::processEvents();
        const int first = rows();
        page.resize(width, 210);
        QCoreApplication::processEvents();
        QVERIFY2(rows() == first, qPrintable(QString::number(width)));
        QVERIFY2(button->height() >= button->minimumSizeHint().height(), qPrintable(QString::number(width)));
        changes += first != last ? 1 : 0;
        last = first;
    }
    QCOMPARE(last, 1);
    QCOMPARE(changes, 1);
}

void tst_ConnectionBar::growsWithItsTexts()
{
    QWidget page;
    ConnectionBar bar(&page);
    page.show();
    auto *button = bar.findChild<QPushButton *>(QStringLiteral("connectButton"));
    const auto *plugin = bar.findChild<QComboBox *>(QStringLiteral("pluginBox"));
    const auto rows = [&] {
        QCoreApplication::processEvents();
        return button->geometry().top() > plugin->geometry().bottom() ? 2 : 1;
    };
    int width = bar.minimumSizeHint().width();
    do
        bar.resize(++width, 100);
    while (rows() == 2);
    QVERIFY(width > bar.minimumSizeHint().width() + 10);
    button->setText(QStringLiteral("Disconnect from this bus at once"));
    QCOMPARE(rows(), 2);
    button->setText(QStringLiteral("Go"));
    QCOMPARE(rows(), 1);
}

QTEST_MAIN(tst_ConnectionBar)
#include "tst_connectionbar.moc"
