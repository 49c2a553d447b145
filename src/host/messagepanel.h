// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

class MessageLog;
class QTableView;
class QToolButton;

/*! Shows the message log, newest at the bottom, with buttons to copy and to clear it. */
class MessagePanel : public QWidget
{
    Q_OBJECT

public:
    /*! \a log must outlive the panel. */
    explicit MessagePanel(MessageLog *log, QWidget *parent = nullptr);

    /*! Low at first: the plug-in needs the room. */
    QSize sizeHint() const override;

public slots:
    /*! Puts the selected messages, or all of them, into the clipboard. */
    void copy();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void build();
    void retranslate();

    MessageLog *m_log;
    QTableView *m_view;
    QToolButton *m_copy;
    QToolButton *m_clear;
    QTimer m_layoutTimer;  // one layout for many messages
    bool m_isAtEnd = true; // shows the newest messages, and goes on with them
};
