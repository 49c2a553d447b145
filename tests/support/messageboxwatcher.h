// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QRect>
#include <QStringList>
#include <QVector>

/*! What one message box said. */
struct MessageBoxRecord
{
    QString title;
    QString text;
    QString informativeText;
    QMessageBox::StandardButtons buttons;
    QRect geometry;
    bool hasParent = false;
    bool isModal = false;
};

/*! Answers every message box that opens while it lives, and records what the box said.
 *
 *  Boxes are answered through the event loop, after all that the code under test does before it runs the box.
 */
class MessageBoxWatcher : public QObject
{
    Q_OBJECT

public:
    explicit MessageBoxWatcher(QMessageBox::StandardButton answer = QMessageBox::Ok);
    ~MessageBoxWatcher() override;

    const QVector<MessageBoxRecord> &boxes() const { return m_boxes; }

    /*! The texts of all boxes, in the order of their opening. */
    QStringList texts() const;

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void answerBox(QMessageBox &box);

    QMessageBox::StandardButton m_answer;
    QVector<MessageBoxRecord> m_boxes;
};
