// SPDX-License-Identifier: MIT
#pragma once

#include "localtext.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

/*! The words of a code: what a bit of an alarm means. Rows of several codes stand behind
 *  those of single ones: the first that holds a code has its words.
 */
class WordTable
{
public:
    void append(qint64 first, qint64 last, const LocalText<QString> &text)
    {
        m_rows.append({first, last, text});
    }

    /*! Empty when no row has the code. */
    std::optional<QString> find(qint64 code, const QString &language) const
    {
        for (const Row &row : m_rows) {
            if (code >= row.first && code <= row.last)
                return row.text.in(language);
        }
        return std::nullopt;
    }

private:
    struct Row
    {
        qint64 first;
        qint64 last;
        LocalText<QString> text;
    };

    QVector<Row> m_rows;
};

using WordTables = QHash<QString, WordTable>;
