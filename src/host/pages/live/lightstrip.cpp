// SPDX-License-Identifier: MIT
#include "lightstrip.h"

#include <host/pages/lighticon.h>
#include <host/pages/plaintooltip.h>

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int lightSize = 24;

QLabel *makeText(QWidget *parent, const QString &name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(1);
    return label;
}

/*! A number and its unit stay on one line, and so do signs that have a blank before them in French. */
QString unbroken(QString text)
{
    static const QRegularExpression blanks(
        QStringLiteral("(?<=\\d) (?=(%|ms|s)(?!\\w))| (?=[:;?!»])|(?<=«) "));
    return text.replace(blanks, QString(QChar(QChar::Nbsp)));
}

bool isSame(const HealthLight &a, const HealthLight &b)
{
    const auto isSameFinding = [](const Finding &one, const Finding &other) {
        return one.nodeId == other.nodeId && one.text == other.text && one.advice == other.advice;
    };
    return a.subject == b.subject && a.state == b.state && a.text == b.text
           && std::equal(a.findings.cbegin(), a.findings.cend(), b.findings.cbegin(), b.findings.cend(),
                         isSameFinding);
}

} // namespace

LightStrip::LightStrip(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (std::size_t i = 0; i < count; ++i) {
        m_lights[i] = makeLight(static_cast<int>(i));
        layout->addWidget(m_lights[i].box, 1);
    }
    setLights({});
}

LightStrip::Light LightStrip::makeLight(int number)
{
    Light light;
    light.box = new QWidget(this);
    light.sign = new QLabel(light.box);
    light.sign->setFixedWidth(lightSize + 4);
    light.title = makeText(light.box, QStringLiteral("lightTitle%1").arg(number));
    QFont bold = light.title->font();
    bold.setBold(true);
    light.title->setFont(bold);
    light.sentence = makeText(light.box, QStringLiteral("lightText%1").arg(number));
    light.sentence->setWordWrap(true);
    light.sentence->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto *layout = new QGridLayout(light.box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setVerticalSpacing(0);
    layout->addWidget(light.sign, 0, 0, 2, 1, Qt::AlignTop);
    layout->addWidget(light.title, 0, 1);
    layout->addWidget(light.sentence, 1, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
    return light;
}

void LightStrip::setLights(const QVector<HealthLight> &lights)
{
    for (int i = 0; i < static_cast<int>(count); ++i) {
        HealthLight shown;
        shown.subject = static_cast<HealthLight::Subject>(i);
        if (i < lights.size())
            shown = lights.at(i);
        const bool isNew = i >= m_shown.size() || !isSame(m_shown.at(i), shown);
        if (isNew)
            show(m_lights[static_cast<std::size_t>(i)], shown);
    }
    m_shown = lights;
}

void LightStrip::show(const Light &light, const HealthLight &shown)
{
    const ReportMark mark = ReportMarks::of(shown.state);
    light.sign->setPixmap(LightIcon::of(mark).pixmap(lightSize));
    light.title->setText(tr("%1: %2").arg(name(shown.subject), ReportMarks::word(mark)));
    light.sentence->setText(shown.text.isEmpty() ? tr("Nothing was heard yet.") : unbroken(shown.text));
    light.box->setToolTip(plainToolTip(unbroken(details(shown))));
}

QString LightStrip::name(HealthLight::Subject subject)
{
    switch (subject) {
    case HealthLight::Subject::Load:
        return tr("Bus load");
    case HealthLight::Subject::Nodes:
        return tr("Devices");
    case HealthLight::Subject::Errors:
        break;
    }
    return tr("Errors");
}

QString LightStrip::details(const HealthLight &light)
{
    QStringList lines;
    for (const Finding &finding : light.findings) {
        lines.append(finding.nodeId != 0
                         ? tr("Node %1: %2").arg(QString::number(finding.nodeId), finding.text)
                         : finding.text);
        if (!finding.advice.isEmpty())
            lines.append(finding.advice);
    }
    return lines.join(QLatin1Char('\n'));
}

void LightStrip::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        const QVector<HealthLight> lights = m_shown;
        m_shown.clear();
        setLights(lights);
    }
    QWidget::changeEvent(event);
}
