// SPDX-License-Identifier: MIT
#pragma once

#include <host/pages/copytable.h>

/*! The list of a trace: of a million rows only so many are copied, and the newest are followed. */
class TraceTable : public CopyTable
{
    Q_OBJECT

public:
    static constexpr int mostCopied = 20000; // rows: what a clipboard is good for

    explicit TraceTable(QWidget *parent = nullptr);

    /*! Whether the last row stays in sight when rows are added. */
    void setFollowing(bool follows);
    bool isFollowing() const { return m_isFollowing; }

    /*! The first and the last selected row; -1 without any. */
    int firstSelected() const;
    int lastSelected() const;

    QString toText() const override;
    void copy() override;

signals:
    /*! Of the rows that were to be copied only the first ones were. */
    void copiedNotAll();
    /*! The user has scrolled up, or to the end. */
    void followingChanged(bool follows);

private:
    bool m_isFollowing = true;
    bool m_isScrolling = false; // by itself
    bool m_isClamped = false;   // rows have gone, and with them the place
};
