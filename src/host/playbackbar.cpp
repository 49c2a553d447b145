// SPDX-License-Identifier: MIT
#include "playbackbar.h"

#include "bargap.h"

#include <bus/busconnection.h>
#include <host/pages/elidedlabel.h>
#include <system/amounts.h>
#include <trace/playback/playbackstate.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QResizeEvent>
#include <QStyle>
#include <QToolButton>

namespace {

constexpr int positionInterval = 250; // ms
constexpr int buttonFrame = 16;       // pixels of a button around its icon and its text
constexpr int placeCharacters = 24;   // that are seen of the place at least

constexpr double speeds[] = {0.1, 0.25, 0.5, 1, 2, 5, 10, 100};
constexpr double unpaced = 0; // as fast as the frames are taken

QToolButton *makeButton(const char *name, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    return button;
}

} // namespace

PlaybackBar::PlaybackBar(BusConnection *bus, QWidget *parent)
    : QWidget(parent)
    , m_bus(bus)
    , m_play(makeButton("playButton", this))
    , m_step(makeButton("stepButton", this))
    , m_speedLabel(new QLabel(this))
    , m_speed(new QComboBox(this))
    , m_repeat(makeButton("repeatButton", this))
    , m_place(new ElidedLabel("playbackPlace", Qt::ElideRight, this))
{
    setObjectName(QStringLiteral("playbackBar"));
    build();
    fillSpeeds();
    retranslate();
    m_timer.setInterval(positionInterval);
    connect(&m_timer, &QTimer::timeout, this, &PlaybackBar::refresh);
    connect(bus, &BusConnection::stateChanged, this, &PlaybackBar::refresh);
    connect(m_play, &QToolButton::clicked, this, &PlaybackBar::press);
    connect(m_step, &QToolButton::clicked, this, [this] { tell(PlaybackState::StepKey, 1); });
    connect(m_repeat, &QToolButton::clicked, this,
            [this](bool isChecked) { tell(PlaybackState::RepeatKey, isChecked); });
    connect(m_speed, QOverload<int>::of(&QComboBox::activated), this,
            [this] { tell(PlaybackState::SpeedKey, m_speed->currentData()); });
    refresh();
}

void PlaybackBar::build()
{
    m_step->setIcon(style()->standardIcon(QStyle::SP_MediaSkipForward));
    m_repeat->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    m_repeat->setCheckable(true);
    m_speed->setObjectName(QStringLiteral("playbackSpeed"));
    m_speed->setSizeAdjustPolicy(QComboBox::AdjustToContents); // another language has other words
    m_speedLabel->setBuddy(m_speed);
    m_place->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // never widens the window
    auto *layout = new QHBoxLayout(this);
    layout->setSpacing(barGap);
    QMargins margins = layout->contentsMargins();
    margins.setTop(0);
    layout->setContentsMargins(margins);
    layout->addWidget(m_play);
    layout->addWidget(m_step);
    layout->addSpacing(barGap);
    layout->addWidget(m_speedLabel);
    layout->addWidget(m_speed);
    layout->addWidget(m_repeat);
    layout->addSpacing(barGap);
    layout->addWidget(m_place, 1);
}

/*! On a small screen it must not widen the window: the buttons have no texts there. */
QSize PlaybackBar::minimumSizeHint() const
{
    return {1, layout()->minimumSize().height()};
}

bool PlaybackBar::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) // a text has changed
        arrange();
    return QWidget::event(event);
}

void PlaybackBar::resizeEvent(QResizeEvent *event)
{
    arrange();
    QWidget::resizeEvent(event);
}

/*! Nothing that it goes by depends on how the parts stand now: they would change for ever. */
void PlaybackBar::arrange()
{
    const bool hasTexts = width() >= roomForTexts();
    for (QToolButton *button : {m_play, m_step, m_repeat})
        button->setToolButtonStyle(hasTexts ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    m_speedLabel->setVisible(hasTexts);
}

int PlaybackBar::roomForTexts() const
{
    const QMargins margins = layout()->contentsMargins();
    int room = margins.left() + margins.right() + 7 * barGap + m_speedLabel->sizeHint().width()
               + m_speed->sizeHint().width() + placeCharacters * fontMetrics().averageCharWidth();
    for (const QToolButton *button : {m_play, m_step, m_repeat})
        room += button->iconSize().width() + fontMetrics().horizontalAdvance(button->text()) + buttonFrame;
    return room;
}

void PlaybackBar::fillSpeeds()
{
    for (const double speed : speeds)
        m_speed->addItem(QString(), speed);
    m_speed->addItem(QString(), unpaced);
}

void PlaybackBar::retranslate()
{
    m_step->setText(tr("Next frame"));
    m_step->setToolTip(tr("Play one frame and pause"));
    m_speedLabel->setText(tr("Speed:"));
    m_speed->setToolTip(tr("So many times as fast as it was recorded"));
    nameSpeeds();
    m_repeat->setText(tr("Repeat"));
    m_repeat->setToolTip(tr("Play the trace from the beginning when it is over"));
    refresh();
}

void PlaybackBar::nameSpeeds()
{
    for (int i = 0; i < m_speed->count(); ++i) {
        const double speed = m_speed->itemData(i).toDouble();
        m_speed->setItemText(i, speed == unpaced ? tr("without pauses")
                                                 : tr("%1×").arg(QLocale().toString(speed)));
    }
}

void PlaybackBar::refresh()
{
    const std::optional<PlaybackState> state = PlaybackState::of(m_bus->device());
    setVisible(state.has_value());
    if (!state) {
        m_timer.stop();
        return;
    }
    if (!m_timer.isActive())
        m_timer.start();
    showState(*state);
}

void PlaybackBar::showState(const PlaybackState &state)
{
    const bool isStanding = state.isPaused || state.isOver;
    m_play->setText(state.isOver ? tr("Play again") : state.isPaused ? tr("Play") : tr("Pause"));
    m_play->setToolTip(m_play->text());
    m_play->setIcon(style()->standardIcon(isStanding ? QStyle::SP_MediaPlay : QStyle::SP_MediaPause));
    m_step->setEnabled(!state.isOver);
    m_repeat->setChecked(state.isRepeated);
    if (!m_speed->view()->isVisible())
        showSpeed(state.speed);
    const QString text = textOf(state);
    m_place->setText(text);
    m_place->setToolTip(text);
}

/*! A speed that is not offered was chosen on the command line. */
void PlaybackBar::showSpeed(double speed)
{
    if (m_speed->findData(speed) < 0) {
        m_speed->addItem(QString(), speed);
        nameSpeeds();
    }
    m_speed->setCurrentIndex(m_speed->findData(speed));
}

QString PlaybackBar::textOf(const PlaybackState &state) const
{
    if (state.isOver)
        return tr("The trace is over. Play it again to read its devices.");
    const QString text
        = tr("%1, frame %2 of %3")
              .arg(placeOf(state), QLocale().toString(state.played), QLocale().toString(state.frames));
    return state.isPaused ? tr("Paused at %1").arg(text) : text;
}

QString PlaybackBar::placeOf(const PlaybackState &state)
{
    const QDateTime time = state.timeOfDay();
    if (time.isValid())
        return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    return tr("%1 s").arg(
        QLocale().toString(static_cast<double>(state.time) / Microseconds::ofSecond, 'f', 3));
}

void PlaybackBar::press()
{
    const std::optional<PlaybackState> state = PlaybackState::of(m_bus->device());
    if (!state)
        return;
    if (state->isOver)
        tell(PlaybackState::RestartKey, true);
    if (state->isOver && state->isPaused)
        tell(PlaybackState::PauseKey, false);
    if (!state->isOver)
        tell(PlaybackState::PauseKey, !state->isPaused);
}

void PlaybackBar::tell(int key, const QVariant &value)
{
    m_bus->configureDevice(key, value);
    refresh();
}

void PlaybackBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}
