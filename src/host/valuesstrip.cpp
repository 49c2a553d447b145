// SPDX-License-Identifier: MIT
#include "valuesstrip.h"

#include <host/core/shownvehicle.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

namespace {

/*! Shape and colour of a kind of note; the word is the sentence. */
struct Look
{
    const char *sign; // UTF-8
    QRgb ground;
};

constexpr Look information{"ℹ", 0xFFDCEBF7};
constexpr Look warning{"▲", 0xFFFFE9A8};

} // namespace

ValuesStrip::ValuesStrip(const ShownVehicle *vehicle, QWidget *parent)
    : QFrame(parent)
    , m_vehicle(vehicle)
    , m_sign(new QLabel(this))
    , m_sentence(new QLabel(this))
{
    setObjectName(QStringLiteral("valuesStrip"));
    m_sign->setObjectName(QStringLiteral("valuesSign"));
    m_sentence->setObjectName(QStringLiteral("valuesSentence"));
    m_sentence->setTextFormat(Qt::PlainText);
    m_sentence->setWordWrap(true);
    m_sentence->setTextInteractionFlags(Qt::TextSelectableByMouse);
    setAutoFillBackground(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(9, 3, 9, 3);
    layout->addWidget(m_sign);
    layout->addWidget(m_sentence, 1);
    connect(vehicle, &ShownVehicle::changed, this, &ValuesStrip::refresh);
    refresh();
}

void ValuesStrip::refresh()
{
    const ShownVehicle::Note note = m_vehicle->note();
    const Look &look = note.kind == ShownVehicle::Note::Kind::Warning ? warning : information;
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(look.ground));
    colours.setColor(QPalette::WindowText, Qt::black);
    setPalette(colours);
    m_sign->setText(QString::fromUtf8(look.sign));
    m_sentence->setText(note.sentence);
    setVisible(note.kind != ShownVehicle::Note::Kind::None);
}

void ValuesStrip::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        refresh();
    QFrame::changeEvent(event);
}
