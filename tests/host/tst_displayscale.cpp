// SPDX-License-Identifier: MIT
#include <host/displayscale.h>

#include <QApplication>
#include <QProcess>
#include <QtTest>

#include <cstdio>

namespace {

constexpr char dpiVariable[] = "QT_FONT_DPI"; // Qt looks at it once
constexpr char tellVariable[] = "TELL_THE_SCALE";

/*! What a program of its own has of a display. */
int tell(int argc, char *argv[])
{
    const auto application = DisplayScale::makeApplication(argc, argv);
    QStringList words{QString::number(application->devicePixelRatio()), QGuiApplication::platformName()};
    words += QCoreApplication::arguments().mid(1);
    std::puts(qPrintable(words.join(QLatin1Char(' '))));
    return 0;
}

QByteArray told(const QByteArray &dpi, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(dpiVariable), QString::fromLatin1(dpi));
    environment.insert(QLatin1String(tellVariable), QStringLiteral("1"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished(-1))
        return process.errorString().toUtf8();
    return process.readAllStandardOutput();
}

} // namespace

class tst_DisplayScale : public QObject
{
    Q_OBJECT

private slots:
    void factorsNearOne_data();
    void factorsNearOne();
    void factorOfADisplay_data();
    void factorOfADisplay();
    void argumentsOfQtCount();
};

void tst_DisplayScale::factorsNearOne_data()
{
    QTest::addColumn<qreal>("factor");
    QTest::addColumn<bool>("isNear");
    QTest::newRow("1") << 1.0 << true;
    QTest::newRow("92 dpi") << 92.0 / 96 << true;
    QTest::newRow("91 dpi") << 91.0 / 96 << false;
    QTest::newRow("93 dpi") << 93.0 / 96 << true;
    QTest::newRow("100 dpi") << 100.0 / 96 << true;
    QTest::newRow("102 dpi") << 102.0 / 96 << false;
    QTest::newRow("125 %") << 1.25 << false;
    QTest::newRow("150 %") << 1.5 << false;
    QTest::newRow("175 %") << 1.75 << false;
    QTest::newRow("200 %") << 2.0 << false;
    QTest::newRow("nearly nothing") << 0.04 << false;
}

void tst_DisplayScale::factorsNearOne()
{
    QFETCH(qreal, factor);
    QFETCH(bool, isNear);
    QCOMPARE(DisplayScale::isNearOne(factor), isNear);
}

void tst_DisplayScale::factorOfADisplay_data()
{
    QTest::addColumn<QByteArray>("dpi");
    QTest::addColumn<QByteArray>("factor");
    QTest::newRow("usual") << QByteArray("96") << QByteArray("1");
    QTest::newRow("a little more") << QByteArray("100") << QByteArray("1");
    QTest::newRow("125 %") << QByteArray("120") << QByteArray("1.25");
    QTest::newRow("150 %") << QByteArray("144") << QByteArray("1.5");
    QTest::newRow("200 %") << QByteArray("192") << QByteArray("2");
    QTest::newRow("a little more than 200 %") << QByteArray("200") << QByteArray("2.08333");
}

void tst_DisplayScale::factorOfADisplay()
{
    QFETCH(QByteArray, dpi);
    QFETCH(QByteArray, factor);
    QCOMPARE(told(dpi, {QStringLiteral("file")}), factor + " offscreen file\n");
}

/*! Those that Qt takes for itself, also when the display is looked at before. */
void tst_DisplayScale::argumentsOfQtCount()
{
    QCOMPARE(told("100", {QStringLiteral("-platform"), QStringLiteral("minimal"), QStringLiteral("file")}),
             QByteArray("1 minimal file\n"));
}

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsSet(tellVariable))
        return tell(argc, argv);
    QCoreApplication application(argc, argv);
    tst_DisplayScale test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_displayscale.moc"
