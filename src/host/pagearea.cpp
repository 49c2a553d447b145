// SPDX-License-Identifier: MIT
#include "pagearea.h"

#include <utility>

namespace {

constexpr int leastHeight = 40; // pixels of a page, on a very small screen

} // namespace

PageArea::PageArea(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setMinimumHeight(leastHeight);
}

PageArea::PageArea(QWidget *page, QWidget *parent)
    : PageArea(parent)
{
    setWidget(page);
}

PageArea::PageArea(Maker make, QWidget *parent)
    : PageArea(parent)
{
    m_make = std::move(make);
}

void PageArea::need()
{
    if (!m_make)
        return;
    const Maker make = std::exchange(m_make, Maker());
    QWidget *page = make();
    setWidget(page);
    page->show();
}

void PageArea::showEvent(QShowEvent *event)
{
    need();
    QScrollArea::showEvent(event);
}
