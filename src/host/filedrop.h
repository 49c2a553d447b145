// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QWidget;

/*! Lets one file be dropped on a window. */
class FileDrop : public QObject
{
    Q_OBJECT

public:
    /*! Belongs to \a window. Files are taken whose names end in \a suffix. */
    FileDrop(QWidget *window, const QString &suffix);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    void dropped(const QString &fileName);

private:
    QString m_suffix;
};
