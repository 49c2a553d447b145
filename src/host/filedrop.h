// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

class QWidget;

/*! Lets one file be dropped on a window. */
class FileDrop : public QObject
{
    Q_OBJECT

public:
    using Filter = std::function<bool(const QString &fileName)>;

    /*! Belongs to \a window. Files are taken of which \a isTaken says so. */
    FileDrop(QWidget *window, const Filter &isTaken);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    void dropped(const QString &fileName);

private:
    Filter m_isTaken;
};
