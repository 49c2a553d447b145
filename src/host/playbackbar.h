// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

#include <optional>

class BusConnection;
class QComboBox;
class QLabel;
class QToolButton;
struct PlaybackState;

/*! While the bus is a trace that is played: how far it is, and pause, step, speed and repetition. Hidden on other buses. */
class PlaybackBar : public QWidget
{
    Q_OBJECT

public:
    /*! \a bus must outlive the bar. */
    explicit PlaybackBar(BusConnection *bus, QWidget *parent = nullptr);

    /*! Shows what there is now; called by a timer while there is something. */
    void refresh();

    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    void retranslate();
    void arrange();
    int roomForTexts() const;
    void fillSpeeds();
    void nameSpeeds();
    void showState(const PlaybackState &state);
    void showSpeed(double speed);
    QString textOf(const PlaybackState &state) const;
    static QString placeOf(const PlaybackState &state);
    void press();
    void tell(int key, const QVariant &value);

    BusConnection *m_bus;
    QToolButton *m_play;
    QToolButton *m_step;
    QLabel *m_speedLabel;
    QComboBox *m_speed;
    QToolButton *m_repeat;
    QLabel *m_place;
    QTimer m_timer;
};
