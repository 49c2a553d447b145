// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>

#include <memory>

class QSocketNotifier;

/*! The lines of standard input as they come, without holding up the event loop. Of other systems than POSIX: none. */
class InputLines : public QObject
{
    Q_OBJECT

public:
    explicit InputLines(QObject *parent = nullptr);
    ~InputLines() override;

signals:
    /*! Without its end; the first \a longest characters of a longer one. */
    void read(const QByteArray &line);
    /*! There will be no more. */
    void ended();

private:
    static constexpr int longest = 4096;

    void readMore();
    void take(const QByteArray &bytes);

    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArray m_line; // what there is of the next one
};
