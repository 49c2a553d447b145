// SPDX-License-Identifier: MIT
#pragma once

#include "reportink.h"

#include <QPointF>
#include <QString>

#include <memory>

class QFont;
class QPaintDevice;
class QPainter;
class QTextLayout;

/*! A text that is broken into lines of one width, in the units of the device that it is for. */
class PdfText
{
public:
    /*! Nothing is lost but what is beyond \a mostLines; 0: all. */
    PdfText(const QString &text, const QFont &font, Ink ink, qreal width, QPaintDevice *device,
            int mostLines = 0);
    ~PdfText();
    PdfText(const PdfText &) = default;
    PdfText &operator=(const PdfText &) = default;

    int lineCount() const;
    qreal lineHeight(int line) const;
    qreal height() const;
    qreal width() const; //!< of the longest line

    void paint(QPainter &painter, QPointF corner) const;
    void paintLine(QPainter &painter, int line, QPointF corner) const;

private:
    std::shared_ptr<QTextLayout> m_layout;
    Ink m_ink;
};
