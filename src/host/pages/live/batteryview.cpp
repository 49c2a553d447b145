// SPDX-License-Identifier: MIT
#include "batteryview.h"

#include "livesession.h"
#include "watchmodel.h"

#include <host/pages/heightkeeper.h>
#include <host/pages/plainlabel.h>
#include <host/pages/plaintooltip.h>

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QRgb usualInk = 0xFF2F7FC8;
constexpr QRgb lowInk = 0xFFD2691E;
constexpr QRgb highInk = 0xFF2F9F4E;
constexpr double foot = 0.25; // of the height, for the lowest cell
constexpr double leastShare
    = 0.03; // of the highest value, that the whole height is at least: small differences stay small

/*! A line never ends between the two. */
QString withUnit(const QString &number, const QString &unit)
{
    return unit.isEmpty() ? number : number + QChar(QChar::Nbsp) + unit;
}

QString numberOf(const BatteryPack &pack, double number)
{
    LiveValue value;
    value.divisor = pack.divisor;
    return withUnit(WatchModel::numberText(number, value), pack.unit);
}

int keyOf(const BatteryPack &pack)
{
    return pack.nodeId << 16 | pack.object;
}

} // namespace

BatteryView::BatteryView(LiveSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_choice(new QComboBox(this))
    , m_text(makeCopyableLabel("cellText", this))
    , m_others(makeCopyableLabel("batteryText", this))
    , m_bars(new CellBars(this))
{
    setObjectName(QStringLiteral("batteryView"));
    m_choice->setObjectName(QStringLiteral("batteryChoice"));
    m_choice->setSizeAdjustPolicy(QComboBox::AdjustToContents); // another language has other words
    m_text->setWordWrap(true);
    new HeightKeeper(m_text);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_choice);
    layout->addWidget(m_bars, 1);
    layout->addWidget(m_text);
    layout->addWidget(m_others);
    connect(m_choice, QOverload<int>::of(&QComboBox::activated), this, [this] {
        m_chosen = m_choice->currentData().toInt();
        refresh();
    });
    hide();
}

void BatteryView::refresh()
{
    const QVector<BatteryPack> packs = BatteryPack::of(m_session->live().values(), m_session->now());
    setVisible(!packs.isEmpty());
    if (packs.isEmpty())
        return;
    showPacks(packs);
    const BatteryPack &pack = packs.at(qBound(0, m_choice->currentIndex(), packs.size() - 1));
    m_bars->setPack(pack);
    m_text->setText(cellText(pack));
    m_text->setToolTip(plainToolTip(m_text->text())); // for where there is too little room
    showOthers(pack);
}

void BatteryView::showPacks(const QVector<BatteryPack> &packs)
{
    m_choice->setVisible(packs.size() > 1);
    if (m_choice->count() == packs.size())
        return;
    m_choice->clear();
    for (const BatteryPack &pack : packs)
        m_choice->addItem(tr("Battery of node %1, cells %2")
                              .arg(QString::number(pack.nodeId), CanOpen::indexText(pack.object)),
                          keyOf(pack));
    m_choice->setCurrentIndex(std::max(0, m_choice->findData(m_chosen)));
}

QString BatteryView::cellText(const BatteryPack &pack) const
{
    const BatteryPack::Cell &lowest = pack.cells.at(pack.lowest());
    const BatteryPack::Cell &highest = pack.cells.at(pack.highest());
    const QString text = tr("Cells: %1 (cell %2) to %3 (cell %4), spread %5")
                             .arg(numberOf(pack, lowest.value), QString::number(lowest.number),
                                  numberOf(pack, highest.value), QString::number(highest.number),
                                  numberOf(pack, pack.spread()));
    const int asked = m_session->questions().batteries().cellCount(pack.nodeId, pack.object);
    return asked > pack.cells.size()
               ? tr("%1; %2 of %3 have answered")
                     .arg(text, QString::number(pack.cells.size()), QString::number(asked))
               : text;
}

/*! The numbers in one line; their names are in the tool tip. */
void BatteryView::showOthers(const BatteryPack &pack)
{
    QStringList numbers;
    QStringList names;
    const QVector<LiveValue> others = BatteryPack::others(m_session->live().values(), pack.nodeId);
    for (const LiveValue &value : others) {
        numbers.append(withUnit(WatchModel::numberText(value.record.last(), value), value.unit));
        names.append(value.name + QStringLiteral(": ") + numbers.last());
    }
    m_others->setText(numbers.join(QStringLiteral(" · ")));
    m_others->setToolTip(plainToolTip(names.join(QLatin1Char('\n'))));
    m_others->setVisible(!numbers.isEmpty());
}

void BatteryView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        m_choice->clear();
    QWidget::changeEvent(event);
}

void CellBars::setPack(const BatteryPack &pack)
{
    m_pack = pack;
    QStringList lines;
    for (const BatteryPack::Cell &cell : pack.cells)
        lines.append(tr("Cell %1: %2").arg(QString::number(cell.number), numberOf(pack, cell.value)));
    setToolTip(
        plainToolTip(tr("Node %1").arg(pack.nodeId) + QLatin1Char('\n') + lines.join(QLatin1Char('\n'))));
    update();
}

void CellBars::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    if (m_pack.cells.isEmpty())
        return;
    QPainter painter(this);
    const int lowest = m_pack.lowest();
    const int highest = m_pack.highest();
    const double top = m_pack.cells.at(highest).value;
    const double range = std::max({m_pack.spread(), top * leastShare, 1e-9}) / (1 - foot);
    const double pitch = double(width()) / m_pack.cells.size();
    const double gap = std::min(3.0, pitch / 4);
    for (int i = 0; i < m_pack.cells.size(); ++i) {
        const BatteryPack::Cell &cell = m_pack.cells.at(i);
        const double part = qBound(0.0, 1 - (top - cell.value) / range, 1.0);
        const bool isSame = m_pack.spread() <= 0;
        QColor ink(isSame ? usualInk : i == lowest ? lowInk : i == highest ? highInk : usualInk);
        if (cell.isLate)
            ink = palette().color(QPalette::Disabled, QPalette::Text);
        painter.fillRect(QRectF(i * pitch, height() * (1 - part), pitch - gap, height() * part), ink);
    }
}
