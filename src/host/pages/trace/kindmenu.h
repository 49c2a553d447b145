// SPDX-License-Identifier: MIT
#pragma once

#include <live/core/liveframe.h>

#include <QToolButton>
#include <QVector>

#include <bitset>

/*! A button with a menu of the kinds of frames, of which several can be chosen; none stands for all. */
class KindMenu : public QToolButton
{
    Q_OBJECT

public:
    explicit KindMenu(QWidget *parent = nullptr);

    std::bitset<frameKinds> kinds() const;
    void setKinds(const std::bitset<frameKinds> &kinds);

    /*! "Process data (PDO)" */
    static QString nameOf(FrameKind kind);
    /*! "PDO" */
    static QString shortNameOf(FrameKind kind);

signals:
    void changed();

protected:
    void changeEvent(QEvent *event) override;

private:
    void showChoice();
    void retranslate();

    QVector<QAction *> m_actions; // by kind
    QAction *m_all;
};
