// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QString>

/*! One line on standard error that is written over and over; nothing at all when that is no terminal. */
class ProgressLine
{
public:
    enum class Output { Terminal, None };

    /*! Whether standard error is a terminal. */
    static Output detectOutput();

    explicit ProgressLine(Output output = detectOutput());
    ~ProgressLine();

    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    bool isShown() const { return m_output == Output::Terminal; }

    /*! Whether update() would show something now. */
    bool isDue() const;

    /*! Shows \a text, unless the text before is not old enough to have been read. */
    void update(const QString &text);

    /*! Takes the line away; called before anything else is printed. */
    void clear();

private:
    Output m_output;
    bool m_isOnScreen = false;
    QElapsedTimer m_sinceUpdate;
};
