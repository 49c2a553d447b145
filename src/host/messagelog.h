// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QDateTime>
#include <QVector>

#include <functional>

/*! What was reported to the user, with the time of day; the oldest first.
 *
 *  A message that repeats one of the last few within seconds is not added again: the old one moves to the end
 *  and is counted, "(3 times)". Beyond the limit the oldest go.
 */
class MessageLog : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum class Severity { Information, Warning, Error };
    enum Column { TimeColumn, TextColumn, ColumnCount };

    using Clock = std::function<QDateTime()>;

    static constexpr int maximumLength = 1000;
    static constexpr int comparedMessages = 8; // the last ones, for repetitions
    static constexpr int repetitionTime = 10;  // s

    explicit MessageLog(QObject *parent = nullptr);

    void setClock(const Clock &clock) { m_clock = clock; }

    /*! \a text is plain text in the language of the user. */
    void add(Severity severity, const QString &text);
    void clear();

    /*! Rows \a rows as lines of text, "12:34:56  text"; all rows when it is empty. */
    QString toText(const QVector<int> &rows = {}) const;

    /*! A message of before, with its own time. */
    void addEarlier(const QDateTime &time, Severity severity, const QString &text);

    Severity severity(int row) const { return m_messages.at(row).severity; }
    QDateTime time(int row) const { return m_messages.at(row).time; }
    /*! As it is shown. */
    QString text(int row) const { return textOf(m_messages.at(row)); }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Message
    {
        QDateTime time; // of the last repetition
        Severity severity;
        QString text;
        int count = 1;
    };

    void append(const Message &message);
    int findRepeated(Severity severity, const QString &text, const QDateTime &now) const;
    QString textOf(const Message &message) const;

    Clock m_clock;
    QVector<Message> m_messages;
};
