// SPDX-License-Identifier: MIT
#include "filterbar.h"

#include "kindmenu.h"

#include <host/pages/pagelayout.h>

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

namespace {

constexpr int nodeCharacters = 7;
constexpr int objectCharacters = 10;
constexpr int textCharacters = 8;

} // namespace

FilterBar::FilterBar(QWidget *parent)
    : BreakingRow(PageLayout::gap, parent)
    , m_nodes(makeField("filterNodes", nodeCharacters))
    , m_kinds(new KindMenu(this))
    , m_objects(makeField("filterObjects", objectCharacters))
    , m_text(makeField("filterText", textCharacters))
    , m_wrong(new QCheckBox(this))
    , m_clear(new QToolButton(this))
{
    m_kinds->setObjectName(QStringLiteral("filterKinds"));
    m_wrong->setObjectName(QStringLiteral("filterWrong"));
    m_clear->setObjectName(QStringLiteral("filterClear"));
    parts()->setContentsMargins(0, 0, 0, 0);
    auto *which = new QHBoxLayout;
    which->addWidget(m_nodes, nodeCharacters);
    which->addWidget(m_kinds);
    which->addWidget(m_objects, objectCharacters);
    auto *what = new QHBoxLayout;
    what->addWidget(m_text, 1);
    what->addWidget(m_wrong);
    what->addWidget(m_clear);
    addPart(which, 2);
    addPart(what, 3);
    connect(m_kinds, &KindMenu::changed, this, &FilterBar::read);
    connect(m_wrong, &QCheckBox::toggled, this, &FilterBar::read);
    connect(m_clear, &QToolButton::clicked, this, &FilterBar::clear);
    m_clear->setEnabled(false);
    retranslate();
}

QLineEdit *FilterBar::makeField(const char *name, int characters)
{
    auto *field = new QLineEdit(this);
    field->setObjectName(QLatin1String(name));
    field->setClearButtonEnabled(true);
    field->setMinimumWidth(characters * field->fontMetrics().averageCharWidth());
    connect(field, &QLineEdit::textChanged, this, &FilterBar::read);
    return field;
}

void FilterBar::clear()
{
    m_isClearing = true; // their signals are not blocked: the crosses in the fields would stay
    for (QLineEdit *field : {m_nodes, m_objects, m_text})
        field->clear();
    m_wrong->setChecked(false);
    m_kinds->setKinds({});
    m_isClearing = false;
    read();
}

FilterInput FilterBar::input() const
{
    FilterInput input;
    input.nodes = m_nodes->text();
    input.objects = m_objects->text();
    input.text = m_text->text();
    input.kinds = m_kinds->kinds();
    input.isWrongOnly = m_wrong->isChecked();
    return input;
}

QString FilterBar::problem() const
{
    QString problem;
    input().parse(&problem);
    return problem;
}

void FilterBar::read()
{
    if (m_isClearing)
        return;
    m_clear->setEnabled(!input().isEmpty());
    QString problem;
    const std::optional<TraceFilter> filter = input().parse(&problem);
    emit problemChanged();
    if (!filter)
        return;
    m_filter = *filter;
    emit filterChanged();
}

void FilterBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    BreakingRow::changeEvent(event);
}

void FilterBar::retranslate()
{
    m_nodes->setPlaceholderText(tr("Nodes"));
    m_nodes->setToolTip(tr("Only lines of these nodes: \"2, 5-7\""));
    m_objects->setPlaceholderText(tr("Objects"));
    m_objects->setToolTip(tr("Only lines that carry these objects: \"6164h.2, 1018h\""));
    m_text->setPlaceholderText(tr("Words"));
    m_text->setToolTip(tr("Only lines with these words"));
    m_wrong->setText(tr("Only what is &wrong"));
    m_wrong->setToolTip(tr("Only warnings and faults"));
    m_clear->setText(tr("Show all"));
    m_clear->setToolTip(tr("Shows all lines again"));
}
