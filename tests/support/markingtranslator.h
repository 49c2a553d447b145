// SPDX-License-Identifier: MIT
#pragma once

#include <QTranslator>

/*! A language in which every text of the window's context stands between angle brackets. */
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return qstrcmp(context, "OverviewForm") == 0
                   ? QStringLiteral("<%1>").arg(QString::fromUtf8(sourceText))
                   : QString();
    }
    bool isEmpty() const override { return false; }
};
