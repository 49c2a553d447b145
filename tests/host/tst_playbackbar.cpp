// SPDX-License-Identifier: MIT
#include <tests/support/fakebus.h>

#include <host/playbackbar.h>
#include <trace/playback/playbackstate.h>

#include <QComboBox>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

/*! The bar on a device that tells what a trace would, and keeps what it is told. */
class tst_PlaybackBar : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void hiddenOnOtherBuses();
    void goesWithTheBus();
    void saysWhereItIs_data();
    void saysWhereItIs();
    void pausesAndGoesOn();
    void playsAgain();
    void playsAgainWhatWasPaused();
    void steps();
    void changesTheSpeed();
    void showsASpeedThatIsNotOffered();
    void repeats();
    void givesWayOnSmallScreens();
    void refreshesItself();

private:
    void show(const PlaybackState &state);
    QVariant told(int key) const { return m_fake->device()->configurationParameter(key); }
    QString place() const { return m_bar->findChild<QLabel *>(QStringLiteral("playbackPlace"))->text(); }
    QToolButton *button(const char *name) const
    {
        return m_bar->findChild<QToolButton *>(QLatin1String(name));
    }
    QComboBox *speed() const { return m_bar->findChild<QComboBox *>(QStringLiteral("playbackSpeed")); }

    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<BusConnection> m_bus;
    std::unique_ptr<PlaybackBar> m_bar;
};

namespace {

PlaybackState playing()
{
    PlaybackState state;
    state.played = 1234;
    state.frames = 17000;
    state.time = 3204000;
    return state;
}

} // namespace

void tst_PlaybackBar::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    qputenv("TZ", "UTC");
}

void tst_PlaybackBar::init()
{
    m_fake = std::make_unique<FakeBus>();
    m_bus = std::make_unique<BusConnection>();
    m_bus->setDeviceFactory(m_fake->factory());
    m_bar = std::make_unique<PlaybackBar>(m_bus.get());
    QString error;
    QVERIFY2(m_bus->connectToBus(fakeSettings(), &error), qPrintable(error));
}

void tst_PlaybackBar::cleanup()
{
    m_bar.reset();
    m_bus.reset();
    m_fake.reset();
}

void tst_PlaybackBar::show(const PlaybackState &state)
{
    m_fake->device()->setProperty("playback", state.toMap());
    m_bar->refresh();
}

void tst_PlaybackBar::hiddenOnOtherBuses()
{
    QVERIFY(m_bar->isHidden());
}

void tst_PlaybackBar::goesWithTheBus()
{
    show(playing());
    QVERIFY(!m_bar->isHidden());
    m_bus->disconnectFromBus();
    QVERIFY(m_bar->isHidden());
}

void tst_PlaybackBar::saysWhereItIs_data()
{
    QTest::addColumn<QVariantMap>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    PlaybackState state = playing();
    QTest::newRow("playing") << state.toMap() << QStringLiteral("3.204 s, frame 1234 of 17000")
                             << QStringLiteral("Pause");
    state.isPaused = true;
    QTest::newRow("paused") << state.toMap() << QStringLiteral("Paused at 3.204 s, frame 1234 of 17000")
                            << QStringLiteral("Play");
    state.hasTimeOfDay = true;
    state.isPaused = false;
    state.time = 1600000000500000;
    QTest::newRow("with a day") << state.toMap()
                                << QStringLiteral("2020-09-13 12:26:40.500, frame 1234 of 17000")
                                << QStringLiteral("Pause");
    state.isOver = true;
    QTest::newRow("over") << state.toMap()
                          << QStringLiteral("The trace is over. Play it again to read its devices.")
                          << QStringLiteral("Play again");
}

void tst_PlaybackBar::saysWhereItIs()
{
    QFETCH(QVariantMap, state);
    m_fake->device()->setProperty("playback", state);
    m_bar->refresh();
    QTEST(place(), "text");
    QTEST(button("playButton")->text(), "button");
    QCOMPARE(button("stepButton")->isEnabled(), button("playButton")->text() != QLatin1String("Play again"));
}

void tst_PlaybackBar::pausesAndGoesOn()
{
    show(playing());
    button("playButton")->click();
    QCOMPARE(told(PlaybackState::PauseKey), QVariant(true));
    PlaybackState paused = playing();
    paused.isPaused = true;
    show(paused);
    button("playButton")->click();
    QCOMPARE(told(PlaybackState::PauseKey), QVariant(false));
    QVERIFY(!told(PlaybackState::RestartKey).isValid());
}

void tst_PlaybackBar::playsAgain()
{
    PlaybackState over = playing();
    over.isOver = true;
    show(over);
    button("playButton")->click();
    QVERIFY(told(PlaybackState::RestartKey).isValid());
    QVERIFY(!told(PlaybackState::PauseKey).isValid());
}

void tst_PlaybackBar::playsAgainWhatWasPaused()
{
    PlaybackState over = playing();
    over.isOver = true;
    over.isPaused = true;
    show(over);
    button("playButton")->click();
    QVERIFY(told(PlaybackState::RestartKey).isValid());
    QCOMPARE(told(PlaybackState::PauseKey), QVariant(false));
}

void tst_PlaybackBar::steps()
{
    show(playing());
    button("stepButton")->click();
    QCOMPARE(told(PlaybackState::StepKey), QVariant(1));
}

void tst_PlaybackBar::changesTheSpeed()
{
    show(playing());
    QCOMPARE(speed()->currentText(), QString::fromUtf8("1×"));
    const int index = speed()->findText(QStringLiteral("without pauses"));
    speed()->setCurrentIndex(index);
    emit speed()->activated(index);
    QCOMPARE(told(PlaybackState::SpeedKey), QVariant(0.0));
    PlaybackState faster = playing();
    faster.speed = 10;
    show(faster);
    QCOMPARE(speed()->currentText(), QString::fromUtf8("10×"));
}

void tst_PlaybackBar::showsASpeedThatIsNotOffered()
{
    PlaybackState state = playing();
    state.speed = 3.5;
    show(state);
    QCOMPARE(speed()->currentText(), QString::fromUtf8("3.5×"));
}

void tst_PlaybackBar::givesWayOnSmallScreens()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(m_bar.get());
    show(playing());
    window.resize(1000, 100);
    window.show();
    QCoreApplication::processEvents();
    QCOMPARE(button("playButton")->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);

    window.resize(480, 100);
    QCoreApplication::processEvents();
    QCOMPARE(window.width(), 480);
    for (const char *name : {"playButton", "stepButton", "repeatButton"}) {
        QCOMPARE(button(name)->toolButtonStyle(), Qt::ToolButtonIconOnly);
        QVERIFY(!button(name)->toolTip().isEmpty());
    }
    const auto *text = m_bar->findChild<QLabel *>(QStringLiteral("playbackPlace"));
    QVERIFY2(text->geometry().right() < 480 && text->width() > 100,
             qPrintable(QString::number(text->width())));

    window.resize(1000, 100);
    QCoreApplication::processEvents();
    QCOMPARE(button("repeatButton")->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    m_bar->setParent(nullptr);
}

void tst_PlaybackBar::repeats()
{
    show(playing());
    QVERIFY(!button("repeatButton")->isChecked());
    PlaybackState repeated = playing();
    button("repeatButton")->click();
    QCOMPARE(told(PlaybackState::RepeatKey), QVariant(true));
    repeated.isRepeated = true;
    show(repeated);
    QVERIFY(button("repeatButton")->isChecked());
    button("repeatButton")->click();
    QCOMPARE(told(PlaybackState::RepeatKey), QVariant(false));
}

void tst_PlaybackBar::refreshesItself()
{
    show(playing());
    PlaybackState later = playing();
    later.played = 1235;
    m_fake->device()->setProperty("playback", later.toMap());
    QTest::qWait(300);
    QCOMPARE(place(), QStringLiteral("3.204 s, frame 1235 of 17000"));
}

QTEST_MAIN(tst_PlaybackBar)
#include "tst_playbackbar.moc"
