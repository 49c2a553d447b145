// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QTranslator>

/*! A language in which a text is put in brackets with its context, while the object lives: "Value" becomes
 *  "[OverviewForm:Value]".
 */
class MarkingTranslator : public QTranslator
{
public:
    /*! Marks the texts of one context; without a name those of all contexts. */
    explicit MarkingTranslator(const QByteArray &context = {})
        : m_context(context)
    {
        QCoreApplication::installTranslator(this);
    }
    ~MarkingTranslator() override { QCoreApplication::removeTranslator(this); }

    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return m_context.isEmpty() || m_context == context
                   ? QStringLiteral("[%1:%2]").arg(QString::fromUtf8(context), QString::fromUtf8(sourceText))
                   : QString();
    }
    bool isEmpty() const override { return false; }

private:
    QByteArray m_context;
};
